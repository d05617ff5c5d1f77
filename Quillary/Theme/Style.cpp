#include "Quillary/Theme/Style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionSlider>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int scrollBarExtent = 12;
constexpr int thumbMargin = 3;
constexpr int shortestThumb = 28;

/// The thumb's rectangle: as long as the part on show is of the whole, at the place of the value.
QRect thumbOf(const QStyleOptionSlider& bar) {
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int room = isHorizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    if (range <= 0) {
        return {};
    }
    const int length =
        std::clamp(int(qint64(room) * bar.pageStep / (range + bar.pageStep)), std::min(shortestThumb, room), room);
    const int start =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - length, bar.upsideDown);
    return isHorizontal ? QRect(bar.rect.left() + start, bar.rect.top(), length, bar.rect.height())
                        : QRect(bar.rect.left(), bar.rect.top() + start, bar.rect.width(), length);
}

void drawScrollBar(const QStyleOptionSlider& bar, QPainter* painter) {
    const QRect thumb = thumbOf(bar);
    if (thumb.isEmpty()) {
        return;
    }
    const bool isHeld = bar.state.testFlag(QStyle::State_Sunken);
    const bool isHovered =
        bar.state.testFlag(QStyle::State_MouseOver) && bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider);
    QColor color = bar.palette.color(QPalette::Text);
    color.setAlphaF(isHeld ? 0.5F : isHovered ? 0.38F : 0.22F);
    const QRectF shape = QRectF(thumb).adjusted(thumbMargin, thumbMargin, -thumbMargin, -thumbMargin);
    const double radius = std::min(shape.width(), shape.height()) / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    painter->drawRoundedRect(shape, radius, radius);
    painter->restore();
}

} // namespace

Style::Style() : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_ScrollBarSliderMin:
        return shortestThumb;
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
    return hint == SH_ScrollBar_Transient ? 0 : QProxyStyle::styleHint(hint, option, widget, returnData);
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
    const auto* const bar = control == CC_ScrollBar ? qstyleoption_cast<const QStyleOptionSlider*>(option) : nullptr;
    if (bar == nullptr) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const QRect thumb = thumbOf(*bar);
    const bool isHorizontal = bar->orientation == Qt::Horizontal;
    QRect rest = bar->rect;
    switch (part) {
    case SC_ScrollBarSlider:
        return thumb;
    case SC_ScrollBarGroove:
        return bar->rect;
    case SC_ScrollBarSubPage:
        isHorizontal ? rest.setRight(thumb.left() - 1) : rest.setBottom(thumb.top() - 1);
        return rest;
    case SC_ScrollBarAddPage:
        isHorizontal ? rest.setLeft(thumb.right() + 1) : rest.setTop(thumb.bottom() + 1);
        return rest;
    default:
        return {};
    }
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
    if (control == CC_ScrollBar) {
        if (const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            drawScrollBar(*bar, painter);
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace quillary
