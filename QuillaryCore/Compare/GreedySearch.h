#pragma once

#include "QuillaryCore/Compare/SequenceBox.h"

#include <optional>

namespace quillary {

/// The greedy search for a shortest edit script in the form that needs linear space: from both ends at once, until the
/// two searches meet. (E. W. Myers, An O(ND) Difference Algorithm and Its Variations, Algorithmica 1, 1986, section
/// 4b.)
class GreedySearch {
public:
    struct Point {
        qint32 from = 0;
        qint32 to = 0;
    };

    /// The lists must outlive it.
    GreedySearch(NumberSequence from, NumberSequence to);

    /// A point that some shortest script of the box goes through, with half of its edits on either side, so that
    /// shortest scripts of the two parts make one of the whole. The box must have no common ends, and neither of its
    /// stretches may be empty.
    ///
    /// What the search looks at is taken from `budget`, and where that is used up the search ends with nothing.
    std::optional<Point> middle(const SequenceBox& box, qint64& budget);

private:
    NumberSequence m_from;
    NumberSequence m_to;
    std::vector<qint32> m_forward;
    std::vector<qint32> m_backward;
};

} // namespace quillary
