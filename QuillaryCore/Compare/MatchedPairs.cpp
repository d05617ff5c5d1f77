#include "QuillaryCore/Compare/MatchedPairs.h"

#include <algorithm>

namespace quillary {

namespace {

constexpr quint64 allOnes = ~quint64(0);
constexpr std::size_t fewestKeptChanges = std::size_t(1) << 18;

quint32 wordOf(qint32 column) {
    return static_cast<quint32>(column) / 64;
}

quint64 bitOf(qint32 column) {
    return quint64(1) << (static_cast<quint32>(column) % 64);
}

/// One word of the row behind an element that equals the columns in `matches`: in each stretch that ends in a zero, the
/// lowest column among them becomes the zero. The carry says that a stretch goes on in the next word.
quint64 next(quint64 bits, quint64 matches, quint64& carry) {
    const quint64 sum = bits + (bits & matches);
    const quint64 total = sum + carry;
    carry = static_cast<quint64>(sum < bits) | static_cast<quint64>(total < sum);
    return total | (bits & ~matches);
}

} // namespace

MatchedPairs::MatchedPairs(NumberSequence from, NumberSequence to, qint32 numberCount)
    : m_from(from),
      m_to(to),
      m_firstPlace(static_cast<std::size_t>(numberCount) + 2),
      m_places(from.size()),
      m_wordCount(from.size() / 64 + 1) {
    // Counted one further on, so that the counts turn into the first places while the places are put down.
    for (const qint32 number : from) {
        ++m_firstPlace[static_cast<std::size_t>(number) + 2];
    }
    for (std::size_t i = 2; i < m_firstPlace.size(); ++i) {
        if (static_cast<std::size_t>(m_firstPlace[i]) > m_wordCount) {
            m_denseIndex.resize(static_cast<std::size_t>(numberCount), -1);
            m_denseIndex[i - 2] = static_cast<qint32>(m_densePlaces.size() / m_wordCount);
            m_densePlaces.resize(m_densePlaces.size() + m_wordCount);
        }
        m_firstPlace[i] += m_firstPlace[i - 1];
    }
    for (std::size_t i = 0; i < from.size(); ++i) {
        const std::size_t number = static_cast<std::size_t>(from[i]);
        const qint32 column = static_cast<qint32>(i);
        m_places[static_cast<std::size_t>(m_firstPlace[number + 1]++)] = column;
        if (!m_denseIndex.empty() && m_denseIndex[number] >= 0) {
            const std::size_t first = static_cast<std::size_t>(m_denseIndex[number]) * m_wordCount;
            m_densePlaces[first + wordOf(column)] |= bitOf(column);
        }
    }
}

std::span<const qint32> MatchedPairs::places(qint32 number) const {
    const std::size_t at = static_cast<std::size_t>(number);
    return std::span(m_places).subspan(static_cast<std::size_t>(m_firstPlace[at]),
                                       static_cast<std::size_t>(m_firstPlace[at + 1] - m_firstPlace[at]));
}

const quint64* MatchedPairs::densePlaces(qint32 number) const {
    const std::size_t at = static_cast<std::size_t>(number);
    return m_denseIndex.empty() || m_denseIndex[at] < 0
               ? nullptr
               : m_densePlaces.data() + static_cast<std::size_t>(m_denseIndex[at]) * m_wordCount;
}

qint64 MatchedPairs::cost() const {
    qint64 words = 0;
    for (const qint32 number : m_to) {
        words += static_cast<qint64>(std::min(places(number).size(), m_wordCount));
    }
    return words;
}

void MatchedPairs::assign(quint32 word, qint32 row, quint64 bits) {
    if (m_bits[word] != bits) {
        m_changes.push_back({word, row, m_bits[word]});
        m_bits[word] = bits;
    }
}

/// Carries through words without matches: those of ones alone stay as they are, and the lowest zero of the first other
/// one is filled. Whether the carry is still there at the end.
bool MatchedPairs::carryOn(qint32 row, quint32 word, quint32 end) {
    for (; word < end; ++word) {
        if (m_bits[word] != allOnes) {
            assign(word, row, m_bits[word] | (m_bits[word] + 1));
            return false;
        }
    }
    return true;
}

void MatchedPairs::advanceSparse(qint32 row, std::span<const qint32> places, qint32 fromEnd) {
    const quint32 endWord = wordOf(fromEnd - 1) + 1;
    quint64 carry = 0;
    quint32 done = wordOf(m_fromBegin);
    auto place = std::lower_bound(places.begin(), places.end(), m_fromBegin);
    while (place != places.end() && *place < fromEnd) {
        const quint32 word = wordOf(*place);
        if (carry != 0) {
            carry = carryOn(row, done, word) ? 1 : 0;
        }
        quint64 matches = 0;
        do {
            matches |= bitOf(*place);
            ++place;
        } while (place != places.end() && *place < fromEnd && wordOf(*place) == word);
        assign(word, row, next(m_bits[word], matches, carry));
        done = word + 1;
    }
    if (carry != 0) {
        carryOn(row, done, endWord);
    }
}

void MatchedPairs::advanceDense(qint32 row, const quint64* places, qint32 fromEnd) {
    const quint32 first = wordOf(m_fromBegin);
    const quint32 last = wordOf(fromEnd - 1);
    quint64 carry = 0;
    for (quint32 word = first; word <= last; ++word) {
        quint64 matches = places[word];
        if (word == first) {
            matches &= allOnes << (static_cast<quint32>(m_fromBegin) % 64);
        }
        if (word == last) {
            matches &= allOnes >> (63 - static_cast<quint32>(fromEnd - 1) % 64);
        }
        assign(word, row, next(m_bits[word], matches, carry));
    }
}

/// Columns never depend on later ones, so that those from `fromEnd` on can be left as they are.
void MatchedPairs::advance(qint32 row, qint32 fromEnd) {
    const qint32 number = m_to[static_cast<std::size_t>(row)];
    if (const quint64* const dense = densePlaces(number)) {
        advanceDense(row, dense, fromEnd);
    } else {
        advanceSparse(row, places(number), fromEnd);
    }
}

void MatchedPairs::undo(qint32 row) {
    while (!m_changes.empty() && m_changes.back().row == row) {
        m_bits[m_changes.back().word] = m_changes.back().before;
        m_changes.pop_back();
    }
}

bool MatchedPairs::isZero(qint32 column) const {
    return (m_bits[wordOf(column)] & bitOf(column)) == 0;
}

void MatchedPairs::mark(const SequenceBox& box, OffsetSet& removed, OffsetSet& inserted, const std::stop_token& stop) {
    m_fromBegin = box.fromBegin;
    m_bits.assign(m_wordCount, allOnes);
    m_changes.clear();
    const std::size_t boxWords = box.width() > 0 ? wordOf(box.fromEnd - 1) - wordOf(box.fromBegin) + 1 : 0;
    std::vector<Checkpoint> checkpoints{{box.toBegin, m_bits}};
    std::size_t mostChanges = fewestKeptChanges;
    if (box.width() > 0) {
        for (qint32 row = box.toBegin; row < box.toEnd && !stop.stop_requested(); ++row) {
            if (m_changes.size() >= mostChanges) {
                checkpoints.push_back({row, m_bits});
                m_changes.clear();
                // Rows and changes are kept in balance, so that either takes but the root of what all changes would.
                mostChanges = std::max(mostChanges, checkpoints.size() * boxWords);
            }
            advance(row, box.fromEnd);
        }
    }

    // With L(r, c) for the length of a longest common subsequence of r rows and c columns, column c - 1 is zero behind
    // r rows where L(r, c) = L(r, c - 1) + 1. Where it is one, the column can be left out. Where it is zero behind both
    // r and r - 1 rows, L(r, c) <= L(r - 1, c - 1) + 1 = L(r - 1, c), and the row can be left out. Where it is zero
    // behind r rows only, L(r, c) is greater than both L(r, c - 1) and L(r - 1, c): row and column are a pair.
    qint32 column = box.fromEnd;
    qint32 rowEnd = box.toEnd;
    bool isComputed = true;
    while (!checkpoints.empty() && !stop.stop_requested()) {
        const qint32 firstRow = checkpoints.back().row;
        if (!isComputed) {
            m_bits.swap(checkpoints.back().words);
            m_changes.clear();
            for (qint32 row = firstRow; row < rowEnd && column > box.fromBegin && !stop.stop_requested(); ++row) {
                advance(row, column);
            }
        }
        for (qint32 row = rowEnd - 1; row >= firstRow; --row) {
            while (column > box.fromBegin && !isZero(column - 1)) {
                --column;
                removed[static_cast<std::size_t>(column)] = 1;
            }
            undo(row);
            if (column == box.fromBegin || isZero(column - 1)) {
                inserted[static_cast<std::size_t>(row)] = 1;
            } else {
                --column;
            }
        }
        rowEnd = firstRow;
        isComputed = false;
        checkpoints.pop_back();
    }
    std::fill(removed.begin() + box.fromBegin, removed.begin() + column, quint8(1));
}

} // namespace quillary
