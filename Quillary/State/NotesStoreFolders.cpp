#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>

namespace quillary {

std::optional<QString> NotesStore::createFolder(const QList<NoteItemPtr>& moving) {
    if (!moving.isEmpty() && present(moving).isEmpty()) {
        return std::nullopt;
    }
    const auto volume = ensureVolumeIsThere();
    const auto name = volume ? m_fileStore.createFolder(NoteFileStore::defaultFolderName())
                             : Result<QString, FileError>(volume.error());
    if (!name) {
        fail(tr("Impossibile creare la cartella"), name.error());
        return std::nullopt;
    }
    // A folder of this name that went unseen is no more.
    QStringList folders = m_folders;
    folders.removeAll(*name);
    folders.prepend(*name);
    assign(m_folders, folders, &NotesStore::foldersChanged);
    rebuildWatchers();
    move(moving, *name);
    saveLayout();
    setRenamingFolder(*name);
    return *name;
}

void NotesStore::renameFolder(const QString& name, const QString& to) {
    setRenamingFolder({});
    const QString trimmed = to.trimmed();
    if (trimmed.isEmpty() || canonicallyEqual(trimmed, name) || trimmed == FilePath::displayText(name)) {
        return;
    }
    const QList<NoteItemPtr> inside = notes(name);
    for (const NoteItemPtr& note : inside) {
        save(*note);
    }
    const auto renamed = m_fileStore.renameFolder(name, trimmed);
    if (!renamed) {
        fail(tr("Impossibile rinominare la cartella «%1»").arg(FilePath::displayText(name)), renamed.error());
        return;
    }
    const QString& newName = *renamed;
    for (const NoteItemPtr& note : inside) {
        note->setUrl(m_fileStore.folderURL(newName).appending(note->fileName()));
        note->setFolder(newName);
    }
    SidebarLayout layout = currentLayout();
    layout.renameFolder(name, newName);
    m_noteOrder = layout.noteOrder;
    assign(m_folderColors, layout.folderColors, &NotesStore::folderColorsChanged);

    QStringList folders = m_folders;
    if (newName != name) {
        folders.removeAll(newName);
    }
    std::ranges::replace(folders, name, newName);
    assign(m_folders, folders, &NotesStore::foldersChanged);
    QSet<QString> collapsed = m_collapsedFolders;
    if (collapsed.remove(name)) {
        collapsed.insert(newName);
    }
    assign(m_collapsedFolders, collapsed, &NotesStore::collapsedFoldersChanged);
    if (m_selectedFolder == name) {
        setSelectedFolder(newName);
    }
    removeNamesakes(inside);
    // There may be an order by hand of a folder that once had this name.
    resort();
    rebuildWatchers();
    saveLayout();
}

void NotesStore::deleteFolder(const QString& name, bool keepingNotes) {
    setPendingFolderDeletion({});
    const QList<NoteItemPtr> inside = notes(name);
    const NoteItemPtr selected = selectedItem();
    if (keepingNotes && inside.contains(selected)) {
        // It stays selected wherever it goes.
        moveNotes(inside, {}, selected);
    } else if (keepingNotes) {
        move(inside, {});
    } else {
        for (const NoteItemPtr& note : inside) {
            save(*note);
            note->saveTask.reset();
        }
    }
    if (const auto deleted = m_fileStore.deleteFolder(name, false); !deleted) {
        fail(tr("Impossibile eliminare la cartella «%1»").arg(FilePath::displayText(name)), deleted.error());
        // Some of it may have moved before.
        refreshFromDisk();
        return;
    }
    SidebarLayout layout = currentLayout();
    layout.removeFolder(name);
    m_noteOrder = layout.noteOrder;
    assign(m_folderColors, layout.folderColors, &NotesStore::folderColorsChanged);

    QStringList folders = m_folders;
    folders.removeAll(name);
    assign(m_folders, folders, &NotesStore::foldersChanged);
    QSet<QString> collapsed = m_collapsedFolders;
    collapsed.remove(name);
    assign(m_collapsedFolders, collapsed, &NotesStore::collapsedFoldersChanged);
    if (m_selectedFolder == name) {
        setSelectedFolder({});
    }
    // A note that was to be kept and could not be moved went with the folder.
    remove(notes(name));
    if (!selectedItem()) {
        selectFirstVisibleNote();
    }
    rebuildWatchers();
    saveLayout();
}

void NotesStore::moveFolder(const QString& name, const std::optional<QString>& before) {
    QStringList folders = m_folders;
    if (before == name || !folders.removeOne(name)) {
        return;
    }
    const qsizetype target = before ? folders.indexOf(*before) : -1;
    folders.insert(target < 0 ? folders.size() : target, name);
    assign(m_folders, folders, &NotesStore::foldersChanged);
    saveLayout();
}

void NotesStore::moveFolder(const QString& name, int by) {
    QStringList folders = m_folders;
    const qsizetype index = folders.indexOf(name);
    const qsizetype target = index + by;
    if (index < 0 || target < 0 || target >= folders.size()) {
        return;
    }
    folders.swapItemsAt(index, target);
    assign(m_folders, folders, &NotesStore::foldersChanged);
    saveLayout();
}

void NotesStore::setColor(std::optional<FolderColor> color, const QString& folder) {
    QMap<QString, FolderColor> colors = m_folderColors;
    if (color) {
        colors.insert(folder, *color);
    } else {
        colors.remove(folder);
    }
    assign(m_folderColors, colors, &NotesStore::folderColorsChanged);
    saveLayout();
}

} // namespace quillary
