#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QStackedWidget>

namespace quillary {

class EditorView;
class PlaceholderView;

/// The right side of the main window: the selected note in the editor, or a placeholder that says why there is none.
class DetailView : public QStackedWidget {
    Q_OBJECT

public:
    DetailView(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);

private:
    void update();

    NotesStore& m_store;
    PlaceholderView* m_placeholder;
    EditorView* m_editor;
};

} // namespace quillary
