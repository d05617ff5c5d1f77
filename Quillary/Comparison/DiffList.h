#pragma once

#include "Quillary/Comparison/DiffLineView.h"
#include "Quillary/Comparison/DiffMetrics.h"
#include "Quillary/Comparison/DiffMode.h"
#include "Quillary/Comparison/DiffStrips.h"
#include "QuillaryCore/Compare/DiffDisplayItem.h"
#include "QuillaryCore/Compare/DiffRows.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quillary {

/// The rows of a comparison as a list that knows all of them and lays out only what it shows. Lines wrap. Rows that
/// were never shown have estimated heights, which are corrected without a jump of what the user sees.
///
/// Whole lines can be selected and copied: in two halves those of the half that was clicked, in one column all.
class DiffList : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit DiffList(QWidget* parent = nullptr);
    ~DiffList() override;

    /// Shows other rows from their first one on, with every fold closed and nothing selected.
    void setRows(const DiffRows& rows);

    const DiffRows& rows() const { return m_rows; }

    void setMode(DiffMode mode);

    DiffMode mode() const { return m_mode; }

    /// Whether every row is shown, whatever was folded.
    void setShowsAllLines(bool showsAll);

    bool showsAllLines() const { return m_showsAllLines; }

    void setStyle(const EditorStyle& style);

    const DiffMetrics& metrics() const { return m_metrics; }

    const std::vector<DiffDisplayItem>& items() const { return m_items; }

    /// Opens a fold; no other item does anything.
    void expand(qsizetype item);

    /// Scrolls so that a row stands in the middle, as far as there is something around it. A folded row's fold does.
    void scrollToRow(qsizetype rowId);

    /// Moves to the next change, or with a negative direction to the previous one: the first row of its stretch becomes
    /// the current one and stands in the middle. Whether there is one.
    bool goToChange(int direction);

    /// The item at a place of the viewport.
    std::optional<qsizetype> itemAt(const QPoint& place) const;

    /// Where an item lies in the viewport; far away from it, about where.
    QRect itemRect(qsizetype item) const;

    std::optional<qsizetype> currentItem() const { return m_current; }

    /// Moves the current item there and shows it; selects it, or all from where the selection began.
    void setCurrentItem(qsizetype item, bool extends = false);

    void selectAll();

    bool isSelected(qsizetype item) const;

    /// The half whose lines are selected.
    bool isNewSideSelected() const { return m_isNewSide; }

    /// The selected lines, with those of selected folds, each with a line feed behind it.
    QString selectedText() const;

    /// Puts the selected lines on the clipboard; nothing if there are none.
    void copy() const;

    /// The item as a screen reader tells it.
    QString description(qsizetype item) const;

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    /// A line on the screen: its part of a strip, and the chunk of it that the strip shows.
    struct Part {
        DiffLineView line;
        qsizetype chunk = 0;
        QRect rect;
        /// Tells the layouts of a strip apart.
        int index = 0;
    };

    /// The first strip in the viewport, and how far its top lies above that of the viewport.
    struct Anchor {
        qsizetype strip = 0;
        int offset = 0;
    };

    static constexpr int verticalPadding = 8;

    void rebuildItems();
    void rebuildStrips();
    void addStrips(const DiffRow& row);
    /// What the user looks at while items or their heights become others.
    void keepPlace(const std::function<void()>& rebuild);

    qsizetype itemOfRow(qsizetype rowId) const;

    qsizetype lastStrip() const { return m_strips.count() - 1; }

    int halfWidth() const { return std::max(1, (viewport()->width() - 1) / 2); }

    double textWidth() const;
    std::vector<Part> parts(qsizetype strip, int top) const;
    const QTextLayout& layoutOf(qsizetype strip, const Part& part) const;
    void measure(qsizetype strip);
    void forgetLayouts();

    qint64 contentTop(qsizetype strip) const { return verticalPadding + m_strips.top(strip); }

    qint64 contentHeight() const { return m_strips.totalHeight() + 2 * verticalPadding; }

    qint64 scrollOffset() const { return m_strips.count() == 0 ? 0 : contentTop(m_anchor.strip) + m_anchor.offset; }

    void scrollTo(qint64 offset);
    void scrollToEnd();
    void settle();
    void showItem(qsizetype item);
    void centerItem(qsizetype item);
    void moveByPage(int direction, bool extends);

    void paintStrip(QPainter& painter, qsizetype strip, const QRect& rect);
    void paintSelection(QPainter& painter, qsizetype item, const QRect& rect) const;
    void select(qsizetype item, bool extends);
    void setHovered(std::optional<qsizetype> item);
    std::optional<qsizetype> foldAt(const QPoint& place) const;
    void dragTo(const QPoint& place);
    void endDrag();
    void tellReaders();

    DiffRows m_rows;
    DiffMode m_mode = DiffMode::sideBySide;
    bool m_showsAllLines = false;
    QSet<qsizetype> m_expanded;
    EditorStyle m_style;
    DiffMetrics m_metrics{m_style};

    std::vector<DiffDisplayItem> m_items;
    DiffStrips m_strips;
    Anchor m_anchor;
    bool m_isSettling = false;
    int m_settledWidth = -1;
    mutable std::unordered_map<qsizetype, std::unique_ptr<QTextLayout>> m_layouts;

    std::optional<qsizetype> m_current;
    qsizetype m_selectionStart = 0;
    bool m_isNewSide = false;
    bool m_isDragging = false;
    /// Where the mouse is while a drag has left the viewport and the list goes on scrolling by itself.
    QPoint m_dragPlace;
    QBasicTimer m_dragTimer;
    std::optional<qsizetype> m_hovered;
};

} // namespace quillary
