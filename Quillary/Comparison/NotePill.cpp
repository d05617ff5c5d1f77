#include "Quillary/Comparison/NotePill.h"

#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/ToolTip.h"

#include <QFontMetrics>
#include <QPainter>

namespace quillary {

namespace {

constexpr int pillPadding = 9;
constexpr int pillHeight = 24;
constexpr int dotSide = 6;
constexpr int dotGap = 6;

} // namespace

NotePill::NotePill(const AdaptiveColor& tint, QWidget* parent) : QWidget(parent), m_tint(tint) {
    setFont(Theme::sidebarTitle());
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void NotePill::setTitle(const QString& title) {
    if (m_title != title) {
        m_title = title;
        setAccessibleName(title);
        setToolTip(plainToolTip(title));
        updateGeometry();
        update();
    }
}

QSize NotePill::sizeHint() const {
    const int text = fontMetrics().horizontalAdvance(m_title) + 1;
    return {2 * pillPadding + dotSide + dotGap + text, std::max(pillHeight, fontMetrics().height() + 6)};
}

QSize NotePill::minimumSizeHint() const {
    constexpr int narrowest = 56;
    return {std::min(narrowest, sizeHint().width()), sizeHint().height()};
}

void NotePill::paintEvent(QPaintEvent*) {
    constexpr float fillOpacity = 0.14F;
    const QColor tint = m_tint.in(palette());
    QColor fill = tint;
    fill.setAlphaF(fillOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    painter.setBrush(tint);
    painter.drawEllipse(QRectF(pillPadding, (height() - dotSide) / 2.0, dotSide, dotSide));
    const QRect text = rect().adjusted(pillPadding + dotSide + dotGap, 0, -pillPadding, 0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(text, int(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_title, Qt::ElideMiddle, text.width()));
}

} // namespace quillary
