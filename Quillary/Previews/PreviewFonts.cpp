#include "Quillary/Previews/PreviewFonts.h"

#include "Quillary/Editor/EditorFont.h"

namespace quillary::PreviewFonts {

QFont text(double size, QFont::Weight weight) {
    QFont font = editorFont({size, EditorFontStyle::system});
    font.setWeight(weight);
    return font;
}

QFont monospaced(double size) {
    return editorFont({size, EditorFontStyle::monospaced});
}

} // namespace quillary::PreviewFonts
