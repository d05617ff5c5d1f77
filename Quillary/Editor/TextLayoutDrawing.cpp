#include "Quillary/Editor/SyntaxColors.h"
#include "Quillary/Editor/TextLayout.h"

#include <QPainter>

#include <vector>

namespace quillary {

void TextLayout::drawMarks(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip) {
    const HorizontalSpan visible{clip.left() - origin.x(), clip.right() - origin.x()};
    for (const ColorRanges::Span& mark : m_marks.within(row.contents)) {
        for (const HorizontalSpan& span : spansOf(row, mark.range, visible)) {
            painter.fillRect(QRectF(origin.x() + span.left, origin.y(), span.right - span.left, m_pitch),
                             QColor::fromRgba(mark.attribute));
        }
    }
}

void TextLayout::drawText(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip,
                          const SyntaxColors& colors) {
    std::vector<ColorRanges::Span> spans;
    for (const Piece& piece : piecesOf(row, {clip.left() - origin.x(), clip.right() - origin.x()})) {
        spans.clear();
        if (!m_syntax.isEmpty()) {
            const TextRange range = piece.layout->row(piece.row);
            for (const SyntaxRanges::Span& span : m_syntax.within({piece.place.start + range.location, range.length})) {
                spans.push_back(
                    {{span.range.location - piece.place.start, span.range.length}, colors.of(span.attribute)});
            }
        }
        piece.layout->drawText(painter, piece.row, origin + QPointF(piece.left, m_baseline), spans, colors.ofHidden());
    }
}

} // namespace quillary
