#include "Quillary/Editor/OptionToggle.h"

#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

OptionToggle::OptionToggle(const QString& label, const QString& help, QWidget* parent) : QToolButton(parent) {
    setCheckable(true);
    setText(label);
    setToolTip(help);
    setAccessibleName(help);
    setFont(Theme::sidebarDetail());
}

void OptionToggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    if (isChecked() || isDown() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isChecked() ? colors.color(QPalette::Highlight) : Theme::rowSelection(colors));
        constexpr double radius = 5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }
    painter.setPen(isChecked() ? colors.color(QPalette::HighlightedText) : Theme::secondaryText(colors));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus()) {
        painter.setPen(colors.color(QPalette::Link));
        painter.setBrush(Qt::NoBrush);
        constexpr double radius = 5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), radius, radius);
    }
}

} // namespace quillary
