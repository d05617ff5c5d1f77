#pragma once

#include "Quillary/State/NotesStore.h"

#include <QWidget>

class QAction;

namespace quillary {

/// The left side of the main window: the search field with the button for a new note, the list, the footer.
class SidebarView : public QWidget {
    Q_OBJECT

public:
    /// `newNote` is the window's command, for the button above the list.
    SidebarView(NotesStore& store, QAction* newNote, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillary
