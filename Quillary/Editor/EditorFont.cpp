#include "Quillary/Editor/EditorFont.h"

#include "Quillary/Theme/Theme.h"

namespace quillary {

QFont editorFont(const EditorStyle& style) {
    return style.fontStyle == EditorFontStyle::monospaced ? Theme::monospacedFont(style.size) : Theme::font(style.size);
}

} // namespace quillary
