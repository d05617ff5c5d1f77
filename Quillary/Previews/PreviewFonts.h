#pragma once

#include <QFont>

/// The fonts of the previews. A size is in logical pixels of a screen of 96 dpi, like the editor's.
namespace quillary::PreviewFonts {

/// The desktop's font for text.
QFont text(double size, QFont::Weight weight = QFont::Normal);

/// The desktop's font of fixed width.
QFont monospaced(double size);

} // namespace quillary::PreviewFonts
