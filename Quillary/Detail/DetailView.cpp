#include "Quillary/Detail/DetailView.h"

#include "Quillary/Comparison/DiffView.h"
#include "Quillary/Detail/DetailToolbar.h"
#include "Quillary/Detail/PlaceholderView.h"
#include "Quillary/Detail/SelectionPanel.h"
#include "Quillary/Detail/StatusBar.h"
#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Previews/NotePreview.h"

#include <QLineEdit>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillary {

DetailView::DetailView(NotesStore& store, AppSettings& settings, FindController& find, SoloController& solo,
                       QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_settings(settings),
      m_toolbar(new DetailToolbar(store, settings, solo, this)),
      m_panes(new QStackedWidget(this)),
      m_placeholder(new PlaceholderView(m_panes)),
      m_editor(new EditorView(&store, &settings, &find, m_panes)),
      m_status(new StatusBar(store, settings, this)) {
    m_panes->addWidget(m_placeholder);
    m_panes->addWidget(m_editor);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_panes, 1);
    layout->addWidget(m_status);

    connect(&store, &NotesStore::selectedIDChanged, this, &DetailView::update);
    connect(&store, &NotesStore::notesChanged, this, &DetailView::update);
    connect(&store, &NotesStore::multiSelectionChanged, this, &DetailView::update);
    connect(&store, &NotesStore::isShowingDiffChanged, this, &DetailView::update);
    // Whoever asks for the editor means the note: where its preview shows, its keys scroll that.
    connect(&store, &NotesStore::editorFocusTokenChanged, this, [this] {
        if (pane() == m_preview) {
            m_preview->setFocus(Qt::OtherFocusReason);
        }
    });
    connect(&store, &NotesStore::noteChanged, this, [this](const NoteItem* note, NoteField field) {
        const bool decides = field == NoteField::document || field == NoteField::loadError ||
                             field == NoteField::showsPreview || field == NoteField::characterCount ||
                             field == NoteField::url;
        if (decides && note == m_store.selectedItem().get()) {
            update();
        }
    });
    update();
}

QWidget* DetailView::pane() const {
    return m_panes->currentWidget();
}

bool DetailView::performKey(int key) {
    return pane() == m_selection && m_selection->performKey(key);
}

void DetailView::update() {
    const QList<NoteItemPtr> items =
        m_store.multiSelection().size() >= 2 ? m_store.actionTargets() : QList<NoteItemPtr>();
    const NoteItemPtr note = m_store.selectedItem();
    if (!items.isEmpty()) {
        showSelection(items);
    } else if (note != nullptr && note->document() != nullptr) {
        showNote(note);
    } else {
        showPlaceholder(note);
    }
}

void DetailView::showSelection(const QList<NoteItemPtr>& items) {
    m_status->setItem(nullptr);
    if (m_store.isShowingDiff() && items.size() == 2) {
        present(comparison());
    } else {
        const bool isOther = selection()->items() != items;
        m_selection->setItems(items);
        present(m_selection);
        // A click that adds a note to the selection has just given the list the keyboard, and Return is the panel's.
        if (isOther && qobject_cast<QLineEdit*>(window()->focusWidget()) == nullptr) {
            m_selection->setFocus(Qt::OtherFocusReason);
        }
    }
    m_toolbar->follow(nullptr, m_store.isShowingDiff() ? tr("Confronto") : tr("%1 note selezionate").arg(items.size()));
}

void DetailView::showNote(const NoteItemPtr& note) {
    m_toolbar->follow(note, std::nullopt);
    m_status->setItem(note);
    present(note->showsPreview() && note->canPreview() ? static_cast<QWidget*>(preview()) : m_editor);
}

void DetailView::showPlaceholder(const NoteItemPtr& note) {
    m_toolbar->follow(note, std::nullopt);
    m_status->setItem(nullptr);
    if (note != nullptr && note->loadError()) {
        m_placeholder->setTexts(tr("Impossibile aprire la nota"), *note->loadError(), {});
    } else {
        m_placeholder->setTexts(m_store.notes().isEmpty() ? tr("Nessuna nota") : tr("Nessuna nota selezionata"), {},
                                {tr("⌘N  nuova nota"), tr("⇧⌘N  dagli appunti")});
    }
    present(m_placeholder);
}

NotePreview* DetailView::preview() {
    if (m_preview == nullptr) {
        m_preview = new NotePreview(m_store, m_settings, m_panes);
        m_panes->addWidget(m_preview);
    }
    return m_preview;
}

SelectionPanel* DetailView::selection() {
    if (m_selection == nullptr) {
        m_selection = new SelectionPanel(m_store, m_panes);
        m_panes->addWidget(m_selection);
    }
    return m_selection;
}

DiffView* DetailView::comparison() {
    if (m_comparison == nullptr) {
        m_comparison = new DiffView(m_store, m_settings, m_panes);
        m_panes->addWidget(m_comparison);
    }
    return m_comparison;
}

/// Brings a pane to the front. Only an editor on show takes edits. The focus goes along with what had it, and always to
/// the panel of several notes, whose keys the user is told of.
void DetailView::present(QWidget* pane) {
    m_status->setVisible(pane == m_editor || pane == m_preview);
    if (pane == m_panes->currentWidget()) {
        return;
    }
    // Commands of the preview edit through the editor behind it, which nobody else reaches there.
    m_editor->setActive(pane == m_editor || pane == m_preview);
    const QWidget* const focused = window()->focusWidget();
    const bool hadFocus = focused != nullptr && m_panes->isAncestorOf(focused);
    m_panes->setCurrentWidget(pane);
    if (pane == m_editor && hadFocus) {
        m_editor->textView()->setFocus(Qt::OtherFocusReason);
    } else if (pane == m_selection || pane == m_comparison || hadFocus) {
        pane->setFocus(Qt::OtherFocusReason);
    }
}

} // namespace quillary
