#include "Quillary/Previews/MarkdownPreviewAccessible.h"

#include <algorithm>

namespace quillary {

namespace {

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* const preview = qobject_cast<MarkdownPreview*>(object);
    return preview ? new MarkdownPreviewAccessible(*preview) : nullptr;
}

/// The interface of a preview that is asked about; null as long as nobody asks.
MarkdownPreviewAccessible* interfaceOf(MarkdownPreview& preview) {
    if (!QAccessible::isActive()) {
        return nullptr;
    }
    return static_cast<MarkdownPreviewAccessible*>(QAccessible::queryAccessibleInterface(&preview));
}

} // namespace

MarkdownPreviewAccessible::MarkdownPreviewAccessible(MarkdownPreview& preview)
    : QAccessibleWidget(&preview, QAccessible::Document) {}

void MarkdownPreviewAccessible::install() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void MarkdownPreviewAccessible::announceText(MarkdownPreview& preview) {
    if (QAccessible::isActive()) {
        QAccessibleEvent changed(&preview, QAccessible::VisibleDataChanged);
        QAccessible::updateAccessibility(&changed);
    }
}

void MarkdownPreviewAccessible::announceSelection(MarkdownPreview& preview) {
    if (const MarkdownPreviewAccessible* const self = interfaceOf(preview)) {
        int start = 0;
        int end = 0;
        self->selection(0, &start, &end);
        QAccessibleTextSelectionEvent changed(&preview, start, end);
        QAccessible::updateAccessibility(&changed);
    }
}

QAccessible::State MarkdownPreviewAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

void* MarkdownPreviewAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
}

const QString& MarkdownPreviewAccessible::wholeText() const {
    if (m_revision != preview().revision()) {
        m_revision = preview().revision();
        m_text.clear();
        m_starts.clear();
        const auto count = static_cast<qsizetype>(preview().rows().rows.size());
        for (qsizetype row = 0; row < count; ++row) {
            m_text += preview().separatorAbove(row);
            m_starts.push_back(static_cast<int>(m_text.size()));
            m_text += preview().rowText(row);
        }
    }
    return m_text;
}

MarkdownPreview::Position MarkdownPreviewAccessible::positionOf(int offset) const {
    wholeText();
    const auto behind = std::upper_bound(m_starts.begin(), m_starts.end(), offset);
    if (behind == m_starts.begin()) {
        return {};
    }
    return {behind - m_starts.begin() - 1, offset - *(behind - 1)};
}

int MarkdownPreviewAccessible::offsetOf(MarkdownPreview::Position position) const {
    const QString& text = wholeText();
    const auto row = static_cast<std::size_t>(position.row);
    return row < m_starts.size() ? m_starts[row] + static_cast<int>(position.offset) : static_cast<int>(text.size());
}

void MarkdownPreviewAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = 0;
    if (selectionIndex == 0 && preview().hasSelection()) {
        *startOffset = offsetOf(preview().selectionStart());
        *endOffset = offsetOf(preview().selectionEnd());
    }
}

int MarkdownPreviewAccessible::selectionCount() const {
    return preview().hasSelection() ? 1 : 0;
}

void MarkdownPreviewAccessible::addSelection(int startOffset, int endOffset) {
    setSelection(0, startOffset, endOffset);
}

void MarkdownPreviewAccessible::removeSelection(int selectionIndex) {
    if (selectionIndex == 0) {
        preview().select({}, {});
    }
}

void MarkdownPreviewAccessible::setSelection(int selectionIndex, int startOffset, int endOffset) {
    if (selectionIndex == 0) {
        preview().select(positionOf(startOffset), positionOf(endOffset));
    }
}

int MarkdownPreviewAccessible::cursorPosition() const {
    return offsetOf(preview().selectionEnd());
}

void MarkdownPreviewAccessible::setCursorPosition(int position) {
    preview().showPosition(positionOf(position));
}

QString MarkdownPreviewAccessible::text(int startOffset, int endOffset) const {
    const QString& whole = wholeText();
    const int start = std::clamp(startOffset, 0, static_cast<int>(whole.size()));
    const int end =
        endOffset < 0 ? static_cast<int>(whole.size()) : std::min<int>(endOffset, static_cast<int>(whole.size()));
    return whole.mid(start, std::max(end - start, 0));
}

int MarkdownPreviewAccessible::characterCount() const {
    return static_cast<int>(wholeText().size());
}

QRect MarkdownPreviewAccessible::characterRect(int offset) const {
    const QRect rect = preview().rectOf(positionOf(offset)).toAlignedRect();
    return {preview().viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

int MarkdownPreviewAccessible::offsetAtPoint(const QPoint& point) const {
    const QPoint inside = preview().viewport()->mapFromGlobal(point);
    return preview().viewport()->rect().contains(inside) ? offsetOf(preview().positionAt(inside)) : -1;
}

void MarkdownPreviewAccessible::scrollToSubstring(int startIndex, int) {
    preview().showPosition(positionOf(startIndex));
}

QString MarkdownPreviewAccessible::attributes(int offset, int* startOffset, int* endOffset) const {
    *startOffset = offset;
    *endOffset = offset;
    return {};
}

} // namespace quillary
