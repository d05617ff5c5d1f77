#pragma once

#include "QuillaryCore/Compare/SequenceBox.h"

#include <stop_token>

namespace quillary {

/// What a shortest script takes out of one list and puts into another to make the one of the other. The elements
/// outside these sets are a longest common subsequence of both lists.
struct ChangedOffsets {
    OffsetSet removed;
    OffsetSet inserted;
};

/// The difference between two lists of numbers. Numbers in `from` are from 0 to below `numberCount`; those in `to` too,
/// or negative for what `from` has nowhere.
///
/// The script is a shortest one, always: there is no limit and no heuristic. Time is in proportion to the elements and
/// to the square of the differences or to the number of pairs of equal elements, whatever is less, and at most to a
/// 64th of the product of the lengths. Where a stop is asked for, the answer comes early and means nothing.
ChangedOffsets changedOffsets(NumberSequence from, NumberSequence to, qint32 numberCount,
                              const std::stop_token& stop = {});

} // namespace quillary
