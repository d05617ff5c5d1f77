#include "Quillary/State/AppActions.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>
#include <utility>

namespace quillary {

/// The notes of a multiple selection that are still there.
QList<NoteItemPtr> NotesStore::multiSelectedItems() const {
    QList<NoteItemPtr> items;
    for (const NoteID id : m_multiSelection) {
        if (const NoteItemPtr note = item(id)) {
            items.append(note);
        }
    }
    return items;
}

QList<NoteItemPtr> NotesStore::actionTargets() const {
    if (m_multiSelection.size() >= 2) {
        return multiSelectedItems();
    }
    const NoteItemPtr selected = selectedItem();
    return selected ? QList{selected} : QList<NoteItemPtr>();
}

bool NotesStore::isHighlighted(const NoteItem& item) const {
    if (m_multiSelection.size() >= 2) {
        return m_multiSelection.contains(item.id());
    }
    return !m_selectedFolder && item.id() == m_selectedID;
}

void NotesStore::setMultiSelection(const QList<NoteID>& ids) {
    if (ids.size() < 2) {
        clearMultiSelection();
        if (!ids.isEmpty()) {
            setSelectedID(ids.first());
        }
        return;
    }
    assignMultiSelection(ids.size() == 2 ? chronological(ids) : ids, false);
    for (const NoteItemPtr& note : multiSelectedItems()) {
        ensureLoaded(*note);
    }
}

void NotesStore::toggleInSelection(const NoteItem& item) {
    QList<NoteID> ids;
    for (const NoteItemPtr& note : actionTargets()) {
        ids.append(note->id());
    }
    if (!ids.removeOne(item.id())) {
        ids.append(item.id());
    }
    setMultiSelection(ids);
}

void NotesStore::extendSelection(const NoteItem& to) {
    const QList<NoteItemPtr> visible = visibleNotes();
    const auto indexOf = [&visible](NoteID id) {
        return std::ranges::find(visible, id, [](const NoteItemPtr& note) { return note->id(); }) - visible.begin();
    };
    const qsizetype anchor = m_selectedID ? indexOf(*m_selectedID) : visible.size();
    const qsizetype target = indexOf(to.id());
    if (anchor == visible.size() || target == visible.size()) {
        toggleInSelection(to);
        return;
    }
    QList<NoteID> ids;
    for (qsizetype index = std::min(anchor, target); index <= std::max(anchor, target); ++index) {
        ids.append(visible[index]->id());
    }
    setMultiSelection(ids);
}

/// Two notes from the older to the newer; any other number of them as they come.
QList<NoteID> NotesStore::chronological(const QList<NoteID>& ids) const {
    QList<NoteItemPtr> items;
    for (const NoteID id : ids) {
        if (const NoteItemPtr note = item(id)) {
            items.append(note);
        }
    }
    if (items.size() != 2) {
        return ids;
    }
    const auto key = [](const NoteItemPtr& note) { return std::pair(note->created(), canonicalForm(note->title())); };
    if (key(items.last()) < key(items.first())) {
        items.swapItemsAt(0, 1);
    }
    return {items.first()->id(), items.last()->id()};
}

void NotesStore::compare(NoteItem& item, NoteItem& with) {
    if (&item == &with) {
        return;
    }
    ensureLoaded(item);
    ensureLoaded(with);
    assignMultiSelection(chronological({item.id(), with.id()}), true);
}

void NotesStore::swapComparison() {
    if (m_multiSelection.size() == 2) {
        assignMultiSelection({m_multiSelection.last(), m_multiSelection.first()}, m_isShowingDiff);
    }
}

void NotesStore::showDiff() {
    const QList<NoteItemPtr> items = multiSelectedItems();
    if (items.size() != 2) {
        AppActions::shared().beep();
        return;
    }
    ensureLoaded(*items.first());
    ensureLoaded(*items.last());
    assignMultiSelection({items.first()->id(), items.last()->id()}, true);
}

void NotesStore::clearMultiSelection() {
    assignMultiSelection({}, false);
    raiseEditorFocusToken();
}

/// Both at once, so that nobody sees the one without the other.
void NotesStore::assignMultiSelection(const QList<NoteID>& ids, bool isShowingDiff) {
    const bool selectionChanges = m_multiSelection != ids;
    const bool diffChanges = m_isShowingDiff != isShowingDiff;
    m_multiSelection = ids;
    m_isShowingDiff = isShowingDiff;
    if (selectionChanges) {
        Q_EMIT multiSelectionChanged();
    }
    if (diffChanges) {
        Q_EMIT isShowingDiffChanged();
    }
}

} // namespace quillary
