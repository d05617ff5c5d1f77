#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Theme/Theme.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QVariantAnimation>

namespace quillary {

void ZoomableTextView::setFindHighlights(std::span<const TextRange> ranges, std::optional<qsizetype> current) {
    constexpr float opacityOfOthers = 0.3F;
    QColor other = Theme::findHighlight;
    other.setAlphaF(opacityOfOthers);
    std::vector<ColorRanges::Span> marks;
    marks.reserve(ranges.size());
    for (const TextRange& range : ranges) {
        marks.push_back({range, other.rgba()});
    }
    m_currentFind.reset();
    if (current && *current < static_cast<qsizetype>(marks.size())) {
        ColorRanges::Span& mark = marks[static_cast<std::size_t>(*current)];
        mark.attribute = Theme::findHighlight.rgba();
        m_currentFind = mark.range;
    }
    m_layout.marks().setAll(std::move(marks));
    viewport()->update();
}

void ZoomableTextView::clearFindHighlights() {
    stopFindIndicator();
    if (m_currentFind || !m_layout.marks().isEmpty()) {
        m_currentFind.reset();
        m_layout.marks().clear();
        viewport()->update();
    }
}

bool ZoomableTextView::replaceTexts(std::span<const TextReplacement> replacements) {
    if (m_isReadOnly) {
        return false;
    }
    clearPreedit();
    Q_EMIT aboutToEdit();
    const TextSelection selection = m_undoManager.replaceAll(replacements, m_selection);
    m_goalX.reset();
    setSelection(selection);
    Q_EMIT edited();
    return true;
}

void ZoomableTextView::showFindIndicator(TextRange range) {
    const int duration = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) * 2;
    stopFindIndicator();
    if (duration <= 0) {
        return;
    }
    m_indicatedRange = range;
    m_findIndicator = new QVariantAnimation(this);
    m_findIndicator->setStartValue(0.0);
    m_findIndicator->setEndValue(1.0);
    m_findIndicator->setDuration(duration);
    connect(m_findIndicator, &QVariantAnimation::valueChanged, viewport(), [this] { viewport()->update(); });
    m_findIndicator->start(QAbstractAnimation::DeleteWhenStopped);
}

void ZoomableTextView::stopFindIndicator() {
    if (m_findIndicator) {
        m_findIndicator->stop();
        viewport()->update();
    }
}

/// A halo behind the text that closes in on the match and fades.
void ZoomableTextView::drawFindIndicator(QPainter& painter, const std::vector<VisibleRow>& rows, const QRectF& clip) {
    if (!m_findIndicator) {
        return;
    }
    constexpr double greatestGrowth = 9;
    constexpr double radius = 4;
    const double progress = m_findIndicator->currentValue().toDouble();
    const double growth = greatestGrowth * (1 - progress) * (1 - progress);
    const qreal left = horizontalInset - horizontalScrollBar()->value();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(1 - progress * progress);
    painter.setPen(QPen(Theme::findHighlight.darker(130), 1));
    painter.setBrush(Theme::findHighlight);
    for (const VisibleRow& row : rows) {
        const HorizontalSpan visible{clip.left() - left - greatestGrowth, clip.right() - left + greatestGrowth};
        for (const HorizontalSpan& span : m_layout.spansOf(row.row, m_indicatedRange, visible)) {
            const QRectF place(left + span.left, row.top, span.right - span.left, m_layout.pitch());
            painter.drawRoundedRect(place.adjusted(-growth, -growth, growth, growth), radius, radius);
        }
    }
    painter.restore();
}

} // namespace quillary
