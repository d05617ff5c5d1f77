#include "QuillaryCore/Compare/WordDiff.h"

#include "QuillaryCore/Compare/CanonicalNumbers.h"

#include <cstring>

namespace quillary {

namespace {

/// Above this share of changed characters on both sides marks are of no help.
constexpr double largestShare = 0.65;

/// Beyond that many tokens against few the general way is as fast.
constexpr std::size_t mostRows = 4096;

quint32 hashOf(QStringView text) {
    constexpr quint64 multiplier = 0x9E37'79B9'7F4A'7C15;
    constexpr qsizetype unitsAtOnce = 4;
    quint64 hash = static_cast<quint64>(text.size());
    qsizetype at = 0;
    for (; at + unitsAtOnce <= text.size(); at += unitsAtOnce) {
        quint64 units = 0;
        std::memcpy(&units, text.utf16() + at, sizeof units);
        hash = (hash ^ units) * multiplier;
        hash ^= hash >> 32;
    }
    quint64 rest = 0;
    for (; at < text.size(); ++at) {
        rest = rest << 16 | text[at].unicode();
    }
    hash = (hash ^ rest) * multiplier;
    return static_cast<quint32>(hash >> 32);
}

std::vector<qint32> numbersOf(const CanonicalNumbers& numbers, qsizetype count, auto textAt) {
    std::vector<qint32> result;
    result.reserve(static_cast<std::size_t>(count));
    qint32 guess = 0;
    for (qsizetype i = 0; i < count; ++i) {
        result.push_back(numbers.find(textAt(i), guess));
        guess = result.back() + 1;
    }
    return result;
}

} // namespace

/// A blank between two changed words is part of one change. The first and the last token bridge nothing.
void WordDiff::Side::bridge() {
    for (std::size_t i = 1; i + 1 < tokens.size(); ++i) {
        if (changed[i] == 0 && changed[i - 1] != 0 && changed[i + 1] != 0 &&
            tokens[i].kind == WordToken::Kind::whitespace) {
            changed[i] = 1;
        }
    }
}

/// The part of the characters that is changed; none of none.
double WordDiff::Side::changedShare() const {
    qint64 total = 0;
    qint64 inChanged = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        total += tokens[i].characters;
        inChanged += changed[i] != 0 ? tokens[i].characters : 0;
    }
    return total < 1 ? 0 : static_cast<double>(inChanged) / static_cast<double>(total);
}

/// Tokens of one kind side by side are one segment.
quint32 WordDiff::Side::appendEnds(std::vector<DiffSegmentEnd>& ends) const {
    const std::size_t before = ends.size();
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (i + 1 == tokens.size() || changed[i] != changed[i + 1]) {
            ends.emplace_back(tokens[i].end, changed[i] != 0);
        }
    }
    return static_cast<quint32>(ends.size() - before);
}

WordDiff::Slot& WordDiff::slotOf(const Side& side, QStringView text) {
    const quint32 hash = hashOf(text);
    std::size_t slot = hash % m_slots.size();
    while (m_slots[slot].token >= 0 &&
           (m_slots[slot].hash != hash || side.text(static_cast<std::size_t>(m_slots[slot].token)) != text)) {
        slot = (slot + 1) % m_slots.size();
    }
    m_slots[slot].hash = hash;
    return m_slots[slot];
}

/// Few tokens fit into one word of bits: the rows of MatchedPairs are a number each, and all of them are kept.
void WordDiff::markFew(Side& columns, Side& rows) {
    m_slots.fill({});
    for (std::size_t i = 0; i < columns.tokens.size(); ++i) {
        Slot& slot = slotOf(columns, columns.text(i));
        slot.token = slot.token < 0 ? static_cast<qint32>(i) : slot.token;
        slot.places |= quint64(1) << i;
    }
    m_rows.resize(rows.tokens.size());
    quint64 bits = ~quint64(0);
    for (std::size_t i = 0; i < rows.tokens.size(); ++i) {
        const quint64 matches = slotOf(columns, rows.text(i)).places;
        bits = (bits + (bits & matches)) | (bits & ~matches);
        m_rows[i] = bits;
    }
    // Why this walk back gives a longest common subsequence is told at MatchedPairs::mark.
    std::size_t column = columns.tokens.size();
    for (std::size_t row = rows.tokens.size(); row-- > 0;) {
        const auto isZero = [&](std::size_t r) { return (m_rows[r] >> (column - 1) & 1) == 0; };
        while (column > 0 && !isZero(row)) {
            columns.changed[--column] = 1;
        }
        if (column == 0 || (row > 0 && isZero(row - 1))) {
            rows.changed[row] = 1;
        } else {
            --column;
        }
    }
    while (column > 0) {
        columns.changed[--column] = 1;
    }
}

void WordDiff::markMany() {
    const qsizetype oldCount = static_cast<qsizetype>(m_old.tokens.size());
    CanonicalNumbers numbers(oldCount, m_areComposed);
    std::vector<qint32> from;
    from.reserve(m_old.tokens.size());
    for (std::size_t i = 0; i < m_old.tokens.size(); ++i) {
        from.push_back(numbers.add(m_old.text(i)));
    }
    const std::vector<qint32> to = numbersOf(numbers, static_cast<qsizetype>(m_new.tokens.size()),
                                             [this](qsizetype i) { return m_new.text(static_cast<std::size_t>(i)); });
    ChangedOffsets offsets = changedOffsets(from, to, numbers.count(), m_stop);
    m_old.changed.swap(offsets.removed);
    m_new.changed.swap(offsets.inserted);
}

std::optional<WordDiff::Counts> WordDiff::compare(QStringView oldLine, QStringView newLine,
                                                  std::vector<DiffSegmentEnd>& ends) {
    m_old.line = oldLine;
    m_new.line = newLine;
    for (Side* const side : {&m_old, &m_new}) {
        tokenise(side->line, side->tokens);
        side->changed.assign(side->tokens.size(), 0);
    }
    const auto areFew = [](const Side& columns, const Side& rows) {
        return columns.tokens.size() <= wordBits && rows.tokens.size() <= mostRows;
    };
    if (m_areComposed && areFew(m_old, m_new)) {
        markFew(m_old, m_new);
    } else if (m_areComposed && areFew(m_new, m_old)) {
        markFew(m_new, m_old);
    } else {
        markMany();
    }
    m_old.bridge();
    m_new.bridge();
    if (m_old.changedShare() > largestShare && m_new.changedShare() > largestShare) {
        return std::nullopt;
    }
    const quint32 oldCount = m_old.appendEnds(ends);
    return Counts{oldCount, m_new.appendEnds(ends)};
}

} // namespace quillary
