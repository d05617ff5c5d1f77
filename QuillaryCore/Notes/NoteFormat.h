#pragma once

#include <QAnyStringView>
#include <QSet>
#include <QString>

#include <array>
#include <optional>

namespace quillary {

/// What kind of note a file is, by its extension.
enum class NoteFormat {
    plain,
    markdown,
    json,
    csv,
    html,
    css,
    javascript,
    php,
};

/// In the order in which menus list them.
inline constexpr std::array allNoteFormats{
    NoteFormat::plain, NoteFormat::markdown, NoteFormat::json,       NoteFormat::csv,
    NoteFormat::html,  NoteFormat::css,      NoteFormat::javascript, NoteFormat::php,
};

/// The format of files with an extension, in any case; `plain` for every extension that no other format claims.
NoteFormat noteFormatFromExtension(QStringView extension);

/// The format that is stored as `rawValue`; none if there is no such format.
std::optional<NoteFormat> noteFormatFromRawValue(QStringView rawValue);

/// What a format is stored as, which also identifies it.
QString rawValue(NoteFormat format);

/// The extension that new files of a format get, without the dot.
QString fileExtension(NoteFormat format);

/// The name in menus.
QString displayName(NoteFormat format);

/// The short tag in capitals beside a note.
QString badge(NoteFormat format);

/// Whether there is a formatted preview.
bool supportsPreview(NoteFormat format);

/// The extensions, in lower case, of the files that are notes. Not the same question as the format: "a.sql" is a
/// plain note, "a.rtf" would be plain but is no note.
const QSet<QString>& recognizedExtensions();

/// Whether an extension, in any case, makes a file a note.
bool isRecognizedExtension(QAnyStringView extension);

} // namespace quillary
