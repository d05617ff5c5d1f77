#pragma once

#include <QtGlobal>

namespace quillary {

/// How many rows of each kind there are. A changed row counts once.
struct DiffStats {
    qsizetype added = 0;
    qsizetype removed = 0;
    qsizetype changed = 0;

    friend bool operator==(const DiffStats&, const DiffStats&) = default;
};

} // namespace quillary
