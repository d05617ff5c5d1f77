#include "Quillary/Editor/EditorCoordinator.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"

#include <QStackedWidget>

#include <algorithm>
#include <chrono>

namespace quillary {

namespace {

using namespace std::chrono_literals;

/// Longer notes are laid out before they are asked for.
constexpr qsizetype longestColdText = 200'000;
constexpr auto firstPause = 2s;
constexpr auto pauseAfterWarming = 400ms;
constexpr auto pauseBeforeNewNote = 5s;

bool isCold(const NoteItem& item) {
    const std::shared_ptr<NoteDocument>& document = item.document();
    return document && !document->editorView && document->length() > longestColdText;
}

} // namespace

void EditorCoordinator::startWarmUp() {
    m_warmUpTimer.setSingleShot(true);
    connect(&m_warmUpTimer, &QTimer::timeout, this, &EditorCoordinator::warmUpNext);
    // With nothing to warm the timer rests until there is something.
    connect(&m_store, &NotesStore::noteChanged, this, [this](const NoteItem* item, NoteField field) {
        const bool concerns = field == NoteField::document || field == NoteField::characterCount;
        if (concerns && !m_warmUpTimer.isActive() && isCold(*item)) {
            m_warmUpTimer.start(pauseBeforeNewNote);
        }
    });
    m_warmUpTimer.start(firstPause);
}

/// One note a turn, so that a long layout never holds up typing for long. It never loads a file.
void EditorCoordinator::warmUpNext() {
    const QList<NoteItemPtr>& notes = m_store.notes();
    const auto candidate = std::ranges::find_if(notes, [](const NoteItemPtr& item) { return isCold(*item); });
    if (candidate != notes.end()) {
        warm(*(*candidate)->document());
        m_warmUpTimer.start(pauseAfterWarming);
    }
}

void EditorCoordinator::warm(NoteDocument& document) {
    ZoomableTextView& view = textViewOf(document);
    applyStyle(document, view);
    view.resize(m_host.size());
    // A view that was never on show gets its size, and lays out what it shows, when it is drawn.
    view.grab();
}

} // namespace quillary
