#include "Quillary/Theme/Style.h"

#include "Quillary/Theme/Symbol.h"

#include <QMenu>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionMenuItem>
#include <QStyleOptionSlider>
#include <QToolButton>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int scrollBarExtent = 12;
constexpr int thumbMargin = 3;
constexpr int shortestThumb = 28;
constexpr double boxRadius = 3;
/// The share of the text's colour that a box's edge has, so that it stands out from any ground as 3 to 1 (WCAG 2.1,
/// 1.4.11).
constexpr float edgeOpacity = 0.55F;
constexpr float fillOpacity = 0.08F;
/// As much of the text's colour takes a menu off what it opens over, its groups from each other, and a field off the
/// window.
constexpr float menuEdgeOpacity = 0.3F;
constexpr float fieldEdgeOpacity = 0.3F;
constexpr float menuLineOpacity = 0.18F;

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

/// The box of a check box: empty, or in the accent colour with a mark on it.
void drawCheckBox(const QStyleOption& box, QPainter* painter) {
    const bool isEnabled = box.state.testFlag(QStyle::State_Enabled);
    const bool isOn = box.state.testFlag(QStyle::State_On);
    const bool isPartial = box.state.testFlag(QStyle::State_NoChange);
    const bool isTouched = isEnabled && (box.state & (QStyle::State_MouseOver | QStyle::State_Sunken));
    const QColor text = box.palette.color(QPalette::WindowText);
    const double side = std::min(box.rect.width(), box.rect.height());
    QRectF shape(0, 0, side, side);
    shape.moveCenter(QRectF(box.rect).center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isOn || isPartial) {
        const QColor fill = isEnabled ? box.palette.color(QPalette::Link) : text;
        painter->setPen(Qt::NoPen);
        painter->setBrush(isTouched ? fill.lighter(110) : fill);
        painter->drawRoundedRect(shape.adjusted(0.5, 0.5, -0.5, -0.5), boxRadius, boxRadius);
        drawSymbol(*painter, isOn ? Symbol::check : Symbol::remove, shape.adjusted(1.5, 1.5, -1.5, -1.5),
                   box.palette.color(QPalette::Base));
    } else {
        QColor edge = text;
        edge.setAlphaF(edgeOpacity);
        QColor fill = text;
        fill.setAlphaF(isTouched ? fillOpacity : 0);
        painter->setPen(QPen(edge, 1));
        painter->setBrush(fill);
        painter->drawRoundedRect(shape.adjusted(1, 1, -1, -1), boxRadius, boxRadius);
    }
    painter->restore();
}

void drawMenuMark(const QStyleOption& mark, QPainter* painter) {
    if (mark.state.testFlag(QStyle::State_On)) {
        drawSymbol(*painter, Symbol::check, mark.rect, mark.palette.color(QPalette::Text));
    }
}

QColor textColor(const QStyleOption& option, float opacity) {
    QColor color = option.palette.color(QPalette::Text);
    color.setAlphaF(opacity);
    return color;
}

/// The edge over the one that the style has drawn, which is lost in the dark.
void drawMenuEdge(const QStyleOption& menu, QPainter* painter) {
    painter->save();
    painter->setBrush(Qt::NoBrush);
    for (const QColor& color : {menu.palette.color(QPalette::Base), textColor(menu, menuEdgeOpacity)}) {
        painter->setPen(color);
        painter->drawRect(menu.rect.adjusted(0, 0, -1, -1));
    }
    painter->restore();
}

void drawMenuLine(const QStyleOptionMenuItem& line, QPainter* painter) {
    constexpr int margin = 5;
    const QRect place(line.rect.left() + margin, line.rect.center().y(), line.rect.width() - 2 * margin, 1);
    painter->fillRect(place, textColor(line, menuLineOpacity));
}

/// The edge of a field that waits for the keyboard. The style darkens the window for it, which is lost in the dark.
void drawFieldEdge(const QStyleOption& field, QPainter* painter) {
    constexpr int lightFrom = 128;
    constexpr double radius = 2;
    if (field.palette.color(QPalette::Window).lightness() >= lightFrom) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(textColor(field, fieldEdgeOpacity));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(field.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter->restore();
}

/// What has the keyboard has a ring in the accent colour, which stands out from any ground as 3 to 1. The style's own
/// is a shade of the selection's colour, and hardly to be seen in the dark.
void drawFocusRing(const QStyleOption& control, const QRect& rect, QPainter* painter) {
    constexpr double width = 1.5;
    constexpr double inset = width / 2;
    constexpr double radius = 3;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(control.palette.color(QPalette::Link), width));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), radius, radius);
    painter->restore();
}

bool hasFocus(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_Enabled);
}

/// A click alone does not show where the keyboard is.
bool showsFocus(const QStyleOption& option) {
    return hasFocus(option) && option.state.testFlag(QStyle::State_KeyboardFocusChange);
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

QIcon Style::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    return icon == SP_MessageBoxWarning ? symbolIcon(Symbol::warning) : QProxyStyle::standardIcon(icon, option, widget);
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
    switch (hint) {
    case SH_ScrollBar_Transient:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    // The light shadow of texts that are disabled makes them double on dark ground.
    case SH_EtchDisabledText:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        if (option->state.testFlag(State_KeyboardFocusChange)) {
            // Round the label of a flat button it would touch the symbol, so it goes round the button.
            const bool isFlatButton = qobject_cast<const QToolButton*>(widget) != nullptr;
            drawFocusRing(*option, isFlatButton ? widget->rect() : option->rect, painter);
        }
        return;
    case PE_PanelScrollAreaCorner:
        // As bare as the scroll bars that meet there.
        return;
    case PE_IndicatorCheckBox:
        if (qobject_cast<const QMenu*>(widget) != nullptr) {
            drawMenuMark(*option, painter);
        } else {
            drawCheckBox(*option, painter);
        }
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_PanelMenu) {
        drawMenuEdge(*option, painter);
    } else if (element == PE_FrameLineEdit) {
        if (hasFocus(*option)) {
            drawFocusRing(*option, option->rect, painter);
        } else {
            drawFieldEdge(*option, painter);
        }
    }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    const auto* const item = element == CE_MenuItem ? qstyleoption_cast<const QStyleOptionMenuItem*>(option) : nullptr;
    if (item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty()) {
        drawMenuLine(*item, painter);
        return;
    }
    // One choice of several has the same mark as one that is made for itself. Beside an icon there is no room for it,
    // so that the icon itself says that it is chosen.
    if (item != nullptr && item->checkType == QStyleOptionMenuItem::Exclusive) {
        QStyleOptionMenuItem marked = *item;
        marked.checkType =
            item->icon.isNull() ? QStyleOptionMenuItem::NonExclusive : QStyleOptionMenuItem::NotCheckable;
        QProxyStyle::drawControl(element, &marked, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_PushButton && showsFocus(*option)) {
        drawFocusRing(*option, option->rect, painter);
    } else if (element == CE_TabBarTab && showsFocus(*option)) {
        constexpr int margin = 3;
        drawFocusRing(*option, option->rect.adjusted(margin, margin, -margin, -margin), painter);
    }
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
    const bool isField = control == CC_SpinBox || control == CC_ComboBox;
    if (isField && hasFocus(*option)) {
        drawFocusRing(*option, option->rect, painter);
    } else if (control == CC_SpinBox) {
        drawFieldEdge(*option, painter);
    }
}

} // namespace quillary
