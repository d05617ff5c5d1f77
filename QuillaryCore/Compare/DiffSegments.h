#pragma once

#include "QuillaryCore/Compare/DiffSegment.h"
#include "QuillaryCore/IndexIterator.h"

#include <algorithm>
#include <span>

namespace quillary {

/// Where a segment ends in its line, in units, and whether it is changed. It takes four bytes, since a comparison of
/// long notes has very many.
class DiffSegmentEnd {
public:
    DiffSegmentEnd(qsizetype end, bool isChanged)
        : m_bits(static_cast<quint32>(end) << 1 | static_cast<quint32>(isChanged)) {}

    qsizetype end() const { return m_bits >> 1; }

    bool isChanged() const { return (m_bits & 1) != 0; }

private:
    quint32 m_bits;
};

/// The segments of one line, made when they are asked for.
class DiffSegments {
public:
    using Iterator = IndexIterator<DiffSegments, DiffSegment>;

    /// One unmarked segment that is the whole line.
    explicit DiffSegments(QStringView line) : m_line(line), m_ends(nullptr), m_size(1) {}

    /// The segments that end there; the last one ends with the line. No ends are no segments.
    DiffSegments(QStringView line, std::span<const DiffSegmentEnd> ends)
        : m_line(line), m_ends(ends.data()), m_size(static_cast<qsizetype>(ends.size())) {}

    /// The whole line.
    QStringView line() const { return m_line; }

    qsizetype size() const { return m_size; }

    DiffSegment operator[](qsizetype index) const {
        if (m_ends == nullptr) {
            return {m_line, false};
        }
        const qsizetype start = index == 0 ? 0 : m_ends[index - 1].end();
        return {m_line.sliced(start, m_ends[index].end() - start), m_ends[index].isChanged()};
    }

    /// The segment that holds the unit at this offset of the line.
    qsizetype indexAt(qsizetype offset) const {
        if (m_ends == nullptr) {
            return 0;
        }
        const auto isBefore = [](qsizetype value, DiffSegmentEnd end) { return value < end.end(); };
        return std::upper_bound(m_ends, m_ends + m_size, offset, isBefore) - m_ends;
    }

    Iterator begin() const { return {this, 0}; }

    Iterator end() const { return {this, m_size}; }

    friend bool operator==(const DiffSegments& a, const DiffSegments& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    QStringView m_line;
    const DiffSegmentEnd* m_ends;
    qsizetype m_size;
};

} // namespace quillary
