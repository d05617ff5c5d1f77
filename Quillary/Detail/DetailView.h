#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QWidget>

class QStackedWidget;

namespace quillary {

class DetailToolbar;
class DiffView;
class EditorView;
class FindController;
class NotePreview;
class PlaceholderView;
class SelectionPanel;
class SoloController;
class StatusBar;

/// The right side of the main window. What it shows follows from the store: the panel of a multiple selection or its
/// comparison, the selected note as text or preview, or a placeholder that says why there is none. A pane that most
/// runs never show is made when it is first shown.
class DetailView : public QWidget {
    Q_OBJECT

public:
    DetailView(NotesStore& store, AppSettings& settings, FindController& find, SoloController& solo,
               QWidget* parent = nullptr);

    /// What stands between the tool bar and the status bar.
    QWidget* pane() const;

    /// Does what Return or Escape means for the panel of a multiple selection, if that is on show. False for any other
    /// key, and when it is not.
    bool performKey(int key);

private:
    void update();
    void showSelection(const QList<NoteItemPtr>& items);
    void showNote(const NoteItemPtr& note);
    void showPlaceholder(const NoteItemPtr& note);
    NotePreview* preview();
    SelectionPanel* selection();
    DiffView* comparison();
    void present(QWidget* pane);

    NotesStore& m_store;
    AppSettings& m_settings;
    DetailToolbar* m_toolbar;
    QStackedWidget* m_panes;
    PlaceholderView* m_placeholder;
    EditorView* m_editor;
    NotePreview* m_preview = nullptr;
    SelectionPanel* m_selection = nullptr;
    DiffView* m_comparison = nullptr;
    StatusBar* m_status;
};

} // namespace quillary
