#include "Quillary/Sidebar/InsertionLine.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

/// A horizontal line whose edges lie on whole pixels of the device, so that it is as thick and as sharp everywhere on a
/// display of whatever scale.
QRectF sharpLine(const QPainter& painter, double start, double end, double center, double width) {
    const QTransform toDevice = painter.deviceTransform();
    const QRectF line = toDevice.mapRect(QRectF(start, center - width / 2, end - start, width));
    const double height = std::max(1.0, std::round(line.height()));
    const QRectF sharp(line.left(), std::round(line.center().y() - height / 2), line.width(), height);
    return toDevice.inverted().mapRect(sharp);
}

} // namespace

void InsertionLine::paint(QPainter& painter, int left, int right, int y, const SidebarLook& look) {
    constexpr double diameter = 6;
    constexpr double ringWidth = 1.5;
    constexpr double lineWidth = 2;
    // Whole within the list, also above its first row.
    const double center = std::max<double>(y, diameter / 2 + ringWidth / 2);
    const bool isMirrored = look.direction == Qt::RightToLeft;
    const double ringCenter = isMirrored ? right - diameter / 2 - ringWidth / 2 : left + diameter / 2 + ringWidth / 2;
    const double lineStart = isMirrored ? left : ringCenter + diameter / 2;
    const double lineEnd = isMirrored ? ringCenter - diameter / 2 : right;
    const QRectF line = sharpLine(painter, lineStart, lineEnd, center, lineWidth);
    painter.setPen(QPen(look.accent(), ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(ringCenter, line.center().y()), diameter / 2, diameter / 2);
    // Its edges lie on whole pixels but for a rounding, and antialiasing would show that.
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(line, look.accent());
    painter.setRenderHint(QPainter::Antialiasing);
}

} // namespace quillary
