#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Notes/NoteSnippet.h"
#include "QuillaryCore/Notes/NoteSortOrder.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The folder on disk that a stored name stands for: the one of its spelling, or else one that differs only in how its
/// characters are composed.
std::optional<QString> folderNamed(const QString& name, const QStringList& folders) {
    if (folders.contains(name)) {
        return name;
    }
    const auto found =
        std::ranges::find_if(folders, [&name](const QString& folder) { return canonicallyEqual(folder, name); });
    return found == folders.end() ? std::nullopt : std::optional(*found);
}

} // namespace

void NotesStore::loadAll() {
    m_watchers.clear();
    assignMultiSelection({}, false);
    const auto read = readDirectory();
    m_isLoaded = read.hasValue();
    if (!read) {
        assign(m_folders, {}, &NotesStore::foldersChanged);
        assign(m_collapsedFolders, {}, &NotesStore::collapsedFoldersChanged);
        assignNotes({});
        fail(tr("Impossibile leggere la cartella «%1»").arg(FilePath::displayText(m_fileStore.directory().text())),
             read.error());
    }
    selectFirstVisibleNote();
    rebuildWatchers();
    if (!m_isLoaded) {
        awaitReturn();
    }
    m_preloadTask.restart();
    preloadDocuments();
}

/// Folders, layout and notes as they are on disk.
Status<FileError> NotesStore::readDirectory() {
    if (auto made = m_fileStore.ensureDirectoryExists(); !made) {
        return made;
    }
    const SidebarLayout layout = m_fileStore.loadLayout();
    const auto listing = m_fileStore.list();
    if (!listing) {
        return listing.error();
    }
    QStringList folders = layout.ordered(listing->folders);
    folders.removeDuplicates();

    QSet<QString> collapsed;
    for (const QString& name : layout.collapsedFolders) {
        if (const auto folder = folderNamed(name, folders)) {
            collapsed.insert(*folder);
        }
    }
    QMap<QString, FolderColor> colors;
    for (auto color = layout.folderColors.cbegin(); color != layout.folderColors.cend(); ++color) {
        if (const auto folder = folderNamed(color.key(), folders)) {
            colors.insert(*folder, color.value());
        }
    }
    assign(m_folders, folders, &NotesStore::foldersChanged);
    assign(m_collapsedFolders, collapsed, &NotesStore::collapsedFoldersChanged);
    assign(m_folderColors, colors, &NotesStore::folderColorsChanged);
    m_noteOrder = layout.noteOrder;

    QList<NoteItemPtr> items;
    items.reserve(listing->notes.size());
    for (const NoteFileInfo& info : listing->notes) {
        items.append(std::make_shared<NoteItem>(info));
    }
    assignNotes(sorted(items));
    return Done();
}

void NotesStore::changeDirectory(const FilePath& directory) {
    saveDirtyNotes();
    m_settings->setNotesDirectory(directory);
    m_fileStore = NoteFileStore(directory);
    setSearchQuery({});
    loadAll();
    // Of what came into the directory after it was listed and before it was watched nobody tells.
    scheduleRefresh();
}

void NotesStore::ensureLoaded(NoteItem& item) {
    if (item.document()) {
        return;
    }
    const auto info = m_fileStore.info(item.url());
    auto text = m_fileStore.read(item.url());
    if (text) {
        if (info) {
            takeNewerDate(info->modified, item);
        }
        attach(*text, NoteSnippet::make(*text, NoteItem::snippetLength), item);
    } else {
        item.setLoadError(localizedDescription(text.error()));
    }
}

/// Lets a note know that its text is of a newer file than the one that was listed, which may still be written.
void NotesStore::takeNewerDate(Moment modified, NoteItem& item) {
    if (NoteItem::isLater(modified, item.knownModificationDate)) {
        item.isSettled = NoteItem::isSettledSince(modified);
        item.knownModificationDate = modified;
        item.setModified(modified);
        // Nobody told of it, and the note may have another place.
        scheduleRefresh();
    }
}

/// Gives a note its text.
void NotesStore::attach(const QString& text, const QString& snippet, NoteItem& item) {
    item.setDocument(std::make_shared<NoteDocument>(text));
    item.setSnippet(snippet);
    item.setCharacterCount(text.size());
    item.setLoadError({});
}

/// Reads the texts in the background: at first only those of the rows that a window shows, so that it needn't be drawn
/// again, and all others once it had time to be drawn.
void NotesStore::preloadDocuments() {
    constexpr qsizetype rowsOfAWindow = 32;
    const auto read = [store = m_fileStore](const FilePath& url) -> std::optional<TextPreloader::Text> {
        const auto info = store.info(url);
        const auto text = store.read(url, info ? std::optional(info->size) : std::nullopt);
        if (!info || !text) {
            return std::nullopt;
        }
        return TextPreloader::Text{url, *text, NoteSnippet::make(*text, NoteItem::snippetLength), info->modified};
    };
    m_preloader.start(read, {});
    m_preloading.clear();
    m_notesToPreload = m_preloadTask.isPending() ? visibleNotes().mid(0, rowsOfAWindow) : m_notes;
    m_preloadPosition = 0;
    preloadMoreDocuments();
}

/// Asks for the texts of the next notes. Of ten thousand at once that would be felt.
void NotesStore::preloadMoreDocuments() {
    constexpr qsizetype notesAtATime = 500;
    const qsizetype end = std::min(m_preloadPosition + notesAtATime, m_notesToPreload.size());
    QList<FilePath> urls;
    for (; m_preloadPosition < end; ++m_preloadPosition) {
        const NoteItemPtr& note = m_notesToPreload.at(m_preloadPosition);
        if (!note->document() && !note->loadError()) {
            urls.append(note->url());
            m_preloading.insert(note->url(), note);
        }
    }
    m_preloader.add(urls);
    if (end < m_notesToPreload.size()) {
        m_preloadMoreTask.restart();
    } else {
        m_notesToPreload.clear();
    }
}

/// Takes a text from the background, unless its note has gone, was opened already or has another name by now, or the
/// file was found changed since it was read; then it is on its way once more. A file can also have become older.
void NotesStore::attachPreloaded(const TextPreloader::Text& text) {
    const NoteItemPtr note = m_preloading.value(text.url).lock();
    if (!note || note->url() != text.url || note->document()) {
        return;
    }
    if (NoteItem::isLater(note->knownModificationDate, text.modified)) {
        const auto info = m_fileStore.info(text.url);
        if (!info || info->modified != text.modified) {
            return;
        }
    }
    takeNewerDate(text.modified, *note);
    attach(text.text, text.snippet, *note);
}

void NotesStore::selectionDidChange(std::optional<NoteID> previous) {
    setSelectedFolder({});
    if (!m_multiSelection.isEmpty()) {
        clearMultiSelection();
    }
    if (const NoteItemPtr selected = selectedItem()) {
        ensureLoaded(*selected);
    }
    const NoteItemPtr left = previous ? item(*previous) : nullptr;
    if (left && left->isDirty()) {
        QMetaObject::invokeMethod(
            this, [this, left] { save(*left); }, Qt::QueuedConnection);
    }
}

void NotesStore::selectFirstVisibleNote() {
    const QList<NoteItemPtr> visible = visibleNotes();
    setSelectedID(visible.isEmpty() ? std::nullopt : std::optional(visible.first()->id()));
}

QList<NoteItemPtr> NotesStore::sorted(const QList<NoteItemPtr>& items) const {
    if (m_settings->sortOrder() == NoteSortOrder::manual) {
        return manuallySorted(items);
    }
    return quillary::sorted(items, m_settings->sortOrder());
}

/// Folder by folder: what the manual order doesn't know first, newest first, then the notes that it knows.
QList<NoteItemPtr> NotesStore::manuallySorted(const QList<NoteItemPtr>& items) const {
    const SidebarLayout layout = currentLayout();
    const QList<NoteItemPtr> byCreation = quillary::sorted(items, NoteSortOrder::created);

    QList<std::optional<QString>> folders;
    QHash<QString, QList<NoteItemPtr>> notesOfFolder;
    for (const NoteItemPtr& item : byCreation) {
        QList<NoteItemPtr>& notes = notesOfFolder[SidebarLayout::key(item->folder())];
        if (notes.isEmpty()) {
            folders.append(item->folder());
        }
        notes.append(item);
    }

    QList<NoteItemPtr> result;
    result.reserve(items.size());
    for (const std::optional<QString>& folder : std::as_const(folders)) {
        QStringList names;
        QHash<QString, NoteItemPtr> noteOfName;
        for (const NoteItemPtr& item : std::as_const(notesOfFolder[SidebarLayout::key(folder)])) {
            names.append(item->fileName());
            noteOfName.insert(names.last(), item);
        }
        for (const QString& name : layout.manuallyOrdered(names, folder)) {
            // An order may name a note twice, as when it took the name of one that another program removed.
            if (const NoteItemPtr item = noteOfName.take(name)) {
                result.append(item);
            }
        }
    }
    return result;
}

void NotesStore::resort() {
    assignNotes(sorted(m_notes));
}

void NotesStore::insert(const NoteItemPtr& item) {
    assignNotes(sorted(m_notes + QList{item}));
}

void NotesStore::remove(const QList<NoteItemPtr>& items) {
    const QSet<NoteItemPtr> gone(items.cbegin(), items.cend());
    QList<NoteItemPtr> rest = m_notes;
    rest.removeIf([&gone](const NoteItemPtr& note) { return gone.contains(note); });
    assignNotes(rest);
}

/// Removes the notes that have the paths of others which have just come there. The paths were free: their files went
/// unseen, and saved or seen as those of the others they would show and write the wrong text.
void NotesStore::removeNamesakes(const QList<NoteItemPtr>& items) {
    QHash<FilePath, NoteItemPtr> owners;
    for (const NoteItemPtr& item : items) {
        owners.insert(item->url(), item);
    }
    QList<NoteItemPtr> gone;
    std::ranges::copy_if(m_notes, std::back_inserter(gone), [&owners](const NoteItemPtr& note) {
        const NoteItemPtr owner = owners.value(note->url());
        return owner && owner != note;
    });
    if (gone.isEmpty()) {
        return;
    }
    remove(gone);
    if (!selectedItem()) {
        selectFirstVisibleNote();
    }
}

SidebarLayout NotesStore::currentLayout() const {
    SidebarLayout layout;
    layout.folderOrder = m_folders;
    for (const QString& folder : m_folders) {
        if (m_collapsedFolders.contains(folder)) {
            layout.collapsedFolders.append(folder);
        }
        if (const auto color = m_folderColors.constFind(folder); color != m_folderColors.cend()) {
            layout.folderColors.insert(folder, *color);
        }
    }
    layout.noteOrder = m_noteOrder;
    return layout;
}

} // namespace quillary
