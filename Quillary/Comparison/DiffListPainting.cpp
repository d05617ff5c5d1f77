#include "Quillary/Comparison/CollapsedRow.h"
#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/Hatching.h"
#include "Quillary/Theme/Theme.h"

#include <QPaintEvent>
#include <QPainter>

namespace quillary {

void DiffList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Theme::editorBackground(palette()));
    painter.setBrushOrigin(0, -static_cast<int>(scrollOffset()));
    int top = -m_anchor.offset;
    for (qsizetype strip = m_anchor.strip; strip < m_strips.count() && top < viewport()->height(); ++strip) {
        const QRect rect(0, top, viewport()->width(), m_strips.height(strip));
        if (rect.intersects(event->rect())) {
            paintStrip(painter, strip, rect);
        }
        top += rect.height();
    }
}

void DiffList::paintStrip(QPainter& painter, qsizetype strip, const QRect& rect) {
    const qsizetype item = m_strips.itemOf(strip);
    const DiffDisplayItem& shown = m_items[static_cast<std::size_t>(item)];
    if (shown.kind() == DiffDisplayItem::Kind::collapsed) {
        CollapsedRow::paint(painter, rect, shown.count(), m_metrics, m_hovered == item, palette());
        paintSelection(painter, item, rect);
        return;
    }
    const std::vector<Part> lines = parts(strip, rect.top());
    for (const Part& part : lines) {
        // Where the other half goes on behind the end of this line there is nothing of it.
        if (part.chunk < part.line.chunkCount()) {
            part.line.paintGround(painter, part.rect, palette());
        } else {
            Hatching::paint(painter, part.rect, palette());
        }
    }
    paintSelection(painter, item, rect);
    for (const Part& part : lines) {
        if (part.chunk < part.line.chunkCount()) {
            part.line.paintText(painter, part.rect, m_metrics, layoutOf(strip, part), part.chunk, palette());
        }
    }
    if (m_mode == DiffMode::sideBySide) {
        painter.fillRect(QRect(halfWidth(), rect.top(), 1, rect.height()), Theme::separator(palette()));
    }
}

/// A veil on the ground of selected lines, so that the colours of the change stay to be seen, and a bar at the current
/// one.
void DiffList::paintSelection(QPainter& painter, qsizetype item, const QRect& rect) const {
    if (!isSelected(item)) {
        return;
    }
    constexpr float focusedOpacity = 0.35F;
    constexpr float otherOpacity = 0.2F;
    constexpr int barWidth = 3;
    QRect place = rect;
    if (m_mode == DiffMode::sideBySide &&
        m_items[static_cast<std::size_t>(item)].kind() == DiffDisplayItem::Kind::row) {
        place =
            m_isNewSide ? rect.adjusted(halfWidth() + 1, 0, 0, 0) : QRect(0, rect.top(), halfWidth(), rect.height());
    }
    QColor color = palette().color(QPalette::Highlight);
    color.setAlphaF(hasFocus() ? focusedOpacity : otherOpacity);
    painter.fillRect(place, color);
    if (item == m_current && hasFocus()) {
        painter.fillRect(QRect(place.left(), place.top(), barWidth, place.height()), palette().color(QPalette::Link));
    }
}

void DiffList::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::FontChange) {
        keepPlace([this] {
            m_metrics = DiffMetrics(m_style);
            rebuildStrips();
        });
    } else if (event->type() == QEvent::PaletteChange) {
        viewport()->update();
    }
}

void DiffList::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void DiffList::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

} // namespace quillary
