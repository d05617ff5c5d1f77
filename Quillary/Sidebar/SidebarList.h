#pragma once

#include "Quillary/Sidebar/SidebarDragDrop.h"
#include "Quillary/Sidebar/SidebarLook.h"
#include "Quillary/Sidebar/SidebarModel.h"
#include "Quillary/Sidebar/SidebarRowPlaces.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QDrag;
class QMenu;

namespace quillary {

class InlineTextField;

/// The list of folders and notes. It holds no selection of its own: what is highlighted, and where the keyboard's
/// cursor stands, the store says, and every key, click and drop is one command of the store. Its rows have fixed
/// heights, so that what it costs is what is on screen.
class SidebarList : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit SidebarList(NotesStore& store, QWidget* parent = nullptr);
    ~SidebarList() override;

    SidebarModel& model() { return m_model; }

    const SidebarModel& model() const { return m_model; }

    /// Where a row lies, in the viewport's coordinates.
    QRect rowRect(int row) const;

    /// The row at a place of the viewport; -1 if there is none.
    int rowAt(const QPoint& place) const;

    /// The row of the keyboard's cursor, which is the selected folder's header or the selected note; -1 if there is
    /// none.
    int currentRow() const;

    /// Whether a row has the highlight of the selection.
    bool isHighlighted(int row) const;

    /// Scrolls as little as it takes to show a row whole.
    void scrollToRow(int row);

    /// What a click on a row does with these keys held.
    void click(int row, Qt::KeyboardModifiers modifiers);

    /// Opens the context menu of a row, which a heading has not.
    void openContextMenu(int row, const QPoint& globalPlace);

    /// The field in which a folder's name is being edited; null if none is.
    InlineTextField* renameField() const;

    /// The folder whose name the field edits.
    const QString& renamedFolder() const { return m_renamedFolder; }

    /// What a list without rows says: that there is nothing, and what to do about it.
    std::pair<QString, QString> emptyText() const;

    /// Carries a drag until it ends; tests put their own in its place.
    std::function<Qt::DropAction(QDrag& drag)> runDrag;

Q_SIGNALS:
    /// The cursor stands on another row.
    void currentRowChanged();
    /// The highlights have changed.
    void highlightChanged();

protected:
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    /// A row that stood in the viewport, and where.
    struct Anchor {
        SidebarRow::Key key;
        int y;
    };

    // SidebarList.cpp
    void follow();
    void layOut();
    void updateScrollBar();
    std::vector<Anchor> anchors() const;
    void rowsUpdated();
    void rowsChanged(const QModelIndex& first, const QModelIndex& last);
    void currentChanged();
    void scrollToCurrent();
    void showRenameField();
    void placeRenameField();
    void removeRenameField();

    // SidebarListPainting.cpp
    SidebarLook look() const;
    void paintRow(QPainter& painter, int row, const SidebarLook& look) const;
    bool isDraggingFolder() const;
    int rowBeforeEnd() const;
    void paintDropMark(QPainter& painter, const SidebarLook& look) const;
    void paintEmptyState(QPainter& painter, const SidebarLook& look) const;

    // SidebarListInput.cpp
    void setHoveredRow(int row);
    void updateRow(const std::optional<SidebarRow::Key>& key);
    bool showToolTip(const QPoint& place, const QPoint& globalPlace);
    void requestDeletion();

    // SidebarListDrag.cpp
    void startDrag(int row);
    QPixmap dragPicture(int row, qsizetype count) const;
    void updateDropTarget(const QPoint& place);
    void leaveDropTarget();
    std::unique_ptr<SidebarDropDelegate> makeDropDelegate(int row);
    void autoscroll();

    NotesStore& m_store;
    SidebarModel m_model;
    SidebarMetrics m_metrics;
    SidebarRowPlaces m_places;
    /// The rows in view before the rows change, kept until the places are computed anew.
    std::vector<Anchor> m_anchors;
    bool m_rowsChanged = false;
    bool m_scrollsToCurrent = true;
    bool m_wasSearching;
    bool m_queryChanged = false;

    std::optional<SidebarRow::Key> m_hovered;
    std::optional<SidebarRow::Key> m_pressed;
    QPoint m_pressPlace;
    QPointer<QMenu> m_menu;
    std::optional<SidebarRow::Key> m_menuRow;

    QPointer<InlineTextField> m_renameField;
    QString m_renamedFolder;
    /// The folder whose renaming the event that is being handled has ended.
    std::optional<SidebarRow::Key> m_justRenamed;

    std::unique_ptr<SidebarDropDelegate> m_dropDelegate;
    /// The row under the drag; none over the space after the last row.
    std::optional<SidebarRow::Key> m_dropRow;
    QPoint m_dropPlace;
    bool m_acceptsDrop = false;
    std::optional<InsertionEdge> m_insertion;
    bool m_isTargeted = false;
    QBasicTimer m_autoscroll;
};

} // namespace quillary
