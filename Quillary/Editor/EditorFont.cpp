#include "Quillary/Editor/EditorFont.h"

#include <QFontDatabase>

namespace quillary {

QFont editorFont(const EditorStyle& style) {
    const bool isMonospaced = style.fontStyle == EditorFontStyle::monospaced;
    QFont font = QFontDatabase::systemFont(isMonospaced ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont);
    constexpr double pointsPerPixel = 0.75;
    font.setPointSizeF(style.size * pointsPerPixel);
    return font;
}

} // namespace quillary
