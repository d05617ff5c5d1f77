#pragma once

#include "Quillary/Previews/MarkdownCellBound.h"
#include "Quillary/Previews/MarkdownLinkPlace.h"
#include "Quillary/Previews/MarkdownPosition.h"
#include "Quillary/Previews/MarkdownRowLayout.h"
#include "Quillary/Previews/MarkdownRows.h"
#include "Quillary/Previews/MarkdownStyle.h"
#include "Quillary/Previews/MarkdownTableColumns.h"
#include "Quillary/Previews/RowHeights.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QCache>
#include <QVariantAnimation>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quillary {

/// A Markdown note as a formatted page: a column of rows, of which only those near the viewport are laid out; those of
/// the pages above and below as soon as there is nothing else to do. The others count with an estimated height. What
/// stays fixed on the screen is a row and a distance to it, so that better estimates move the scroll bar and nothing
/// else.
///
/// Text can be selected across rows and copied; links are followed by click or by key.
class MarkdownPreview : public QAbstractScrollArea {
    Q_OBJECT

public:
    /// Follows a link that doesn't lead to a place in the same text, and says whether it was handled.
    using OpenLink = std::function<bool(const QString& url)>;

    /// `baseSize` is the editor's font size.
    MarkdownPreview(const QString& text, double baseSize, OpenLink openLink, QWidget* parent = nullptr);
    ~MarkdownPreview() override;

    /// Shows another text, or the same in another size. The row at the top stays there if it can be found again.
    void rebuild(const QString& text, double baseSize);

    const MarkdownBlocks& blocks() const { return m_rows.blocks; }

    double baseSize() const { return m_style.baseSize; }

    /// Rises whenever there is another text.
    qint64 revision() const { return m_revision; }

    /// The slugs of the headings at top level, by their index among the blocks.
    QMap<qsizetype, QString> anchors() const { return m_rows.anchors(); }

    /// Follows a link: scrolls to a place in this text, or else asks `openLink`. Whether it was handled.
    bool followLink(const QString& url);

    // The rows (MarkdownPreview.cpp)

    const MarkdownRows& rows() const { return m_rows; }

    /// Where a row's content is in the viewport; its size is exact for a row in view and estimated for any other.
    QRectF contentRect(qsizetype row) const;

    /// The row of the top of the viewport.
    qsizetype topRow() const { return m_anchor.row; }

    /// How many rows are laid out.
    qsizetype laidOutRowCount() const { return static_cast<qsizetype>(m_layouts.size()); }

    // The selection (MarkdownPreviewSelection.cpp)

    using Position = MarkdownPosition;

    bool hasSelection() const { return m_selectionStart != m_selectionEnd; }

    Position selectionStart() const { return m_selectionStart; }

    Position selectionEnd() const { return m_selectionEnd; }

    /// The selected text as it is shown, without markers.
    QString selectedText() const;

    void select(Position start, Position end);

    /// The text of a row as it is shown.
    QString rowText(qsizetype row) const;

    /// What stands between the text of a row and that of the row above in copied text.
    QString separatorAbove(qsizetype row) const;

    /// The position at a place of the viewport, and what the character at a position covers there.
    Position positionAt(QPointF place) const;
    QRectF rectOf(Position position) const;

    /// Scrolls so that a position is in view.
    void showPosition(Position position);

public Q_SLOTS:
    void copy() const;
    void selectAll();

Q_SIGNALS:
    void selectionChanged();

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// What stays where it is on the screen: a row, and how far its top is above the top of the viewport.
    struct Anchor {
        qsizetype row = 0;
        double offset = 0;
    };

    struct Link {
        qsizetype row = 0;
        MarkdownLinkPlace place;

        friend bool operator==(const Link&, const Link&) = default;
    };

    enum class Selecting : quint8 { nothing, characters, words, rows };

    // Layout (MarkdownPreview.cpp)
    qsizetype rowCount() const { return static_cast<qsizetype>(m_rows.rows.size()); }

    const MarkdownRow& row(qsizetype row) const { return m_rows.rows[static_cast<std::size_t>(row)]; }

    void forgetLayouts();
    double estimatedHeight(const MarkdownRow& row) const;
    double pageLeft() const;
    double pageWidth() const;
    double contentLeft(const MarkdownRow& row) const;
    double contentWidth(const MarkdownRow& row) const;
    const MarkdownRowLayout& layoutOf(qsizetype row) const;
    const MarkdownTableColumns& columnsOf(const MarkdownRow& row) const;
    const QList<SyntaxToken>* tokensOf(const MarkdownRow& row) const;
    double heightOf(qsizetype row) const;

    bool isLaidOut(qsizetype row) const { return m_layouts.find(row) != m_layouts.end(); }

    void dropFarLayouts();
    qsizetype rowLike(const MarkdownRows& old, qsizetype oldRow) const;

    // Scrolling (MarkdownPreviewScrolling.cpp)
    void setAnchor(Anchor anchor);
    Anchor normalized(Anchor anchor) const;
    Anchor lastAnchor() const;
    double placeOf(const Anchor& anchor) const;
    Anchor anchorAt(double place) const;
    void scrollBy(double distance);
    std::optional<qsizetype> nextToLayOut() const;
    void layOutAhead();
    void syncScrollBar();
    void scrollToRow(qsizetype row, bool isAnimated);
    void scrollIntoView(const QRectF& rect);
    double sideways(const MarkdownRow& row) const;
    double sidewaysRange(const MarkdownRow& row) const;
    void setSideways(const MarkdownRow& row, double offset);
    void showColumn(const MarkdownRow& row, qsizetype column);
    std::optional<qsizetype> sidewaysRowAt(QPointF place) const;
    QRectF sidewaysThumb(qsizetype row) const;

    // Painting (MarkdownPreviewPainting.cpp)
    void paintRow(QPainter& painter, qsizetype row, const QRectF& content, const QRectF& clip) const;
    void paintFrames(QPainter& painter, qsizetype row, const QRectF& content) const;
    void paintMarker(QPainter& painter, const MarkdownFrame& frame, double contentLeft, double baseline) const;
    void paintBox(QPainter& painter, const MarkdownRow& row, const QRectF& content) const;
    void paintLinks(QPainter& painter, qsizetype row, QPointF origin) const;
    TextRange selectionIn(qsizetype row) const;
    QPointF textOrigin(qsizetype row, const QRectF& content) const;

    // Selection and links (MarkdownPreviewSelection.cpp, MarkdownPreviewMouse.cpp)
    void extendSelectionTo(Position position);
    std::pair<Position, Position> unitAt(Position position) const;
    void setPrimarySelection() const;
    std::optional<Link> linkAt(QPointF place) const;
    std::optional<Link> nextLink(const std::optional<Link>& from, bool forwards) const;
    QString urlOf(const Link& link) const;
    void setHoveredLink(const std::optional<Link>& link);
    void setFocusedLink(const std::optional<Link>& link);
    void updateHover(QPointF place);

    MarkdownRows m_rows;
    MarkdownStyle m_style;
    OpenLink m_openLink;
    qint64 m_revision = 0;

    mutable RowHeights m_heights;
    mutable std::unordered_map<qsizetype, std::unique_ptr<MarkdownRowLayout>> m_layouts;
    mutable std::unordered_map<qint32, std::unique_ptr<MarkdownTableColumns>> m_columns;
    /// Of the cells of headers and of all others.
    mutable MarkdownCellBound m_headerBound{QFont()};
    mutable MarkdownCellBound m_cellBound{QFont()};
    mutable QCache<qint32, QList<SyntaxToken>> m_tokens;
    /// How wide the widest row of each code block is found to be, and how far blocks are scrolled.
    mutable QHash<qint32, double> m_codeWidths;
    QHash<qint32, double> m_codeOffsets;
    QHash<qint32, double> m_tableOffsets;

    Anchor m_anchor;
    bool m_isSyncing = false;
    /// Runs while rows of the pages beside wait to be laid out.
    QBasicTimer m_aheadTimer;
    QVariantAnimation m_animation;

    Position m_selectionStart;
    Position m_selectionEnd;
    /// What the press that began the selection took: a character's place, a word or a row.
    std::pair<Position, Position> m_selectionOrigin;
    Selecting m_selecting = Selecting::nothing;
    QPointF m_dragPlace;
    QBasicTimer m_dragTimer;
    QBasicTimer m_tripleClickTimer;
    QPointF m_doubleClickPlace;

    std::optional<Link> m_hoveredLink;
    std::optional<Link> m_pressedLink;
    std::optional<Link> m_focusedLink;
    /// The row whose sideways thumb is dragged, and where it was taken.
    std::optional<qsizetype> m_draggedThumb;
    double m_thumbGrip = 0;
};

} // namespace quillary
