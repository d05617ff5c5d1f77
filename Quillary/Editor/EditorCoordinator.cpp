#include "Quillary/Editor/EditorCoordinator.h"

#include "Quillary/Editor/EditorFont.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Find/FindController.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"

#include <QStackedWidget>

#include <chrono>
#include <utility>

namespace quillary {

using namespace std::chrono_literals;

EditorCoordinator::EditorCoordinator(NotesStore& store, AppSettings& settings, FindController& find,
                                     QStackedWidget& host)
    : m_store(store),
      m_settings(settings),
      m_find(find),
      m_host(host),
      m_placeholder(new QWidget),
      m_takeFocus(0ms, [this] { takeFocus(); }),
      m_highlightAfterEdit(120ms, [this] { highlightNow(); }),
      m_highlightAfterScroll(60ms, [this] { highlightNow(); }) {
    m_host.addWidget(m_placeholder);
    const auto follow = [this] { update(); };
    connect(&m_store, &NotesStore::selectedIDChanged, this, follow);
    connect(&m_store, &NotesStore::notesChanged, this, follow);
    connect(&m_store, &NotesStore::editorFocusTokenChanged, this, follow);
    // Who asks last has the keyboard: a title that loses it is no longer edited.
    connect(&m_store, &NotesStore::titleRenameTokenChanged, this, [this] { m_takeFocus.cancel(); });
    connect(&m_store, &NotesStore::noteChanged, this, [this](const NoteItem* item, NoteField field) {
        const bool concerns = field == NoteField::document || field == NoteField::revision || field == NoteField::url;
        if (concerns && item == m_item.lock().get()) {
            update();
        }
    });
    connect(&m_settings, &AppSettings::fontSizeChanged, this, follow);
    connect(&m_settings, &AppSettings::fontStyleChanged, this, follow);
    connect(&m_settings, &AppSettings::wrapLinesChanged, this, follow);
    update();
    startWarmUp();
}

EditorCoordinator::~EditorCoordinator() = default;

ZoomableTextView* EditorCoordinator::textView() const {
    return m_document ? m_textViews.at(m_document.get()).get() : nullptr;
}

void EditorCoordinator::setActive(bool isActive) {
    m_isActive = isActive;
    update();
}

void EditorCoordinator::update() {
    const NoteItemPtr item = m_store.selectedItem();
    const std::shared_ptr<NoteDocument> document = item ? item->document() : nullptr;
    if (document != m_document && m_document) {
        finishComposing();
    }
    m_item = item;
    const qint64 revision = item ? item->revision() : 0;
    if (document != m_document) {
        swapTo(document);
        m_lastRevision = revision;
        m_find.setAnchorLocation(0);
        searchAnew();
    } else if (revision != m_lastRevision && document) {
        m_lastRevision = revision;
        textView()->setSelection(textView()->selection());
        textView()->resetHighlightedLanguage();
        searchAnew();
    }
    if (ZoomableTextView* view = textView()) {
        applyStyle(*m_document, *view);
        highlightIfNeeded(*view);
        view->setReadOnly(!m_isActive);
    }
    if (m_isActive) {
        takeFocusIfAsked();
    }
}

/// What an input method composes belongs to the note that it is composed in, and must be told of while that is on show.
void EditorCoordinator::finishComposing() {
    const NoteItemPtr item = m_item.lock();
    if (item && m_store.contains(*item)) {
        textView()->commitPreedit();
    }
}

void EditorCoordinator::applyStyle(NoteDocument& document, ZoomableTextView& view) {
    view.setWraps(m_settings.wrapLines());
    const EditorStyle style = m_settings.editorStyle();
    view.setEditorFont(editorFont(style));
    document.appliedStyle = style;
}

/// What ends when another document comes on show.
void EditorCoordinator::leave(ZoomableTextView& view) {
    m_document->undoManager().breakCoalescing();
    view.clearFindHighlights();
    m_document->scrollOrigin = view.scrollOrigin();
    if (isHighlightPending()) {
        // What was to be coloured is coloured when it comes back; the task must not reach the next view.
        cancelHighlight();
        view.resetHighlightedLanguage();
    }
}

void EditorCoordinator::swapTo(std::shared_ptr<NoteDocument> document) {
    ZoomableTextView* before = textView();
    const bool hadFocus = before && before->hasFocus();
    if (before) {
        leave(*before);
    }
    // The old document may end here, and its view with it: only when the new one is on show.
    const std::shared_ptr<NoteDocument> old = std::exchange(m_document, std::move(document));
    if (!m_document) {
        m_host.setCurrentWidget(m_placeholder);
        AppActions::shared().editor = {};
        return;
    }
    ZoomableTextView& view = textViewOf(*m_document);
    applyStyle(*m_document, view);
    // The host may have another size since the view was last on show.
    view.resize(m_host.size());
    m_host.setCurrentWidget(&view);
    if (view.scrollOrigin() != m_document->scrollOrigin) {
        view.setScrollOrigin(m_document->scrollOrigin);
    }
    AppActions::shared().editor = &view;
    if (hadFocus) {
        view.setFocus(Qt::OtherFocusReason);
    }
}

ZoomableTextView& EditorCoordinator::textViewOf(NoteDocument& document) {
    QPointer<ZoomableTextView>& view = m_textViews[&document];
    if (!view) {
        view = makeTextView(document);
        document.editorView = view.get();
    }
    return *view;
}

ZoomableTextView* EditorCoordinator::makeTextView(NoteDocument& document) {
    auto* view = new ZoomableTextView(document);
    m_host.addWidget(view);
    view->setAccessibleName(tr("Testo della nota"));
    view->onZoomStep = [this](int step) { zoom(step); };
    connect(view, &ZoomableTextView::aboutToEdit, this, [this, view] { m_wasEmpty = view->storage().length() == 0; });
    connect(view, &ZoomableTextView::edited, this, [this, view] {
        // A paste into an empty note may decide its format; a single typed letter never does.
        const TextStorage& storage = view->storage();
        if (m_wasEmpty && storage.nextCluster(0) < storage.length()) {
            m_detectFormatAfterChange = true;
        }
        textDidChange(view);
    });
    connect(view, &ZoomableTextView::visibleRangeChanged, this, [this, view] { scrollDidChange(view); });
    connect(&document.storage(), &QObject::destroyed, this, [this, view = QPointer(view), key = &document] {
        m_textViews.erase(key);
        delete view;
    });
    return view;
}

void EditorCoordinator::textDidChange(const ZoomableTextView* sender) {
    const bool detectsFormat = std::exchange(m_detectFormatAfterChange, false);
    const NoteItemPtr item = m_item.lock();
    const std::shared_ptr<NoteDocument> document = m_document;
    if (!item || !document || sender != textView()) {
        return;
    }
    if (m_store.selectedFolder()) {
        m_store.setSelectedFolder(std::nullopt);
    }
    m_store.textDidChange(*item, *document, detectsFormat);
    searchAnew();
    scheduleHighlight(m_highlightAfterEdit);
}

/// Keeps what an open find bar shows true to the text.
void EditorCoordinator::searchAnew() {
    if (m_find.isVisible()) {
        m_find.search();
    }
}

void EditorCoordinator::takeFocusIfAsked() {
    const qint64 token = m_store.editorFocusToken();
    if (token == m_lastFocusToken) {
        return;
    }
    m_lastFocusToken = token;
    // The panes around may still be settling, and so may the selection: a note that goes leaves none for a moment.
    m_takeFocus.restart();
}

void EditorCoordinator::takeFocus() {
    if (ZoomableTextView* const view = textView(); view && view->isVisibleTo(view->window())) {
        view->setFocus(Qt::OtherFocusReason);
    }
}

void EditorCoordinator::zoom(int step) {
    m_settings.setFontSize(AppSettings::clampedFontSize(m_settings.fontSize() + step));
}

} // namespace quillary
