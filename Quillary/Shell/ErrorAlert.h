#pragma once

#include "Quillary/State/NotesStore.h"

#include <QObject>

class QMessageBox;

namespace quillary {

/// The one place where failures of commands reach the user: a dialog that is on screen exactly while the store has an
/// error message. Dismissing it clears the message.
/// It is made with the first message, since most runs have none.
class ErrorAlert : public QObject {
    Q_OBJECT

public:
    ErrorAlert(NotesStore& store, QWidget* window);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    QMessageBox* makeBox();
    void update();

    NotesStore& m_store;
    QWidget* m_window;
    QMessageBox* m_box = nullptr;
};

} // namespace quillary
