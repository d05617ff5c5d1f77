#include "Quillary/Sidebar/SidebarList.h"

#include "Quillary/Sidebar/SidebarDelegate.h"
#include "Quillary/Theme/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace quillary {

SidebarList::SidebarList(NotesStore& store, QWidget* parent) : QListView(parent), m_store(store), m_model(store) {
    setModel(&m_model);
    setItemDelegate(new SidebarDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setAccessibleName(tr("Note"));
    viewport()->setAutoFillBackground(false);

    connect(&store, &NotesStore::selectedIDChanged, this, &SidebarList::showSelection);
    connect(&store, &NotesStore::selectedFolderChanged, this, &SidebarList::showSelection);
    connect(&m_model, &QAbstractItemModel::rowsInserted, this, &SidebarList::showSelection);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, &SidebarList::showSelection);
    connect(&store, &NotesStore::sidebarFocusTokenChanged, this, [this] { setFocus(Qt::OtherFocusReason); });
    showSelection();
}

void SidebarList::stepNote(int step) {
    int row = currentIndex().row();
    do {
        row += step;
        const QModelIndex index = m_model.index(row);
        if (!index.isValid()) {
            return;
        }
        if (m_model.row(index).kind == SidebarRow::Kind::note) {
            setCurrentIndex(index);
            return;
        }
    } while (true);
}

void SidebarList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    if (m_isShowing || !current.isValid()) {
        return;
    }
    const SidebarRow& row = m_model.row(current);
    switch (row.kind) {
    case SidebarRow::Kind::note:
        m_store.setSelectedFolder(std::nullopt);
        m_store.setSelectedID(row.note->id());
        break;
    case SidebarRow::Kind::folderHeader:
        m_store.setSelectedFolder(row.title);
        break;
    case SidebarRow::Kind::groupHeader:
        break;
    }
}

void SidebarList::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_store.raiseEditorFocusToken();
        return;
    case Qt::Key_Right:
        moveHorizontally(true);
        return;
    case Qt::Key_Left:
        moveHorizontally(false);
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void SidebarList::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid()) {
        return;
    }
    if (m_model.row(index).kind == SidebarRow::Kind::folderHeader) {
        m_store.toggleCollapsed(m_model.row(index).title);
        m_store.raiseSidebarFocusToken();
    }
}

void SidebarList::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid() && m_model.row(index).kind == SidebarRow::Kind::note) {
        m_store.raiseEditorFocusToken();
    }
}

void SidebarList::showSelection() {
    const QScopedValueRollback showing(m_isShowing, true);
    QModelIndex index;
    if (m_store.selectedFolder()) {
        index = m_model.indexOfFolder(*m_store.selectedFolder());
    } else if (m_store.selectedID()) {
        index = m_model.indexOfNote(*m_store.selectedID());
    }
    if (index.isValid()) {
        setCurrentIndex(index);
    } else {
        selectionModel()->clear();
    }
}

void SidebarList::moveHorizontally(bool right) {
    const QModelIndex current = currentIndex();
    if (!current.isValid()) {
        return;
    }
    const SidebarRow& row = m_model.row(current);
    if (row.kind == SidebarRow::Kind::folderHeader) {
        if (m_store.collapsedFolders().contains(row.title) == right) {
            m_store.toggleCollapsed(row.title);
        } else if (right) {
            stepNote(+1);
        }
    } else if (!right && row.note->folder()) {
        setCurrentIndex(m_model.indexOfFolder(*row.note->folder()));
    }
}

} // namespace quillary
