#include "Quillary/Shell/MainWindow.h"

#include "Quillary/Detail/DetailView.h"
#include "Quillary/Shell/ErrorAlert.h"
#include "Quillary/Shell/QuillaryCommands.h"
#include "Quillary/Shell/WindowPlace.h"
#include "Quillary/Sidebar/SidebarView.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QSplitter>

namespace quillary {

using namespace Qt::StringLiterals;

MainWindow::MainWindow(NotesStore& store, AppSettings& settings, QWidget* parent)
    : QWidget(parent, Qt::Window), m_store(store), m_splitter(new QSplitter(Qt::Horizontal, this)) {
    constexpr QSize defaultSize(940, 620);
    constexpr int sidebarWidth = 270;
    resize(defaultSize);
    setMinimumSize(480, 320);

    auto* const commands = new QuillaryCommands(&store, &settings, this);
    auto* const sidebar = new SidebarView(store, commands->newNote(), m_splitter);
    sidebar->setMinimumWidth(180);
    auto* const detail = new DetailView(store, settings, m_splitter);
    detail->setMinimumWidth(240);
    m_splitter->setHandleWidth(1);
    m_splitter->setCollapsible(1, false);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({sidebarWidth, defaultSize.width() - sidebarWidth});

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setMenuBar(commands->menuBar());
    layout->addWidget(m_splitter);

    WindowPlace::restore(*this, *m_splitter);
    new ErrorAlert(store, this);

    connect(&store, &NotesStore::selectedIDChanged, this, &MainWindow::updateTitle);
    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        if (field == NoteField::url && note == m_store.selectedItem().get()) {
            updateTitle();
        }
    });
    connect(&store, &NotesStore::searchFocusTokenChanged, this, &MainWindow::showSidebar);
    updateTitle();
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
    show();
    raise();
    activateWindow();
}

void MainWindow::rememberPlace() const {
    WindowPlace::remember(*this, *m_splitter);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    rememberPlace();
    QWidget::closeEvent(event);
}

void MainWindow::updateTitle() {
    const NoteItemPtr note = m_store.selectedItem();
    setWindowTitle(note == nullptr ? u"Quillary"_s : FilePath::displayText(note->title()));
}

void MainWindow::toggleSidebar() {
    const QList<int> sizes = m_splitter->sizes();
    if (sizes.constFirst() == 0) {
        showSidebar();
    } else {
        m_splitter->setSizes({0, sizes.constFirst() + sizes.constLast()});
    }
}

void MainWindow::showSidebar() {
    const QList<int> sizes = m_splitter->sizes();
    if (sizes.constFirst() == 0) {
        const int width = m_splitter->widget(0)->minimumWidth();
        m_splitter->setSizes({width, sizes.constLast() - width});
    }
}

} // namespace quillary
