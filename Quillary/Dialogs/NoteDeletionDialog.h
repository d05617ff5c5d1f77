#pragma once

#include "Quillary/State/NotesStore.h"

#include <QObject>

namespace quillary {

class ConfirmationDialog;

/// Asks before notes go to the Trash. On screen exactly while the store has notes that wait for that; made when it
/// first asks.
class NoteDeletionDialog : public QObject {
    Q_OBJECT

public:
    NoteDeletionDialog(NotesStore& store, QWidget* window);

private:
    QList<NoteItemPtr> notes() const;
    ConfirmationDialog* makeDialog();
    void update();
    void confirm();

    NotesStore& m_store;
    QWidget* m_window;
    ConfirmationDialog* m_dialog = nullptr;
};

} // namespace quillary
