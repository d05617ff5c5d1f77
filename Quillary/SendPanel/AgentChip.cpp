#include "Quillary/SendPanel/AgentChip.h"

#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

namespace {

constexpr int chipPadding = 12;
constexpr int longestChip = 240;

} // namespace

AgentChip::AgentChip(const QString& name, QWidget* parent) : QAbstractButton(parent) {
    setText(name);
    setAccessibleName(name);
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setToolTip(fontMetrics().horizontalAdvance(name) > longestChip ? name : QString());
}

QSize AgentChip::sizeHint() const {
    return {std::min(fontMetrics().horizontalAdvance(text()), longestChip) + 2 * chipPadding,
            fontMetrics().height() + 10};
}

void AgentChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape = QRectF(rect()).adjusted(1, 1, -1, -1);
    const double radius = shape.height() / 2;
    const bool isFilled = isChecked() && isEnabled();

    painter.setPen(Qt::NoPen);
    painter.setBrush(isFilled       ? palette().color(QPalette::Highlight)
                     : underMouse() ? Theme::rowSelection(palette())
                                    : Theme::searchFill(palette()));
    painter.drawRoundedRect(shape, radius, radius);
    if (hasFocus() || isChecked()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(hasFocus() ? QPalette::WindowText : QPalette::Highlight), 1));
        painter.drawRoundedRect(shape, radius, radius);
    }
    painter.setPen(palette().color(isFilled ? QPalette::HighlightedText : QPalette::WindowText));
    const int width = this->width() - 2 * chipPadding;
    painter.drawText(rect(), Qt::AlignCenter, fontMetrics().elidedText(text(), Qt::ElideRight, width));
}

} // namespace quillary
