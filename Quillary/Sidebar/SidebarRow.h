#pragma once

#include "Quillary/State/NoteItem.h"

#include <QString>

namespace quillary {

/// One line of the sidebar's list.
struct SidebarRow {
    enum class Kind {
        folderHeader,
        groupHeader,
        note,
    };

    Kind kind = Kind::note;
    /// The folder's name or the group's heading; empty for a note.
    QString title;
    /// The note; null for the headers.
    NoteItemPtr note;
    /// Whether the note stands under a folder's header.
    bool indented = false;
    /// How many notes a folder has.
    qsizetype count = 0;

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

} // namespace quillary
