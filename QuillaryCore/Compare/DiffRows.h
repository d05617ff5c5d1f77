#pragma once

#include "QuillaryCore/Compare/DiffRow.h"
#include "QuillaryCore/Compare/TextLines.h"
#include "QuillaryCore/IndexIterator.h"

#include <memory>
#include <span>
#include <vector>

namespace quillary {

/// The rows of a comparison, made when they are asked for from the two texts and a few numbers a row. Copies share all
/// of it, and what rows show is good for as long as any copy is.
class DiffRows {
public:
    /// The segments of a pair of lines: where the ends of both sides begin among all, and how many each has.
    struct WordMarks {
        quint32 first = 0;
        quint32 oldCount = 0;
        quint32 newCount = 0;
    };

    /// The lines of a row, and the index of its segments if it is marked by word; -1 for what it hasn't.
    struct Place {
        qint32 oldLine = -1;
        qint32 newLine = -1;
        qint32 words = -1;
    };

    struct Contents {
        TextLines oldLines;
        TextLines newLines;
        std::vector<DiffRow::Kind> kinds;
        std::vector<Place> places;
        std::vector<WordMarks> words;
        std::vector<DiffSegmentEnd> ends;
    };

    using Iterator = IndexIterator<DiffRows, DiffRow>;

    /// No rows.
    DiffRows();
    explicit DiffRows(Contents contents);

    qsizetype size() const { return static_cast<qsizetype>(m_contents->kinds.size()); }

    bool isEmpty() const { return m_contents->kinds.empty(); }

    /// The row with this id, which must be there.
    DiffRow operator[](qsizetype id) const;

    /// The kinds of all rows, in their order.
    std::span<const DiffRow::Kind> kinds() const { return m_contents->kinds; }

    Iterator begin() const { return {this, 0}; }

    Iterator end() const { return {this, size()}; }

    friend bool operator==(const DiffRows& a, const DiffRows& b);

private:
    std::shared_ptr<const Contents> m_contents;
};

} // namespace quillary
