#pragma once

#include "Quillary/State/NotesStore.h"

#include <QToolButton>

namespace quillary {

/// The format of the note on show, with a menu that gives it another one.
class FormatMenuButton : public QToolButton {
    Q_OBJECT

public:
    explicit FormatMenuButton(NotesStore& store, QWidget* parent = nullptr);

    /// The note whose format is shown. Called again when its format may have changed.
    void setItem(const NoteItemPtr& item);

protected:
    void initStyleOption(QStyleOptionToolButton* option) const override;

private:
    void markPresentFormat();

    NotesStore& m_store;
    NoteItemPtr m_item;
};

} // namespace quillary
