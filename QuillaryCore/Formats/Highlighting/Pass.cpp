#include "QuillaryCore/Formats/Highlighting/Pass.h"

#include <algorithm>
#include <bit>

namespace quillary::highlighting {

namespace {

constexpr qsizetype unitsPerWord = 64;

std::size_t wordOf(qsizetype position) {
    return static_cast<std::size_t>(position / unitsPerWord);
}

quint64 bitOf(qsizetype position) {
    return quint64(1) << (position % unitsPerWord);
}

/// The words that a stretch of at least one unit touches, and its bits in the first and the last of them.
struct BitStretch {
    BitStretch(qsizetype begin, qsizetype end)
        : first(wordOf(begin)),
          last(wordOf(end - 1)),
          head(~quint64(0) << (begin % unitsPerWord)),
          tail(~quint64(0) >> (unitsPerWord - 1 - (end - 1) % unitsPerWord)) {}

    std::size_t first;
    std::size_t last;
    quint64 head;
    quint64 tail;
};

bool isFree(const std::vector<quint64>& bits, const BitStretch& stretch) {
    if (stretch.first == stretch.last) {
        return (bits[stretch.first] & stretch.head & stretch.tail) == 0;
    }
    if ((bits[stretch.first] & stretch.head) != 0 || (bits[stretch.last] & stretch.tail) != 0) {
        return false;
    }
    const auto begin = bits.begin();
    return std::all_of(begin + static_cast<qsizetype>(stretch.first) + 1, begin + static_cast<qsizetype>(stretch.last),
                       [](quint64 each) { return each == 0; });
}

void fill(std::vector<quint64>& bits, const BitStretch& stretch) {
    if (stretch.first == stretch.last) {
        bits[stretch.first] |= stretch.head & stretch.tail;
        return;
    }
    bits[stretch.first] |= stretch.head;
    bits[stretch.last] |= stretch.tail;
    const auto begin = bits.begin();
    std::fill(begin + static_cast<qsizetype>(stretch.first) + 1, begin + static_cast<qsizetype>(stretch.last),
              ~quint64(0));
}

} // namespace

Pass::Pass(qsizetype length) : m_occupied(wordOf(length + unitsPerWord - 1)), m_starts(m_occupied.size()) {
    // About what dense source text gives; more makes it grow.
    m_entries.reserve(static_cast<std::size_t>(length / 8));
}

void Pass::add(SyntaxTokenKind kind, qsizetype begin, qsizetype end) {
    Q_ASSERT(begin < end);
    const BitStretch stretch(begin, end);
    if (!isFree(m_occupied, stretch)) {
        return;
    }
    fill(m_occupied, stretch);
    m_starts[stretch.first] |= bitOf(begin);
    m_entries.push_back({static_cast<qint32>(begin), static_cast<qint32>(end - begin), kind});
}

void Pass::occupy(TextRange range) {
    if (range.length > 0) {
        fill(m_occupied, BitStretch(range.location, range.end()));
    }
}

QList<SyntaxToken> Pass::tokens(qsizetype offset) const {
    // No two tokens begin at one place: a token's rank is the number of starts before its own, and no sort is needed.
    std::vector<qsizetype> rankOfWord(m_starts.size());
    qsizetype rank = 0;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        rankOfWord[i] = rank;
        rank += std::popcount(m_starts[i]);
    }
    QList<SyntaxToken> result(rank);
    SyntaxToken* const tokens = result.data();
    for (const Entry& entry : m_entries) {
        const std::size_t index = wordOf(entry.begin);
        const qsizetype place = rankOfWord[index] + std::popcount(m_starts[index] & (bitOf(entry.begin) - 1));
        tokens[place] = {entry.kind, {entry.begin + offset, entry.length}};
    }
    return result;
}

} // namespace quillary::highlighting
