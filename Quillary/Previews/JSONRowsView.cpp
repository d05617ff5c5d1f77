#include "Quillary/Previews/JSONRowsView.h"

#include "Quillary/Previews/JSONRowView.h"
#include "Quillary/Previews/JSONRowsModel.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
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
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setMouseTracking(true);
    connect(&model, &QAbstractItemModel::modelReset, this, &JSONRowsView::fitWidth);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &JSONRowsView::fitWidth);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &JSONRowsView::fitWidth);
}

void JSONRowsView::setBaseSize(double baseSize) {
    m_rowView->setBaseSize(baseSize);
    scheduleDelayedItemsLayout();
}

void JSONRowsView::fitWidth() {
    m_rowView->setRowWidth(2 * JSONRowView::padding + static_cast<int>(m_model.greatestDepth()) * JSONRowView::indent +
                           JSONRowView::markWidth + leastContentWidth);
}

// The padding above the first row and below the last scrolls with them.
int JSONRowsView::verticalOffset() const {
    return QListView::verticalOffset() - verticalPadding;
}

void JSONRowsView::updateGeometries() {
    QListView::updateGeometries();
    verticalScrollBar()->setMaximum(std::max(contentsSize().height() + 2 * verticalPadding - viewport()->height(), 0));
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
    const JSONTreeRow& current = m_model.row(row);
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
        } else if (const int parent = m_model.parentOf(row); parent >= 0) {
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
