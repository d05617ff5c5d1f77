#pragma once

#include "Quillary/State/EditorStyle.h"

#include <QFont>

namespace quillary {

/// The font of a style: the desktop's own for text or for fixed width. A size of the style is in logical pixels of a
/// screen of 96 dpi and grows with the desktop's scale of texts.
QFont editorFont(const EditorStyle& style);

} // namespace quillary
