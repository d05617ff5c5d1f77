#pragma once

#include "Quillary/State/NotesStore.h"

#include <QMessageBox>
#include <QObject>

namespace quillary {

/// The one place where failures of commands reach the user: a dialog that is on screen exactly while the store has an
/// error message. Dismissing it clears the message.
class ErrorAlert : public QObject {
    Q_OBJECT

public:
    ErrorAlert(NotesStore& store, QWidget* window);

private:
    void update();

    NotesStore& m_store;
    QMessageBox m_box;
};

} // namespace quillary
