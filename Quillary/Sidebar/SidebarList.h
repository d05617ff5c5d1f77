#pragma once

#include "Quillary/Sidebar/SidebarModel.h"

#include <QListView>

namespace quillary {

/// The list of folders and notes. What is current in it is what the store has selected, both ways.
class SidebarList : public QListView {
    Q_OBJECT

public:
    explicit SidebarList(NotesStore& store, QWidget* parent = nullptr);

    /// Selects the note `step` visible notes further on, or stays at the ends.
    void stepNote(int step);

    SidebarModel& sidebarModel() { return m_model; }

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void showSelection();
    void moveHorizontally(bool right);

    NotesStore& m_store;
    SidebarModel m_model;
    bool m_isShowing = false;
};

} // namespace quillary
