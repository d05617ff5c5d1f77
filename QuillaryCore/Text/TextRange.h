#pragma once

#include <QtGlobal>

#include <algorithm>

namespace quillary {

/// A stretch of a text: where it begins and how long it is, in UTF-16 units.
struct TextRange {
    qsizetype location = 0;
    qsizetype length = 0;

    qsizetype end() const { return location + length; }

    bool isEmpty() const { return length == 0; }

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// A selection: the end that stays and the end that moves, the caret. Equal ends are a mere caret.
struct TextSelection {
    qsizetype anchor = 0;
    qsizetype caret = 0;

    TextRange range() const { return {std::min(anchor, caret), std::max(anchor, caret) - std::min(anchor, caret)}; }

    bool isEmpty() const { return anchor == caret; }

    friend bool operator==(const TextSelection&, const TextSelection&) = default;
};

/// One replacement in a text: at `offset`, `removedLength` units gave way to `insertedLength` new ones.
struct TextChange {
    qsizetype offset = 0;
    qsizetype removedLength = 0;
    qsizetype insertedLength = 0;

    /// The smallest single change that covers this one and a `next` one, which was made after it.
    TextChange followedBy(const TextChange& next) const {
        const qsizetype start = std::min(offset, next.offset);
        const qsizetype endBetween = std::max(offset + insertedLength, next.offset + next.removedLength);
        return {start, endBetween - (insertedLength - removedLength) - start,
                endBetween + (next.insertedLength - next.removedLength) - start};
    }

    friend bool operator==(const TextChange&, const TextChange&) = default;
};

} // namespace quillary
