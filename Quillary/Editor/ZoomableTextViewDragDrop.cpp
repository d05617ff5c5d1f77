#include "Quillary/Editor/ZoomableTextView.h"

#include <QApplication>
#include <QDrag>
#include <QDragMoveEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QUrl>

#include <algorithm>
#include <array>

namespace quillary {

using namespace Qt::StringLiterals;

/// What a paste or a drop brings as plain text: files come as their paths, and what has no text brings nothing.
std::optional<QString> ZoomableTextView::plainTextOf(const QMimeData* source) {
    if (!source) {
        return std::nullopt;
    }
    const QList<QUrl> urls = source->urls();
    const auto isFile = [](const QUrl& url) { return url.isLocalFile(); };
    if (!urls.isEmpty() && std::all_of(urls.begin(), urls.end(), isFile)) {
        QStringList paths;
        for (const QUrl& url : urls) {
            paths.append(url.toLocalFile());
        }
        return paths.join(u'\n');
    }
    return source->hasText() ? std::optional(source->text()) : std::nullopt;
}

bool ZoomableTextView::isOnSelection(QPoint point) {
    if (m_selection.isEmpty()) {
        return false;
    }
    const Row row = m_layout.rowHolding(spotAt(point).position, spotAt(point).side);
    const qreal x = point.x() - horizontalInset + horizontalScrollBar()->value();
    const std::vector<HorizontalSpan> spans = m_layout.spansOf(row, m_selection.range(), {x - 1, x + 1});
    const int top = topOf(row);
    return point.y() >= top && point.y() < top + m_layout.pitch() &&
           std::any_of(spans.begin(), spans.end(), [x](const auto& span) { return x >= span.left && x < span.right; });
}

/// Blocks until the user has let go of the text somewhere.
void ZoomableTextView::startDrag() {
    m_pressOnSelection.reset();
    auto* const drag = new QDrag(this);
    auto* const content = new QMimeData;
    content->setText(selectedText());
    drag->setMimeData(content);
    const TextRange dragged = m_selection.range();
    const qint64 revision = m_storage.revision();
    const QPointer<ZoomableTextView> self = this;
    m_isDraggingSelection = true;
    const Qt::DropAction done =
        m_isReadOnly ? drag->exec(Qt::CopyAction) : drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    if (!self) {
        return;
    }
    m_isDraggingSelection = false;
    // Its own drop has moved it already, or left it where it was, and fields of this program are given a copy.
    const bool wentElsewhere = done == Qt::MoveAction && drag->target() == nullptr;
    if (wentElsewhere && m_storage.revision() == revision) {
        removeRange(dragged, EditKind::other);
    }
}

void ZoomableTextView::dragEnterEvent(QDragEnterEvent* event) {
    if (!m_isReadOnly && plainTextOf(event->mimeData())) {
        event->acceptProposedAction();
    } else {
        event->ignore();
    }
}

void ZoomableTextView::dragMoveEvent(QDragMoveEvent* event) {
    if (m_isReadOnly || !plainTextOf(event->mimeData())) {
        event->ignore();
        return;
    }
    const Spot spot = spotAt(event->position().toPoint());
    m_dropSpot = spot;
    // Near an edge the text comes along row by row.
    ensureVisible(spot);
    event->acceptProposedAction();
}

void ZoomableTextView::dragLeaveEvent(QDragLeaveEvent*) {
    m_dropSpot.reset();
    viewport()->update();
}

void ZoomableTextView::dropEvent(QDropEvent* event) {
    m_dropSpot.reset();
    viewport()->update();
    const std::optional<QString> text = plainTextOf(event->mimeData());
    if (m_isReadOnly || !text) {
        event->ignore();
        return;
    }
    commitPreedit();
    const qsizetype position = spotAt(event->position().toPoint()).position;
    if (m_isDraggingSelection && event->dropAction() == Qt::MoveAction) {
        moveSelectionTo(position);
    } else if (!text->isEmpty()) {
        edit({position, 0}, *text, EditKind::other);
        setSelection({position, m_selection.caret});
    }
    event->acceptProposedAction();
    setFocus(Qt::MouseFocusReason);
}

/// One step of the history, and nothing at all within the selection itself.
void ZoomableTextView::moveSelectionTo(qsizetype position) {
    const TextRange moved = m_selection.range();
    if (position >= moved.location && position <= moved.end()) {
        return;
    }
    const TextReplacement removal{moved, {}};
    const TextReplacement insertion{{position, 0}, selectedText()};
    const bool goesForward = position > moved.end();
    const std::array replacements = goesForward ? std::array{removal, insertion} : std::array{insertion, removal};
    clearPreedit();
    Q_EMIT aboutToEdit();
    m_undoManager.replaceAll(replacements, m_selection);
    const qsizetype start = goesForward ? position - moved.length : position;
    m_goalX.reset();
    setSelection({start, start + moved.length});
    Q_EMIT edited();
    ensureCaretVisible();
}

void ZoomableTextView::drawDropPlace(QPainter& painter) {
    if (m_dropSpot) {
        const Row row = m_layout.rowHolding(m_dropSpot->position, m_dropSpot->side);
        painter.fillRect(placeOfCaret(row, m_dropSpot->position), palette().color(QPalette::Text));
    }
}

} // namespace quillary
