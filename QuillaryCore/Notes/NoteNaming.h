#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QString>
#include <QTimeZone>

namespace quillary {

/// How notes get their names.
struct NoteNaming {
    NoteNaming() = delete;

    /// The title of a note that is made at a moment: "Nota 2026-03-05 09.07", in Western digits whatever the user's
    /// settings, and with a full stop in the time because it becomes a file name.
    static QString defaultTitle(Moment date, const QTimeZone& timeZone);

    /// A title as the safe base of a file name, of at most 120 characters: separators, control and format characters
    /// and line ends become hyphens; blanks at the ends and leading full stops go. May be empty.
    static QString sanitizedTitle(QStringView title);
};

} // namespace quillary
