#include "Quillary/Comparison/DiffMetrics.h"

#include "Quillary/Editor/EditorFont.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr double lineHeight = 1.45;
constexpr double gutterWidth = 2.6;
constexpr double gutterSize = 0.82;
constexpr double insetWidth = 0.75;

} // namespace

DiffMetrics::DiffMetrics(const EditorStyle& style)
    : baseSize(style.size),
      textFont(editorFont(style)),
      gutterFont(Theme::monospacedFont(style.size * gutterSize)),
      gutterColumn(style.size * gutterWidth),
      textInset(style.size * insetWidth) {
    const QFontMetricsF metrics(textFont);
    pitch = static_cast<int>(std::ceil(std::max(metrics.height(), style.size * lineHeight)));
    textTop = (pitch - metrics.height()) / 2;
    unitWidth = std::max(1.0, metrics.averageCharWidth());
}

double DiffMetrics::textWidth(double lineWidth, qsizetype columns) const {
    // Something of every line can be read, however narrow the window is.
    constexpr double fewestUnits = 4;
    return std::max(lineWidth - textLeft(columns) - textInset, fewestUnits * unitWidth);
}

} // namespace quillary
