#pragma once

#include "Quillary/State/NotesStore.h"

#include <QWidget>

namespace quillary {

class InlineTextField;
class TitleButton;

/// The title of the note on show. A click, the keyboard or the menu command turns it into a field that renames the
/// note; the focus goes to the editor when that ends.
class EditableTitle : public QWidget {
    Q_OBJECT

public:
    explicit EditableTitle(NotesStore& store, QWidget* parent = nullptr);

    /// The note whose title is shown; null for none. An edit that is under way ends with the note that it began with.
    void setItem(const NoteItemPtr& item);

    bool isEditing() const { return m_field != nullptr; }

    /// Shows the note's title as it is now.
    void update();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void beginEditing();
    void commit(const QString& draft);
    void cancel();
    void endEditing();
    void arrange();

    NotesStore& m_store;
    NoteItemPtr m_item;
    TitleButton* m_button;
    InlineTextField* m_field = nullptr;
};

} // namespace quillary
