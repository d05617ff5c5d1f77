#include "Quillary/Sidebar/MoveToFolderMenu.h"

#include "Quillary/Sidebar/MoveToFolderMenuItems.h"

namespace quillary {

MoveToFolderMenu::MoveToFolderMenu(NotesStore& store, const QList<NoteItemPtr>& items, QWidget* parent)
    : QMenu(tr("Sposta in"), parent) {
    const MoveToFolderMenuItems menuItems{store, items};
    menuItems.addTo(*this);
    connect(this, &QMenu::aboutToShow, this, [this, menuItems] {
        clear();
        menuItems.addTo(*this);
    });
}

} // namespace quillary
