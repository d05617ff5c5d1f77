#include "Quillary/Sidebar/MoveToFolderMenuItems.h"

#include "Quillary/Sidebar/ShownName.h"

#include <QCoreApplication>
#include <QMenu>

#include <algorithm>

namespace quillary {

void MoveToFolderMenuItems::addTo(QMenu& menu) const {
    const auto text = [](const char* literal) {
        return QCoreApplication::translate("quillary::MoveToFolderMenuItems", literal);
    };
    const auto addMove = [&](const QString& label, const std::optional<QString>& folder) {
        QAction* const action =
            menu.addAction(label, &menu, [&store = store, items = items, folder] { store.move(items, folder); });
        action->setEnabled(
            !std::ranges::all_of(items, [&folder](const NoteItemPtr& item) { return item->folder() == folder; }));
    };
    addMove(text("Note (nessuna cartella)"), std::nullopt);
    for (const QString& folder : store.folders()) {
        addMove(menuText(folder), folder);
    }
    menu.addAction(text("Nuova cartella…"), &menu, [&store = store, items = items] { store.createFolder(items); });
}

} // namespace quillary
