#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <algorithm>

namespace quillary {

void NotesStore::move(const QList<NoteItemPtr>& items, const std::optional<QString>& toFolder) {
    const QList<NoteItemPtr> moved = present(items);
    moveNotes(moved, toFolder, moved.size() > 1 ? moved.first() : nullptr);
}

/// Moves notes to a folder or to the top level, and selects one of them if it is given.
void NotesStore::moveNotes(const QList<NoteItemPtr>& items, const std::optional<QString>& toFolder,
                           const NoteItemPtr& selecting) {
    if (items.isEmpty()) {
        return;
    }
    assignMultiSelection({}, false);
    for (const NoteItemPtr& item : items) {
        const std::optional<QString> oldFolder = item->folder();
        const QString oldFileName = item->fileName();
        if (oldFolder != toFolder && moveFile(*item, toFolder)) {
            SidebarLayout layout = currentLayout();
            layout.removeNote(oldFileName, oldFolder);
            m_noteOrder = layout.noteOrder;
        }
    }
    if (toFolder && m_collapsedFolders.contains(*toFolder)) {
        toggleCollapsed(*toFolder);
    }
    if (selecting) {
        setSelectedID(selecting->id());
    }
    removeNamesakes(items);
    resort();
    saveLayout();
}

/// Moves the file of one note, after saving what is unsaved of it.
bool NotesStore::moveFile(NoteItem& item, const std::optional<QString>& toFolder) {
    save(item);
    const auto url = m_fileStore.moveNote(item.url(), toFolder);
    if (!url) {
        fail(tr("Impossibile spostare «%1»").arg(FilePath::displayText(item.title())), url.error());
        return false;
    }
    item.setUrl(*url);
    item.setFolder(m_fileStore.folder(*url));
    return true;
}

/// Makes the order on show the order by hand, in the place of any that was there before. The layout isn't saved here.
void NotesStore::adoptManualOrder() {
    QMap<QString, QStringList> noteOrder;
    for (const QString& folder : std::as_const(m_folders)) {
        noteOrder.insert(folder, {});
    }
    noteOrder.insert(SidebarLayout::key({}), {});
    for (const NoteItemPtr& note : std::as_const(m_notes)) {
        if (const auto names = noteOrder.find(SidebarLayout::key(note->folder())); names != noteOrder.end()) {
            names->append(note->fileName());
        }
    }
    m_noteOrder = noteOrder;
    m_settings->setSortOrder(NoteSortOrder::manual);
}

void NotesStore::place(const QList<NoteItemPtr>& items, const std::optional<QString>& inFolder,
                       const NoteItemPtr& before) {
    QList<NoteItemPtr> targets = items;
    targets.removeAll(before);
    if (targets.isEmpty()) {
        return;
    }
    if (m_settings->sortOrder() != NoteSortOrder::manual) {
        adoptManualOrder();
    }
    assignMultiSelection({}, false);
    SidebarLayout layout = currentLayout();
    const auto beforeName = before ? std::optional(before->fileName()) : std::nullopt;
    if (beforeName) {
        QStringList shown;
        for (const NoteItemPtr& note : notes(inFolder)) {
            shown.append(note->fileName());
        }
        layout.ensurePlace(*beforeName, shown, inFolder);
    }
    for (const NoteItemPtr& item : std::as_const(targets)) {
        const std::optional<QString> oldFolder = item->folder();
        const QString oldFileName = item->fileName();
        if (oldFolder != inFolder && !moveFile(*item, inFolder)) {
            continue;
        }
        layout.removeNote(oldFileName, oldFolder);
        // Each one right before the same note, so that several keep their order.
        layout.placeNote(item->fileName(), inFolder, inFolder, beforeName);
    }
    m_noteOrder = layout.noteOrder;
    if (inFolder) {
        assign(m_collapsedFolders, m_collapsedFolders - QSet{*inFolder}, &NotesStore::collapsedFoldersChanged);
    }
    removeNamesakes(targets);
    resort();
    saveLayout();
}

void NotesStore::shiftSelectedNote(int by) {
    const NoteItemPtr selected = selectedItem();
    if (!selected) {
        return;
    }
    if (m_settings->sortOrder() != NoteSortOrder::manual) {
        adoptManualOrder();
    }
    const QList<NoteItemPtr> neighbours = notes(selected->folder());
    const qsizetype target = neighbours.indexOf(selected) + by;
    if (target < 0 || target >= neighbours.size()) {
        AppActions::shared().beep();
        return;
    }
    // Downwards it goes behind the note at its target, which is before the next one or at the end.
    place({selected}, selected->folder(), neighbours.value(by < 0 ? target : target + 1));
}

NoteItemPtr NotesStore::note(const NoteItem& after, const QList<NoteItemPtr>& excluding) const {
    QList<NoteItemPtr> rest = notes(after.folder());
    rest.removeIf([&excluding](const NoteItemPtr& note) { return excluding.contains(note); });
    const auto found = std::ranges::find(rest, &after, [](const NoteItemPtr& note) { return note.get(); });
    return found == rest.end() ? nullptr : rest.value(found - rest.begin() + 1);
}

SidebarDragItem NotesStore::dragItem(const NoteItem& item) const {
    const bool isPartOfSelection = m_multiSelection.size() >= 2 && m_multiSelection.contains(item.id());
    return isPartOfSelection ? m_multiSelection : QList{item.id()};
}

/// Lets the manual order follow a note to its new file name. A note that has no place in it gets none.
void NotesStore::renameInOrder(const NoteItem& item, const QString& oldFileName) {
    SidebarLayout layout = currentLayout();
    layout.renameNote(oldFileName, item.fileName(), item.folder());
    takeNoteOrder(layout);
}

/// Takes notes that have gone out of the manual order, and writes the layout if it held one of them.
void NotesStore::removeFromOrder(const QList<NoteItemPtr>& items) {
    SidebarLayout layout = currentLayout();
    for (const NoteItemPtr& item : items) {
        layout.removeNote(item->fileName(), item->folder());
    }
    takeNoteOrder(layout);
}

/// Takes over the manual order of a changed layout, and writes it if it did change.
void NotesStore::takeNoteOrder(const SidebarLayout& layout) {
    if (layout.noteOrder != m_noteOrder) {
        m_noteOrder = layout.noteOrder;
        saveLayout();
    }
}

} // namespace quillary
