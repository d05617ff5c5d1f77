#pragma once

#include "Quillary/State/NoteTextView.h"
#include "QuillaryCore/Text/TextReplacement.h"

#include <optional>
#include <span>

namespace quillary {

/// What the find bar's controller asks of the text view that it searches.
class FindTextView : public NoteTextView {
public:
    /// Selects without scrolling.
    virtual void setSelection(TextSelection selection) = 0;

    /// Scrolls as little as needed to show a range.
    virtual void scrollToRange(TextRange range) = 0;

    /// Replaces disjoint ranges in ascending order, all given in the unchanged text, as one edit of the user's would,
    /// in one undoable step. False, and nothing happens, if the view refuses.
    virtual bool replaceTexts(std::span<const TextReplacement> replacements) = 0;

    /// Marks ranges, which are in ascending order, in the place of those marked before; `current` is the one that
    /// stands out. Marks touch neither the text nor its history.
    virtual void setFindHighlights(std::span<const TextRange> ranges, std::optional<qsizetype> current) = 0;

    /// Takes all marks away.
    virtual void clearFindHighlights() = 0;

    /// Draws the eye to a range for a moment.
    virtual void showFindIndicator(TextRange range) = 0;
};

} // namespace quillary
