#include "Quillary/Comparison/UnifiedRows.h"

namespace quillary::UnifiedRows {

QList<DiffLineView> lines(const DiffRow& row) {
    using Tone = DiffLineView::Tone;
    if (row.kind == DiffRow::Kind::unchanged) {
        return {{{row.oldSide->number, row.newSide->number}, Tone::neutral, row.oldSide->segments}};
    }
    QList<DiffLineView> result;
    if (row.oldSide) {
        result.append({{row.oldSide->number, std::nullopt}, Tone::removed, row.oldSide->segments});
    }
    if (row.newSide) {
        result.append({{std::nullopt, row.newSide->number}, Tone::added, row.newSide->segments});
    }
    return result;
}

} // namespace quillary::UnifiedRows
