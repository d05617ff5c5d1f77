#include "Quillary/State/NotesStore.h"

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"

#include <algorithm>
#include <chrono>

namespace quillary {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// The first window goes before: on few processors the reading of texts would compete with its drawing.
constexpr auto preloadHeadStart = 200ms;

} // namespace

NotesStore::NotesStore(AppSettings* settings, QObject* parent)
    : QObject(parent),
      m_settings(settings),
      m_fileStore(settings->notesDirectory()),
      m_refreshTask(250ms, [this] { refreshFromDisk(); }),
      m_preloadTask(preloadHeadStart, [this] { preloadDocuments(); }),
      m_preloadMoreTask(0ms, [this] { preloadMoreDocuments(); }),
      m_preloader([this](const TextPreloader::Text& text) { attachPreloaded(text); }) {
    connect(settings, &AppSettings::sortOrderChanged, this, &NotesStore::resort);
    loadAll();
}

NotesStore::~NotesStore() {
    for (const NoteItemPtr& note : std::as_const(m_notes)) {
        note->setObserver(nullptr);
    }
}

NoteItemPtr NotesStore::item(NoteID id) const {
    const auto found = std::ranges::find(m_notes, id, [](const NoteItemPtr& note) { return note->id(); });
    return found == m_notes.end() ? nullptr : *found;
}

bool NotesStore::contains(const NoteItem& item) const {
    return std::ranges::find(m_notes, &item, [](const NoteItemPtr& note) { return note.get(); }) != m_notes.end();
}

/// Those of some notes that are still among the notes: a menu may be older than a refresh.
QList<NoteItemPtr> NotesStore::present(QList<NoteItemPtr> items) const {
    const QSet<NoteItemPtr> present(m_notes.cbegin(), m_notes.cend());
    items.removeIf([&present](const NoteItemPtr& item) { return !present.contains(item); });
    return items;
}

NoteItemPtr NotesStore::selectedItem() const {
    return m_selectedID ? item(*m_selectedID) : nullptr;
}

void NotesStore::setSelectedID(std::optional<NoteID> id) {
    if (id == m_selectedID) {
        return;
    }
    const std::optional<NoteID> previous = std::exchange(m_selectedID, id);
    selectionDidChange(previous);
    Q_EMIT selectedIDChanged();
}

void NotesStore::setSelectedFolder(const std::optional<QString>& folder) {
    assign(m_selectedFolder, folder, &NotesStore::selectedFolderChanged);
}

void NotesStore::setRenamingFolder(const std::optional<QString>& folder) {
    assign(m_renamingFolder, folder, &NotesStore::renamingFolderChanged);
}

void NotesStore::setPendingFolderDeletion(const std::optional<QString>& folder) {
    assign(m_pendingFolderDeletion, folder, &NotesStore::pendingFolderDeletionChanged);
}

void NotesStore::setSearchQuery(const QString& query) {
    assign(m_searchQuery, query, &NotesStore::searchQueryChanged);
}

void NotesStore::setErrorMessage(const std::optional<QString>& message) {
    assign(m_errorMessage, message, &NotesStore::errorMessageChanged);
}

void NotesStore::setPendingNoteDeletion(const QList<NoteID>& ids) {
    assign(m_pendingNoteDeletion, ids, &NotesStore::pendingNoteDeletionChanged);
}

void NotesStore::raiseEditorFocusToken() {
    assign(m_editorFocusToken, m_editorFocusToken + 1, &NotesStore::editorFocusTokenChanged);
}

void NotesStore::raiseSearchFocusToken() {
    assign(m_searchFocusToken, m_searchFocusToken + 1, &NotesStore::searchFocusTokenChanged);
}

void NotesStore::raiseSidebarFocusToken() {
    assign(m_sidebarFocusToken, m_sidebarFocusToken + 1, &NotesStore::sidebarFocusTokenChanged);
}

void NotesStore::raiseTitleRenameToken() {
    assign(m_titleRenameToken, m_titleRenameToken + 1, &NotesStore::titleRenameTokenChanged);
}

void NotesStore::noteDidChange(NoteItem& item, NoteField field) {
    Q_EMIT noteChanged(&item, field);
}

/// Takes a new list of notes and tells of it if it differs. A multiple selection of which fewer than two notes are left
/// ends here: to nobody does it ever look like one of a single note.
void NotesStore::assignNotes(const QList<NoteItemPtr>& notes) {
    if (notes == m_notes) {
        return;
    }
    // Those that go may be held by others for a while; they have nothing to tell any more.
    const QList<NoteItemPtr> old = std::exchange(m_notes, notes);
    for (const NoteItemPtr& note : old) {
        note->setObserver(nullptr);
    }
    for (const NoteItemPtr& note : std::as_const(m_notes)) {
        note->setObserver(this);
    }
    const auto isHere = [this](NoteID id) { return item(id) != nullptr; };
    const auto first = std::ranges::find_if(m_multiSelection, isHere);
    if (first == m_multiSelection.end() || std::none_of(first + 1, m_multiSelection.end(), isHere)) {
        // Without a request for the focus: what another program removed doesn't take the user from where he writes.
        assignMultiSelection({}, false);
    }
    Q_EMIT notesChanged();
}

void NotesStore::fail(const QString& firstLine, const FileError& error) {
    setErrorMessage(firstLine % u".\n"_s % localizedDescription(error));
}

} // namespace quillary
