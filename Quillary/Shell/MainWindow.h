#pragma once

#include "Quillary/Find/FindController.h"
#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QWidget>

#include <functional>

namespace quillary {

class ContentView;
class SoloController;

/// The one window: the sidebar beside the detail pane. Closing it hides it; the application goes on.
class MainWindow : public QWidget, public AppWindow {
    Q_OBJECT

public:
    /// `openWindow` makes the window anew, for whoever finds it closed.
    MainWindow(NotesStore& store, AppSettings& settings, FindController& find, KeyboardController& keyboard,
               SoloController& solo, std::function<void()> openWindow = {}, QWidget* parent = nullptr);

    bool isVisibleOnScreen() const override;
    bool isMiniaturized() const override;
    bool isKeyWindow() const override;
    void deminiaturize() override;
    void makeKeyAndOrderFront() override;

    /// Hides the sidebar, or shows it again.
    void toggleSidebar();

    /// Keeps where the window stands for the next start.
    void rememberPlace() const;

Q_SIGNALS:
    /// The user asked for the window of the settings.
    void settingsRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    ContentView* m_content;
};

} // namespace quillary
