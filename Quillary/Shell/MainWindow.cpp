#include "Quillary/Shell/MainWindow.h"

#include "Quillary/Detail/DetailView.h"
#include "Quillary/Shell/ErrorAlert.h"
#include "Quillary/Shell/WindowPlace.h"
#include "Quillary/Sidebar/SidebarView.h"
#include "Quillary/Theme/Symbol.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
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

    auto* const sidebar = new SidebarView(store, addCommands(), m_splitter);
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

QAction* MainWindow::addCommand(const QString& text, const QKeySequence& keys, const std::function<void()>& run) {
    auto* const action = new QAction(text, this);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, run);
    addAction(action);
    return action;
}

QAction* MainWindow::addCommands() {
    addCommand(tr("Cerca note"), Qt::CTRL | Qt::Key_K, [this] { m_store.raiseSearchFocusToken(); });
    addCommand(tr("Salva"), Qt::CTRL | Qt::Key_S, [this] {
        if (const NoteItemPtr note = m_store.selectedItem()) {
            m_store.save(*note);
        }
    });
    addCommand(tr("Chiudi"), Qt::CTRL | Qt::Key_W, [this] { close(); });
    addCommand(tr("Esci da Quillary"), Qt::CTRL | Qt::Key_Q, [] { QCoreApplication::quit(); });

    QAction* const newNote = addCommand(tr("Nuova nota"), Qt::CTRL | Qt::Key_N, [this] {
        const NoteItemPtr selected = m_store.selectedItem();
        m_store.makeNote({}, {}, {}, false, selected == nullptr ? std::nullopt : selected->folder());
    });
    newNote->setIcon(symbolIcon(Symbol::newNote));
    newNote->setToolTip(tr("Nuova nota (⌘N)"));
    return newNote;
}

void MainWindow::updateTitle() {
    const NoteItemPtr note = m_store.selectedItem();
    setWindowTitle(note == nullptr ? u"Quillary"_s : FilePath::displayText(note->title()));
}

void MainWindow::showSidebar() {
    QList<int> sizes = m_splitter->sizes();
    if (sizes.constFirst() == 0) {
        const int width = m_splitter->widget(0)->minimumWidth();
        m_splitter->setSizes({width, sizes.constLast() - width});
    }
}

} // namespace quillary
