#include "Quillary/State/AppActions.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Notes/Blanks.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>

namespace quillary {

namespace {

bool isFolderCursor(const SidebarCursor& cursor) {
    return std::holds_alternative<QString>(cursor);
}

/// Where a link from a note leads on disk.
FilePath resolved(const QString& path, const NoteItem& from) {
    return path.startsWith(u'/') ? FilePath::fromText(path) : from.url().parent().appending(path).standardized();
}

bool exists(const FilePath& path) {
    // The system would look for what stands before the first of them.
    return !path.bytes().contains('\0') && fileStatus(path);
}

} // namespace

QList<SidebarCursor> NotesStore::sidebarCursors() const {
    const Arrangement arrangement = this->arrangement();
    QList<SidebarCursor> cursors;
    cursors.reserve(m_notes.size() + arrangement.folders.size());
    const auto appendNotes = [&cursors](const QList<NoteItemPtr>& notes) {
        for (const NoteItemPtr& note : notes) {
            cursors.append(note->id());
        }
    };
    for (const SidebarSection& folder : arrangement.folders) {
        cursors.append(folder.kind.text);
        if (!m_collapsedFolders.contains(folder.kind.text)) {
            appendNotes(folder.items);
        }
    }
    appendNotes(arrangement.others);
    return cursors;
}

/// A selected folder outranks the selected note, which stays selected underneath.
std::optional<SidebarCursor> NotesStore::currentCursor() const {
    if (m_selectedFolder) {
        return *m_selectedFolder;
    }
    return m_selectedID ? std::optional<SidebarCursor>(*m_selectedID) : std::nullopt;
}

void NotesStore::moveCursor(const SidebarCursor& to) {
    if (const auto* const folder = std::get_if<QString>(&to)) {
        setSelectedFolder(*folder);
        return;
    }
    assignMultiSelection({}, false);
    const NoteID id = std::get<NoteID>(to);
    if (id == m_selectedID) {
        setSelectedFolder({});
    } else {
        setSelectedID(id);
    }
}

void NotesStore::sidebarMove(int step) {
    const QList<SidebarCursor> cursors = sidebarCursors();
    const auto current = currentCursor();
    const qsizetype index = current ? cursors.indexOf(*current) : -1;
    if (index < 0) {
        if (!cursors.isEmpty()) {
            moveCursor(cursors.first());
        }
        return;
    }
    const auto target = isFolderCursor(*current) ? cursorBesideHeader(cursors, index, step) : index + step;
    if (target >= 0 && target < cursors.size()) {
        moveCursor(cursors[target]);
    } else {
        AppActions::shared().beep();
    }
}

/// From one header to the next or the one before, past the notes in between; below the last header to the first note
/// outside all folders. -1 if there is none.
qsizetype NotesStore::cursorBesideHeader(const QList<SidebarCursor>& cursors, qsizetype header, int step) const {
    if (step <= 0) {
        const auto above = std::find_if(cursors.rend() - header, cursors.rend(), isFolderCursor);
        return cursors.rend() - above - 1;
    }
    const auto below = std::find_if(cursors.begin() + header + 1, cursors.end(), isFolderCursor);
    if (below != cursors.end()) {
        return below - cursors.begin();
    }
    for (const NoteItemPtr& note : m_notes) {
        if (const qsizetype index = note->folder() ? -1 : cursors.indexOf(SidebarCursor(note->id())); index >= 0) {
            return index;
        }
    }
    return -1;
}

void NotesStore::sidebarRight() {
    if (!m_selectedFolder) {
        return;
    }
    if (m_collapsedFolders.contains(*m_selectedFolder)) {
        toggleCollapsed(*m_selectedFolder);
    } else if (const QList<NoteItemPtr> inside = notes(*m_selectedFolder); !inside.isEmpty()) {
        moveCursor(inside.first()->id());
    } else {
        AppActions::shared().beep();
    }
}

void NotesStore::sidebarLeft() {
    if (m_selectedFolder) {
        if (m_collapsedFolders.contains(*m_selectedFolder)) {
            AppActions::shared().beep();
        } else {
            toggleCollapsed(*m_selectedFolder);
        }
    } else if (const NoteItemPtr note = selectedItem(); note && note->folder()) {
        moveCursor(*note->folder());
    } else {
        AppActions::shared().beep();
    }
}

void NotesStore::selectAdjacent(int step) {
    const QList<NoteItemPtr> visible = visibleNotes();
    if (visible.isEmpty()) {
        return;
    }
    const qsizetype count = visible.size();
    const qsizetype index = visible.indexOf(selectedItem());
    if (index >= 0) {
        setSelectedID(visible[((index + step) % count + count) % count]->id());
    } else {
        setSelectedID((step < 0 ? visible.last() : visible.first())->id());
    }
}

void NotesStore::selectVisible(qsizetype at) {
    const QList<NoteItemPtr> visible = visibleNotes();
    if (at >= 0 && at < visible.size()) {
        setSelectedID(visible[at]->id());
    }
}

void NotesStore::commitSearch() {
    const QString query = trimmedOfBlanks(m_searchQuery).toString();
    const QList<NoteItemPtr> visible = visibleNotes();
    if (visible.isEmpty() && !query.isEmpty()) {
        makeNoteBesideSelected(query);
        return;
    }
    if (visible.isEmpty()) {
        setSelectedID({});
    } else if (!visible.contains(selectedItem())) {
        setSelectedID(visible.first()->id());
    }
    setSearchQuery({});
    raiseEditorFocusToken();
}

void NotesStore::cancelSearch() {
    if (m_searchQuery.isEmpty()) {
        raiseEditorFocusToken();
    } else {
        setSearchQuery({});
    }
}

void NotesStore::reveal(NoteItem& item, bool previewing) {
    setSearchQuery({});
    if (item.folder() && m_collapsedFolders.contains(*item.folder())) {
        toggleCollapsed(*item.folder());
    }
    if (!m_multiSelection.isEmpty()) {
        clearMultiSelection();
    }
    if (previewing && supportsPreview(item.format())) {
        item.setShowsPreview(true);
    }
    setSelectedID(item.id());
}

NotesStore::LinkResult NotesStore::openLink(const QString& url, const NoteItem& from) {
    const MarkdownLinks::Target target = MarkdownLinks::target(url);
    if (std::holds_alternative<MarkdownLinks::Anchor>(target)) {
        return LinkResult::discarded;
    }
    if (std::holds_alternative<MarkdownLinks::External>(target)) {
        return LinkResult::systemAction;
    }
    const QString& path = std::get<MarkdownLinks::File>(target).path;
    if (const NoteItemPtr note = linkedNote(path, from)) {
        reveal(*note, from.showsPreview() && from.canPreview());
        return LinkResult::handled;
    }
    if (const FilePath file = resolved(path, from); exists(file)) {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->open(file);
        }
        return LinkResult::handled;
    }
    AppActions::shared().beep();
    return LinkResult::discarded;
}

/// The note that a link means: the one at its path, else one with its name in the same folder, else one anywhere.
NoteItemPtr NotesStore::linkedNote(const QString& path, const NoteItem& from) const {
    const FilePath file = resolved(path, from);
    const QString name = file.standardized().fileName();
    const auto firstThat = [this](const auto& fits) {
        const auto found = std::ranges::find_if(m_notes, [&fits](const NoteItemPtr& note) { return fits(*note); });
        return found == m_notes.end() ? nullptr : *found;
    };
    const auto isAtPath = [&file](const NoteItem& note) { return note.url().standardized() == file; };
    const auto isAtEquivalentPath = [text = file.text()](const NoteItem& note) {
        return canonicallyEqual(note.url().standardized().text(), text);
    };
    const auto isNamed = [&name](const NoteItem& note) {
        return canonicallyEqual(note.title(), name) || canonicallyEqual(note.fileName(), name);
    };
    const auto isNamedBesideIt = [&](const NoteItem& note) { return note.folder() == from.folder() && isNamed(note); };

    // The very spelling goes first, as two files may differ in nothing but how their names are composed.
    NoteItemPtr note = firstThat(isAtPath);
    if (!note) {
        note = firstThat(isAtEquivalentPath);
    }
    if (!note) {
        note = firstThat(isNamedBesideIt);
    }
    return note ? note : firstThat(isNamed);
}

} // namespace quillary
