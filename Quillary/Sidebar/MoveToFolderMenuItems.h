#pragma once

#include "Quillary/State/NotesStore.h"

class QMenu;

namespace quillary {

/// The items that move notes: to the top level, to each folder, to a new folder. What would move nothing is disabled.
struct MoveToFolderMenuItems {
    NotesStore& store;
    QList<NoteItemPtr> items;

    /// Adds the items as the folders stand now; they live as long as the menu.
    void addTo(QMenu& menu) const;
};

} // namespace quillary
