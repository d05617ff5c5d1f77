#include "Quillary/Detail/DetailView.h"

#include "Quillary/Detail/PlaceholderView.h"
#include "Quillary/Editor/EditorView.h"

namespace quillary {

using namespace Qt::StringLiterals;

DetailView::DetailView(NotesStore& store, AppSettings& settings, QWidget* parent)
    : QStackedWidget(parent),
      m_store(store),
      m_placeholder(new PlaceholderView(this)),
      m_editor(new EditorView(&store, &settings, this)) {
    addWidget(m_placeholder);
    addWidget(m_editor);
    connect(&store, &NotesStore::selectedIDChanged, this, &DetailView::update);
    connect(&store, &NotesStore::notesChanged, this, &DetailView::update);
    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        const bool decides = field == NoteField::document || field == NoteField::loadError;
        if (decides && note == m_store.selectedItem().get()) {
            update();
        }
    });
    update();
}

void DetailView::update() {
    const NoteItemPtr note = m_store.selectedItem();
    if (note != nullptr && note->document() != nullptr) {
        setCurrentWidget(m_editor);
        return;
    }
    if (note != nullptr && note->loadError()) {
        m_placeholder->setTexts(tr("Impossibile aprire la nota"), *note->loadError(), {});
    } else {
        m_placeholder->setTexts(m_store.notes().isEmpty() ? tr("Nessuna nota") : tr("Nessuna nota selezionata"), {},
                                {tr("⌘N  nuova nota"), tr("⇧⌘N  dagli appunti")});
    }
    setCurrentWidget(m_placeholder);
}

} // namespace quillary
