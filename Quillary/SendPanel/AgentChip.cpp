#include "Quillary/SendPanel/AgentChip.h"

#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/ToolTip.h"

#include <QPainter>

namespace quillary {

namespace {

constexpr int chipPadding = 12;
constexpr int longestChip = 240;

} // namespace

AgentChip::AgentChip(const QString& name, QWidget* parent) : QAbstractButton(parent) {
    setText(name);
    // An ampersand in a name makes no mnemonic.
    setShortcut({});
    setAccessibleName(name);
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setToolTip(isElided() ? plainToolTip(name) : QString());
}

QSize AgentChip::sizeHint() const {
    const int width = isElided() ? longestChip : fontMetrics().horizontalAdvance(text());
    return {width + 2 * chipPadding, fontMetrics().height() + 10};
}

bool AgentChip::isElided() const {
    return fontMetrics().horizontalAdvance(text()) > longestChip;
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
    // A chip that is as wide as its name has no room to spare for what rounding adds.
    const bool fits = !isElided() && width() >= sizeHint().width();
    painter.drawText(rect(), Qt::AlignCenter,
                     fits ? text() : fontMetrics().elidedText(text(), Qt::ElideRight, width() - 2 * chipPadding));
}

} // namespace quillary
