#pragma once

#include "Quillary/State/NotesStore.h"

#include <QMenu>

namespace quillary {

/// The menu "Sposta in" for some notes. It lists the folders anew whenever it opens.
class MoveToFolderMenu : public QMenu {
    Q_OBJECT

public:
    MoveToFolderMenu(NotesStore& store, const QList<NoteItemPtr>& items, QWidget* parent = nullptr);
};

} // namespace quillary
