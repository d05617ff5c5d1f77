#include "Quillary/Comparison/SideBySideRow.h"

namespace quillary::SideBySideRow {

namespace {

DiffLineView half(const std::optional<DiffSide>& side, DiffLineView::Tone tone) {
    if (!side) {
        return {{std::nullopt}, DiffLineView::Tone::empty, std::nullopt};
    }
    return {{side->number}, tone, side->segments};
}

} // namespace

std::array<DiffLineView, 2> halves(const DiffRow& row) {
    using Tone = DiffLineView::Tone;
    const bool isUnchanged = row.kind == DiffRow::Kind::unchanged;
    return {half(row.oldSide, isUnchanged ? Tone::neutral : Tone::removed),
            half(row.newSide, isUnchanged ? Tone::neutral : Tone::added)};
}

} // namespace quillary::SideBySideRow
