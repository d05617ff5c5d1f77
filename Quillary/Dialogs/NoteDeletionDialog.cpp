#include "Quillary/Dialogs/NoteDeletionDialog.h"

#include "Quillary/Dialogs/ConfirmationDialog.h"
#include "Quillary/Sidebar/ShownName.h"

namespace quillary {

NoteDeletionDialog::NoteDeletionDialog(NotesStore& store, QWidget* window)
    : QObject(window), m_store(store), m_window(window) {
    connect(&store, &NotesStore::pendingNoteDeletionChanged, this, &NoteDeletionDialog::update);
    connect(&store, &NotesStore::notesChanged, this, &NoteDeletionDialog::update);
    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        if (field == NoteField::url && m_store.pendingNoteDeletion().contains(note->id())) {
            update();
        }
    });
    update();
}

/// The notes that are still there.
QList<NoteItemPtr> NoteDeletionDialog::notes() const {
    QList<NoteItemPtr> notes;
    for (const NoteID id : m_store.pendingNoteDeletion()) {
        if (const NoteItemPtr note = m_store.item(id)) {
            notes.append(note);
        }
    }
    return notes;
}

ConfirmationDialog* NoteDeletionDialog::makeDialog() {
    auto* const dialog = new ConfirmationDialog(m_window);
    dialog->setAnswers({{.text = tr("Sposta nel Cestino"), .isDestructive = true}}, 0);
    connect(dialog, &ConfirmationDialog::answered, this, &NoteDeletionDialog::confirm);
    connect(dialog, &ConfirmationDialog::cancelled, this, [this] { m_store.setPendingNoteDeletion({}); });
    return dialog;
}

void NoteDeletionDialog::update() {
    if (m_store.pendingNoteDeletion().isEmpty()) {
        if (m_dialog != nullptr) {
            m_dialog->hide();
        }
        return;
    }
    if (m_dialog == nullptr) {
        m_dialog = makeDialog();
    }
    const QList<NoteItemPtr> waiting = notes();
    if (waiting.size() == 1) {
        m_dialog->setTexts(tr("Spostare «%1» nel Cestino?").arg(shownName(waiting.first()->title())),
                           tr("Potrai recuperarla dal Cestino del Finder."));
    } else {
        m_dialog->setTexts(tr("Spostare %1 note nel Cestino?").arg(waiting.size()),
                           tr("Potrai recuperarle dal Cestino del Finder."));
    }
    m_dialog->open();
}

void NoteDeletionDialog::confirm() {
    const QList<NoteItemPtr> confirmed = notes();
    m_store.setPendingNoteDeletion({});
    if (m_store.multiSelection().size() >= 2) {
        m_store.clearMultiSelection();
    }
    m_store.moveToTrash(confirmed);
}

} // namespace quillary
