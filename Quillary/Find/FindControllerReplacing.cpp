#include "Quillary/Find/FindController.h"
#include "Quillary/Find/FindTextView.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

namespace quillary {

/// Whether the results are places of the text that a view shows.
bool FindController::isTrueTo(const FindTextView& view) const {
    NoteDocument* const document = view.shownDocument();
    return document == m_searchedDocument && document->storage().revision() == m_searchedRevision;
}

/// The editor, if there is a current match to replace in it. Results of a text that has changed without a word to us
/// are made anew first.
FindTextView* FindController::editorWithMatches() {
    FindTextView* const view = editor();
    if (view != nullptr && !m_results.empty() && !isTrueTo(*view)) {
        search();
    }
    const bool hasMatches = view != nullptr && m_engine && m_currentIndex && !m_results.empty();
    if (!hasMatches) {
        AppActions::shared().beep();
    }
    return hasMatches ? view : nullptr;
}

void FindController::replaceCurrent() {
    FindTextView* const view = editorWithMatches();
    if (view == nullptr) {
        return;
    }
    const SearchMatch& match = m_results[static_cast<std::size_t>(*m_currentIndex)];
    const TextRange range = match.range;
    const QString text = m_engine->replacement(match, view->shownDocument()->text(), m_replacement);
    m_anchorLocation = range.location + text.size();
    // The edit searches anew, which ends the match.
    if (view->replaceText(range, text)) {
        search(m_anchorLocation);
    }
}

void FindController::replaceAll() {
    FindTextView* const view = editorWithMatches();
    if (view == nullptr) {
        return;
    }
    // The places and texts of all are those of the unchanged text.
    const QString text = view->shownDocument()->text();
    std::vector<TextReplacement> replacements;
    replacements.reserve(m_results.size());
    for (const SearchMatch& match : m_results) {
        replacements.push_back({match.range, m_engine->replacement(match, text, m_replacement)});
    }
    view->replaceTexts(replacements);
}

} // namespace quillary
