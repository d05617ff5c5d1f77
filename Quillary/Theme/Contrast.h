#pragma once

#include <QColor>

namespace quillary {

/// What a text needs at least against its ground to be read with ease (WCAG 2.1, 1.4.3).
inline constexpr double textContrast = 4.5;

/// What a mark that carries meaning needs (1.4.11).
inline constexpr double markContrast = 3;

/// A colour that may be translucent as it looks over an opaque ground.
QColor over(const QColor& color, const QColor& ground);

/// The contrast of two opaque colours, from 1 to 21 (WCAG 2.1, "contrast ratio").
double contrast(const QColor& color, const QColor& other);

/// A text's or a mark's colour over an opaque ground: the colour itself where that has the contrast it needs, and
/// otherwise as much of the way towards `text` as it takes.
QColor readable(const QColor& color, const QColor& ground, const QColor& text, double needed = textContrast);

} // namespace quillary
