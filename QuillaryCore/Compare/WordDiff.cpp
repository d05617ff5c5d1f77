#include "QuillaryCore/Compare/WordDiff.h"

#include "QuillaryCore/Compare/CanonicalNumbers.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillary {

namespace {

/// Above this share of changed characters on both sides marks are of no help.
constexpr double largestShare = 0.65;

/// Beyond that many tokens against few the general way is as fast.
constexpr std::size_t mostRows = 4096;

constexpr quint64 keyMultiplier = 0x9E37'79B9'7F4A'7C15;

/// Words of so few units have keys of their own.
constexpr qsizetype mostUnitsOfKey = 3;

/// A number that equal words share. Of words that are longer it tells the length, the first and the last units, which
/// tells nearly all of them apart.
quint64 keyOf(QStringView word) {
    constexpr int turn = 24;
    constexpr quint64 isLong = quint64(1) << 63;
    const char16_t* const units = word.utf16();
    const qsizetype size = word.size();
    quint64 first = 0;
    if (size <= mostUnitsOfKey) {
        for (qsizetype i = 0; i < size; ++i) {
            first = first << 16 | units[i];
        }
        return first | static_cast<quint64>(size) << 48;
    }
    quint64 last = 0;
    std::memcpy(&first, units, sizeof first);
    std::memcpy(&last, units + size - mostUnitsOfKey - 1, sizeof last);
    return ((first ^ std::rotl(last, turn)) + static_cast<quint64>(size)) | isLong;
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
        if (tokens[i].kind == WordToken::Kind::whitespace && changed[i - 1] != 0 && changed[i + 1] != 0) {
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

bool WordDiff::haveTooLittleInCommon() const {
    return m_old.changedShare() > largestShare && m_new.changedShare() > largestShare;
}

/// The slot of an equal token of the columns, or the empty one where it belongs.
WordDiff::Slot& WordDiff::slotOf(const Side& columns, QStringView text) {
    const quint64 key = keyOf(text);
    std::size_t at = (key * keyMultiplier >> 32) & m_slotMask;
    const auto isOther = [&](const Slot& slot) {
        return slot.key != key || (text.size() > mostUnitsOfKey &&
                                   columns.text(static_cast<std::size_t>(std::countr_zero(slot.places))) != text);
    };
    while (m_slots[at].places != 0 && isOther(m_slots[at])) {
        at = (at + 1) & m_slotMask;
    }
    m_slots[at].key = key;
    return m_slots[at];
}

/// Marks the tokens that the other side has nowhere, and notes of each row which columns are equal to it.
void WordDiff::setAside(Side& columns, Side& rows) {
    const std::size_t slots = std::bit_ceil(2 * columns.tokens.size() + 1);
    m_slotMask = slots - 1;
    std::fill_n(m_slots.begin(), slots, Slot());
    for (std::size_t i = 0; i < columns.tokens.size(); ++i) {
        slotOf(columns, columns.text(i)).places |= quint64(1) << i;
    }
    m_rows.resize(rows.tokens.size());
    quint64 shared = 0;
    for (std::size_t i = 0; i < rows.tokens.size(); ++i) {
        m_rows[i] = slotOf(columns, rows.text(i)).places;
        rows.changed[i] = static_cast<quint8>(m_rows[i] == 0);
        shared |= m_rows[i];
    }
    for (std::size_t i = 0; i < columns.tokens.size(); ++i) {
        columns.changed[i] = static_cast<quint8>((~shared >> i) & 1);
    }
}

/// Few tokens fit into one word of bits: the rows of MatchedPairs are a number each, and all of them are kept.
void WordDiff::markFew(Side& columns, Side& rows) {
    quint64 bits = ~quint64(0);
    for (quint64& row : m_rows) {
        bits = (bits + (bits & row)) | (bits & ~row);
        row = bits;
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
        return columns.tokens.size() < wordBits && rows.tokens.size() <= mostRows;
    };
    if (m_areComposed && (areFew(m_old, m_new) || areFew(m_new, m_old))) {
        Side& columns = areFew(m_old, m_new) ? m_old : m_new;
        Side& rows = &columns == &m_old ? m_new : m_old;
        setAside(columns, rows);
        // The whole of the marks would be these and more.
        if (haveTooLittleInCommon()) {
            return std::nullopt;
        }
        markFew(columns, rows);
    } else {
        markMany();
    }
    m_old.bridge();
    m_new.bridge();
    if (haveTooLittleInCommon()) {
        return std::nullopt;
    }
    const quint32 oldCount = m_old.appendEnds(ends);
    return Counts{oldCount, m_new.appendEnds(ends)};
}

} // namespace quillary
