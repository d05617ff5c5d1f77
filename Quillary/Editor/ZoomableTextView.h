#pragma once

#include "Quillary/Editor/TextLayout.h"
#include "Quillary/Find/FindTextView.h"
#include "QuillaryCore/Formats/SyntaxLanguage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QColor>
#include <QElapsedTimer>
#include <QPalette>
#include <QPointer>

#include <functional>
#include <optional>

class QInputMethodEvent;
class QMenu;
class QMimeData;
class QNativeGestureEvent;
class QVariantAnimation;

namespace quillary {

/// The text view of one note: a plain text editor over the note's own TextStorage, which does what a user expects of
/// Qt's text widgets and leaves every unit that was not typed in as it is.
///
/// Where it is scrolled to is a row and a distance, so that nothing on the screen moves when the rows above it turn out
/// to be more or fewer than estimated.
class ZoomableTextView : public QAbstractScrollArea, public FindTextView {
    Q_OBJECT

public:
    /// Space between the edges and the text, in pixels.
    static constexpr int horizontalInset = 22;
    static constexpr int verticalInset = 18;

    /// The document must outlive the view.
    explicit ZoomableTextView(NoteDocument& document, QWidget* parent = nullptr);
    ~ZoomableTextView() override;

    TextLayout& textLayout() { return m_layout; }

    const TextStorage& storage() const { return m_storage; }

    void setWraps(bool wraps);
    void setEditorFont(const QFont& font);

    bool isReadOnly() const { return m_isReadOnly; }

    void setReadOnly(bool isReadOnly);

    NoteDocument* shownDocument() const override { return &m_document; }

    TextSelection selection() const override { return m_selection; }

    /// Ends within a cluster move to its start. The view does not scroll.
    void setSelection(TextSelection selection) override;

    bool replaceText(TextRange range, const QString& text) override;

    bool replaceTexts(std::span<const TextReplacement> replacements) override;

    void setFindHighlights(std::span<const TextRange> ranges, std::optional<qsizetype> current) override;
    void clearFindHighlights() override;
    void showFindIndicator(TextRange range) override;

    void resetHighlightedLanguage() override { m_highlightedLanguage.reset(); }

    /// The language that the text is coloured for; absent if it is not or is to be coloured anew.
    std::optional<SyntaxLanguage> highlightedLanguage() const { return m_highlightedLanguage; }

    /// The part of the text that was coloured for it.
    std::optional<TextRange> highlightedWindow() const { return m_highlightedWindow; }

    /// Colours the text anew, all at once.
    void setHighlights(std::optional<SyntaxLanguage> language, std::optional<TextRange> window,
                       std::vector<SyntaxRanges::Span> colors);

    QString selectedText() const;

    /// Scrolls as little as needed to show a range's start, and of its end what fits.
    void scrollToRange(TextRange range) override;

    /// The distance that the view is scrolled by, in pixels; vertically by the present estimate.
    QPointF scrollOrigin() const;
    void setScrollOrigin(QPointF origin);

    /// The text that is on the screen, or would be if the view were; absent if it has no room for any.
    std::optional<TextRange> visibleRange();

    /// Where the caret stands, in the viewport's coordinates.
    QRect caretRect();

    /// What the cluster at a position covers of its row, in the viewport's coordinates.
    QRect characterRect(qsizetype position);

    /// The position whose caret is nearest to a point of the viewport.
    qsizetype positionAt(QPoint point);

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    /// Lets the input method finish what it is composing where it is, before the caret goes elsewhere.
    void commitPreedit();

    /// Called for each zoom step that the user makes, with +1 or -1.
    std::function<void(int)> onZoomStep;

public Q_SLOTS:
    void undo();
    void redo();
    void cut();
    void copy();
    void paste();
    void deleteSelection();
    void selectAll();

Q_SIGNALS:
    /// Around every change of the text that comes through this view, undo and redo included.
    void aboutToEdit();
    void edited();

    void selectionChanged();

    /// When another part of the text may be on show: the view scrolled, or its size changed.
    void visibleRangeChanged();

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    using Row = TextLayout::Row;
    using Side = TextLayout::Side;

    /// A position with the row that it is shown in.
    struct Spot {
        qsizetype position = 0;
        Side side = Side::after;
    };

    /// A row and where its top edge is in the viewport.
    struct VisibleRow {
        Row row;
        int top = 0;
    };

    /// How text that stands out is drawn.
    struct Colors {
        QColor ground;
        QColor ink;
        SyntaxColors syntax;
    };

    /// What a drag of the mouse selects by.
    enum class Unit { cluster, word, line };

    // Scrolling
    qint64 pixels(qint64 rows) const;
    Row topRow();
    std::vector<VisibleRow> visibleRows();
    void reflow();
    void scrollBy(qint64 distance);
    void scrollTo(qint64 value);
    void settleTop();
    void keepWithinText();
    qint64 contentHeight() const;
    qint64 scrollValue();
    void updateScrollBars();
    void startMeasuring();
    void measureAhead();
    void placeRowAt(const Row& row, int top);
    int topOf(const Row& row);
    void ensureCaretVisible();
    void ensureVisible(Spot spot);

    // Selection and motion
    void moveCaret(Spot spot, bool extends);

    void moveCaret(qsizetype position, bool extends) { moveCaret(Spot{position, Side::after}, extends); }

    void assignSelection(TextSelection selection, Side side);
    Row caretRow();
    Spot spotInRow(const Row& row, qreal x);
    Spot endOf(const Row& row) const;
    Spot spotAt(QPoint point);
    bool claimsKey(const QKeyEvent& event);
    bool moveByKey(QKeyEvent* event);
    void moveVertically(int rows, bool extends);
    void movePage(int direction, bool extends);
    Spot sideways(bool towardsRight, bool byWord);
    void extendByUnits(qsizetype position);
    TextRange unitAround(qsizetype position) const;

    // Editing
    void edit(TextRange range, const QString& text, EditKind kind);
    void follow(const TextChange& change);
    bool editByKey(QKeyEvent* event);
    void removeRange(TextRange range, EditKind kind);
    void insertFromMimeData(const QMimeData* source);
    void publishPrimarySelection();
    void showAfterUndo(const std::optional<TextSelection>& selection);

    // Drag and drop
    static std::optional<QString> plainTextOf(const QMimeData* source);
    bool isOnSelection(QPoint point);
    void startDrag();
    void moveSelectionTo(qsizetype position);
    void drawDropPlace(QPainter& painter);

    // Accessibility
    void rememberForAccessibility(TextRange removed);
    void announceChange(const TextChange& change);
    void announceSelection(TextSelection before);

    // Input methods
    TextRange surroundingRange() const;
    void clearPreedit();
    void updateInputMethod();

    // Looks
    void drawOver(QPainter& painter, const std::vector<VisibleRow>& rows, const QRectF& clip, TextRange range,
                  const Colors& colors);
    void drawCaret(QPainter& painter);
    QRect placeOfCaret(const Row& row, qsizetype position);
    void drawFindIndicator(QPainter& painter, const std::vector<VisibleRow>& rows, const QRectF& clip);
    void stopFindIndicator();
    void restartBlinking();
    void zoomByGesture(const QNativeGestureEvent& event);
    QMenu* makeContextMenu();

    NoteDocument& m_document;
    TextStorage& m_storage;
    UndoManager& m_undoManager;
    TextLayout m_layout;
    TextSelection m_selection;
    Side m_caretSide = Side::after;
    /// Where vertical motion wants to go, in the text's x.
    std::optional<qreal> m_goalX;
    bool m_isReadOnly = false;
    std::optional<SyntaxLanguage> m_highlightedLanguage;
    std::optional<TextRange> m_highlightedWindow;

    /// The row at the top edge by the position it begins at, and how far it reaches above that edge.
    qsizetype m_topPosition = 0;
    int m_topOverhang = -verticalInset;
    bool m_isSettingScrollBars = false;

    /// The find bar's current match, which stands out even where it is selected.
    std::optional<TextRange> m_currentFind;
    /// Runs while a match is being pointed out.
    QPointer<QVariantAnimation> m_findIndicator;
    TextRange m_indicatedRange;

    Unit m_dragUnit = Unit::cluster;
    TextRange m_dragOrigin;
    bool m_isSelectingByMouse = false;
    QPoint m_lastMousePosition;
    /// Where the button went down on selected text, which may be the start of a drag of the text.
    std::optional<QPoint> m_pressOnSelection;
    bool m_isDraggingSelection = false;
    bool m_isCommittingPreedit = false;
    /// Where text that is being dragged over the view would go.
    std::optional<Spot> m_dropSpot;
    /// What an edit is about to remove, kept only while somebody listens.
    QString m_removedText;
    QPoint m_doubleClickPosition;
    QElapsedTimer m_sinceDoubleClick;
    QBasicTimer m_autoscrollTimer;
    QBasicTimer m_blinkTimer;
    QBasicTimer m_measuringTimer;
    bool m_isCaretOn = false;
    double m_pendingMagnification = 0;
    int m_pendingWheelAngle = 0;
};

} // namespace quillary
