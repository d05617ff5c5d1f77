#pragma once

#include <QPalette>

namespace quillary {

/// The application's own palettes for the Fusion style, the same on every desktop.
QPalette lightPalette();
QPalette darkPalette();

} // namespace quillary
