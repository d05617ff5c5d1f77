#include "Quillary/Detail/HiddenSystemTitle.h"

#include "Quillary/Sidebar/ShownName.h"

#include <QWidget>

namespace quillary {

using namespace Qt::StringLiterals;

HiddenSystemTitle::HiddenSystemTitle(NotesStore& store, QWidget* window)
    : QObject(window), m_store(store), m_window(window) {
    connect(&store, &NotesStore::selectedIDChanged, this, &HiddenSystemTitle::update);
    connect(&store, &NotesStore::notesChanged, this, &HiddenSystemTitle::update);
    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        if (field == NoteField::url && note == m_store.selectedItem().get()) {
            update();
        }
    });
    update();
}

void HiddenSystemTitle::update() {
    const NoteItemPtr note = m_store.selectedItem();
    QString title = note == nullptr ? u"Quillary"_s : shownName(note->title());
    // These signs are Qt's mark for a modified document; twice they stand for themselves.
    title.replace(u"[*]"_s, u"[*][*]"_s);
    m_window->setWindowTitle(title);
}

} // namespace quillary
