#include "QuillaryCore/Compare/GreedySearch.h"

#include <algorithm>
#include <limits>

namespace quillary {

namespace {

/// No point of the diagonal is reached: far enough below zero to stay there when it is added to.
constexpr qint32 unreached = std::numeric_limits<qint32>::min() / 4;

/// The search from one corner of a box. A diagonal k holds the points (x, x - k); `reached[k]` is the furthest x on it
/// that the present number of edits leads to. The search from the far corner counts from there.
template <bool fromFarCorner>
class Frontier {
public:
    Frontier(NumberSequence from, NumberSequence to, std::vector<qint32>& reached)
        : m_from(from),
          m_to(to),
          m_width(static_cast<qint32>(from.size())),
          m_height(static_cast<qint32>(to.size())),
          m_reached(reached.data() + m_height + 1) {
        m_reached[1] = 0;
        m_reached[-1] = unreached;
    }

    qint32 reached(qint32 diagonal) const { return m_reached[diagonal]; }

    /// The diagonals that `edits` edits may bring further. Those left out beyond the borders of the box are complete:
    /// the search has come to their last points.
    qint32 lowest(qint32 edits) const { return -edits + 2 * std::max(0, edits - m_height); }

    qint32 highest(qint32 edits) const { return edits - 2 * std::max(0, edits - m_width); }

    /// What lies around the diagonals of the next step was never reached.
    void widen(qint32 edits) {
        if (edits > 0 && edits <= m_width) {
            m_reached[edits + 1] = unreached;
        }
        if (edits > 0 && edits <= m_height) {
            m_reached[-edits - 1] = unreached;
        }
    }

    /// Goes one edit and then all equal elements further on one diagonal. Gives the furthest x.
    qint32 advance(qint32 diagonal) {
        const qint32 afterRemoval = m_reached[diagonal - 1] + 1;
        const qint32 afterInsertion = m_reached[diagonal + 1];
        qint32 x = std::max(afterRemoval, afterInsertion);
        if (x > m_width || x - diagonal > m_height) {
            x = std::min(afterRemoval, afterInsertion);
        }
        if (x < 0 || x > m_width || x - diagonal > m_height) {
            x = unreached;
        } else {
            const qint32 end = std::min(m_width, m_height + diagonal);
            while (x < end && areEqual(x, x - diagonal)) {
                ++x;
            }
        }
        m_reached[diagonal] = x;
        return x;
    }

private:
    bool areEqual(qint32 x, qint32 y) const {
        if constexpr (fromFarCorner) {
            return m_from[static_cast<std::size_t>(m_width - 1 - x)] ==
                   m_to[static_cast<std::size_t>(m_height - 1 - y)];
        } else {
            return m_from[static_cast<std::size_t>(x)] == m_to[static_cast<std::size_t>(y)];
        }
    }

    NumberSequence m_from;
    NumberSequence m_to;
    qint32 m_width;
    qint32 m_height;
    qint32* m_reached;
};

} // namespace

GreedySearch::GreedySearch(NumberSequence from, NumberSequence to)
    : m_from(from), m_to(to), m_forward(from.size() + to.size() + 3), m_backward(m_forward.size()) {}

std::optional<GreedySearch::Point> GreedySearch::middle(const SequenceBox& box, qint64& budget) {
    const qint32 width = box.width();
    const NumberSequence from =
        m_from.subspan(static_cast<std::size_t>(box.fromBegin), static_cast<std::size_t>(width));
    const NumberSequence to =
        m_to.subspan(static_cast<std::size_t>(box.toBegin), static_cast<std::size_t>(box.height()));
    Frontier<false> forward(from, to, m_forward);
    Frontier<true> backward(from, to, m_backward);
    // The far corner lies on this diagonal; the diagonal k of the one search is the diagonal `delta - k` of the other.
    const qint32 delta = width - box.height();
    const bool isOdd = delta % 2 != 0;

    // A shortest script has 2 * edits - 1 edits where delta is odd and 2 * edits where it is even, with the least
    // number for which the two searches overlap (Lemma 3 of the paper), and where they do lies a point of one.
    for (qint32 edits = 0;; ++edits) {
        forward.widen(edits);
        const qint32 highest = forward.highest(edits);
        for (qint32 k = forward.lowest(edits); k <= highest; k += 2) {
            const qint32 x = forward.advance(k);
            const bool mayMeet = isOdd && delta - k > -edits && delta - k < edits;
            if (mayMeet && x + backward.reached(delta - k) >= width) {
                return Point{box.fromBegin + x, box.toBegin + x - k};
            }
        }
        backward.widen(edits);
        for (qint32 k = backward.lowest(edits); k <= highest; k += 2) {
            const qint32 x = backward.advance(k);
            const bool mayMeet = !isOdd && delta - k >= -edits && delta - k <= edits;
            if (mayMeet && x + forward.reached(delta - k) >= width) {
                return Point{box.fromBegin + width - x, box.toBegin + box.height() - x + k};
            }
        }
        budget -= highest - forward.lowest(edits) + 2;
        if (budget < 0) {
            return std::nullopt;
        }
    }
}

} // namespace quillary
