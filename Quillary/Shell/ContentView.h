#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QSplitter>

#include <functional>

class QAction;

namespace quillary {

class DetailView;
class FindController;
class SidebarView;
class SoloController;

/// What is in the main window: the sidebar beside the detail pane, and the dialogs that belong to the window.
class ContentView : public QSplitter {
    Q_OBJECT

public:
    /// Which of the two columns are on show.
    enum class ColumnVisibility { all, detailOnly };

    static constexpr int defaultSidebarWidth = 270;

    /// `openWindow` makes the main window anew; it becomes `AppActions::openMainWindow` when this is first displayed.
    /// `newNote` is the window's command, for the button above the list.
    ContentView(NotesStore& store, AppSettings& settings, FindController& find, SoloController& solo,
                std::function<void()> openWindow, QAction* newNote, QWidget* parent = nullptr);

    ColumnVisibility columnVisibility() const;

    /// The sidebar comes back as wide as it was.
    void setColumnVisibility(ColumnVisibility visibility);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    NotesStore& m_store;
    std::function<void()> m_openWindow;
    SidebarView* m_sidebar;
    DetailView* m_detail;
    /// How wide the sidebar was when it was last hidden.
    int m_sidebarWidth = defaultSidebarWidth;
};

} // namespace quillary
