#include "Quillary/Sidebar/InsertionLine.h"

#include <algorithm>

namespace quillary {

void InsertionLine::paint(QPainter& painter, int left, int right, int y, const SidebarLook& look) {
    constexpr double diameter = 6;
    constexpr double ringWidth = 1.5;
    constexpr double lineWidth = 2;
    // Whole within the list, also above its first row.
    const double center = std::max<double>(y, diameter / 2 + ringWidth / 2);
    const bool isMirrored = look.direction == Qt::RightToLeft;
    const double ringCenter = isMirrored ? right - diameter / 2 - ringWidth / 2 : left + diameter / 2 + ringWidth / 2;
    painter.setPen(QPen(look.accent(), ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(ringCenter, center), diameter / 2, diameter / 2);
    const double lineStart = isMirrored ? left : ringCenter + diameter / 2;
    const double lineEnd = isMirrored ? ringCenter - diameter / 2 : right;
    painter.fillRect(QRectF(lineStart, center - lineWidth / 2, lineEnd - lineStart, lineWidth), look.accent());
}

} // namespace quillary
