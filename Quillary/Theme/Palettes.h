#pragma once

#include <QPalette>

namespace quillary {

/// The application's own palettes for the Fusion style, the same on every desktop.
QPalette lightPalette();
QPalette darkPalette();

/// The same for who wants more contrast: black on white and white on black, with edges that are seen.
QPalette highContrastLightPalette();
QPalette highContrastDarkPalette();

/// Whether a palette is one of high contrast.
bool isHighContrast(const QPalette& palette);

} // namespace quillary
