#pragma once

#include "QuillaryCore/Compare/DiffRows.h"
#include "QuillaryCore/Compare/DiffStats.h"

namespace quillary {

/// What two texts have in common and in what they differ. A value that is cheap to copy, also to another thread.
struct TextDiffResult {
    DiffRows rows;
    DiffStats stats;

    friend bool operator==(const TextDiffResult&, const TextDiffResult&) = default;
};

} // namespace quillary
