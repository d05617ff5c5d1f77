#pragma once

#include <QString>

#include <array>

namespace quillary {

/// The font of the editor's text.
enum class EditorFontStyle {
    monospaced,
    system,
};

/// All styles, in the order in which the user is offered them.
inline constexpr std::array allEditorFontStyles = {EditorFontStyle::monospaced, EditorFontStyle::system};

/// What stands for a style in the preferences.
QString rawValue(EditorFontStyle style);

/// The style that a stored text stands for: `system` for exactly that, `monospaced` for anything else.
EditorFontStyle editorFontStyleFromRawValue(QStringView rawValue);

/// What the user reads.
QString displayName(EditorFontStyle style);

/// How the editor's text looks: the size of the font in points, and the font.
struct EditorStyle {
    double size = 13;
    EditorFontStyle fontStyle = EditorFontStyle::monospaced;

    friend bool operator==(const EditorStyle&, const EditorStyle&) = default;
};

} // namespace quillary
