#pragma once

#include "Quillary/Theme/AdaptiveColor.h"
#include "QuillaryCore/Formats/SyntaxTokenKind.h"
#include "QuillaryCore/Notes/FolderColor.h"
#include "QuillaryCore/Notes/NoteFormat.h"

#include <QFont>

namespace quillary {

/// What the sidebar, the editor, the previews and the comparison draw with. Colours are looked up in the palette of the
/// widget that is drawn; there is no theming by the user.
namespace Theme {

extern const AdaptiveColor sidebarBackground;
extern const AdaptiveColor diffRemoved;
extern const AdaptiveColor diffAdded;
extern const AdaptiveColor jsonString;
extern const AdaptiveColor jsonNumber;
extern const AdaptiveColor jsonLiteral;

/// The mark of unsaved changes, the same in both appearances.
extern const QColor accentDot;

/// The colour of a kind of token in source text.
const AdaptiveColor& syntaxColor(SyntaxTokenKind kind);

/// The find bar's current match and the text in it, the same in both appearances. The other matches have the same
/// colour at a low opacity.
extern const QColor findHighlight;
extern const QColor findHighlightedText;

QColor separator(const QPalette& palette);
QColor editorBackground(const QPalette& palette);
QColor secondaryText(const QPalette& palette);

/// The text colour at a low opacity, for what lies behind text.
QColor subtleFill(const QPalette& palette);
QColor rowHover(const QPalette& palette);
QColor searchFill(const QPalette& palette);
QColor rowSelection(const QPalette& palette);

/// The tint of a format's mark.
QColor formatTint(NoteFormat format, const QPalette& palette);

/// The colour of a folder that has one, and its name in the menus.
QColor folderColor(FolderColor color, const QPalette& palette);
QString folderColorName(FolderColor color);

/// The application's font, and the desktop's font of fixed width. A size is in logical pixels of a screen of 96 dpi and
/// grows with the desktop's scale of texts.
QFont font(double size, QFont::Weight weight = QFont::Normal);
QFont monospacedFont(double size, QFont::Weight weight = QFont::Normal);

/// How much larger than on a screen of 96 dpi the desktop wants texts; what holds texts grows with them.
double textScale();

/// The fonts of the lists.
QFont sidebarTitle();
QFont sidebarDetail();
QFont caption();

} // namespace Theme

} // namespace quillary
