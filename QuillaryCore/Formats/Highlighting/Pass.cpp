#include "QuillaryCore/Formats/Highlighting/Pass.h"

#include <algorithm>
#include <bit>
#include <span>

namespace quillary::highlighting {

namespace {

constexpr std::size_t unitsPerWord = 64;
constexpr int kindBits = 4;
static_assert(allSyntaxTokenKinds.size() <= 1 << kindBits);

std::size_t wordOf(qsizetype position) {
    return static_cast<std::size_t>(position) / unitsPerWord;
}

std::size_t placeInWord(qsizetype position) {
    return static_cast<std::size_t>(position) % unitsPerWord;
}

quint64 bitOf(qsizetype position) {
    return quint64(1) << placeInWord(position);
}

/// The words that a stretch of at least one unit touches, and its bits in the first and the last of them.
struct BitStretch {
    BitStretch(qsizetype begin, qsizetype end)
        : first(wordOf(begin)),
          last(wordOf(end - 1)),
          head(~quint64(0) << placeInWord(begin)),
          tail(~quint64(0) >> (unitsPerWord - 1 - placeInWord(end - 1))) {}

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

Pass::Pass(qsizetype length)
    : m_occupied(wordOf(length + static_cast<qsizetype>(unitsPerWord) - 1)),
      m_starts(m_occupied.size()),
      m_tokens(std::make_unique_for_overwrite<PackedToken[]>(static_cast<std::size_t>(length))) {}

void Pass::add(SyntaxTokenKind kind, qsizetype begin, qsizetype end) {
    Q_ASSERT(begin < end);
    const BitStretch stretch(begin, end);
    if (!isFree(m_occupied, stretch)) {
        return;
    }
    fill(m_occupied, stretch);
    m_starts[stretch.first] |= bitOf(begin);
    m_tokens[m_count++] = {static_cast<quint32>(begin),
                           static_cast<quint32>(end - begin) << kindBits | static_cast<quint32>(kind)};
}

void Pass::occupy(TextRange range) {
    if (range.length > 0) {
        fill(m_occupied, BitStretch(range.location, range.end()));
    }
}

QList<SyntaxToken> Pass::tokens(qsizetype offset) const {
    // No two tokens start at one unit: a token's place is the number of starts before its own, and no sort is needed.
    std::vector<qsizetype> startsBefore(m_starts.size());
    qsizetype count = 0;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        startsBefore[i] = count;
        count += std::popcount(m_starts[i]);
    }
    QList<SyntaxToken> result(count);
    SyntaxToken* const tokens = result.data();
    for (const PackedToken& token : std::span(m_tokens.get(), m_count)) {
        const std::size_t index = wordOf(token.begin);
        const qsizetype place = startsBefore[index] + std::popcount(m_starts[index] & (bitOf(token.begin) - 1));
        tokens[place] = {static_cast<SyntaxTokenKind>(token.lengthAndKind & ((1U << kindBits) - 1)),
                         {token.begin + offset, static_cast<qsizetype>(token.lengthAndKind >> kindBits)}};
    }
    return result;
}

} // namespace quillary::highlighting
