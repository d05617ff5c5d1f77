#pragma once

#include <QString>

namespace quillary {

/// The line that a list shows of a note.
struct NoteSnippet {
    NoteSnippet() = delete;

    /// The first line of a text that has something to show, without blanks at its ends and without the marks of a
    /// heading, cut to `limit` characters. Only the first 4,000 characters are looked at; empty if they show nothing.
    static QString make(QStringView text, qsizetype limit);
};

} // namespace quillary
