#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QAccessibleWidget>

namespace quillary {

class ZoomableTextView;

/// What assistive technology sees of a text view: its text, caret, selection and places on the screen, and, while it is
/// not read-only, a way to edit it as a user would. Offsets are UTF-16 units; those beyond the text are brought into
/// it.
class TextViewAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface {
public:
    explicit TextViewAccessible(ZoomableTextView& view);

    /// Makes views accessible by this class from now on.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    QString text(QAccessible::Text type) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

private:
    ZoomableTextView& view() const;
    TextRange range(int start, int end) const;
    TextRange unitAt(qsizetype offset, QAccessible::TextBoundaryType type) const;
    TextRange foundUnitAt(qsizetype offset, QAccessible::TextBoundaryType type) const;
    QString give(TextRange unit, int* start, int* end) const;
};

} // namespace quillary
