#include "Quillary/Theme/Hairline.h"

#include "Quillary/Theme/Theme.h"

#include <QPainter>

#include <algorithm>

namespace quillary {

Hairline::Hairline(Qt::Orientation axis, QWidget* parent) : QWidget(parent), m_axis(axis) {
    setSizePolicy(axis == Qt::Horizontal ? QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed)
                                         : QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

double Hairline::thicknessOn(const QPaintDevice& device) {
    constexpr double halfPoint = 0.5;
    return std::max(halfPoint, 1 / device.devicePixelRatioF());
}

QSize Hairline::sizeHint() const {
    return {1, 1};
}

void Hairline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QSizeF size = m_axis == Qt::Horizontal ? QSizeF(width(), thickness()) : QSizeF(thickness(), height());
    painter.fillRect(QRectF(QPointF(), size), Theme::separator(palette()));
}

} // namespace quillary
