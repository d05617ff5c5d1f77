#pragma once

#include "Quillary/State/NotesStore.h"

#include <QObject>

namespace quillary {

class ConfirmationDialog;

/// Asks before notes go to the Trash. On screen exactly while the store has notes that wait for that.
class NoteDeletionDialog : public QObject {
    Q_OBJECT

public:
    NoteDeletionDialog(NotesStore& store, QWidget* window);

private:
    QList<NoteItemPtr> notes() const;
    void update();
    void confirm();

    NotesStore& m_store;
    ConfirmationDialog* m_dialog;
};

} // namespace quillary
