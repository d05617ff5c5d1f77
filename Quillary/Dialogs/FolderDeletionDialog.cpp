#include "Quillary/Dialogs/FolderDeletionDialog.h"

#include "Quillary/Dialogs/ConfirmationDialog.h"
#include "Quillary/Sidebar/ShownName.h"

namespace quillary {

namespace {

constexpr int cancelIsDefault = -1;

} // namespace

FolderDeletionDialog::FolderDeletionDialog(NotesStore& store, QWidget* window)
    : QObject(window), m_store(store), m_window(window) {
    connect(&store, &NotesStore::pendingFolderDeletionChanged, this, &FolderDeletionDialog::update);
    update();
}

ConfirmationDialog* FolderDeletionDialog::makeDialog() {
    auto* const dialog = new ConfirmationDialog(m_window);
    connect(dialog, &ConfirmationDialog::answered, this, [this](int answer) { remove(m_offersToKeep && answer == 0); });
    connect(dialog, &ConfirmationDialog::cancelled, this, [this] { m_store.setPendingFolderDeletion(std::nullopt); });
    return dialog;
}

void FolderDeletionDialog::update() {
    const std::optional<QString> folder = m_store.pendingFolderDeletion();
    if (!folder) {
        if (m_dialog != nullptr) {
            m_dialog->hide();
        }
        return;
    }
    if (m_dialog == nullptr) {
        m_dialog = makeDialog();
    }
    const qsizetype count = m_store.notes(folder).size();
    m_offersToKeep = count > 0;
    const QString message = count == 0 ? tr("La cartella è vuota.")
                            : count == 1
                                ? tr("Contiene 1 nota. Puoi tenerla spostandola fuori dalla cartella.")
                                : tr("Contiene %1 note. Puoi tenerle spostandole fuori dalla cartella.").arg(count);
    m_dialog->setTexts(tr("Eliminare la cartella «%1»?").arg(shownName(*folder)), message);
    if (m_offersToKeep) {
        m_dialog->setAnswers({{.text = tr("Elimina la cartella, tieni le note")},
                              {.text = tr("Sposta tutto nel Cestino"), .isDestructive = true}},
                             cancelIsDefault);
    } else {
        m_dialog->setAnswers({{.text = tr("Sposta nel Cestino"), .isDestructive = true}}, cancelIsDefault);
    }
    m_dialog->open();
}

void FolderDeletionDialog::remove(bool keepingNotes) {
    if (const std::optional<QString> folder = m_store.pendingFolderDeletion()) {
        m_store.deleteFolder(*folder, keepingNotes);
    }
}

} // namespace quillary
