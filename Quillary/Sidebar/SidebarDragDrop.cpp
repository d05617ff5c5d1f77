#include "Quillary/Sidebar/SidebarDragDrop.h"

#include <algorithm>
#include <utility>

namespace quillary {

SidebarMimeData::SidebarMimeData() {
    setData(type, {});
}

bool SidebarMimeData::isIn(const QMimeData* data) {
    return qobject_cast<const SidebarMimeData*>(data) != nullptr;
}

QList<NoteItemPtr> SidebarDropDelegate::draggedNotes() const {
    QList<NoteItemPtr> notes;
    if (!m_store.dragItem()) {
        return notes;
    }
    if (const auto* const ids = std::get_if<QList<NoteID>>(&*m_store.dragItem())) {
        for (const NoteID id : *ids) {
            if (const NoteItemPtr note = m_store.item(id)) {
                notes.append(note);
            }
        }
    }
    return notes;
}

std::optional<QString> SidebarDropDelegate::draggedFolder() const {
    const auto* const folder = m_store.dragItem() ? std::get_if<QString>(&*m_store.dragItem()) : nullptr;
    return folder ? std::optional(*folder) : std::nullopt;
}

bool NoteRowDropDelegate::validateDrop() const {
    const QList<NoteItemPtr> notes = draggedNotes();
    return !notes.isEmpty() && !notes.contains(m_target);
}

void NoteRowDropDelegate::dropUpdated(double y) {
    m_insertion = y >= m_height / 2 ? InsertionEdge::below : InsertionEdge::above;
}

void NoteRowDropDelegate::dropExited() {
    m_insertion.reset();
}

bool NoteRowDropDelegate::performDrop() {
    const std::optional<InsertionEdge> edge = std::exchange(m_insertion, std::nullopt);
    const QList<NoteItemPtr> notes = draggedNotes();
    if (notes.isEmpty()) {
        return false;
    }
    store().place(notes, m_target->folder(), edge == InsertionEdge::above ? m_target : store().note(*m_target, notes));
    return true;
}

bool FolderDropDelegate::validateDrop() const {
    if (const std::optional<QString> folder = draggedFolder()) {
        return *folder != m_folder;
    }
    return !draggedNotes().isEmpty();
}

void FolderDropDelegate::dropEntered() {
    m_isTargeted = true;
}

void FolderDropDelegate::dropUpdated(double) {
    m_isTargeted = true;
}

void FolderDropDelegate::dropExited() {
    m_isTargeted = false;
}

bool FolderDropDelegate::performDrop() {
    m_isTargeted = false;
    if (const std::optional<QString> folder = draggedFolder()) {
        store().moveFolder(*folder, m_folder);
    } else {
        store().move(draggedNotes(), m_folder);
    }
    return true;
}

bool TopLevelDropDelegate::validateDrop() const {
    return std::ranges::any_of(draggedNotes(), [](const NoteItemPtr& note) { return note->folder().has_value(); });
}

void TopLevelDropDelegate::dropEntered() {
    m_isTargeted = true;
}

void TopLevelDropDelegate::dropUpdated(double) {
    m_isTargeted = true;
}

void TopLevelDropDelegate::dropExited() {
    m_isTargeted = false;
}

bool TopLevelDropDelegate::performDrop() {
    m_isTargeted = false;
    store().move(draggedNotes(), std::nullopt);
    return true;
}

bool EndDropDelegate::validateDrop() const {
    return store().dragItem().has_value();
}

bool EndDropDelegate::performDrop() {
    if (const std::optional<QString> folder = draggedFolder()) {
        store().moveFolder(*folder, std::nullopt);
    } else {
        store().place(draggedNotes(), std::nullopt, nullptr);
    }
    return true;
}

} // namespace quillary
