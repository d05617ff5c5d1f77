#include "Quillary/Comparison/Hatching.h"

#include "Quillary/Theme/Theme.h"

#include <QPainter>
#include <QRect>

namespace quillary::Hatching {

void paint(QPainter& painter, const QRect& rect, const QPalette& palette) {
    constexpr int distance = 7;
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect, Theme::rowHover(palette));
    painter.setPen(QPen(Theme::rowSelection(palette), 1));
    // A line holds the points where x + y, counted from the origin, is a multiple of the distance.
    const int origin = painter.brushOrigin().x() + painter.brushOrigin().y();
    const int first = rect.left() + rect.top();
    const int last = rect.right() + rect.bottom() + 1;
    for (int sum = first - ((first - origin) % distance + distance) % distance; sum <= last; sum += distance) {
        painter.drawLine(sum - rect.top(), rect.top(), sum - rect.bottom() - 1, rect.bottom() + 1);
    }
    painter.restore();
}

} // namespace quillary::Hatching
