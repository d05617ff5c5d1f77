#include "Quillary/Editor/ZoomableTextView.h"

#include <QAccessible>

#include <utility>

namespace quillary {

void ZoomableTextView::rememberForAccessibility(TextRange removed) {
    m_removedText = QAccessible::isActive() ? m_storage.text(removed) : QString();
}

void ZoomableTextView::announceChange(const TextChange& change) {
    if (!QAccessible::isActive()) {
        return;
    }
    const auto offset = static_cast<int>(change.offset);
    // Of what undo or others removed only the length is known.
    const QString removed = m_removedText.size() == change.removedLength
                                ? std::exchange(m_removedText, QString())
                                : QString(change.removedLength, QChar::ObjectReplacementCharacter);
    const QString inserted = m_storage.text({change.offset, change.insertedLength});
    if (removed.isEmpty()) {
        QAccessibleTextInsertEvent event(this, offset, inserted);
        QAccessible::updateAccessibility(&event);
    } else if (inserted.isEmpty()) {
        QAccessibleTextRemoveEvent event(this, offset, removed);
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleTextUpdateEvent event(this, offset, removed, inserted);
        QAccessible::updateAccessibility(&event);
    }
}

void ZoomableTextView::announceSelection(TextSelection before) {
    if (!QAccessible::isActive()) {
        return;
    }
    const auto at = [](qsizetype position) { return static_cast<int>(position); };
    if (m_selection.caret != before.caret) {
        QAccessibleTextCursorEvent event(this, at(m_selection.caret));
        QAccessible::updateAccessibility(&event);
    }
    if (!m_selection.isEmpty() || !before.isEmpty()) {
        const TextRange range = m_selection.range();
        QAccessibleTextSelectionEvent event(this, at(range.location), at(range.end()));
        event.setCursorPosition(at(m_selection.caret));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace quillary
