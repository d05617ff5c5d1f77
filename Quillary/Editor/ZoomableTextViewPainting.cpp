#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

namespace quillary {

void ZoomableTextView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRectF clip = event->rect();
    const qreal left = horizontalInset - horizontalScrollBar()->value();
    const int pitch = m_layout.pitch();
    std::vector<VisibleRow> rows = visibleRows();
    std::erase_if(rows,
                  [&](const VisibleRow& row) { return row.top + pitch <= clip.top() || row.top >= clip.bottom(); });

    // Letters may reach into the rows above and below: all backgrounds come before all text.
    for (const VisibleRow& row : rows) {
        m_layout.drawMarks(painter, row.row, QPointF(left, row.top), clip);
    }
    drawFindIndicator(painter, rows, clip);
    painter.setPen(palette().color(QPalette::Text));
    const SyntaxColors syntax(palette());
    for (const VisibleRow& row : rows) {
        m_layout.drawText(painter, row.row, QPointF(left, row.top), clip, syntax);
    }
    const bool isCurrentFindSelected = m_currentFind == m_selection.range();
    if (!m_selection.isEmpty() && !isCurrentFindSelected) {
        const QPalette::ColorGroup group = hasFocus() || isActiveWindow() ? QPalette::Active : QPalette::Inactive;
        const QColor ground = palette().color(group, QPalette::Highlight);
        const QColor ink = palette().color(group, QPalette::HighlightedText);
        drawOver(painter, rows, clip, m_selection.range(), {ground, ink, SyntaxColors(palette(), ground, ink)});
    }
    if (m_currentFind) {
        // It has one ground in both appearances, so its text has the colours of the light one.
        drawOver(painter, rows, clip, *m_currentFind,
                 {Theme::findHighlight, Theme::findHighlightedText,
                  SyntaxColors(lightPalette(), Theme::findHighlight, Theme::findHighlightedText)});
    }
    if (m_isCaretOn) {
        drawCaret(painter);
    }
    drawDropPlace(painter);
}

/// The text of a range stands in colours of its own on a fill that takes the whole pitch, cut where the fill is cut.
void ZoomableTextView::drawOver(QPainter& painter, const std::vector<VisibleRow>& rows, const QRectF& clip,
                                TextRange range, const Colors& colors) {
    const qreal left = horizontalInset - horizontalScrollBar()->value();
    QRegion covered;
    for (const VisibleRow& row : rows) {
        const HorizontalSpan visible{clip.left() - left, clip.right() - left};
        for (const HorizontalSpan& span : m_layout.spansOf(row.row, range, visible)) {
            const int from = qRound(std::max(left + span.left, clip.left() - 1));
            const int to = qRound(std::min(left + span.right, clip.right() + 1));
            covered += QRect(from, row.top, std::max(0, to - from), m_layout.pitch());
        }
    }
    if (covered.isEmpty()) {
        return;
    }
    painter.save();
    painter.setClipRegion(covered);
    painter.fillRect(clip, colors.ground);
    painter.setPen(colors.ink);
    for (const VisibleRow& row : rows) {
        if (covered.intersects(QRect(0, row.top, viewport()->width(), m_layout.pitch()))) {
            m_layout.drawText(painter, row.row, QPointF(left, row.top), clip, colors.syntax);
        }
    }
    painter.restore();
}

QRect ZoomableTextView::caretRect() {
    return placeOfCaret(caretRow(), m_selection.caret);
}

QRect ZoomableTextView::characterRect(qsizetype position) {
    const Row row = m_layout.rowHolding(position);
    const qsizetype start = m_storage.clusterBoundaryAtOrBefore(position);
    const qreal left = horizontalInset - horizontalScrollBar()->value();
    const HorizontalSpan everywhere{-left - viewport()->width(), -left + 2 * viewport()->width()};
    const std::vector<HorizontalSpan> spans =
        m_layout.spansOf(row, {start, m_storage.nextCluster(start) - start}, everywhere);
    if (spans.empty()) {
        return placeOfCaret(row, position);
    }
    return QRectF(left + spans.front().left, topOf(row), spans.back().right - spans.front().left, m_layout.pitch())
        .toAlignedRect();
}

QRect ZoomableTextView::placeOfCaret(const Row& row, qsizetype position) {
    const QFontMetricsF metrics(m_layout.font());
    const int x = horizontalInset - horizontalScrollBar()->value() + qRound(m_layout.xOf(row, position));
    const int top = topOf(row) + m_layout.baseline() - qRound(metrics.ascent());
    const int width = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
    return {x, top, std::max(1, width), qRound(metrics.height())};
}

void ZoomableTextView::drawCaret(QPainter& painter) {
    // The accent colour; that of selections is too pale for a line.
    painter.fillRect(caretRect(), palette().brush(QPalette::Active, QPalette::Link));
}

} // namespace quillary
