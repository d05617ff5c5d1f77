#pragma once

#include "Quillary/Previews/MarkdownPreview.h"

#include <QAccessibleWidget>

namespace quillary {

/// The Markdown preview as screen readers see it: one document whose text is what is shown, with the rows apart as in
/// copied text. It is put together when somebody asks for it.
class MarkdownPreviewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit MarkdownPreviewAccessible(MarkdownPreview& preview);

    /// Lets Qt make these for Markdown previews.
    static void install();

    /// Tells that the text, or the selection, is another.
    static void announceText(MarkdownPreview& preview);
    static void announceSelection(MarkdownPreview& preview);

    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    using QAccessibleWidget::text;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    MarkdownPreview& preview() const { return *static_cast<MarkdownPreview*>(widget()); }

    const QString& wholeText() const;
    MarkdownPreview::Position positionOf(int offset) const;
    int offsetOf(MarkdownPreview::Position position) const;

    mutable QString m_text;
    /// Where in the text each row's begins.
    mutable std::vector<int> m_starts;
    /// The revision of the preview that they were made of; none at first.
    mutable qint64 m_revision = -1;
};

} // namespace quillary
