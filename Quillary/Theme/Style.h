#pragma once

#include <QProxyStyle>

namespace quillary {

/// The Fusion style with slim scroll bars: a thumb on the ground of what it scrolls, without arrows and frames; with
/// check boxes and fields that stand out from their ground in both appearances; and with menus that stand out from what
/// they open over, and mark what is chosen with a check mark and what isn't with nothing. What has the keyboard has a
/// ring that can be seen in both appearances. Dialogs have a symbol of the interface, and buttons without images.
class Style : public QProxyStyle {
    Q_OBJECT

public:
    Style();

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace quillary
