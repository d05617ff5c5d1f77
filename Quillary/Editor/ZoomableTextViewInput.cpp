#include "Quillary/Editor/ZoomableTextView.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace quillary {

namespace {

/// Units on each side of the caret that input methods get to see.
constexpr qsizetype surroundingLength = 500;

} // namespace

/// The part of the caret's line that input methods get to see; their positions count from its start.
TextRange ZoomableTextView::surroundingRange() const {
    const TextRange line = m_storage.lineContents(m_storage.lineAt(m_selection.caret));
    const qsizetype from = std::max(line.location, m_selection.caret - surroundingLength);
    const qsizetype to = std::min(line.end(), m_selection.caret + surroundingLength);
    const qsizetype start = m_storage.clusterBoundaryAtOrBefore(from);
    return {start, m_storage.clusterBoundaryAtOrAfter(to) - start};
}

void ZoomableTextView::inputMethodEvent(QInputMethodEvent* event) {
    if (m_isReadOnly) {
        event->ignore();
        return;
    }
    const bool isInput = !event->commitString().isEmpty() || event->replacementLength() > 0 ||
                         event->preeditString() != m_layout.preedit().text;
    const TextRange surrounding = surroundingRange();
    m_layout.setPreedit({});
    const bool isTyped = event->replacementLength() == 0 && event->replacementStart() == 0;
    if (isTyped && !event->commitString().isEmpty()) {
        // With a selection too it is one step of the history, as with a key.
        edit(m_selection.range(), event->commitString(), EditKind::typing);
    } else if (isInput && !m_selection.isEmpty()) {
        removeRange(m_selection.range(), EditKind::typing);
    }
    if (!isTyped) {
        const qsizetype start =
            std::clamp<qsizetype>(m_selection.caret + event->replacementStart(), 0, m_storage.length());
        const qsizetype end = std::clamp<qsizetype>(start + event->replacementLength(), start, m_storage.length());
        edit({start, end - start}, event->commitString(), EditKind::typing);
    }
    Preedit preedit;
    preedit.position = m_selection.caret;
    preedit.text = event->preeditString();
    preedit.caret = preedit.text.size();
    for (const QInputMethodEvent::Attribute& attribute : event->attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor) {
            preedit.caret = std::clamp<qsizetype>(attribute.start, 0, preedit.text.size());
        } else if (attribute.type == QInputMethodEvent::TextFormat) {
            const QTextFormat format = qvariant_cast<QTextFormat>(attribute.value);
            preedit.formats.append({attribute.start, attribute.length, format.toCharFormat()});
        } else if (attribute.type == QInputMethodEvent::Selection) {
            const qsizetype anchor = surrounding.location + attribute.start;
            setSelection({anchor, anchor + attribute.length});
        }
    }
    m_layout.setPreedit(preedit);
    settleTop();
    ensureCaretVisible();
    event->accept();
}

void ZoomableTextView::clearPreedit() {
    if (!m_layout.preedit().isEmpty()) {
        m_layout.setPreedit({});
        viewport()->update();
    }
}

void ZoomableTextView::commitPreedit() {
    if (!m_layout.preedit().isEmpty()) {
        const QScopedValueRollback guard(m_isCommittingPreedit, true);
        QGuiApplication::inputMethod()->commit();
        clearPreedit();
    }
}

void ZoomableTextView::updateInputMethod() {
    if (hasFocus()) {
        updateMicroFocus();
    }
}

QVariant ZoomableTextView::inputMethodQuery(Qt::InputMethodQuery query) const {
    const auto at = [](qsizetype position) { return QVariant(static_cast<int>(position)); };
    const qsizetype caret = m_selection.caret;
    switch (query) {
    case Qt::ImEnabled:
        return isEnabled() && !m_isReadOnly;
    case Qt::ImHints:
        return static_cast<int>(Qt::ImhMultiLine | Qt::ImhNoPredictiveText);
    case Qt::ImFont:
        return m_layout.font();
    case Qt::ImCursorRectangle:
        // The place is only known by laying out, which changes no state that anybody sees.
        return const_cast<ZoomableTextView*>(this)->caretRect().translated(viewport()->pos());
    case Qt::ImSurroundingText:
        return m_storage.text(surroundingRange());
    case Qt::ImCursorPosition:
        return at(caret - surroundingRange().location);
    case Qt::ImAnchorPosition: {
        const TextRange range = surroundingRange();
        return at(std::clamp(m_selection.anchor, range.location, range.end()) - range.location);
    }
    case Qt::ImCurrentSelection: {
        const TextRange range = m_selection.range();
        return m_storage.text({range.location, std::min(range.length, 2 * surroundingLength)});
    }
    case Qt::ImAbsolutePosition:
        return at(caret);
    case Qt::ImTextBeforeCursor: {
        const TextRange range = surroundingRange();
        return m_storage.text({range.location, caret - range.location});
    }
    case Qt::ImTextAfterCursor: {
        const TextRange range = surroundingRange();
        return m_storage.text({caret, range.end() - caret});
    }
    default:
        return QAbstractScrollArea::inputMethodQuery(query);
    }
}

} // namespace quillary
