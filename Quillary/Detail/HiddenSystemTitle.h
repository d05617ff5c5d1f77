#pragma once

#include "Quillary/State/NotesStore.h"

#include <QObject>

class QWidget;

namespace quillary {

/// Gives the window its title for the desktop: that of the selected note, or "Quillary". The window itself shows it in
/// `EditableTitle` only.
class HiddenSystemTitle : public QObject {
    Q_OBJECT

public:
    /// The title is given to `window`, which owns this.
    HiddenSystemTitle(NotesStore& store, QWidget* window);

private:
    void update();

    NotesStore& m_store;
    QWidget* m_window;
};

} // namespace quillary
