#include "Quillary/Shell/ContentView.h"

#include "Quillary/Detail/DetailView.h"
#include "Quillary/Detail/HiddenSystemTitle.h"
#include "Quillary/Dialogs/FolderDeletionDialog.h"
#include "Quillary/Dialogs/NoteDeletionDialog.h"
#include "Quillary/SendPanel/SoloPanelPresenter.h"
#include "Quillary/Shell/ErrorAlert.h"
#include "Quillary/Sidebar/SidebarView.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/Theme.h"

#include <QKeyEvent>

#include <utility>

namespace quillary {

namespace {

constexpr int narrowestSidebar = 180;
constexpr int narrowestDetail = 300;

} // namespace

ContentView::ContentView(NotesStore& store, AppSettings& settings, FindController& find, SoloController& solo,
                         std::function<void()> openWindow, QAction* newNote, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      m_store(store),
      m_openWindow(std::move(openWindow)),
      m_sidebar(new SidebarView(store, newNote, this)),
      m_detail(new DetailView(store, settings, find, solo, this)) {
    const double scale = Theme::textScale();
    m_sidebar->setMinimumWidth(qRound(narrowestSidebar * scale));
    m_detail->setMinimumWidth(qRound(narrowestDetail * scale));
    setHandleWidth(1);
    setCollapsible(1, false);
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);

    new HiddenSystemTitle(store, window());
    new ErrorAlert(store, window());
    new NoteDeletionDialog(store, window());
    new FolderDeletionDialog(store, window());
    new SoloPanelPresenter(store, settings, solo, window());
    // What takes the keyboard in the sidebar has to be seen.
    connect(&store, &NotesStore::searchFocusTokenChanged, this, [this] { setColumnVisibility(ColumnVisibility::all); });
    connect(&store, &NotesStore::renamingFolderChanged, this, [this] {
        if (m_store.renamingFolder()) {
            setColumnVisibility(ColumnVisibility::all);
        }
    });
}

ContentView::ColumnVisibility ContentView::columnVisibility() const {
    return sizes().constFirst() == 0 ? ColumnVisibility::detailOnly : ColumnVisibility::all;
}

void ContentView::setColumnVisibility(ColumnVisibility visibility) {
    if (visibility == columnVisibility()) {
        return;
    }
    const QList<int> widths = sizes();
    if (visibility == ColumnVisibility::detailOnly) {
        m_sidebarWidth = widths.constFirst();
        // Nobody types into what can't be seen.
        if (m_sidebar->isAncestorOf(window()->focusWidget())) {
            m_store.raiseEditorFocusToken();
        }
    }
    const int sidebar = visibility == ColumnVisibility::all ? m_sidebarWidth : 0;
    setSizes({sidebar, widths.constFirst() + widths.constLast() - sidebar});
}

void ContentView::showEvent(QShowEvent* event) {
    QSplitter::showEvent(event);
    if (!event->spontaneous()) {
        AppActions::shared().openMainWindow = m_openWindow;
        m_store.raiseEditorFocusToken();
    }
}

/// A key that nobody in the window had a use for: it may be for the default or the cancel button of the panel on show.
void ContentView::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() != Qt::NoModifier || !m_detail->performKey(event->key())) {
        QSplitter::keyPressEvent(event);
    }
}

} // namespace quillary
