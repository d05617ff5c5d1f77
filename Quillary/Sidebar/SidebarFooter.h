#pragma once

#include "Quillary/State/NotesStore.h"

#include <QWidget>

class QLabel;

namespace quillary {

/// The line below the list: the notes directory, which a click opens in the file manager, the count of all notes, shown
/// or not, and the button for a new folder.
class SidebarFooter : public QWidget {
    Q_OBJECT

public:
    explicit SidebarFooter(NotesStore& store, QWidget* parent = nullptr);

private:
    void update();

    NotesStore& m_store;
    QLabel* m_name;
    QLabel* m_count;
};

} // namespace quillary
