#include "QuillaryCore/Compare/ChangedOffsets.h"

#include "QuillaryCore/Compare/GreedySearch.h"
#include "QuillaryCore/Compare/MatchedPairs.h"

#include <algorithm>
#include <optional>

namespace quillary {

namespace {

/// The elements of a stretch that the other list has too, and where they stand.
struct SharedElements {
    std::vector<qint32> numbers;
    std::vector<qint32> offsets;
};

/// Elements that the other list lacks are in no common subsequence at all, so they are changed, and all common
/// subsequences are those of what remains.
template <typename IsShared>
SharedElements setAside(NumberSequence list, qint32 begin, qint32 end, OffsetSet& changed, IsShared isShared) {
    SharedElements shared;
    for (qint32 i = begin; i < end; ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        if (isShared(list[at])) {
            shared.numbers.push_back(list[at]);
            shared.offsets.push_back(i);
        } else {
            changed[at] = 1;
        }
    }
    return shared;
}

/// Shortest scripts of parts until there is nothing left to part.
class ScriptSearch {
public:
    ScriptSearch(NumberSequence from, NumberSequence to, qint32 numberCount, const std::stop_token& stop)
        : m_from(from),
          m_to(to),
          m_numberCount(numberCount),
          m_stop(stop),
          m_greedy(from, to),
          m_budget(freeSteps * static_cast<qint64>(from.size() + to.size())),
          m_removed(from.size()),
          m_inserted(to.size()) {}

    void run() {
        std::vector<SequenceBox> boxes{{0, static_cast<qint32>(m_from.size()), 0, static_cast<qint32>(m_to.size())}};
        while (!boxes.empty() && !m_stop.stop_requested()) {
            const SequenceBox box = boxes.back().trimmed(m_from, m_to);
            boxes.pop_back();
            if (box.width() == 0 || box.height() == 0) {
                std::fill(m_removed.begin() + box.fromBegin, m_removed.begin() + box.fromEnd, quint8(1));
                std::fill(m_inserted.begin() + box.toBegin, m_inserted.begin() + box.toEnd, quint8(1));
            } else if (const std::optional<GreedySearch::Point> middle = greedyMiddle(box)) {
                boxes.push_back({box.fromBegin, middle->from, box.toBegin, middle->to});
                boxes.push_back({middle->from, box.fromEnd, middle->to, box.toEnd});
            } else {
                m_pairs->mark(box, m_removed, m_inserted, m_stop);
            }
        }
    }

    const OffsetSet& removed() const { return m_removed; }

    const OffsetSet& inserted() const { return m_inserted; }

private:
    /// What the greedy search may do in any case, for each element.
    static constexpr qint64 freeSteps = 4;
    /// A word of bits takes longer than a step of the greedy search.
    static constexpr qint64 stepsPerWord = 4;

    /// The greedy search is the faster one where the lists differ little, which only it can find out. It gets as much
    /// work as the pairs would need. Both are exact, so nothing but time is lost where it gives up.
    std::optional<GreedySearch::Point> greedyMiddle(const SequenceBox& box) {
        std::optional<GreedySearch::Point> point;
        if (m_budget >= 0) {
            point = m_greedy.middle(box, m_budget);
        }
        if (!point && !m_pairs) {
            m_pairs.emplace(m_from, m_to, m_numberCount);
            m_budget = stepsPerWord * m_pairs->cost();
            point = m_greedy.middle(box, m_budget);
        }
        return point;
    }

    NumberSequence m_from;
    NumberSequence m_to;
    qint32 m_numberCount;
    const std::stop_token& m_stop;
    GreedySearch m_greedy;
    std::optional<MatchedPairs> m_pairs;
    qint64 m_budget;
    OffsetSet m_removed;
    OffsetSet m_inserted;
};

void transfer(const OffsetSet& changed, const std::vector<qint32>& offsets, OffsetSet& result) {
    for (std::size_t i = 0; i < changed.size(); ++i) {
        if (changed[i] != 0) {
            result[static_cast<std::size_t>(offsets[i])] = 1;
        }
    }
}

} // namespace

ChangedOffsets changedOffsets(NumberSequence from, NumberSequence to, qint32 numberCount, const std::stop_token& stop) {
    ChangedOffsets result{OffsetSet(from.size()), OffsetSet(to.size())};
    const SequenceBox box =
        SequenceBox{0, static_cast<qint32>(from.size()), 0, static_cast<qint32>(to.size())}.trimmed(from, to);
    if (box.width() == 0 && box.height() == 0) {
        return result;
    }

    std::vector<quint8> sides(static_cast<std::size_t>(numberCount));
    constexpr quint8 inTo = 1;
    constexpr quint8 inBoth = 2;
    for (qint32 i = box.toBegin; i < box.toEnd; ++i) {
        const qint32 number = to[static_cast<std::size_t>(i)];
        if (number >= 0) {
            sides[static_cast<std::size_t>(number)] = inTo;
        }
    }
    const SharedElements old = setAside(from, box.fromBegin, box.fromEnd, result.removed, [&sides](qint32 number) {
        quint8& side = sides[static_cast<std::size_t>(number)];
        side = side == 0 ? side : inBoth;
        return side == inBoth;
    });
    const SharedElements young = setAside(to, box.toBegin, box.toEnd, result.inserted, [&sides](qint32 number) {
        return number >= 0 && sides[static_cast<std::size_t>(number)] == inBoth;
    });

    if (!old.numbers.empty()) {
        ScriptSearch search(old.numbers, young.numbers, numberCount, stop);
        search.run();
        transfer(search.removed(), old.offsets, result.removed);
        transfer(search.inserted(), young.offsets, result.inserted);
    }
    return result;
}

} // namespace quillary
