#include "Quillary/Sidebar/SidebarDragDrop.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Theme/Contrast.h"

#include <QDrag>
#include <QDropEvent>
#include <QPainter>
#include <QPixmap>
#include <QScrollBar>
#include <QTimerEvent>

#include <algorithm>

namespace quillary {

namespace {

/// How near to an edge a drag scrolls the list, how often, and how far at most each time.
constexpr int autoscrollEdge = 28;
constexpr int autoscrollInterval = 16;
constexpr int fastestAutoscroll = 14;

} // namespace

void SidebarList::startDrag(int row) {
    const SidebarRow& shown = m_model.row(row);
    m_store.setDragItem(shown.isNote() ? m_store.dragItem(*shown.note) : SidebarDragItem(shown.title()));
    const auto* const notes = std::get_if<QList<NoteID>>(&*m_store.dragItem());
    // Qt ends its life with the drag.
    auto* const drag = new QDrag(viewport());
    drag->setMimeData(new SidebarMimeData);
    drag->setPixmap(dragPicture(row, notes ? notes->size() : 1));
    drag->setHotSpot({16, rowRect(row).height() / 2});
    runDrag(*drag);
    leaveDropTarget();
}

/// The dragged row's title on a card, with the number of notes if there are several.
QPixmap SidebarList::dragPicture(int row, qsizetype count) const {
    const SidebarLook look = this->look();
    constexpr int widest = 220;
    constexpr int inset = 10;
    constexpr int gap = 8;
    const QString title = SidebarModel::shownTitle(m_model.row(row));
    const QString number = count > 1 ? QString::number(count) : QString();
    const QFontMetrics metrics(m_metrics.title);
    const int numberWidth =
        number.isEmpty() ? 0 : std::max(metrics.horizontalAdvance(number) + inset, m_metrics.titleHeight);
    // One pixel more, for an advance is rounded.
    const int width = metrics.horizontalAdvance(title) + 1 + 2 * inset + (number.isEmpty() ? 0 : gap + numberWidth - 4);
    const QSize size(std::min(width, widest), m_metrics.titleHeight + inset);

    QPixmap picture(size * devicePixelRatioF());
    picture.setDevicePixelRatio(devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF({}, size).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    QRect rest = QRect(QPoint(), size).adjusted(inset, 0, -inset, 0);
    if (!number.isEmpty()) {
        const int height = m_metrics.titleHeight;
        const QRect badge(rest.right() + 5 - numberWidth, (size.height() - height) / 2, numberWidth, height);
        painter.setPen(Qt::NoPen);
        painter.setBrush(look.accent());
        painter.drawRoundedRect(badge, height / 2.0, height / 2.0);
        look.drawLine(painter, badge, number, m_metrics.title, palette().color(QPalette::Base), Qt::AlignHCenter);
        rest.setRight(badge.left() - gap);
    }
    look.drawLine(painter, rest, title, m_metrics.title, palette().color(QPalette::Text));
    return picture;
}

void SidebarList::dragEnterEvent(QDragEnterEvent* event) {
    // What comes in must be accepted once for its motions to arrive; each of these is then judged by itself.
    event->setAccepted(SidebarMimeData::isIn(event->mimeData()));
}

void SidebarList::dragMoveEvent(QDragMoveEvent* event) {
    if (!SidebarMimeData::isIn(event->mimeData())) {
        event->ignore();
        return;
    }
    updateDropTarget(event->position().toPoint());
    event->setDropAction(Qt::MoveAction);
    event->setAccepted(m_acceptsDrop);
    if (!m_autoscroll.isActive()) {
        m_autoscroll.start(autoscrollInterval, this);
    }
}

void SidebarList::dragLeaveEvent(QDragLeaveEvent*) {
    leaveDropTarget();
}

void SidebarList::dropEvent(QDropEvent* event) {
    if (!SidebarMimeData::isIn(event->mimeData())) {
        event->ignore();
        return;
    }
    updateDropTarget(event->position().toPoint());
    const bool isDropped = m_acceptsDrop && m_dropDelegate->performDrop();
    leaveDropTarget();
    event->setDropAction(isDropped ? Qt::MoveAction : Qt::IgnoreAction);
    event->setAccepted(isDropped);
}

void SidebarList::updateDropTarget(const QPoint& place) {
    m_dropPlace = place;
    const int row = rowAt(place);
    const std::optional<SidebarRow::Key> key =
        row >= 0 ? std::optional(m_model.row(row).key) : std::optional<SidebarRow::Key>();
    const bool isEntered = !m_dropDelegate || key != m_dropRow;
    if (isEntered) {
        if (m_dropDelegate) {
            m_dropDelegate->dropExited();
        }
        m_dropRow = key;
        m_dropDelegate = makeDropDelegate(row);
    }
    m_acceptsDrop = m_dropDelegate->validateDrop();
    if (m_acceptsDrop) {
        if (isEntered) {
            m_dropDelegate->dropEntered();
        }
        m_dropDelegate->dropUpdated(row >= 0 ? place.y() - rowRect(row).top() : 0);
    } else {
        m_dropDelegate->dropExited();
    }
    viewport()->update();
}

std::unique_ptr<SidebarDropDelegate> SidebarList::makeDropDelegate(int row) {
    if (row < 0) {
        return std::make_unique<EndDropDelegate>(m_store);
    }
    const SidebarRow& shown = m_model.row(row);
    switch (shown.kind()) {
    case SidebarRow::Kind::note:
        return std::make_unique<NoteRowDropDelegate>(shown.note, m_store, m_places.height(row), m_insertion);
    case SidebarRow::Kind::folderHeader:
        return std::make_unique<FolderDropDelegate>(shown.title(), m_store, m_isTargeted);
    case SidebarRow::Kind::groupHeader:
        return std::make_unique<TopLevelDropDelegate>(m_store, m_isTargeted);
    }
    Q_UNREACHABLE();
}

void SidebarList::leaveDropTarget() {
    m_autoscroll.stop();
    if (m_dropDelegate) {
        m_dropDelegate->dropExited();
        m_dropDelegate.reset();
    }
    m_dropRow.reset();
    m_acceptsDrop = false;
    viewport()->update();
}

void SidebarList::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_autoscroll.timerId()) {
        autoscroll();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

/// Scrolls while a drag stands near the upper or the lower edge, the faster the nearer.
void SidebarList::autoscroll() {
    const int above = autoscrollEdge - m_dropPlace.y();
    const int below = autoscrollEdge - (viewport()->height() - 1 - m_dropPlace.y());
    const int depth = std::max(above, below);
    QScrollBar& bar = *verticalScrollBar();
    if (depth <= 0) {
        return;
    }
    const int step = std::clamp(depth * fastestAutoscroll / autoscrollEdge, 1, fastestAutoscroll);
    const int before = bar.value();
    bar.setValue(before + (above > below ? -step : step));
    if (bar.value() != before) {
        updateDropTarget(m_dropPlace);
    }
}

} // namespace quillary
