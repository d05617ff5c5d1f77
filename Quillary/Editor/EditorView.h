#pragma once

#include <QWidget>

#include <memory>

class QStackedWidget;

namespace quillary {

class AppSettings;
class EditorCoordinator;
class FindController;
class NotesStore;
class ZoomableTextView;

/// The place of the editor in the window: the find bar, if it is open, above the text view of the selected note, or
/// nothing. What is shown when, and what follows from an edit, is up to its coordinator.
class EditorView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive the view.
    EditorView(NotesStore* store, AppSettings* settings, FindController* find, QWidget* parent = nullptr);
    ~EditorView() override;

    /// Whether the editor is the pane in use, and not covered by a preview. A covered editor takes no edits, and a
    /// request for the focus waits until it is uncovered.
    void setActive(bool isActive);

    /// The text view on show; null when no note is.
    ZoomableTextView* textView() const;

private:
    QStackedWidget* m_textViews;
    std::unique_ptr<EditorCoordinator> m_coordinator;
};

} // namespace quillary
