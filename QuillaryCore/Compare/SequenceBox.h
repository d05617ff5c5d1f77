#pragma once

#include <QtGlobal>

#include <span>
#include <vector>

namespace quillary {

/// A list of elements, by their numbers.
using NumberSequence = std::span<const qint32>;

/// A set of offsets into a list: a byte for each, other than zero for those in it.
using OffsetSet = std::vector<quint8>;

/// A stretch of each of two lists.
struct SequenceBox {
    qint32 fromBegin = 0;
    qint32 fromEnd = 0;
    qint32 toBegin = 0;
    qint32 toEnd = 0;

    qint32 width() const { return fromEnd - fromBegin; }

    qint32 height() const { return toEnd - toBegin; }

    /// Without what both stretches begin with and end with.
    ///
    /// Some longest common subsequence pairs two equal first elements: if it pairs at most one of them, that one with a
    /// later element, then pairing the two with each other instead is as long and crosses nothing. So for the last.
    SequenceBox trimmed(NumberSequence from, NumberSequence to) const {
        SequenceBox box = *this;
        while (box.fromBegin < box.fromEnd && box.toBegin < box.toEnd &&
               from[static_cast<std::size_t>(box.fromBegin)] == to[static_cast<std::size_t>(box.toBegin)]) {
            ++box.fromBegin;
            ++box.toBegin;
        }
        while (box.fromBegin < box.fromEnd && box.toBegin < box.toEnd &&
               from[static_cast<std::size_t>(box.fromEnd - 1)] == to[static_cast<std::size_t>(box.toEnd - 1)]) {
            --box.fromEnd;
            --box.toEnd;
        }
        return box;
    }
};

} // namespace quillary
