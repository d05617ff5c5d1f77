#include "Quillary/Previews/JSONRowsView.h"

#include "Quillary/Previews/JSONRowView.h"
#include "Quillary/Previews/JSONRowsModel.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

constexpr int verticalPadding = 12;
/// What even the deepest row has for its label and value.
constexpr int leastContentWidth = 240;

} // namespace

JSONRowsView::JSONRowsView(JSONRowsModel& model, QWidget* parent)
    : QListView(parent), m_model(model), m_rowView(new JSONRowView(this)) {
    setModel(&model);
    setItemDelegate(m_rowView);
    setAccessibleName(tr("Albero JSON"));
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    connect(&model, &QAbstractItemModel::modelReset, this, &JSONRowsView::fitRows);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &JSONRowsView::fitRows);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &JSONRowsView::fitRows);
}

void JSONRowsView::setBaseSize(double baseSize) {
    m_rowView->setBaseSize(baseSize);
    fitRows();
}

void JSONRowsView::fitRows() {
    m_rowView->setRowWidth(2 * JSONRowView::padding +
                           static_cast<int>(m_model.rows().greatestDepth()) * JSONRowView::indent +
                           JSONRowView::markWidth + leastContentWidth);
    updateGeometries();
    viewport()->update();
}

void JSONRowsView::doItemsLayout() {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): that of the list view between places each row.
    QAbstractItemView::doItemsLayout();
}

QSize JSONRowsView::rowSize() const {
    const QSize hint = m_rowView->sizeHint({}, {});
    return {std::max(hint.width(), viewport()->width()), std::max(hint.height(), 1)};
}

int JSONRowsView::lastRow() const {
    return m_model.rowCount() - 1;
}

/// The row at a height of the viewport, or the first or last one beyond them.
int JSONRowsView::rowNear(int y) const {
    return std::clamp((y + verticalOffset()) / rowSize().height(), 0, std::max(lastRow(), 0));
}

QRect JSONRowsView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const QSize size = rowSize();
    return {QPoint(-horizontalOffset(), index.row() * size.height() - verticalOffset()), size};
}

QModelIndex JSONRowsView::indexAt(const QPoint& place) const {
    const QModelIndex index = m_model.index(rowNear(place.y()));
    return visualRect(index).contains(place) ? index : QModelIndex();
}

int JSONRowsView::horizontalOffset() const {
    return horizontalScrollBar()->value();
}

// The padding above the first row and below the last scrolls with them.
int JSONRowsView::verticalOffset() const {
    return verticalScrollBar()->value() - verticalPadding;
}

void JSONRowsView::updateGeometries() {
    const QSize size = rowSize();
    const QSize room = viewport()->size();
    verticalScrollBar()->setSingleStep(size.height());
    verticalScrollBar()->setPageStep(room.height());
    verticalScrollBar()->setRange(0,
                                  std::max((lastRow() + 1) * size.height() + 2 * verticalPadding - room.height(), 0));
    horizontalScrollBar()->setSingleStep(JSONRowView::indent);
    horizontalScrollBar()->setPageStep(room.width());
    horizontalScrollBar()->setRange(0, size.width() - room.width());
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): that of the list view between looks at the place of each row.
    QAbstractItemView::updateGeometries();
}

void JSONRowsView::scrollContentsBy(int dx, int dy) {
    viewport()->scroll(dx, dy);
}

void JSONRowsView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const QRect rect = visualRect(index);
    if (!rect.isValid()) {
        return;
    }
    const int room = viewport()->height();
    // The first and the last row bring their padding along.
    const int top = index.row() == 0 ? rect.top() - verticalPadding : rect.top();
    const int bottom = rect.bottom() + 1 + (index.row() == lastRow() ? verticalPadding : 0);
    int distance = 0;
    switch (hint) {
    case EnsureVisible:
        distance = top < 0 ? top : std::max(bottom - room, 0);
        break;
    case PositionAtTop:
        distance = top;
        break;
    case PositionAtBottom:
        distance = bottom - room;
        break;
    case PositionAtCenter:
        distance = rect.center().y() - room / 2;
        break;
    }
    verticalScrollBar()->setValue(verticalScrollBar()->value() + distance);
}

QModelIndex JSONRowsView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const int page = std::max(viewport()->height() / rowSize().height(), 1);
    int row = currentIndex().row();
    switch (action) {
    case MoveUp:
    case MoveLeft:
    case MovePrevious:
        --row;
        break;
    case MoveDown:
    case MoveRight:
    case MoveNext:
        ++row;
        break;
    case MovePageUp:
        row -= page;
        break;
    case MovePageDown:
        row += page;
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = lastRow();
        break;
    }
    return m_model.index(std::clamp(row, 0, std::max(lastRow(), 0)));
}

void JSONRowsView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    const QRect area = rect.normalized();
    const QItemSelection rows(m_model.index(rowNear(area.top())), m_model.index(rowNear(area.bottom())));
    selectionModel()->select(rows, command);
}

QRegion JSONRowsView::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const QRect rows = visualRect(range.topLeft()).united(visualRect(range.bottomRight()));
        region += rows.intersected(viewport()->rect());
    }
    return region;
}

void JSONRowsView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QStyle::State state = option.state;
    const QModelIndex hovered =
        viewport()->underMouse() ? indexAt(viewport()->mapFromGlobal(QCursor::pos())) : QModelIndex();
    const int last = std::min(rowNear(event->rect().bottom()), lastRow());
    for (int row = rowNear(event->rect().top()); row <= last; ++row) {
        const QModelIndex index = m_model.index(row);
        option.rect = visualRect(index);
        option.state = state;
        option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
        option.state.setFlag(QStyle::State_MouseOver, index == hovered);
        itemDelegate()->paint(&painter, option, index);
    }
}

QString JSONRowsView::pathText(int row) const {
    return m_model.row(row).path().textToCopy();
}

QString JSONRowsView::valueText(int row) const {
    return JSONTree::valueToCopy(m_model.row(row).value());
}

void JSONRowsView::copyValues() const {
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedIndexes()) {
        rows.append(index.row());
    }
    std::sort(rows.begin(), rows.end());
    QStringList values;
    for (const int row : std::as_const(rows)) {
        values.append(valueText(row));
    }
    if (!values.isEmpty()) {
        QGuiApplication::clipboard()->setText(values.join(u'\n'));
    }
}

void JSONRowsView::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const bool isPlainClick = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier;
    m_pressed = isPlainClick ? QPersistentModelIndex(indexAt(event->position().toPoint())) : QPersistentModelIndex();
}

void JSONRowsView::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QPersistentModelIndex pressed = std::exchange(m_pressed, {});
    if (event->button() == Qt::LeftButton && pressed.isValid() && indexAt(event->position().toPoint()) == pressed) {
        m_model.toggle(pressed.row());
    }
}

void JSONRowsView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copyValues();
        return;
    }
    const int row = currentIndex().row();
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (row < 0 || !isPlain) {
        QListView::keyPressEvent(event);
        return;
    }
    const JSONTreeRow current = m_model.row(row);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        m_model.toggle(row);
        return;
    case Qt::Key_Right:
        if (!current.isExpanded()) {
            m_model.toggle(row);
        } else if (current.value().childCount() > 0) {
            goTo(row + 1);
        }
        return;
    case Qt::Key_Left:
        if (current.isExpanded()) {
            m_model.toggle(row);
        } else if (const auto parent = static_cast<int>(m_model.rows().containerOf(row)); parent >= 0) {
            goTo(parent);
        }
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void JSONRowsView::goTo(int row) {
    setCurrentIndex(m_model.index(row));
}

void JSONRowsView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex index = isByMouse ? indexAt(event->pos()) : currentIndex();
    if (!index.isValid()) {
        return;
    }
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto offer = [&](const QString& name, QString (JSONRowsView::*text)(int) const) {
        menu->addAction(name, this, [this, text, row = QPersistentModelIndex(index)] {
            if (row.isValid()) {
                QGuiApplication::clipboard()->setText((this->*text)(row.row()));
            }
        });
    };
    offer(tr("Copia percorso"), &JSONRowsView::pathText);
    offer(tr("Copia valore"), &JSONRowsView::valueText);
    menu->popup(isByMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(index).bottomLeft()));
}

} // namespace quillary
