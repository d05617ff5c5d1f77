#pragma once

#include <QtGlobal>

#include <cstddef>
#include <vector>

namespace quillary {

/// The heights of a column of rows, estimated or measured, in pixels. Places are sums of heights; setting a height and
/// finding a place cost the logarithm of the number of rows (P. M. Fenwick, "A new data structure for cumulative
/// frequency tables", 1994). Only groups of rows have sums, since rows may be as many as half a million.
class RowHeights {
public:
    /// Takes the heights of all rows.
    void assign(std::vector<float> heights);

    qsizetype count() const { return static_cast<qsizetype>(m_heights.size()); }

    double height(qsizetype row) const { return m_heights[static_cast<std::size_t>(row)]; }

    void setHeight(qsizetype row, double height);

    /// The sum of the heights of the rows before this one, which may be the one behind the last.
    double top(qsizetype row) const;

    double total() const { return top(count()); }

    /// The row that holds this place; the first or last one for a place outside. There must be rows.
    qsizetype rowAt(double place) const;

private:
    static constexpr std::size_t groupSize = 32;

    std::vector<float> m_heights;
    /// Of the groups, from place 1 on.
    std::vector<double> m_sums;
};

} // namespace quillary
