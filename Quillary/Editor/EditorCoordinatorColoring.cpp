#include "Quillary/Editor/EditorCoordinator.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include <algorithm>

namespace quillary {

namespace {

/// What is coloured on each side of the visible text of a note that is too long to be coloured whole.
constexpr qsizetype windowMargin = 40'000;
/// How near to the window's edge the visible text may come before another window is coloured.
constexpr qsizetype edgeDistance = 20'000;

/// A range grown to whole lines.
TextRange wholeLines(const TextStorage& text, TextRange range) {
    const qsizetype start = text.lineRange(text.lineAt(range.location)).location;
    // The line of the last unit, not the one that begins behind it.
    const qsizetype last = text.lineAt(std::max(range.location, range.end() - 1));
    return {start, text.lineRange(last).end() - start};
}

TextRange wholeClusters(const TextStorage& text, TextRange range) {
    const qsizetype start = text.clusterBoundaryAtOrBefore(range.location);
    return {start, text.clusterBoundaryAtOrAfter(range.end()) - start};
}

} // namespace

std::optional<SyntaxLanguage> EditorCoordinator::language() const {
    const NoteItemPtr item = m_item.lock();
    return item ? syntaxLanguage(item->format()) : std::nullopt;
}

void EditorCoordinator::highlightIfNeeded(ZoomableTextView& view) {
    const bool hasStaleColors = !language() && !view.textLayout().syntax().isEmpty();
    if (language() != view.highlightedLanguage() || hasStaleColors) {
        highlightSyntax(language(), view);
    }
}

void EditorCoordinator::highlightSyntax(std::optional<SyntaxLanguage> language, ZoomableTextView& view) {
    cancelHighlight();
    if (!language) {
        view.setHighlights({}, {}, {});
        return;
    }
    const TextRange window = highlightWindow(view);
    const QList<SyntaxToken> tokens = SyntaxHighlighter::tokens(view.storage(), *language, window);
    std::vector<SyntaxRanges::Span> colors;
    colors.reserve(static_cast<std::size_t>(tokens.size()));
    for (const SyntaxToken& token : tokens) {
        colors.push_back({token.range, token.kind});
    }
    view.setHighlights(language, window, std::move(colors));
}

void EditorCoordinator::highlightNow() {
    if (ZoomableTextView* const view = textView()) {
        highlightSyntax(language(), *view);
    }
}

void EditorCoordinator::scheduleHighlight(DelayedTask& task) {
    if (language()) {
        cancelHighlight();
        task.restart();
    }
}

bool EditorCoordinator::isHighlightPending() const {
    return m_highlightAfterEdit.isPending() || m_highlightAfterScroll.isPending();
}

void EditorCoordinator::cancelHighlight() {
    m_highlightAfterEdit.cancel();
    m_highlightAfterScroll.cancel();
}

TextRange EditorCoordinator::highlightWindow(ZoomableTextView& view) const {
    const TextStorage& text = view.storage();
    const TextRange whole{0, text.length()};
    const std::optional<TextRange> visible = view.visibleRange();
    if (whole.length <= SyntaxHighlighter::maxLength || !visible) {
        return whole;
    }
    const qsizetype start = std::max<qsizetype>(visible->location - windowMargin, 0);
    const qsizetype end = std::min(visible->end() + windowMargin, whole.length);
    const TextRange window{start, end - start};
    const TextRange lines = wholeLines(text, window);
    return lines.length <= SyntaxHighlighter::maxLength ? lines : wholeClusters(text, window);
}

void EditorCoordinator::scrollDidChange(ZoomableTextView* sender) {
    if (sender != textView() || !sender->highlightedLanguage() || !sender->highlightedWindow() ||
        isHighlightPending()) {
        return;
    }
    const TextRange window = *sender->highlightedWindow();
    const qsizetype length = sender->storage().length();
    if (window.length >= length) {
        return;
    }
    const std::optional<TextRange> visible = sender->visibleRange();
    if (!visible) {
        return;
    }
    const bool reachesStart = window.location >= 1 && visible->location < window.location + edgeDistance;
    const bool reachesEnd = window.end() < length && window.end() - edgeDistance < visible->end();
    if (reachesStart || reachesEnd) {
        scheduleHighlight(m_highlightAfterScroll);
    }
}

} // namespace quillary
