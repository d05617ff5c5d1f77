#pragma once

#include <QColor>
#include <QPalette>

namespace quillary {

/// Whether a palette is a dark one: its window is darker than its text.
inline bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

/// One colour for the light appearance and one for the dark. It is asked at drawing time, so a change of appearance is
/// a repaint and nothing more.
struct AdaptiveColor {
    QColor dark;
    QColor light;

    /// The colour that goes with the palette of the widget that is being drawn.
    QColor in(const QPalette& palette) const { return isDark(palette) ? dark : light; }
};

} // namespace quillary
