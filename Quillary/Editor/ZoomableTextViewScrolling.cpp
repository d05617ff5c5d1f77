#include "Quillary/Editor/ZoomableTextView.h"

#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <limits>

namespace quillary {

namespace {

/// Further than this many viewports a scroll bar's move is a jump to a place and no motion over the rows between.
constexpr qint64 viewportsWalked = 4;
/// In longer notes the rows far from the viewport stay estimated.
constexpr qsizetype mostUnitsMeasured = 1'000'000;
/// Longer rows, which only lines that do not wrap have, are not taken to be on the screen as a whole.
constexpr qsizetype longestRowSeenWhole = 4096;

int toInt(qint64 value) {
    return static_cast<int>(
        std::clamp<qint64>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

qint64 ZoomableTextView::pixels(qint64 rows) const {
    return rows * m_layout.pitch();
}

ZoomableTextView::Row ZoomableTextView::topRow() {
    return m_layout.rowHolding(m_topPosition);
}

std::vector<ZoomableTextView::VisibleRow> ZoomableTextView::visibleRows() {
    std::vector<VisibleRow> rows;
    int top = -m_topOverhang;
    for (std::optional<Row> row = topRow(); row && top < viewport()->height(); row = m_layout.rowBelow(*row)) {
        rows.push_back({*row, top});
        top += m_layout.pitch();
    }
    return rows;
}

std::optional<TextRange> ZoomableTextView::visibleRange() {
    const std::vector<VisibleRow> rows = visibleRows();
    if (rows.empty() || viewport()->width() <= 0) {
        return std::nullopt;
    }
    const Row& first = rows.front().row;
    const Row& last = rows.back().row;
    const int left = horizontalScrollBar()->value();
    // Of an endless line that does not wrap only a part is on the screen.
    const bool startsWithin = first.contents.length > longestRowSeenWhole && !first.isRightToLeft;
    const bool endsWithin = last.contents.length > longestRowSeenWhole && !last.isRightToLeft;
    const qsizetype start = startsWithin ? m_layout.positionAt(first, left - horizontalInset) : first.contents.location;
    const qsizetype end = endsWithin ? m_layout.positionAt(last, left + viewport()->width()) : last.next;
    return TextRange{start, std::max(start, end) - start};
}

qint64 ZoomableTextView::contentHeight() const {
    return pixels(m_layout.rowCount()) + 2 * verticalInset;
}

qint64 ZoomableTextView::scrollValue() {
    return verticalInset + pixels(m_layout.indexOf(topRow())) + m_topOverhang;
}

QPointF ZoomableTextView::scrollOrigin() const {
    return {static_cast<qreal>(horizontalScrollBar()->value()), static_cast<qreal>(verticalScrollBar()->value())};
}

void ZoomableTextView::setScrollOrigin(QPointF origin) {
    scrollTo(qRound64(origin.y()));
    horizontalScrollBar()->setValue(qRound(origin.x()));
}

/// Makes the top row the one that the top edge cuts, after it moved by any number of pixels.
void ZoomableTextView::settleTop() {
    Row row = topRow();
    const int pitch = m_layout.pitch();
    while (m_topOverhang < 0) {
        const std::optional<Row> above = m_layout.rowAbove(row);
        if (!above) {
            m_topOverhang = std::max(m_topOverhang, -verticalInset);
            break;
        }
        row = *above;
        m_topOverhang += pitch;
    }
    while (m_topOverhang >= pitch) {
        const std::optional<Row> below = m_layout.rowBelow(row);
        if (!below) {
            break;
        }
        row = *below;
        m_topOverhang -= pitch;
    }
    m_topPosition = row.contents.location;
    keepWithinText();
    Q_EMIT visibleRangeChanged();
}

/// Leaves no empty space below the text as long as there are rows above to fill it with.
void ZoomableTextView::keepWithinText() {
    int bottom = -m_topOverhang;
    std::optional<Row> row = topRow();
    for (; row && bottom < viewport()->height(); row = m_layout.rowBelow(*row)) {
        bottom += m_layout.pitch();
    }
    int missing = row ? 0 : viewport()->height() - (bottom + verticalInset);
    while (missing > 0) {
        const std::optional<Row> above = m_layout.rowAbove(topRow());
        if (!above) {
            m_topOverhang = std::max(m_topOverhang - missing, -verticalInset);
            return;
        }
        const int step = std::min(missing, m_topOverhang);
        m_topOverhang -= step;
        missing -= step;
        if (missing > 0) {
            m_topPosition = above->contents.location;
            m_topOverhang = m_layout.pitch();
        }
    }
}

void ZoomableTextView::scrollBy(qint64 distance) {
    m_topOverhang += toInt(distance);
    settleTop();
}

void ZoomableTextView::scrollTo(qint64 value) {
    const qint64 index = std::max<qint64>(0, (value - verticalInset) / m_layout.pitch());
    const Row row = m_layout.rowAt(index);
    m_topPosition = row.contents.location;
    m_topOverhang = toInt(value - verticalInset - pixels(m_layout.indexOf(row)));
    settleTop();
    updateScrollBars();
    viewport()->update();
}

void ZoomableTextView::scrollContentsBy(int, int dy) {
    if (m_isSettingScrollBars) {
        return;
    }
    if (dy != 0) {
        const qint64 value = verticalScrollBar()->value();
        const qint64 distance = value - scrollValue();
        if (value == verticalScrollBar()->minimum()) {
            m_topPosition = 0;
            m_topOverhang = -verticalInset;
        } else if (value == verticalScrollBar()->maximum()) {
            placeRowAt(m_layout.rowHolding(m_storage.length()),
                       viewport()->height() - verticalInset - m_layout.pitch());
        } else if (std::abs(distance) <= viewportsWalked * viewport()->height()) {
            scrollBy(distance);
        } else {
            scrollTo(value);
        }
        updateScrollBars();
    }
    viewport()->update();
    updateInputMethod();
    Q_EMIT visibleRangeChanged();
}

/// Tells the scroll bars where the view is, now that the rows on the screen are known.
void ZoomableTextView::updateScrollBars() {
    const std::vector<VisibleRow> rows = visibleRows();
    if (!m_layout.wraps()) {
        for (const VisibleRow& visible : rows) {
            m_layout.look(visible.row);
        }
    }
    m_isSettingScrollBars = true;
    QScrollBar& vertical = *verticalScrollBar();
    const int height = viewport()->height();
    vertical.setPageStep(std::max(m_layout.pitch(), height - m_layout.pitch()));
    vertical.setSingleStep(m_layout.pitch());
    vertical.setRange(0, toInt(std::max<qint64>(0, contentHeight() - height)));
    vertical.setValue(toInt(scrollValue()));

    QScrollBar& horizontal = *horizontalScrollBar();
    const int width = viewport()->width();
    const int contentWidth = m_layout.wraps() ? 0 : qCeil(m_layout.contentWidth()) + 2 * horizontalInset;
    horizontal.setPageStep(width);
    horizontal.setSingleStep(std::max(1, qRound(4 * m_layout.blankWidth())));
    horizontal.setRange(0, std::max(0, contentWidth - width));
    m_isSettingScrollBars = false;
}

void ZoomableTextView::startMeasuring() {
    if (m_layout.wraps() && m_storage.length() <= mostUnitsMeasured) {
        m_measuringTimer.start(0, this);
    }
}

/// In notes of common size the scroll bar soon stops being an estimate, a few milliseconds at a time.
void ZoomableTextView::measureAhead() {
    constexpr std::chrono::milliseconds slice(4);
    if (m_layout.measureUntil(QDeadlineTimer(slice))) {
        m_measuringTimer.stop();
    }
    updateScrollBars();
}

void ZoomableTextView::placeRowAt(const Row& row, int top) {
    m_topPosition = row.contents.location;
    m_topOverhang = -top;
    settleTop();
}

int ZoomableTextView::topOf(const Row& row) {
    return toInt(pixels(m_layout.indexOf(row) - m_layout.indexOf(topRow())) - m_topOverhang);
}

void ZoomableTextView::ensureCaretVisible() {
    if (m_isCommittingPreedit) {
        // The caret goes elsewhere, to a place that the user has scrolled to.
        return;
    }
    ensureVisible({m_selection.caret, m_caretSide});
}

void ZoomableTextView::ensureVisible(Spot spot) {
    const Row row = m_layout.rowHolding(spot.position, spot.side);
    const int height = viewport()->height();
    const int pitch = m_layout.pitch();
    const int top = topOf(row);
    const bool isFirst = row.contents.location == 0;
    if (top < (isFirst ? verticalInset : 0)) {
        placeRowAt(row, isFirst ? verticalInset : 0);
        updateInputMethod();
    } else if (top + pitch > height) {
        placeRowAt(row, std::max(0, height - pitch - (row.isLast ? verticalInset : 0)));
        updateInputMethod();
    }
    updateScrollBars();

    QScrollBar& horizontal = *horizontalScrollBar();
    const int x = qRound(m_layout.xOf(row, spot.position));
    const int width = std::max(1, viewport()->width() - 2 * horizontalInset);
    if (x < horizontal.value()) {
        horizontal.setValue(x);
    } else if (x > horizontal.value() + width) {
        horizontal.setValue(x - width);
    }
    viewport()->update();
}

void ZoomableTextView::scrollToRange(TextRange range) {
    ensureVisible({range.end(), Side::after});
    ensureVisible({range.location, Side::after});
}

/// Keeps the columns on show that were there before, and the caret if it was among them.
void ZoomableTextView::setEditorFont(const QFont& font) {
    if (m_layout.wraps()) {
        m_layout.setFont(font);
        return;
    }
    QScrollBar& horizontal = *horizontalScrollBar();
    const int width = std::max(1, viewport()->width() - 2 * horizontalInset);
    const auto caretX = [this] { return m_layout.xOf(caretRow(), m_selection.caret); };
    const int left = horizontal.value();
    const qreal before = caretX();
    const Row row = caretRow();
    const int top = topOf(row);
    const bool showedCaret = top > -m_layout.pitch() && top < viewport()->height() && qRound(before) >= left &&
                             qRound(before) <= left + width;
    const qreal blank = m_layout.blankWidth();

    m_layout.setFont(font);
    const qreal after = caretX();
    // Letters and blanks needn't grow by the same factor, as from one family to another. But a line from right to left
    // stands at the right, and its places don't grow.
    const bool tellsGrowth = before > 0 && !row.isRightToLeft;
    const qreal factor = tellsGrowth ? after / before : m_layout.blankWidth() / blank;
    const int grown = qRound(left * factor);
    // The line was looked at as far as the caret.
    updateScrollBars();
    horizontal.setValue(showedCaret ? std::clamp(grown, qRound(after) - width, qRound(after)) : grown);
}

/// The rows have new places: what was at the top stays there.
void ZoomableTextView::reflow() {
    const bool wasAtStart = m_topPosition == 0 && m_topOverhang <= 0;
    m_goalX.reset();
    m_topPosition = topRow().contents.location;
    m_topOverhang = wasAtStart ? m_topOverhang : 0;
    settleTop();
    updateScrollBars();
    startMeasuring();
    viewport()->update();
}

void ZoomableTextView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    m_layout.setWidth(std::max(1, viewport()->width() - 2 * horizontalInset));
    settleTop();
    updateScrollBars();
    Q_EMIT visibleRangeChanged();
}

void ZoomableTextView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    updateScrollBars();
}

void ZoomableTextView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() == Qt::ControlModifier && event->angleDelta().y() != 0) {
        m_pendingWheelAngle += event->angleDelta().y();
        while (std::abs(m_pendingWheelAngle) >= QWheelEvent::DefaultDeltasPerStep) {
            const int step = m_pendingWheelAngle > 0 ? 1 : -1;
            m_pendingWheelAngle -= step * QWheelEvent::DefaultDeltasPerStep;
            if (onZoomStep) {
                onZoomStep(step);
            }
        }
        event->accept();
        return;
    }
    m_pendingWheelAngle = 0;
    QAbstractScrollArea::wheelEvent(event);
}

} // namespace quillary
