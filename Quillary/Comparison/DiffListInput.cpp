#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/DiffListAccessible.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

void DiffList::select(qsizetype item, bool extends) {
    if (!extends || !m_current) {
        m_selectionStart = item;
    }
    const bool moves = m_current != item;
    m_current = item;
    viewport()->update();
    if (moves) {
        DiffListAccessible::tellCurrent(*this, item);
    }
}

void DiffList::setCurrentItem(qsizetype item, bool extends) {
    select(item, extends);
    showItem(item);
}

void DiffList::selectAll() {
    if (!m_items.empty()) {
        m_selectionStart = 0;
        m_current = static_cast<qsizetype>(m_items.size()) - 1;
        viewport()->update();
    }
}

bool DiffList::isSelected(qsizetype item) const {
    return m_current && item >= std::min(*m_current, m_selectionStart) &&
           item <= std::max(*m_current, m_selectionStart);
}

QString DiffList::selectedText() const {
    QString text;
    if (!m_current) {
        return text;
    }
    const auto add = [&text](const std::optional<DiffSide>& side) {
        if (side) {
            text += side->segments.line();
            text += u'\n';
        }
    };
    const auto& first = m_items[static_cast<std::size_t>(std::min(*m_current, m_selectionStart))];
    const auto& last = m_items[static_cast<std::size_t>(std::max(*m_current, m_selectionStart))];
    for (qsizetype id = first.rowId(); id < last.rowId() + last.count(); ++id) {
        const DiffRow row = m_rows[id];
        if (m_mode == DiffMode::unified) {
            add(row.oldSide);
            if (row.kind != DiffRow::Kind::unchanged) {
                add(row.newSide);
            }
        } else {
            add(m_isNewSide ? row.newSide : row.oldSide);
        }
    }
    return text;
}

void DiffList::copy() const {
    const QString text = selectedText();
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

/// To the furthest item that begins within a viewport's height, and on by one where a single item is that high.
void DiffList::moveByPage(int direction, bool extends) {
    const qsizetype last = static_cast<qsizetype>(m_items.size()) - 1;
    const qsizetype from = m_current.value_or(m_strips.itemOf(m_anchor.strip));
    const qint64 page = std::max(1, viewport()->height() - 2 * m_metrics.pitch);
    const qint64 y = std::max<qint64>(0, m_strips.top(m_strips.firstStrip(from)) + direction * page);
    const qsizetype there = m_strips.itemOf(m_strips.stripAt(y));
    const qsizetype next = from + direction;
    if (direction > 0) {
        setCurrentItem(std::min(std::max(there, next), last), extends);
    } else {
        const qsizetype first = m_strips.top(m_strips.firstStrip(there)) < y ? there + 1 : there;
        setCurrentItem(std::max<qsizetype>(std::min(first, next), 0), extends);
    }
}

void DiffList::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return;
    }
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool extends = modifiers.testFlag(Qt::ShiftModifier);
    if (m_items.empty() || (modifiers & ~(Qt::ShiftModifier | Qt::AltModifier)) != 0) {
        event->ignore();
        return;
    }
    if (modifiers == Qt::AltModifier && (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up)) {
        goToChange(event->key() == Qt::Key_Down ? 1 : -1);
        return;
    }
    if (modifiers.testFlag(Qt::AltModifier)) {
        event->ignore();
        return;
    }
    const qsizetype last = static_cast<qsizetype>(m_items.size()) - 1;
    const qsizetype top = m_strips.itemOf(m_anchor.strip);
    switch (event->key()) {
    case Qt::Key_Down:
        setCurrentItem(m_current ? std::min(*m_current + 1, last) : top, extends);
        break;
    case Qt::Key_Up:
        setCurrentItem(m_current ? std::max<qsizetype>(*m_current - 1, 0) : top, extends);
        break;
    case Qt::Key_PageDown:
        moveByPage(1, extends);
        break;
    case Qt::Key_PageUp:
        moveByPage(-1, extends);
        break;
    case Qt::Key_Home:
        setCurrentItem(0, extends);
        break;
    case Qt::Key_End:
        setCurrentItem(last, extends);
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        m_isNewSide = event->key() == Qt::Key_Right;
        viewport()->update();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (m_current && m_items[static_cast<std::size_t>(*m_current)].kind() == DiffDisplayItem::Kind::collapsed) {
            expand(*m_current);
        }
        break;
    default:
        event->ignore();
    }
}

std::optional<qsizetype> DiffList::foldAt(const QPoint& place) const {
    const std::optional<qsizetype> item = itemAt(place);
    const bool isFold = item && m_items[static_cast<std::size_t>(*item)].kind() == DiffDisplayItem::Kind::collapsed;
    return isFold ? item : std::nullopt;
}

void DiffList::setHovered(std::optional<qsizetype> item) {
    if (m_hovered != item) {
        m_hovered = item;
        viewport()->setCursor(item ? Qt::PointingHandCursor : Qt::ArrowCursor);
        viewport()->update();
    }
}

bool DiffList::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave) {
        setHovered(std::nullopt);
    } else if (event->type() == QEvent::ToolTip) {
        const auto& help = static_cast<QHelpEvent&>(*event);
        if (foldAt(help.pos())) {
            QToolTip::showText(help.globalPos(), tr("Mostra le righe nascoste"), viewport());
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void DiffList::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const std::optional<qsizetype> item = itemAt(place);
    if (event->button() != Qt::LeftButton || !item) {
        return;
    }
    if (foldAt(place)) {
        expand(*item);
        setHovered(foldAt(place));
        return;
    }
    m_isNewSide = place.x() > halfWidth();
    m_isDragging = true;
    select(*item, event->modifiers().testFlag(Qt::ShiftModifier));
}

/// Selects up to the line there. Beyond the viewport the list scrolls, the faster the further, for as long as the mouse
/// stays there.
void DiffList::dragTo(const QPoint& place) {
    constexpr int milliseconds = 40;
    const int bottom = std::max(0, viewport()->height() - 1);
    const int y = std::clamp(place.y(), 0, bottom);
    const int beyond = place.y() - y;
    if (beyond != 0) {
        scrollTo(scrollOffset() + std::clamp(beyond, -viewport()->height() / 2, viewport()->height() / 2));
    }
    // The padding belongs to the line beside it, and what is below the last line to that one.
    const int inside = std::clamp(y, verticalPadding, std::max(verticalPadding, bottom - verticalPadding));
    select(itemAt({place.x(), inside}).value_or(static_cast<qsizetype>(m_items.size()) - 1), true);
    m_dragPlace = place;
    if (beyond == 0) {
        m_dragTimer.stop();
    } else if (!m_dragTimer.isActive()) {
        m_dragTimer.start(milliseconds, this);
    }
}

void DiffList::endDrag() {
    m_isDragging = false;
    m_dragTimer.stop();
}

void DiffList::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_dragTimer.timerId()) {
        dragTo(m_dragPlace);
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void DiffList::mouseMoveEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    if (m_isDragging) {
        dragTo(place);
    } else {
        setHovered(foldAt(place));
    }
}

void DiffList::mouseReleaseEvent(QMouseEvent*) {
    endDrag();
}

void DiffList::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    if (const std::optional<qsizetype> item = itemAt(event->pos()); isByMouse && item && !isSelected(*item)) {
        m_isNewSide = event->pos().x() > halfWidth();
        select(*item, false);
    }
    QMenu menu(this);
    QAction* const copyAction = menu.addAction(tr("Copia"), this, &DiffList::copy);
    copyAction->setEnabled(!selectedText().isEmpty());
    menu.addAction(tr("Seleziona tutto"), this, &DiffList::selectAll);
    menu.exec(event->globalPos());
}

void DiffList::tellReaders() {
    DiffListAccessible::tellReset(*this);
}

} // namespace quillary
