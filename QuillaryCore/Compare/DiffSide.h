#pragma once

#include "QuillaryCore/Compare/DiffSegments.h"

namespace quillary {

/// One side of a row: a line of one of the two texts.
struct DiffSide {
    /// The line's number in its own text, from 1.
    qsizetype number = 0;
    DiffSegments segments;

    friend bool operator==(const DiffSide&, const DiffSide&) = default;
};

} // namespace quillary
