#include "Quillary/Sidebar/FolderMenuItems.h"
#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/NoteContextMenu.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Theme/ToolTip.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>

namespace quillary {

bool SidebarList::viewportEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::Leave:
        setHoveredRow(-1);
        break;
    case QEvent::ToolTip: {
        const auto& help = *static_cast<QHelpEvent*>(event);
        return showToolTip(help.pos(), help.globalPos());
    }
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void SidebarList::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    Q_EMIT currentRowChanged();
}

void SidebarList::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void SidebarList::keyPressEvent(QKeyEvent* event) {
    const bool isFromField = m_renameField && m_renameField->hasFocus();
    if (isFromField || (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        event->ignore();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Down:
        m_store.sidebarMove(+1);
        break;
    case Qt::Key_Up:
        m_store.sidebarMove(-1);
        break;
    case Qt::Key_Right:
        m_store.sidebarRight();
        break;
    case Qt::Key_Left:
        m_store.sidebarLeft();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_store.raiseEditorFocusToken();
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        requestDeletion();
        break;
    case Qt::Key_Home:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
        break;
    case Qt::Key_End:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
        break;
    case Qt::Key_PageUp:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        break;
    case Qt::Key_PageDown:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
        break;
    default:
        event->ignore();
    }
}

void SidebarList::requestDeletion() {
    if (m_store.selectedFolder()) {
        m_store.setPendingFolderDeletion(m_store.selectedFolder());
    } else {
        m_store.requestTrash();
    }
}

void SidebarList::click(int row, Qt::KeyboardModifiers modifiers) {
    const SidebarRow shown = m_model.row(row);
    if (shown.isFolder()) {
        if (m_store.renamingFolder() != shown.title()) {
            m_store.setSelectedFolder(shown.title());
            m_store.toggleCollapsed(shown.title());
            m_store.raiseSidebarFocusToken();
        }
        return;
    }
    if (!shown.isNote()) {
        return;
    }
    if (modifiers.testFlag(Qt::ControlModifier)) {
        m_store.toggleInSelection(*shown.note);
    } else if (modifiers.testFlag(Qt::ShiftModifier)) {
        m_store.extendSelection(*shown.note);
    } else {
        if (!m_store.multiSelection().isEmpty()) {
            m_store.clearMultiSelection();
        }
        m_store.setSelectedFolder(std::nullopt);
        m_store.setSelectedID(shown.note->id());
        m_store.raiseEditorFocusToken();
    }
}

void SidebarList::mousePressEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    m_pressed.reset();
    // A press beside the field has just taken the keyboard from it, and so ended the renaming: that was its effect.
    const bool endsRenaming = row >= 0 && m_justRenamed == m_model.row(row).key;
    if (event->button() == Qt::LeftButton && row >= 0 && !endsRenaming) {
        m_pressed = m_model.row(row).key;
        m_pressPlace = event->position().toPoint();
    }
}

void SidebarList::mouseMoveEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    setHoveredRow(rowAt(place));
    if (!m_pressed || !event->buttons().testFlag(Qt::LeftButton) ||
        (place - m_pressPlace).manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    const int row = m_model.rowOf(*m_pressed);
    m_pressed.reset();
    if (row >= 0 && m_model.row(row).kind() != SidebarRow::Kind::groupHeader) {
        startDrag(row);
    }
}

void SidebarList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    const std::optional<SidebarRow::Key> pressed = std::exchange(m_pressed, std::nullopt);
    if (event->button() == Qt::LeftButton && row >= 0 && pressed == m_model.row(row).key) {
        click(row, event->modifiers());
    }
}

void SidebarList::mouseDoubleClickEvent(QMouseEvent* event) {
    // Two clicks, and nothing more.
    mousePressEvent(event);
}

void SidebarList::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse) {
        openContextMenu(rowAt(event->pos()), event->globalPos());
        return;
    }
    const int row = currentRow();
    scrollToRow(row);
    openContextMenu(row, viewport()->mapToGlobal(rowRect(row).center()));
}

void SidebarList::openContextMenu(int row, const QPoint& globalPlace) {
    if (row < 0 || m_model.row(row).kind() == SidebarRow::Kind::groupHeader) {
        return;
    }
    delete m_menu;
    const SidebarRow& shown = m_model.row(row);
    if (shown.isNote()) {
        m_menu = new NoteContextMenu(m_store, shown.note, this);
    } else {
        m_menu = new QMenu(this);
        FolderMenuItems{m_store, shown.title()}.addTo(*m_menu);
    }
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    m_menu->setAccessibleName(SidebarModel::shownTitle(shown));
    m_menuRow = shown.key;
    connect(m_menu, &QMenu::aboutToHide, this, [this] {
        m_menuRow.reset();
        viewport()->update();
    });
    viewport()->update();
    m_menu->popup(globalPlace);
}

void SidebarList::setHoveredRow(int row) {
    const std::optional<SidebarRow::Key> hovered =
        row >= 0 ? std::optional(m_model.row(row).key) : std::optional<SidebarRow::Key>();
    if (hovered != m_hovered) {
        updateRow(std::exchange(m_hovered, hovered));
        updateRow(m_hovered);
    }
}

void SidebarList::updateRow(const std::optional<SidebarRow::Key>& key) {
    if (key) {
        viewport()->update(rowRect(m_model.rowOf(*key)));
    }
}

bool SidebarList::showToolTip(const QPoint& place, const QPoint& globalPlace) {
    const int row = rowAt(place);
    if (row < 0 || m_model.row(row).kind() == SidebarRow::Kind::groupHeader) {
        QToolTip::hideText();
        return true;
    }
    const QString text = m_model.index(row).data(Qt::ToolTipRole).toString();
    QToolTip::showText(globalPlace, plainToolTip(text), viewport(), rowRect(row));
    return true;
}

} // namespace quillary
