#pragma once

#include "Quillary/State/NotesStore.h"

#include <QObject>

namespace quillary {

class ConfirmationDialog;

/// Asks what becomes of the notes in a folder before it goes to the Trash. On screen exactly while the store has a
/// folder that waits for that; made when it first asks, and what it offers is decided each time that it comes up.
class FolderDeletionDialog : public QObject {
    Q_OBJECT

public:
    FolderDeletionDialog(NotesStore& store, QWidget* window);

private:
    ConfirmationDialog* makeDialog();
    void update();
    void remove(bool keepingNotes);

    NotesStore& m_store;
    QWidget* m_window;
    ConfirmationDialog* m_dialog = nullptr;
    bool m_offersToKeep = false;
};

} // namespace quillary
