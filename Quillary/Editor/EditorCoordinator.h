#pragma once

#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteItem.h"
#include "QuillaryCore/Formats/SyntaxLanguage.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>
#include <unordered_map>

class QStackedWidget;

namespace quillary {

class AppSettings;
class FindController;
class NoteDocument;
class NotesStore;
class ZoomableTextView;

/// Keeps the editor in agreement with the store and the settings: shows the selected note's document in a text view of
/// its own, which stays for the document's whole life, gives it the font and the wrapping of the moment, carries the
/// focus where it is asked for, colours source text, and tells the store of edits.
class EditorCoordinator : public QObject {
    Q_OBJECT

public:
    /// `host` gets the text views as its pages, and owns them. All must outlive the coordinator.
    EditorCoordinator(NotesStore& store, AppSettings& settings, FindController& find, QStackedWidget& host);
    ~EditorCoordinator() override;

    /// The text view on show; null when no document is.
    ZoomableTextView* textView() const;

    /// Whether the editor is the pane in use.
    void setActive(bool isActive);

    /// Brings the view in agreement. Without a change of anything it does nothing.
    void update();

private:
    void swapTo(std::shared_ptr<NoteDocument> document);
    void finishComposing();
    void leave(ZoomableTextView& view);
    ZoomableTextView& textViewOf(NoteDocument& document);
    ZoomableTextView* makeTextView(NoteDocument& document);
    void applyStyle(NoteDocument& document, ZoomableTextView& view);
    void searchAnew();
    void takeFocusIfAsked();
    void takeFocus();
    void textDidChange(const ZoomableTextView* sender);
    void zoom(int step);

    // EditorCoordinatorColoring.cpp
    std::optional<SyntaxLanguage> language() const;
    void highlightIfNeeded(ZoomableTextView& view);
    void highlightSyntax(std::optional<SyntaxLanguage> language, ZoomableTextView& view);
    void scheduleHighlight(DelayedTask& task);
    bool isHighlightPending() const;
    void cancelHighlight();
    void highlightNow();
    void scrollDidChange(ZoomableTextView* sender);
    TextRange highlightWindow(ZoomableTextView& view) const;

    // EditorCoordinatorWarmUp.cpp
    void startWarmUp();
    void warmUpNext();
    void warm(NoteDocument& document);

    NotesStore& m_store;
    AppSettings& m_settings;
    FindController& m_find;
    QStackedWidget& m_host;
    /// Shown while no document is.
    QWidget* m_placeholder;
    std::unordered_map<NoteDocument*, QPointer<ZoomableTextView>> m_textViews;
    std::shared_ptr<NoteDocument> m_document;
    std::weak_ptr<NoteItem> m_item;
    bool m_isActive = true;
    qint64 m_lastFocusToken = -1;
    qint64 m_lastRevision = -1;
    bool m_detectFormatAfterChange = false;
    bool m_wasEmpty = false;
    DelayedTask m_takeFocus;
    /// At most one of the two is pending: one colouring, soon after the last edit or the first scroll.
    DelayedTask m_highlightAfterEdit;
    DelayedTask m_highlightAfterScroll;
    QTimer m_warmUpTimer;
};

} // namespace quillary
