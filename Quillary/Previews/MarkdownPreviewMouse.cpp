#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Previews/PreviewText.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimerEvent>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace quillary {

std::optional<MarkdownPreview::Link> MarkdownPreview::linkAt(QPointF place) const {
    if (rowCount() == 0) {
        return std::nullopt;
    }
    const qsizetype index = anchorAt(placeOf(m_anchor) + place.y()).row;
    const QRectF content = contentRect(index);
    if (!content.contains(place)) {
        return std::nullopt;
    }
    const std::optional<MarkdownLinkPlace> link = layoutOf(index).linkAt(place - textOrigin(index, content));
    return link ? std::optional(Link{index, *link}) : std::nullopt;
}

QString MarkdownPreview::urlOf(const Link& link) const {
    return m_rows.linkTarget(row(link.row), link.place);
}

void MarkdownPreview::setHoveredLink(const std::optional<Link>& link) {
    if (link != m_hoveredLink) {
        m_hoveredLink = link;
        viewport()->setCursor(link ? Qt::PointingHandCursor : Qt::IBeamCursor);
        viewport()->update();
    }
}

void MarkdownPreview::setFocusedLink(const std::optional<Link>& link) {
    if (link != m_focusedLink) {
        m_focusedLink = link;
        viewport()->update();
    }
}

void MarkdownPreview::updateHover(QPointF place) {
    setHoveredLink(linkAt(place));
    if (!m_hoveredLink) {
        const std::optional<qsizetype> index = sidewaysRowAt(place);
        const bool isOnThumb = index && sidewaysThumb(*index).adjusted(-2, -4, 2, 4).contains(place);
        viewport()->setCursor(isOnThumb ? Qt::ArrowCursor : Qt::IBeamCursor);
    }
}

bool MarkdownPreview::viewportEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::ToolTip: {
        const auto& help = *static_cast<QHelpEvent*>(event);
        if (const std::optional<Link> link = linkAt(help.pos())) {
            QToolTip::showText(help.globalPos(), PreviewText::linkToolTip(urlOf(*link)), viewport());
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    case QEvent::Leave:
        setHoveredLink(std::nullopt);
        break;
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void MarkdownPreview::mousePressEvent(QMouseEvent* event) {
    m_animation.stop();
    if (event->button() != Qt::LeftButton || rowCount() == 0) {
        return;
    }
    const QPointF place = event->position();
    if (const std::optional<qsizetype> index = sidewaysRowAt(place)) {
        const QRectF thumb = sidewaysThumb(*index);
        if (thumb.adjusted(-2, -4, 2, 4).contains(place)) {
            m_draggedThumb = index;
            m_thumbGrip = place.x() - thumb.left();
            viewport()->update();
            return;
        }
    }
    m_pressedLink = linkAt(place);
    setFocusedLink(std::nullopt);
    const Position position = positionAt(place);
    const bool isTriple = m_tripleClickTimer.isActive() &&
                          (place - m_doubleClickPlace).manhattanLength() < QApplication::startDragDistance();
    m_tripleClickTimer.stop();
    if (event->modifiers().testFlag(Qt::ShiftModifier) && hasSelection()) {
        m_selecting = Selecting::characters;
        extendSelectionTo(position);
        return;
    }
    // A text that may hold a link takes clicks and can't be selected by itself.
    const MarkdownRowLayout& layout = layoutOf(position.row);
    if (!layout.isSelectableAt(position.offset - layout.textStart(m_rows, row(position.row)))) {
        m_selecting = Selecting::nothing;
        m_selectionOrigin = {position, position};
        select(position, position);
        return;
    }
    m_selecting = isTriple ? Selecting::rows : Selecting::characters;
    m_selectionOrigin = unitAt(position);
    select(m_selectionOrigin.first, m_selectionOrigin.second);
}

void MarkdownPreview::mouseMoveEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    if (m_draggedThumb) {
        const MarkdownRow& scrolled = row(*m_draggedThumb);
        const QRectF content = contentRect(*m_draggedThumb);
        const double room = content.width() - 2 * MarkdownStyle::codeRadius - sidewaysThumb(*m_draggedThumb).width();
        const double left = place.x() - m_thumbGrip - content.left() - MarkdownStyle::codeRadius;
        setSideways(scrolled, room > 0 ? sidewaysRange(scrolled) * left / room : 0);
        return;
    }
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        updateHover(place);
        return;
    }
    if (m_selecting == Selecting::nothing) {
        return;
    }
    m_dragPlace = place;
    extendSelectionTo(positionAt(place));
    const bool isOutside = place.y() < 0 || place.y() > viewport()->height();
    constexpr int interval = 30;
    if (isOutside && !m_dragTimer.isActive()) {
        m_dragTimer.start(interval, this);
    } else if (!isOutside) {
        m_dragTimer.stop();
    }
}

void MarkdownPreview::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_dragTimer.timerId()) {
        // The farther outside, the faster.
        const double outside = m_dragPlace.y() < 0 ? m_dragPlace.y() : m_dragPlace.y() - viewport()->height();
        scrollBy(std::clamp(outside / 2, -60.0, 60.0));
        extendSelectionTo(positionAt({m_dragPlace.x(), std::clamp(m_dragPlace.y(), 0.0, viewport()->height() - 1.0)}));
    } else if (event->timerId() == m_tripleClickTimer.timerId()) {
        m_tripleClickTimer.stop();
    } else if (event->timerId() == m_aheadTimer.timerId()) {
        layOutAhead();
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void MarkdownPreview::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_dragTimer.stop();
    if (m_draggedThumb) {
        m_draggedThumb.reset();
        viewport()->update();
        return;
    }
    if (std::exchange(m_selecting, Selecting::nothing) != Selecting::nothing) {
        setPrimarySelection();
    }
    const std::optional<Link> pressed = std::exchange(m_pressedLink, std::nullopt);
    if (pressed && !hasSelection() && linkAt(event->position()) == pressed) {
        // Following it may end this very view.
        followLink(urlOf(*pressed));
    }
}

void MarkdownPreview::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || rowCount() == 0) {
        return;
    }
    const Position position = positionAt(event->position());
    const MarkdownRowLayout& layout = layoutOf(position.row);
    if (!layout.isSelectableAt(position.offset - layout.textStart(m_rows, row(position.row)))) {
        return;
    }
    m_doubleClickPlace = event->position();
    m_tripleClickTimer.start(QApplication::doubleClickInterval(), this);
    m_selecting = Selecting::words;
    m_selectionOrigin = unitAt(position);
    select(m_selectionOrigin.first, m_selectionOrigin.second);
}

void MarkdownPreview::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
    if (const std::optional<Link> link = isByMouse ? linkAt(event->pos()) : m_focusedLink) {
        const QString url = urlOf(*link);
        menu->addAction(tr("Apri link"), this, [this, url] { followLink(url); });
        menu->addAction(tr("Copia link"), this, [url] { QGuiApplication::clipboard()->setText(url); });
        menu->addSeparator();
    }
    QAction* const copyAction = menu->addAction(tr("Copia"), this, &MarkdownPreview::copy);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setEnabled(hasSelection());
    QAction* const selectAllAction = menu->addAction(tr("Seleziona tutto"), this, &MarkdownPreview::selectAll);
    selectAllAction->setShortcut(QKeySequence::SelectAll);
    menu->popup(event->globalPos());
}

void MarkdownPreview::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && m_focusedLink) {
        followLink(urlOf(*m_focusedLink));
        return;
    }
    QScrollBar& bar = *verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_Home:
        bar.triggerAction(QAbstractSlider::SliderToMinimum);
        return;
    case Qt::Key_End:
        bar.triggerAction(QAbstractSlider::SliderToMaximum);
        return;
    case Qt::Key_Space: {
        const bool isBack = event->modifiers().testFlag(Qt::ShiftModifier);
        bar.triggerAction(isBack ? QAbstractSlider::SliderPageStepSub : QAbstractSlider::SliderPageStepAdd);
        return;
    }
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void MarkdownPreview::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void MarkdownPreview::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

/// The link before or behind another one, or the first in view or behind it.
std::optional<MarkdownPreview::Link> MarkdownPreview::nextLink(const std::optional<Link>& from, bool forwards) const {
    const qsizetype step = forwards ? 1 : -1;
    qsizetype index = forwards ? m_anchor.row : rowCount() - 1;
    if (from) {
        if (const std::optional<MarkdownLinkPlace> beside = m_rows.linkBeside(row(from->row), from->place, forwards)) {
            return Link{from->row, *beside};
        }
        index = from->row + step;
    }
    for (; index >= 0 && index < rowCount(); index += step) {
        if (const std::optional<MarkdownLinkPlace> place = m_rows.linkBeside(row(index), std::nullopt, forwards)) {
            return Link{index, *place};
        }
    }
    return std::nullopt;
}

bool MarkdownPreview::focusNextPrevChild(bool next) {
    const std::optional<Link> link = nextLink(m_focusedLink, next);
    setFocusedLink(link);
    if (!link) {
        return QAbstractScrollArea::focusNextPrevChild(next);
    }
    const MarkdownRow& linked = row(link->row);
    if (linked.kind == MarkdownRow::Kind::table) {
        showColumn(linked, link->place.column);
    }
    const std::vector<QRectF> rects = layoutOf(link->row).rectsOfLink(link->place);
    const QRectF content = contentRect(link->row);
    scrollIntoView(rects.empty() ? content : rects.front().translated(textOrigin(link->row, content)));
    return true;
}

} // namespace quillary
