#pragma once

#include "Quillary/State/NotesStore.h"

#include <QMenu>

#include <functional>

namespace quillary {

/// The commands on a note's row: on the whole multiple selection if the note is of it, and otherwise on the note alone.
/// Nothing is selected until a command runs.
class NoteContextMenu : public QMenu {
    Q_OBJECT

public:
    NoteContextMenu(NotesStore& store, const NoteItemPtr& item, QWidget* parent = nullptr);

private:
    QList<NoteItemPtr> targetsOf(const NoteItemPtr& item) const;
    void addItems(const QList<NoteItemPtr>& targets);
    void addItems(const NoteItemPtr& item);
    void addFormats(const NoteItemPtr& item);
    QAction* add(QMenu& menu, const QString& text, const NoteItemPtr& item, const std::function<void()>& command);
    void select(const NoteItem& item) const;

    NotesStore& m_store;
};

} // namespace quillary
