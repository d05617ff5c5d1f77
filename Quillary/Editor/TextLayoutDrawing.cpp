#include "Quillary/Editor/TextLayout.h"

#include <QPainter>

namespace quillary {

void TextLayout::drawMarks(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip) {
    const HorizontalSpan visible{clip.left() - origin.x(), clip.right() - origin.x()};
    for (const ColorRanges::Span& mark : layer(Layer::marks).within(row.contents)) {
        for (const HorizontalSpan& span : spansOf(row, mark.range, visible)) {
            painter.fillRect(QRectF(origin.x() + span.left, origin.y(), span.right - span.left, m_pitch),
                             QColor::fromRgba(mark.attribute));
        }
    }
}

void TextLayout::drawText(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip) {
    const ColorRanges& syntax = layer(Layer::syntax);
    std::vector<ColorRanges::Span> colors;
    for (const Piece& piece : piecesOf(row, {clip.left() - origin.x(), clip.right() - origin.x()})) {
        colors.clear();
        if (!syntax.isEmpty()) {
            const TextRange range = piece.layout->row(piece.row);
            for (ColorRanges::Span span : syntax.within({piece.place.start + range.location, range.length})) {
                span.range.location -= piece.place.start;
                colors.push_back(span);
            }
        }
        piece.layout->drawText(painter, piece.row, origin + QPointF(piece.left, m_baseline), colors);
    }
}

} // namespace quillary
