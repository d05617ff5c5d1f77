#include "Quillary/Comparison/CollapsedRow.h"

#include "Quillary/Comparison/DiffTexts.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace quillary::CollapsedRow {

void paint(QPainter& painter, const QRect& rect, qsizetype count, const DiffMetrics& metrics, bool isHovered,
           const QPalette& palette) {
    constexpr double textSize = 0.9;
    constexpr double gap = 6;
    const QRect body = rect.adjusted(0, 2, 0, -2);
    painter.fillRect(body, Theme::subtleFill(palette));
    if (isHovered) {
        painter.fillRect(body, Theme::rowSelection(palette));
    }
    const QColor color = isHovered ? palette.color(QPalette::Text) : Theme::secondaryText(palette);
    const QString text = DiffTexts::fold(count);
    const QFont font = Theme::font(metrics.baseSize * textSize);
    const double iconSide = metrics.baseSize;
    const double width = iconSide + gap + QFontMetricsF(font).horizontalAdvance(text);
    const double left = body.left() + (body.width() - width) / 2;
    drawSymbol(painter, Symbol::expand, QRectF(left, body.top() + (body.height() - iconSide) / 2, iconSide, iconSide),
               color);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QRectF(left + iconSide + gap, body.top(), body.right() - left, body.height()),
                     int(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine, text);
}

} // namespace quillary::CollapsedRow
