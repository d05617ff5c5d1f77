#include "Quillary/Previews/MarkdownPreview.h"

#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr double shortestThumb = 28;
constexpr double thumbThickness = 5;

} // namespace

/// The same place with a row that reaches into the viewport, no further up or down than the page goes.
MarkdownPreview::Anchor MarkdownPreview::normalized(Anchor anchor) const {
    if (rowCount() == 0) {
        return {0, -MarkdownStyle::paddingAlong};
    }
    anchor.row = std::clamp<qsizetype>(anchor.row, 0, rowCount() - 1);
    while (anchor.offset < 0 && anchor.row > 0) {
        --anchor.row;
        anchor.offset += heightOf(anchor.row);
    }
    while (anchor.row + 1 < rowCount() && anchor.offset >= heightOf(anchor.row)) {
        anchor.offset -= heightOf(anchor.row);
        ++anchor.row;
    }
    const Anchor last = lastAnchor();
    if (anchor.row > last.row || (anchor.row == last.row && anchor.offset > last.offset)) {
        anchor = last;
    }
    if (anchor.row == 0) {
        anchor.offset = std::max(anchor.offset, -MarkdownStyle::paddingAlong);
    }
    return anchor;
}

/// The place that shows the end of the page at the bottom.
MarkdownPreview::Anchor MarkdownPreview::lastAnchor() const {
    double room = viewport()->height() - MarkdownStyle::paddingAlong;
    qsizetype row = rowCount() - 1;
    for (; row > 0 && room > heightOf(row); --row) {
        room -= heightOf(row);
    }
    const double offset = heightOf(row) - room;
    return {row, row == 0 ? std::max(offset, -MarkdownStyle::paddingAlong) : offset};
}

/// How far the top of the viewport is below the top of the page, as far as is known.
double MarkdownPreview::placeOf(const Anchor& anchor) const {
    return MarkdownStyle::paddingAlong + (rowCount() > 0 ? m_heights.top(anchor.row) : 0) + anchor.offset;
}

MarkdownPreview::Anchor MarkdownPreview::anchorAt(double place) const {
    if (rowCount() == 0) {
        return {};
    }
    const double inRows = place - MarkdownStyle::paddingAlong;
    const qsizetype row = m_heights.rowAt(std::max(inRows, 0.0));
    return {row, inRows - m_heights.top(row)};
}

void MarkdownPreview::setAnchor(Anchor anchor) {
    m_anchor = normalized(anchor);
    // What is in view gets its true height before anything is painted.
    double bottom = -m_anchor.offset;
    for (qsizetype row = m_anchor.row; row < rowCount() && bottom < viewport()->height(); ++row) {
        bottom += heightOf(row);
    }
    dropFarLayouts();
    syncScrollBar();
    viewport()->update();
}

void MarkdownPreview::scrollBy(double distance) {
    setAnchor({m_anchor.row, m_anchor.offset + distance});
}

/// The nearest row of the page below, or then of the page above, that is not laid out; who scrolls up has the page
/// below already. None while the page is on its way to a link, which needs the time for its frames.
std::optional<qsizetype> MarkdownPreview::nextToLayOut() const {
    if (m_animation.state() == QAbstractAnimation::Running) {
        return std::nullopt;
    }
    const double page = viewport()->height();
    double below = -m_anchor.offset;
    for (qsizetype row = m_anchor.row; row < rowCount() && below < 2 * page; ++row) {
        if (!isLaidOut(row)) {
            return row;
        }
        below += m_heights.height(row);
    }
    double above = m_anchor.offset;
    for (qsizetype row = m_anchor.row - 1; row >= 0 && above < page; --row) {
        if (!isLaidOut(row)) {
            return row;
        }
        above += m_heights.height(row);
    }
    return std::nullopt;
}

/// Lays out one row of the pages beside the one in view, so that scrolling there only has to draw it.
void MarkdownPreview::layOutAhead() {
    if (const std::optional<qsizetype> row = nextToLayOut()) {
        heightOf(*row);
    } else {
        m_aheadTimer.stop();
        syncScrollBar();
    }
}

void MarkdownPreview::syncScrollBar() {
    m_isSyncing = true;
    QScrollBar& bar = *verticalScrollBar();
    const int height = viewport()->height();
    const double whole = m_heights.total() + 2 * MarkdownStyle::paddingAlong;
    bar.setPageStep(height);
    bar.setSingleStep(static_cast<int>(std::lround(m_style.lineHeight + m_style.lineSpacing)));
    bar.setRange(0, std::max(static_cast<int>(std::lround(whole)) - height, 0));
    bar.setValue(static_cast<int>(std::lround(placeOf(m_anchor))));
    m_isSyncing = false;
}

void MarkdownPreview::scrollContentsBy(int, int dy) {
    if (m_isSyncing || dy == 0) {
        return;
    }
    m_animation.stop();
    const QScrollBar& bar = *verticalScrollBar();
    // Near steps are exact; far ones go by the estimates.
    if (bar.value() == bar.maximum() && rowCount() > 0) {
        setAnchor(lastAnchor());
    } else if (bar.value() == 0) {
        setAnchor({0, -MarkdownStyle::paddingAlong});
    } else if (std::abs(dy) <= 2 * viewport()->height()) {
        scrollBy(-dy);
    } else {
        setAnchor(anchorAt(bar.value()));
    }
}

void MarkdownPreview::scrollToRow(qsizetype row, bool isAnimated) {
    m_animation.stop();
    m_animation.disconnect(this);
    const Anchor target = normalized({row, row == 0 ? -MarkdownStyle::paddingAlong : m_style.gap(this->row(row).gap)});
    if (!isAnimated) {
        setAnchor(target);
        return;
    }
    // Heights on the way turn out other than estimated, but the end is a row and not a height.
    const Anchor start = m_anchor;
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this, start, target](const QVariant& value) {
        const double part = value.toDouble();
        if (part < 1) {
            const double from = placeOf(start);
            setAnchor(anchorAt(from + (placeOf(target) - from) * part));
        }
    });
    connect(&m_animation, &QVariantAnimation::finished, this, [this, target] { setAnchor(target); });
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    m_animation.start();
}

void MarkdownPreview::scrollIntoView(const QRectF& rect) {
    constexpr double margin = 12;
    if (rect.top() < margin) {
        scrollBy(rect.top() - margin);
    } else if (rect.bottom() > viewport()->height() - margin) {
        scrollBy(std::min(rect.bottom() - viewport()->height() + margin, rect.top() - margin));
    }
}

/// How far the block of a row is scrolled sideways.
double MarkdownPreview::sideways(const MarkdownRow& row) const {
    switch (row.kind) {
    case MarkdownRow::Kind::code:
        return m_codeOffsets.value(row.part.source, 0);
    case MarkdownRow::Kind::table:
        return m_tableOffsets.value(row.part.source, 0);
    default:
        return 0;
    }
}

/// How far the block of a row can be scrolled sideways.
double MarkdownPreview::sidewaysRange(const MarkdownRow& row) const {
    if (row.kind == MarkdownRow::Kind::table) {
        return std::max(columnsOf(row).total() - contentWidth(row), 0.0);
    }
    return row.kind == MarkdownRow::Kind::code
               ? std::max(m_codeWidths.value(row.part.source, 0) - contentWidth(row), 0.0)
               : 0;
}

void MarkdownPreview::setSideways(const MarkdownRow& row, double offset) {
    QHash<qint32, double>& offsets = row.kind == MarkdownRow::Kind::code ? m_codeOffsets : m_tableOffsets;
    offsets[row.part.source] = std::clamp(std::round(offset), 0.0, std::ceil(sidewaysRange(row)));
    if (row.kind == MarkdownRow::Kind::table && columnsOf(row).areMany()) {
        std::erase_if(m_layouts, [&](const auto& entry) {
            const MarkdownRow& other = this->row(entry.first);
            return other.kind == row.kind && other.part.source == row.part.source;
        });
    }
    setAnchor(m_anchor);
}

/// Scrolls a table sideways so that a column is in view.
void MarkdownPreview::showColumn(const MarkdownRow& row, qsizetype column) {
    const MarkdownTableColumns& columns = columnsOf(row);
    const double offset = sideways(row);
    const double shown = std::min(std::max(offset, columns.left(column + 1) - contentWidth(row)), columns.left(column));
    if (shown != offset) {
        setSideways(row, shown);
    }
}

/// The row at a place of the viewport, if its block can be scrolled sideways.
std::optional<qsizetype> MarkdownPreview::sidewaysRowAt(QPointF place) const {
    if (rowCount() == 0) {
        return std::nullopt;
    }
    const qsizetype index = anchorAt(placeOf(m_anchor) + place.y()).row;
    const bool isInside = contentRect(index).contains(place);
    return isInside && sidewaysRange(row(index)) > 0 ? std::optional(index) : std::nullopt;
}

/// The thumb below a block that scrolls sideways, which its last row has.
QRectF MarkdownPreview::sidewaysThumb(qsizetype index) const {
    const MarkdownRow& last = row(index);
    const double range = last.isLast ? sidewaysRange(last) : 0;
    if (range <= 0) {
        return {};
    }
    const QRectF content = contentRect(index);
    const double room = content.width() - 2 * MarkdownStyle::codeRadius;
    const double length = std::max(room * content.width() / (content.width() + range), std::min(shortestThumb, room));
    const double left = content.left() + MarkdownStyle::codeRadius + (room - length) * sideways(last) / range;
    return {left, content.bottom() - thumbThickness - 2, length, thumbThickness};
}

void MarkdownPreview::wheelEvent(QWheelEvent* event) {
    // Sideways, or with the key that turns the wheel, over what scrolls sideways.
    const bool isTurned =
        event->modifiers().testFlag(Qt::ShiftModifier) || event->modifiers().testFlag(Qt::AltModifier);
    const QPoint pixels = event->pixelDelta();
    const QPoint angle = event->angleDelta();
    const bool isSideways = std::abs(angle.x()) > std::abs(angle.y()) || (isTurned && angle.y() != 0);
    if (isSideways) {
        if (const std::optional<qsizetype> index = sidewaysRowAt(event->position())) {
            constexpr double pixelsPerAngle = 0.5;
            const int turned = angle.x() != 0 ? angle.x() : angle.y();
            const double distance = pixels.x() != 0 ? pixels.x() : turned * pixelsPerAngle;
            const MarkdownRow& scrolled = row(*index);
            setSideways(scrolled, sideways(scrolled) - distance);
        }
        event->accept();
        return;
    }
    if (!pixels.isNull() && event->modifiers() == Qt::NoModifier) {
        m_animation.stop();
        scrollBy(-pixels.y());
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

} // namespace quillary
