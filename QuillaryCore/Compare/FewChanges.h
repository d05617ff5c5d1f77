#pragma once

#include "QuillaryCore/Compare/ChangedOffsets.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace quillary {

/// The difference between two lists of which `areEqual(i, j)` alone tells whether an element of the one is equal to one
/// of the other, if few elements differ: a shortest script, or nothing once the work has outgrown the lists. So lists
/// that are almost the same need no numbers for their elements.
///
/// The greedy search in its plain form, which keeps where each number of edits led to. (E. W. Myers, An O(ND)
/// Difference Algorithm and Its Variations, Algorithmica 1, 1986, section 4.)
template <typename AreEqual>
class FewChanges {
public:
    FewChanges(qsizetype fromCount, qsizetype toCount, AreEqual areEqual)
        : m_width(static_cast<qint32>(fromCount)),
          m_height(static_cast<qint32>(toCount)),
          m_areEqual(areEqual),
          m_budget(stepsPerElement * (fromCount + toCount)) {}

    std::optional<ChangedOffsets> find() {
        for (qint32 edits = 0;; ++edits) {
            const std::size_t row = m_reached.size();
            if (row > static_cast<std::size_t>(m_width) + static_cast<std::size_t>(m_height)) {
                return std::nullopt;
            }
            for (qint32 k = -edits; k <= edits; k += 2) {
                const qint32 x = edits == 0 ? 0 : stepTo(k, edits).x;
                m_reached.push_back(x == unreached ? unreached : pastEqual(x, k));
                if (m_reached.back() == m_width && m_width - k == m_height) {
                    return walkBack(k, edits);
                }
                if (m_budget < 0) {
                    return std::nullopt;
                }
            }
        }
    }

private:
    static constexpr qint64 stepsPerElement = 4;
    static constexpr qint32 unreached = -1;

    /// The furthest x that one more edit leads to on a diagonal, and whether that edit removes an element.
    struct Step {
        qint32 x = unreached;
        bool removes = false;
    };

    /// What `edits` edits and the equal elements behind them reached on the diagonal k, the points (x, x - k). Every
    /// second diagonal from -edits to edits has an entry, one row of them behind the other.
    qint32 reached(qint32 k, qint32 edits) const {
        if (k < -edits || k > edits) {
            return unreached;
        }
        const std::size_t row = static_cast<std::size_t>(edits) * (static_cast<std::size_t>(edits) + 1) / 2;
        return m_reached[row + static_cast<std::size_t>((k + edits) / 2)];
    }

    Step stepTo(qint32 k, qint32 edits) const {
        const qint32 fromLeft = reached(k - 1, edits - 1);
        const qint32 fromAbove = reached(k + 1, edits - 1);
        Step step;
        if (fromLeft != unreached && fromLeft < m_width) {
            step = {fromLeft + 1, true};
        }
        if (fromAbove > step.x && fromAbove - k <= m_height) {
            step = {fromAbove, false};
        }
        return step;
    }

    qint32 pastEqual(qint32 x, qint32 k) {
        const qint32 start = x;
        const qint32 end = std::min(m_width, m_height + k);
        while (x < end && m_areEqual(x, x - k)) {
            ++x;
        }
        m_budget -= x - start + 1;
        return x;
    }

    ChangedOffsets walkBack(qint32 k, qint32 edits) const {
        ChangedOffsets result{OffsetSet(static_cast<std::size_t>(m_width)),
                              OffsetSet(static_cast<std::size_t>(m_height))};
        for (; edits > 0; --edits) {
            const Step step = stepTo(k, edits);
            if (step.removes) {
                result.removed[static_cast<std::size_t>(step.x - 1)] = 1;
                --k;
            } else {
                result.inserted[static_cast<std::size_t>(step.x - k - 1)] = 1;
                ++k;
            }
        }
        return result;
    }

    qint32 m_width;
    qint32 m_height;
    AreEqual m_areEqual;
    qint64 m_budget;
    std::vector<qint32> m_reached;
};

} // namespace quillary
