#include "Quillary/Theme/Contrast.h"

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

QColor mixed(const QColor& color, const QColor& other, float share) {
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

double relativeLuminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

QColor over(const QColor& color, const QColor& ground) {
    return mixed(ground, color, color.alphaF());
}

double contrast(const QColor& color, const QColor& other) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(color), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor readable(const QColor& color, const QColor& ground, const QColor& text, double needed) {
    constexpr int steps = 16;
    const QColor faint = over(color, ground);
    for (int step = 0; step < steps; ++step) {
        const QColor tried = mixed(faint, text, static_cast<float>(step) / steps);
        if (contrast(tried, ground) >= needed) {
            return tried;
        }
    }
    return text;
}

} // namespace quillary
