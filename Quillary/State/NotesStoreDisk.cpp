#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Notes/NoteSnippet.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Unicode/Collation.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <utility>

namespace quillary {

namespace {

/// Whether a file system that keeps no more of a date than its seconds may have given this one to several changes.
bool isCoarse(Moment date) {
    return date == std::chrono::floor<std::chrono::seconds>(date);
}

/// A path as those see it for whom letter case and the composition of characters make no difference.
QString withoutCase(const FilePath& path) {
    return path.text().normalized(QString::NormalizationForm_C).toCaseFolded();
}

/// The file system that a directory is on, also one that a link leads to.
std::optional<dev_t> deviceOf(const FilePath& directory) {
    struct stat status = {};
    return stat(directory.bytes().constData(), &status) == 0 ? std::optional(status.st_dev) : std::nullopt;
}

/// The file system that a directory is on, or would be made on if it isn't there; absent if that can't be told.
std::optional<dev_t> deviceToMakeOn(FilePath directory) {
    struct stat status = {};
    while (stat(directory.bytes().constData(), &status) != 0) {
        if (errno != ENOENT || directory == directory.parent()) {
            return std::nullopt;
        }
        directory = directory.parent();
    }
    return status.st_dev;
}

} // namespace

void NotesStore::rebuildWatchers() {
    if (!m_mountWatcher) {
        m_mountWatcher = MountWatcher::watch([this] { mountsDidChange(); });
    }
    std::vector<std::unique_ptr<DirectoryWatcher>> watchers;
    const auto watch = [&](const FilePath& directory) {
        if (auto watcher = DirectoryWatcher::watch(directory, [this] { scheduleRefresh(); })) {
            watchers.push_back(std::move(watcher));
        }
    };
    watch(m_fileStore.directory());
    for (const QString& folder : std::as_const(m_folders)) {
        watch(m_fileStore.folderURL(folder));
    }
    m_watchers = std::move(watchers);
    m_device = deviceOf(m_fileStore.directory());
}

/// Whether every directory has its watcher: one that was replaced by another of its name has lost it.
bool NotesStore::areWatchersCurrent() const {
    return m_watchers.size() == std::size_t(m_folders.size()) + 1 &&
           std::ranges::all_of(m_watchers, [](const auto& watcher) { return watcher->isCurrent(); });
}

/// A volume that is mounted over a directory hides it without a word to those who watch it.
void NotesStore::mountsDidChange() {
    if (!areWatchersCurrent()) {
        scheduleRefresh();
    }
}

/// Whether the directory is only what an unmounted volume left in its place: nothing, on another file system.
bool NotesStore::isVolumeGone(const NoteFileStore::Listing& listing) const {
    const bool isEmpty = listing.notes.isEmpty() && listing.folders.isEmpty();
    const bool wasEmpty = m_notes.isEmpty() && m_folders.isEmpty();
    return isEmpty && !wasEmpty && deviceOf(m_fileStore.directory()) != m_device;
}

/// Whether what is made in the directory now would not come to the volume of the notes: another one, as a rule the
/// empty place that an unmounted volume leaves, has taken its place. Its return would hide it.
bool NotesStore::isVolumeAway() const {
    const auto device = deviceToMakeOn(m_fileStore.directory());
    return device && m_device && *device != *m_device;
}

/// To be asked before something new is made in the directory.
Status<FileError> NotesStore::ensureVolumeIsThere() {
    if (isVolumeAway()) {
        // It may be back already, and to the system it is another one then.
        refreshFromDisk();
    }
    return isVolumeAway() ? Status<FileError>(SystemError{ENODEV}) : Status<FileError>(Done());
}

/// Watches for the return of a directory that can't be listed, as when its volume went away, on the nearest directory
/// above it. A mount is told of anyway.
void NotesStore::awaitReturn() {
    const FilePath& directory = m_fileStore.directory();
    const auto before = deviceOf(directory);
    FilePath above = directory.parent();
    while (!fileStatus(above) && above != above.parent()) {
        above = above.parent();
    }
    if (!m_returnWatcher || !m_returnWatcher->isCurrent() || m_returnWatcher->directory() != above) {
        m_returnWatcher = DirectoryWatcher::watch(
            above, [this] { scheduleRefresh(); }, DirectoryWatcher::Entries::all);
    }
    if (const auto after = deviceOf(directory); after && after != before) {
        // It came back before anybody watched.
        scheduleRefresh();
    }
}

void NotesStore::scheduleRefresh() {
    m_refreshTask.restart();
}

void NotesStore::refreshFromDisk() {
    const auto device = deviceOf(m_fileStore.directory());
    const auto listing = m_fileStore.list();
    if (!listing || isVolumeGone(*listing)) {
        awaitReturn();
        return;
    }
    if (device != deviceOf(m_fileStore.directory())) {
        // The volume went or came meanwhile, and the listing may be half of one and half of another.
        scheduleRefresh();
        return;
    }
    if (!m_isLoaded || (m_notes.isEmpty() && m_folders.isEmpty() && device != m_device)) {
        // A volume has come. Without its layout the first change of the arrangement would overwrite the stored one.
        saveDirtyNotes();
        loadAll();
        return;
    }
    m_returnWatcher.reset();
    syncFolders(listing->folders);
    if (!areWatchersCurrent()) {
        rebuildWatchers();
    }

    assignNotes(sorted(merged(listing->notes)));
    if (!selectedItem()) {
        selectFirstVisibleNote();
    }
    preloadDocuments();
}

/// The notes of a listing: those that are known, with what is new of them, and new ones.
QList<NoteItemPtr> NotesStore::merged(const QList<NoteFileInfo>& listing) {
    struct File {
        NoteItemPtr note;
        bool isListed = false;
    };

    const NoteItemPtr selected = selectedItem();
    QHash<FilePath, File> files;
    files.reserve(m_notes.size());
    for (const NoteItemPtr& note : std::as_const(m_notes)) {
        // A file that was replaced while the notes were loaded can be there twice. The one in use stays.
        NoteItemPtr& known = files[note->url()].note;
        if (!known || note->isDirty() || (note == selected && !known->isDirty())) {
            known = note;
        }
    }
    QList<NoteItemPtr> notes;
    notes.reserve(listing.size());
    QList<NoteItemPtr> added;
    for (const NoteFileInfo& info : listing) {
        File& file = files[info.url];
        // Of a directory that changes meanwhile a name can be told twice.
        if (std::exchange(file.isListed, true)) {
            continue;
        }
        if (file.note) {
            reloadIfChangedOnDisk(*file.note, info);
        } else {
            file.note = std::make_shared<NoteItem>(info);
            added.append(file.note);
        }
        notes.append(file.note);
    }
    if (notes.size() - added.size() == m_notes.size()) {
        return notes;
    }
    // And a name can be missed, as that of a file that is replaced at that moment.
    QSet<QString> addedNames;
    for (const NoteItemPtr& note : std::as_const(added)) {
        addedNames.insert(withoutCase(note->url()));
    }
    for (const NoteItemPtr& note : std::as_const(m_notes)) {
        const File& file = files[note->url()];
        // One that has another name by now can answer to the old one as well.
        if (!file.isListed && file.note == note && !hasGone(*note) && !addedNames.contains(withoutCase(note->url()))) {
            if (const auto info = m_fileStore.info(note->url())) {
                reloadIfChangedOnDisk(*note, *info);
            }
            notes.append(note);
        }
    }
    return notes;
}

/// Whether a note that a listing doesn't tell of has no file any more. While that can't be asked, as in a folder that
/// may not be opened for a moment, it stays.
bool NotesStore::hasGone(const NoteItem& note) const {
    if (note.folder() && !m_folders.contains(*note.folder())) {
        // A link to a folder is none.
        return true;
    }
    const auto status = fileStatus(note.url());
    return status ? status->kind != FileKind::regular : status.error().code == ENOENT || status.error().code == ENOTDIR;
}

void NotesStore::syncFolders(const QStringList& names) {
    QStringList folders;
    QStringList added;
    std::ranges::copy_if(m_folders, std::back_inserter(folders),
                         [&names](const QString& folder) { return names.contains(folder); });
    std::ranges::copy_if(names, std::back_inserter(added),
                         [this](const QString& name) { return !m_folders.contains(name); });
    std::ranges::stable_sort(added,
                             [](const QString& a, const QString& b) { return localizedStandardCompare(a, b) < 0; });
    folders += added;
    folders.removeDuplicates();
    if (folders == m_folders) {
        return;
    }
    assign(m_folders, folders, &NotesStore::foldersChanged);
    assign(m_collapsedFolders, m_collapsedFolders & QSet<QString>(folders.cbegin(), folders.cend()),
           &NotesStore::collapsedFoldersChanged);
    rebuildWatchers();
    if (!added.isEmpty()) {
        // Of what came into a new folder after it was listed and before it was watched nobody tells.
        scheduleRefresh();
    }
}

void NotesStore::reloadIfChangedOnDisk(NoteItem& item, const NoteFileInfo& info) {
    item.setCreated(info.created);
    const bool isNewer = NoteItem::isLater(info.modified, item.knownModificationDate);
    if (item.isDirty() || (item.isSettled && !isNewer)) {
        return;
    }
    // Who copies a file with its date writes it first, and sets the date back when it is complete.
    const bool isSameDate = !isNewer && !NoteItem::isLater(item.knownModificationDate, info.modified);
    const bool mayHaveChanged = !isSameDate || isCoarse(info.modified);
    // A date of the future never settles: where one second has several changes, one more look must do.
    const bool isFuture = isSameDate && mayHaveChanged && info.modified > now();
    item.isSettled = isFuture || NoteItem::isSettledSince(info.modified);
    if (!mayHaveChanged) {
        return;
    }
    item.knownModificationDate = info.modified;
    item.setModified(info.modified);
    if (!item.document()) {
        return;
    }
    const auto text = m_fileStore.read(item.url(), info.size);
    if (!text || item.document()->equals(*text)) {
        return;
    }
    item.document()->replaceAll(*text);
    item.setSnippet(NoteSnippet::make(*text, NoteItem::snippetLength));
    item.setCharacterCount(item.document()->length());
    item.raiseRevision();
}

} // namespace quillary
