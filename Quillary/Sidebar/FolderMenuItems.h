#pragma once

#include "Quillary/State/NotesStore.h"

class QMenu;

namespace quillary {

/// The commands on one folder: its context menu in the sidebar, and a submenu of the menu bar.
struct FolderMenuItems {
    NotesStore& store;
    QString folder;

    /// Adds the items as the folder stands now; they live as long as the menu.
    void addTo(QMenu& menu) const;

private:
    void addColorsTo(QMenu& menu) const;
};

} // namespace quillary
