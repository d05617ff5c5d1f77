#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <optional>

namespace quillary {

/// What is known of a note file as it was last read from disk.
struct NoteFileInfo {
    FilePath url;
    Moment created = distantPast;
    Moment modified = distantPast;
    /// In bytes; 0 when the file system gives none.
    qint64 size = 0;
    /// The name of the sub-folder that holds the file; none at the top of the notes directory.
    std::optional<QString> folder;

    friend bool operator==(const NoteFileInfo&, const NoteFileInfo&) = default;
};

} // namespace quillary

Q_DECLARE_TYPEINFO(quillary::NoteFileInfo, Q_RELOCATABLE_TYPE);
