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
    add(*this, tr("Rinomina"), item, [this, item] {
        select(*item);
        m_store.raiseTitleRenameToken();
    });
    if (const NoteItemPtr selected = m_store.selectedItem(); selected && selected != item) {
        add(*this, tr("Confronta con «%1»").arg(menuText(selected->title())), item, [this, selected, item] {
            if (m_store.contains(*selected)) {
                m_store.compare(*selected, *item);
            }
        });
    }
    addFormats(item);
    addMenu(new MoveToFolderMenu(m_store, {item}, this));
    add(*this, tr("Copia contenuto"), item, [this, item] {
        select(*item);
        m_store.copySelectedContent();
    });
    add(*this, tr("Mostra nel Finder"), item, [item] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->reveal(item->url());
        }
    });
    addSeparator();
    add(*this, tr("Sposta nel Cestino…"), item, [this, item] { m_store.requestTrash(QList{item}); });
}

void NoteContextMenu::addFormats(const NoteItemPtr& item) {
    QMenu* const formats = addMenu(tr("Formato"));
    auto* const group = new QActionGroup(formats);
    for (const NoteFormat format : allNoteFormats) {
        QAction* const action =
            add(*formats, displayName(format), item, [this, item, format] { m_store.changeFormat(*item, format); });
        action->setCheckable(true);
        action->setChecked(item->format() == format);
        group->addAction(action);
    }
}

/// Adds a command that does nothing if the note has gone while the menu was open.
QAction* NoteContextMenu::add(QMenu& menu, const QString& text, const NoteItemPtr& item,
                              const std::function<void()>& command) {
    return menu.addAction(text, this, [this, item, command] {
        if (m_store.contains(*item)) {
            command();
        }
    });
}

void NoteContextMenu::select(const NoteItem& item) const {
    // A note that was selected before others together would not end their selection.
    if (!m_store.multiSelection().isEmpty()) {
        m_store.clearMultiSelection();
    }
    m_store.setSelectedID(item.id());
}

} // namespace quillary
