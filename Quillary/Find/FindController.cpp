#include "Quillary/Find/FindController.h"

#include "Quillary/Find/FindTextView.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Text/LineTerminators.h"
#include "QuillaryCore/Text/TextStorage.h"

#include <algorithm>
#include <utility>

namespace quillary {

FindController::FindController(NotesStore& store, QObject* parent) : QObject(parent), m_store(store) {}

FindController::~FindController() = default;

template <typename T>
bool FindController::assign(T& field, const std::type_identity_t<T>& value, void (FindController::*changed)()) {
    if (field == value) {
        return false;
    }
    field = value;
    Q_EMIT(this->*changed)();
    return true;
}

FindTextView* FindController::editor() {
    auto* const view = dynamic_cast<FindTextView*>(AppActions::shared().editor.get());
    return view != nullptr && view->shownDocument() != nullptr ? view : nullptr;
}

void FindController::setShowsReplace(bool showsReplace) {
    assign(m_showsReplace, showsReplace, &FindController::showsReplaceChanged);
}

void FindController::setQuery(const QString& query) {
    if (assign(m_query, query, &FindController::queryChanged)) {
        search(m_anchorLocation);
    }
}

void FindController::setOptions(SearchOptions options) {
    if (assign(m_options, options, &FindController::optionsChanged)) {
        search(m_anchorLocation);
    }
}

void FindController::setReplacement(const QString& replacement) {
    assign(m_replacement, replacement, &FindController::replacementChanged);
}

void FindController::show(bool replace) {
    if (const NoteItemPtr note = m_store.selectedItem(); note != nullptr && note->showsPreview()) {
        note->setShowsPreview(false);
    }
    setShowsReplace(replace || (m_isVisible && m_showsReplace));
    assign(m_isVisible, true, &FindController::isVisibleChanged);
    // What is selected is searched from where it is, so it has to be looked at before a search moves the selection.
    const FindTextView* const view = editor();
    const std::optional<QString> selected = selectedSingleLineText();
    m_anchorLocation = view == nullptr ? 0 : view->selection().range().location;
    assign(m_query, selected.value_or(m_query), &FindController::queryChanged);
    assign(m_focusesReplaceField, replace && !m_query.isEmpty(), &FindController::focusesReplaceFieldChanged);
    assign(m_fieldFocusToken, m_fieldFocusToken + 1, &FindController::fieldFocusTokenChanged);
    search(m_anchorLocation);
}

void FindController::close() {
    if (!assign(m_isVisible, false, &FindController::isVisibleChanged)) {
        return;
    }
    if (FindTextView* const view = editor()) {
        view->clearFindHighlights();
    }
    m_store.raiseEditorFocusToken();
}

void FindController::step(qsizetype by) {
    if (!m_isVisible) {
        show(false);
    }
    if (m_matchCount < 1) {
        AppActions::shared().beep();
        return;
    }
    const qsizetype base = m_currentIndex.value_or(by < 1 ? 0 : -1);
    const qsizetype index = ((base + by) % m_matchCount + m_matchCount) % m_matchCount;
    assign(m_currentIndex, index, &FindController::currentIndexChanged);
    if (FindTextView* const view = editor()) {
        paint(*view);
    }
    revealCurrent();
}

void FindController::search(std::optional<qsizetype> selectingFrom) {
    FindTextView* const view = editor();
    if (view != nullptr) {
        view->clearFindHighlights();
    }
    m_engine.reset();
    std::vector<SearchMatch> results;
    std::optional<QString> error;
    if (m_isVisible && view != nullptr && !m_query.isEmpty()) {
        auto engine = TextSearch::make(m_query, m_options);
        if (engine) {
            m_engine = std::move(engine).value();
            NoteDocument& document = *view->shownDocument();
            m_searchedDocument = &document;
            m_searchedRevision = document.storage().revision();
            results = m_engine->matches(document.text());
        } else {
            error = description(engine.error());
        }
    }
    m_results = std::move(results);
    const std::optional<qsizetype> current =
        view == nullptr ? std::nullopt : indexFrom(selectingFrom.value_or(view->selection().range().location));
    // Who is told of one of them finds all of them as they are.
    const bool errorChanges = std::exchange(m_errorMessage, error) != error;
    const auto count = static_cast<qsizetype>(m_results.size());
    const bool countChanges = std::exchange(m_matchCount, count) != count;
    const bool currentChanges = std::exchange(m_currentIndex, current) != current;
    if (view != nullptr) {
        paint(*view);
    }
    if (selectingFrom) {
        revealCurrent();
    }
    if (errorChanges) {
        Q_EMIT errorMessageChanged();
    }
    if (countChanges) {
        Q_EMIT matchCountChanged();
    }
    if (currentChanges) {
        Q_EMIT currentIndexChanged();
    }
}

/// The first match at or behind a position, or the first of all.
std::optional<qsizetype> FindController::indexFrom(qsizetype position) const {
    if (m_results.empty()) {
        return std::nullopt;
    }
    const auto match =
        std::lower_bound(m_results.begin(), m_results.end(), position,
                         [](const SearchMatch& each, qsizetype from) { return each.range.location < from; });
    return match == m_results.end() ? 0 : match - m_results.begin();
}

void FindController::paint(FindTextView& view) const {
    if (m_results.empty()) {
        return;
    }
    std::vector<TextRange> ranges;
    ranges.reserve(m_results.size());
    for (const SearchMatch& match : m_results) {
        ranges.push_back(match.range);
    }
    view.setFindHighlights(ranges, m_currentIndex);
}

void FindController::revealCurrent() const {
    FindTextView* const view = editor();
    if (view == nullptr || !m_currentIndex || *m_currentIndex >= static_cast<qsizetype>(m_results.size())) {
        return;
    }
    const TextRange range = m_results[static_cast<std::size_t>(*m_currentIndex)].range;
    view->setSelection({range.location, range.end()});
    view->scrollToRange(range);
    view->showFindIndicator(range);
}

std::optional<QString> FindController::selectedSingleLineText() const {
    constexpr qsizetype longest = 500;
    FindTextView* const view = editor();
    if (view == nullptr) {
        return std::nullopt;
    }
    const TextRange range = view->selection().range();
    if (range.isEmpty() || range.length > longest) {
        return std::nullopt;
    }
    const QString text = view->shownDocument()->text(range);
    const bool holdsLineEnd =
        std::any_of(text.begin(), text.end(), [](QChar unit) { return isLineTerminator(unit.unicode()); });
    return holdsLineEnd ? std::nullopt : std::optional(text);
}

void FindController::useSelectionForFind() {
    if (!selectedSingleLineText()) {
        AppActions::shared().beep();
        return;
    }
    show(false);
}

} // namespace quillary
