#pragma once

#include "QuillaryCore/Compare/DiffSide.h"

#include <optional>

namespace quillary {

/// One row of a comparison: a line that both texts have, a pair of lines that took each other's place, or a line that
/// only one of them has.
struct DiffRow {
    enum class Kind : quint8 {
        unchanged,
        changed,
        removed,
        added,
    };

    /// The row's place in the result, from 0.
    qsizetype id = 0;
    Kind kind = Kind::unchanged;
    /// Absent for an added line.
    std::optional<DiffSide> oldSide;
    /// Absent for a removed line.
    std::optional<DiffSide> newSide;

    friend bool operator==(const DiffRow&, const DiffRow&) = default;
};

} // namespace quillary
