#include "Quillary/Sidebar/SidebarList.h"

#include "Quillary/Sidebar/FolderHeader.h"
#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/SidebarAccessibility.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QDrag>
#include <QEvent>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

/// Room below the last row, so that there is always a place to drop at the end.
constexpr int endSpace = 32;

} // namespace

SidebarList::SidebarList(NotesStore& store, QWidget* parent)
    : QAbstractScrollArea(parent),
      m_store(store),
      m_model(store),
      m_metrics(SidebarMetrics::measured()),
      m_wasSearching(m_model.isSearching()) {
    installSidebarAccessibility();
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Note"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    viewport()->setAcceptDrops(true);
    verticalScrollBar()->setSingleStep(m_metrics.noteHeight / 2);
    runDrag = [](QDrag& drag) { return drag.exec(Qt::MoveAction); };
    follow();
    layOut();
    showRenameField();
}

SidebarList::~SidebarList() {
    removeRenameField();
}

void SidebarList::follow() {
    const auto keepAnchors = [this] {
        if (!std::exchange(m_rowsChanged, true)) {
            m_anchors = anchors();
        }
    };
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeInserted, this, keepAnchors);
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeRemoved, this, keepAnchors);
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeMoved, this, keepAnchors);
    connect(&m_model, &QAbstractItemModel::dataChanged, this, &SidebarList::rowsChanged);
    connect(&m_model, &SidebarModel::updated, this, &SidebarList::rowsUpdated);

    connect(&m_store, &NotesStore::selectedIDChanged, this, [this] {
        m_scrollsToCurrent |= m_store.selectedID().has_value();
        currentChanged();
    });
    connect(&m_store, &NotesStore::selectedFolderChanged, this, [this] {
        m_scrollsToCurrent |= m_store.selectedFolder().has_value();
        currentChanged();
    });
    connect(&m_store, &NotesStore::multiSelectionChanged, this, [this] {
        viewport()->update();
        Q_EMIT highlightChanged();
    });
    connect(&m_store, &NotesStore::searchQueryChanged, this, [this] { m_queryChanged = true; });
    connect(&m_store, &NotesStore::renamingFolderChanged, this, &SidebarList::showRenameField);
    connect(&m_store, &NotesStore::sidebarFocusTokenChanged, this, [this] { setFocus(Qt::OtherFocusReason); });
}

QRect SidebarList::rowRect(int row) const {
    if (row < 0 || row >= m_places.count()) {
        return {};
    }
    return {0, m_places.top(row) - verticalScrollBar()->value(), viewport()->width(), m_places.height(row)};
}

int SidebarList::rowAt(const QPoint& place) const {
    const int row = m_places.rowAt(place.y() + verticalScrollBar()->value());
    return row < m_places.count() ? row : -1;
}

int SidebarList::currentRow() const {
    if (m_store.selectedFolder()) {
        return m_model.rowOf(SidebarRow::Key::folder(*m_store.selectedFolder()));
    }
    return m_store.selectedID() ? m_model.rowOfNote(*m_store.selectedID()) : -1;
}

bool SidebarList::isHighlighted(int row) const {
    const SidebarRow& shown = m_model.row(row);
    return shown.isNote() ? m_store.isHighlighted(*shown.note)
                          : shown.isFolder() && m_store.selectedFolder() == shown.title();
}

void SidebarList::scrollToRow(int row) {
    if (row < 0 || row >= m_places.count()) {
        return;
    }
    // The first note under a heading shows the heading too.
    const bool isHeaded = row > 0 && m_model.row(row - 1).kind() == SidebarRow::Kind::groupHeader;
    const int top = m_places.top(isHeaded ? row - 1 : row);
    const int lowest = m_places.bottom(row) - viewport()->height();
    QScrollBar& bar = *verticalScrollBar();
    if (bar.value() > top) {
        bar.setValue(top);
    } else if (bar.value() < lowest) {
        bar.setValue(lowest);
    }
}

InlineTextField* SidebarList::renameField() const {
    return m_renameField;
}

void SidebarList::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        m_anchors = anchors();
        m_rowsChanged = true;
        m_metrics = SidebarMetrics::measured();
        rowsUpdated();
    }
}

void SidebarList::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    scrollToCurrent();
}

void SidebarList::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBar();
    placeRenameField();
}

void SidebarList::scrollContentsBy(int, int dy) {
    viewport()->scroll(0, dy);
    placeRenameField();
    if (m_dropDelegate) {
        viewport()->update();
    }
    setHoveredRow(viewport()->underMouse() ? rowAt(viewport()->mapFromGlobal(QCursor::pos())) : -1);
}

void SidebarList::layOut() {
    m_places.assign(m_model.rows(), [this](const SidebarRow& row) { return m_metrics.height(row.kind()); });
    updateScrollBar();
    placeRenameField();
    viewport()->update();
}

void SidebarList::updateScrollBar() {
    const int page = viewport()->height();
    verticalScrollBar()->setPageStep(page);
    verticalScrollBar()->setRange(0, std::max(0, m_places.total() + endSpace - page));
}

std::vector<SidebarList::Anchor> SidebarList::anchors() const {
    std::vector<Anchor> anchors;
    for (int row = std::max(0, rowAt({0, 0})); row < m_places.count(); ++row) {
        const QRect rect = rowRect(row);
        if (rect.top() >= viewport()->height()) {
            break;
        }
        anchors.push_back({m_model.row(row).key, rect.top()});
    }
    return anchors;
}

/// Lays the rows out anew, and leaves in its place what is on screen. At the very top, what comes on top is shown.
void SidebarList::rowsUpdated() {
    const std::vector<Anchor> anchors = std::exchange(m_anchors, {});
    const bool wasAtTop = verticalScrollBar()->value() == 0;
    const bool isSearching = m_model.isSearching();
    const bool modeChanged = std::exchange(m_wasSearching, isSearching) != isSearching;
    if (std::exchange(m_rowsChanged, false)) {
        layOut();
    } else if (m_queryChanged && m_places.count() == 0) {
        // What an empty list says names the query.
        viewport()->update();
    }
    if (isSearching && (modeChanged || m_queryChanged)) {
        verticalScrollBar()->setValue(0);
    } else if (modeChanged) {
        m_scrollsToCurrent = true;
    } else if (!wasAtTop) {
        const auto kept =
            std::ranges::find_if(anchors, [this](const Anchor& anchor) { return m_model.rowOf(anchor.key) >= 0; });
        if (kept != anchors.end()) {
            verticalScrollBar()->setValue(m_places.top(m_model.rowOf(kept->key)) - kept->y);
        }
    }
    m_queryChanged = false;
    showRenameField();
    scrollToCurrent();
    if (m_dropDelegate) {
        updateDropTarget(m_dropPlace);
    }
}

void SidebarList::rowsChanged(const QModelIndex& first, const QModelIndex& last) {
    const QRect changed = rowRect(first.row()).united(rowRect(last.row()));
    if (changed.intersects(viewport()->rect())) {
        viewport()->update(changed);
    }
}

void SidebarList::currentChanged() {
    viewport()->update();
    scrollToCurrent();
    Q_EMIT currentRowChanged();
    Q_EMIT highlightChanged();
}

/// Shows the cursor's row if it was asked for, as soon as the rows are up to date and the list has its size.
void SidebarList::scrollToCurrent() {
    if (m_scrollsToCurrent && !m_model.isPending() && isVisible()) {
        m_scrollsToCurrent = false;
        scrollToRow(currentRow());
    }
}

/// Shows the field for the name of the folder that is being renamed, as soon as that folder has a row.
void SidebarList::showRenameField() {
    const std::optional<QString>& folder = m_store.renamingFolder();
    const int row = folder ? m_model.rowOf(SidebarRow::Key::folder(*folder)) : -1;
    if (row < 0 || m_renamedFolder != *folder) {
        removeRenameField();
    }
    if (row < 0 || m_renameField || m_model.isPending()) {
        return;
    }
    m_renamedFolder = *folder;
    m_renameField = new InlineTextField(FilePath::displayText(*folder), m_metrics.title, viewport());
    m_renameField->setAccessibleName(tr("Nome della cartella"));
    m_renameField->setFocusPolicy(Qt::StrongFocus);
    connect(m_renameField, &InlineTextField::committed, this, [this, renamed = *folder](const QString& name) {
        m_justRenamed = SidebarRow::Key::folder(renamed);
        QTimer::singleShot(0, this, [this] { m_justRenamed.reset(); });
        m_store.renameFolder(renamed, name);
    });
    connect(m_renameField, &InlineTextField::cancelled, this, [this] { m_store.setRenamingFolder(std::nullopt); });
    scrollToRow(row);
    placeRenameField();
    m_renameField->show();
    viewport()->update();
}

void SidebarList::placeRenameField() {
    if (m_renameField) {
        const int row = m_model.rowOf(SidebarRow::Key::folder(m_renamedFolder));
        m_renameField->setGeometry(FolderHeader::nameRect(rowRect(row), look()));
    }
}

void SidebarList::removeRenameField() {
    if (!m_renameField) {
        return;
    }
    const bool hadFocus = m_renameField->hasFocus();
    // Its end is no commit.
    m_renameField->disconnect(this);
    m_renameField->hide();
    m_renameField->deleteLater();
    m_renameField = nullptr;
    m_renamedFolder.clear();
    if (hadFocus) {
        setFocus(Qt::OtherFocusReason);
    }
    viewport()->update();
}

} // namespace quillary
