#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <optional>
#include <vector>

namespace quillary {

/// A place that a search found, in UTF-16 units of the searched text.
struct SearchMatch {
    TextRange range;
    /// What the pattern's capture groups took, the first group first; absent for a group that took no part.
    std::vector<std::optional<TextRange>> groups = {};

    friend bool operator==(const SearchMatch&, const SearchMatch&) = default;
};

} // namespace quillary
