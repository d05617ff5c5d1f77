#pragma once

#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QKeySequence>
#include <QWidget>

#include <functional>

class QAction;
class QSplitter;

namespace quillary {

/// The one window: the sidebar beside the detail pane. Closing it hides it; the application goes on.
class MainWindow : public QWidget, public AppWindow {
    Q_OBJECT

public:
    MainWindow(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);

    bool isVisibleOnScreen() const override;
    bool isMiniaturized() const override;
    bool isKeyWindow() const override;
    void deminiaturize() override;
    void makeKeyAndOrderFront() override;

    /// Keeps where the window stands for the next start.
    void rememberPlace() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QAction* addCommand(const QString& text, const QKeySequence& keys, const std::function<void()>& run);
    QAction* addCommands();
    void updateTitle();
    void showSidebar();

    NotesStore& m_store;
    QSplitter* m_splitter;
};

} // namespace quillary
