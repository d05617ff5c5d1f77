#include "Quillary/Editor/TextMotion.h"
#include "Quillary/Editor/ZoomableTextView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// The further outside, the faster; these two are what Qt's own text widgets use.
constexpr int autoscrollFactor = 4900;
constexpr int smallestAutoscrollDistance = 7;

} // namespace

ZoomableTextView::Spot ZoomableTextView::spotAt(QPoint point) {
    Row row = topRow();
    int top = -m_topOverhang;
    for (; point.y() >= top + m_layout.pitch(); top += m_layout.pitch()) {
        const std::optional<Row> below = m_layout.rowBelow(row);
        if (!below) {
            break;
        }
        row = *below;
    }
    for (; point.y() < top; top -= m_layout.pitch()) {
        const std::optional<Row> above = m_layout.rowAbove(row);
        if (!above) {
            break;
        }
        row = *above;
    }
    return spotInRow(row, point.x() - horizontalInset + horizontalScrollBar()->value());
}

qsizetype ZoomableTextView::positionAt(QPoint point) {
    return spotAt(point).position;
}

TextRange ZoomableTextView::unitAround(qsizetype position) const {
    switch (m_dragUnit) {
    case Unit::cluster:
        break;
    case Unit::word:
        return TextMotion::wordAt(m_storage, position);
    case Unit::line:
        return m_storage.lineRange(m_storage.lineAt(position));
    }
    return {position, 0};
}

/// Grows the selection from the word or line that the drag began in to the one at a position.
void ZoomableTextView::extendByUnits(qsizetype position) {
    const bool isWithin = position >= m_dragOrigin.location && position <= m_dragOrigin.end();
    const TextRange unit = isWithin ? m_dragOrigin : unitAround(position);
    if (unit.location < m_dragOrigin.location) {
        assignSelection({m_dragOrigin.end(), unit.location}, Side::after);
    } else {
        assignSelection({m_dragOrigin.location, std::max(unit.end(), m_dragOrigin.end())}, Side::after);
    }
}

void ZoomableTextView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->setAccepted(event->button() == Qt::MiddleButton);
        return;
    }
    const QPoint point = event->position().toPoint();
    // Places are told by what stands in the text: what is composed comes there first.
    commitPreedit();
    const Spot spot = spotAt(point);
    const bool isTripleClick = m_sinceDoubleClick.isValid() &&
                               m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval() &&
                               (point - m_doubleClickPosition).manhattanLength() < QApplication::startDragDistance();
    m_sinceDoubleClick.invalidate();
    m_goalX.reset();
    m_lastMousePosition = point;
    if (!isTripleClick && event->modifiers() == Qt::NoModifier && isOnSelection(point)) {
        m_pressOnSelection = point;
        event->accept();
        return;
    }
    m_isSelectingByMouse = true;
    if (isTripleClick) {
        m_dragUnit = Unit::line;
        m_dragOrigin = unitAround(spot.position);
        assignSelection({m_dragOrigin.location, m_dragOrigin.end()}, Side::after);
    } else {
        m_dragUnit = Unit::cluster;
        const bool extends = event->modifiers() == Qt::ShiftModifier;
        assignSelection({extends ? m_selection.anchor : spot.position, spot.position}, spot.side);
    }
    ensureCaretVisible();
    event->accept();
}

void ZoomableTextView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_pressOnSelection.reset();
    m_doubleClickPosition = event->position().toPoint();
    m_sinceDoubleClick.start();
    m_isSelectingByMouse = true;
    m_dragUnit = Unit::word;
    m_dragOrigin = unitAround(spotAt(m_doubleClickPosition).position);
    m_goalX.reset();
    assignSelection({m_dragOrigin.location, m_dragOrigin.end()}, Side::after);
    ensureCaretVisible();
    event->accept();
}

void ZoomableTextView::mouseMoveEvent(QMouseEvent* event) {
    if (m_pressOnSelection) {
        const QPoint travel = event->position().toPoint() - *m_pressOnSelection;
        if (travel.manhattanLength() >= QApplication::startDragDistance()) {
            startDrag();
        }
        event->accept();
        return;
    }
    if (!m_isSelectingByMouse || !(event->buttons() & Qt::LeftButton)) {
        event->ignore();
        return;
    }
    m_lastMousePosition = event->position().toPoint();
    const Spot spot = spotAt(m_lastMousePosition);
    if (m_dragUnit == Unit::cluster) {
        assignSelection({m_selection.anchor, spot.position}, spot.side);
    } else {
        extendByUnits(spot.position);
    }
    const bool isOutside = !viewport()->rect().contains(m_lastMousePosition);
    if (!isOutside) {
        m_autoscrollTimer.stop();
    } else if (!m_autoscrollTimer.isActive()) {
        m_autoscrollTimer.start(100, this);
    }
    event->accept();
}

void ZoomableTextView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && !m_isReadOnly) {
        const QClipboard* clipboard = QGuiApplication::clipboard();
        if (clipboard->supportsSelection()) {
            commitPreedit();
            const Spot spot = spotAt(event->position().toPoint());
            const QMimeData* source = clipboard->mimeData(QClipboard::Selection);
            moveCaret(spot, false);
            insertFromMimeData(source);
        }
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && m_pressOnSelection) {
        m_pressOnSelection.reset();
        moveCaret(spotAt(event->position().toPoint()), false);
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && m_isSelectingByMouse) {
        m_isSelectingByMouse = false;
        m_autoscrollTimer.stop();
        publishPrimarySelection();
        event->accept();
        return;
    }
    event->ignore();
}

void ZoomableTextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_blinkTimer.timerId()) {
        m_isCaretOn = !m_isCaretOn;
        viewport()->update(caretRect().adjusted(-1, -1, 1, 1));
        return;
    }
    if (event->timerId() == m_measuringTimer.timerId()) {
        measureAhead();
        return;
    }
    if (event->timerId() != m_autoscrollTimer.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    const QRect inside = viewport()->rect();
    const QPoint point = m_lastMousePosition;
    const int down = point.y() < 0 ? point.y() : std::max(0, point.y() - inside.bottom());
    const int across = point.x() < 0 ? point.x() : std::max(0, point.x() - inside.right());
    if (down != 0) {
        verticalScrollBar()->triggerAction(down < 0 ? QScrollBar::SliderSingleStepSub
                                                    : QScrollBar::SliderSingleStepAdd);
    }
    if (across != 0) {
        horizontalScrollBar()->triggerAction(across < 0 ? QScrollBar::SliderSingleStepSub
                                                        : QScrollBar::SliderSingleStepAdd);
    }
    const int distance = std::max({smallestAutoscrollDistance, std::abs(down), std::abs(across)});
    m_autoscrollTimer.start(autoscrollFactor / (distance * distance), this);
    QMouseEvent move(QEvent::MouseMove, point, viewport()->mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    mouseMoveEvent(&move);
}

QMenu* ZoomableTextView::makeContextMenu() {
    auto* menu = new QMenu(this);
    const bool hasSelection = !m_selection.isEmpty();
    const QMimeData* clipboard = QGuiApplication::clipboard()->mimeData();
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, bool isEnabled,
                         void (ZoomableTextView::*command)()) {
        QAction* action = menu->addAction(text, this, command);
        action->setShortcut(key);
        action->setEnabled(isEnabled);
    };
    add(tr("Annulla"), QKeySequence::Undo, !m_isReadOnly && m_undoManager.canUndo(), &ZoomableTextView::undo);
    add(tr("Ripristina"), QKeySequence::Redo, !m_isReadOnly && m_undoManager.canRedo(), &ZoomableTextView::redo);
    menu->addSeparator();
    add(tr("Taglia"), QKeySequence::Cut, !m_isReadOnly && hasSelection, &ZoomableTextView::cut);
    add(tr("Copia"), QKeySequence::Copy, hasSelection, &ZoomableTextView::copy);
    add(tr("Incolla"), QKeySequence::Paste, !m_isReadOnly && plainTextOf(clipboard).has_value(),
        &ZoomableTextView::paste);
    add(tr("Elimina"), QKeySequence::UnknownKey, !m_isReadOnly && hasSelection, &ZoomableTextView::deleteSelection);
    menu->addSeparator();
    add(tr("Seleziona tutto"), QKeySequence::SelectAll, m_storage.length() > 0, &ZoomableTextView::selectAll);
    return menu;
}

void ZoomableTextView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = makeContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(isByKey ? viewport()->mapToGlobal(caretRect().bottomLeft()) : event->globalPos());
    event->accept();
}

} // namespace quillary
