#pragma once

#include <QProxyStyle>

namespace quillary {

/// The Fusion style with slim scroll bars: a thumb on the ground of what it scrolls, without arrows and frames.
class Style : public QProxyStyle {
    Q_OBJECT

public:
    Style();

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

} // namespace quillary
