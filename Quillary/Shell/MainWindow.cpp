#include "Quillary/Shell/MainWindow.h"

#include "Quillary/Shell/ContentView.h"
#include "Quillary/Shell/QuillaryCommands.h"
#include "Quillary/Shell/WindowAccessibility.h"
#include "Quillary/Shell/WindowPlace.h"
#include "Quillary/Theme/Theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QWindow>

#include <utility>

namespace quillary {

MainWindow::MainWindow(NotesStore& store, AppSettings& settings, FindController& find, KeyboardController& keyboard,
                       SoloController& solo, std::function<void()> openWindow, QWidget* parent)
    : QWidget(parent, Qt::Window) {
    installWindowAccessibility();
    // It is never larger than the screen, and with large texts no smaller than they need.
    constexpr QSize defaultSize(940, 620);
    constexpr QSize smallestSize(480, 320);
    const QSize room = screen()->availableSize();
    resize(defaultSize.boundedTo(room));
    setMinimumSize((smallestSize * Theme::textScale()).boundedTo(room));

    auto* const commands = new QuillaryCommands(&store, &settings, &find, &keyboard, &solo, this);
    connect(commands, &QuillaryCommands::settingsRequested, this, &MainWindow::settingsRequested);
    m_content = new ContentView(store, settings, find, solo, std::move(openWindow), commands->newNote(), this);
    m_content->setSizes({ContentView::defaultSidebarWidth, width() - ContentView::defaultSidebarWidth});

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setMenuBar(commands->menuBar());
    layout->addWidget(m_content);

    WindowPlace::restore(*this, *m_content);
}

bool MainWindow::isVisibleOnScreen() const {
    return isVisible() && !isMinimized();
}

bool MainWindow::isMiniaturized() const {
    return isVisible() && isMinimized();
}

bool MainWindow::isKeyWindow() const {
    return isActiveWindow();
}

void MainWindow::deminiaturize() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
}

void MainWindow::makeKeyAndOrderFront() {
    if (QWindow* const hidden = isVisible() ? nullptr : windowHandle()) {
        // A place that was asked for is kept; else the window manager looks for one each time.
        hidden->setGeometry(hidden->geometry());
    }
    show();
    if (!isActiveWindow() && QGuiApplication::focusWindow() == windowHandle()) {
        // Hidden a moment ago: the loss of the keyboard has not been told yet and, as it comes back, never will be.
        QApplication::setActiveWindow(this);
    }
    raise();
    activateWindow();
}

void MainWindow::rememberPlace() const {
    WindowPlace::remember(*this, *m_content);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberPlace();
    QWidget::closeEvent(event);
}

void MainWindow::toggleSidebar() {
    using enum ContentView::ColumnVisibility;
    m_content->setColumnVisibility(m_content->columnVisibility() == all ? detailOnly : all);
}

} // namespace quillary
