#include "Quillary/Sidebar/NoteContextMenu.h"

#include "Quillary/Sidebar/MoveToFolderMenu.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/State/AppActions.h"

#include <QActionGroup>

namespace quillary {

NoteContextMenu::NoteContextMenu(NotesStore& store, const NoteItemPtr& item, QWidget* parent)
    : QMenu(parent), m_store(store) {
    const QList<NoteItemPtr> targets = targetsOf(item);
    if (targets.size() > 1) {
        addItems(targets);
    } else {
        addItems(item);
    }
}

QList<NoteItemPtr> NoteContextMenu::targetsOf(const NoteItemPtr& item) const {
    const QList<NoteID>& selection = m_store.multiSelection();
    if (selection.size() < 2 || !selection.contains(item->id())) {
        return {item};
    }
    QList<NoteItemPtr> targets;
    for (const NoteID id : selection) {
        if (const NoteItemPtr target = m_store.item(id)) {
            targets.append(target);
        }
    }
    return targets;
}

void NoteContextMenu::addItems(const QList<NoteItemPtr>& targets) {
    addAction(tr("Raggruppa in nuova cartella"), this, [this, targets] { m_store.createFolder(targets); });
    if (targets.size() == 2) {
        addAction(tr("Confronta"), this, [this] { m_store.showDiff(); });
    }
    addMenu(new MoveToFolderMenu(m_store, targets, this));
    addSeparator();
    addAction(tr("Sposta %1 note nel Cestino…").arg(targets.size()), this,
              [this, targets] { m_store.requestTrash(targets); });
}

void NoteContextMenu::addItems(const NoteItemPtr& item) {
    addAction(tr("Rinomina"), this, [this, item] {
        m_store.setSelectedID(item->id());
        m_store.raiseTitleRenameToken();
    });
    if (const NoteItemPtr selected = m_store.selectedItem(); selected && selected != item) {
        addAction(tr("Confronta con «%1»").arg(menuText(selected->title())), this,
                  [this, selected, item] { m_store.compare(*selected, *item); });
    }
    addFormats(item);
    addMenu(new MoveToFolderMenu(m_store, {item}, this));
    addAction(tr("Copia contenuto"), this, [this, item] {
        m_store.setSelectedID(item->id());
        m_store.copySelectedContent();
    });
    addAction(tr("Mostra nel Finder"), this, [item] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->reveal(item->url());
        }
    });
    addSeparator();
    addAction(tr("Sposta nel Cestino…"), this, [this, item] { m_store.requestTrash(QList{item}); });
}

void NoteContextMenu::addFormats(const NoteItemPtr& item) {
    QMenu* const formats = addMenu(tr("Formato"));
    auto* const group = new QActionGroup(formats);
    for (const NoteFormat format : allNoteFormats) {
        QAction* const action = formats->addAction(displayName(format), this,
                                                   [this, item, format] { m_store.changeFormat(*item, format); });
        action->setCheckable(true);
        action->setChecked(item->format() == format);
        group->addAction(action);
    }
}

} // namespace quillary
