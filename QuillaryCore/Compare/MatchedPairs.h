#pragma once

#include "QuillaryCore/Compare/SequenceBox.h"

#include <stop_token>

namespace quillary {

/// A longest common subsequence by the pairs of equal elements. (J. W. Hunt and T. G. Szymanski, A Fast Algorithm for
/// Computing Longest Common Subsequences, CACM 20, 1977, with the thresholds as the zeros of a row of bits: H. Hyyrö,
/// Bit-Parallel LCS-length Computation Revisited, 2004.)
///
/// Behind `rows` elements of `to`, bit i of the row of bits is zero where one element more of `from`, the i-th, makes
/// the longest common subsequence longer. An element of `to` changes the row only around the places in `from` that are
/// equal to it, so the work is in proportion to the number of pairs where elements repeat little, and to a 64th of the
/// area where they repeat much. What each element changed is kept to walk the rows back; where that grows too long the
/// whole row is kept now and then instead, and the stretch from there is computed again.
class MatchedPairs {
public:
    /// The lists must outlive it; their numbers are below `numberCount`.
    MatchedPairs(NumberSequence from, NumberSequence to, qint32 numberCount);

    /// About how many words of bits the whole lists cost.
    qint64 cost() const;

    /// Adds to the sets what of the box is on none of one longest common subsequence. Ends early and without an answer
    /// where a stop is asked for.
    void mark(const SequenceBox& box, OffsetSet& removed, OffsetSet& inserted, const std::stop_token& stop);

private:
    struct Change {
        quint32 word = 0;
        qint32 row = 0;
        quint64 before = 0;
    };

    /// The row of bits as it was before an element of `to`.
    struct Checkpoint {
        qint32 row = 0;
        std::vector<quint64> words;
    };

    std::span<const qint32> places(qint32 number) const;
    const quint64* densePlaces(qint32 number) const;
    void advance(qint32 row, qint32 fromEnd);
    void advanceDense(qint32 row, const quint64* places, qint32 fromEnd);
    void advanceSparse(qint32 row, std::span<const qint32> places, qint32 fromEnd);
    void assign(quint32 word, qint32 row, quint64 bits);
    bool carryOn(qint32 row, quint32 word, quint32 end);
    void undo(qint32 row);
    bool isZero(qint32 column) const;

    NumberSequence m_from;
    NumberSequence m_to;
    /// The places of number n in `from`, ascending, are those from m_firstPlace[n] to m_firstPlace[n + 1].
    std::vector<qint32> m_firstPlace;
    std::vector<qint32> m_places;
    /// Numbers with more places than the row has words have them as bits: there are at most 64 such numbers.
    std::vector<qint32> m_denseIndex;
    std::vector<quint64> m_densePlaces;
    std::size_t m_wordCount;

    /// Of the box that is worked on.
    qint32 m_fromBegin = 0;
    std::vector<quint64> m_bits;
    std::vector<Change> m_changes;
};

} // namespace quillary
