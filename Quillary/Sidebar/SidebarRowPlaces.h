#pragma once

#include <algorithm>
#include <vector>

namespace quillary {

/// Where rows of different heights lie below each other: a running sum, so that neither a place nor the row at a place
/// asks any row but that one. In logical pixels.
class SidebarRowPlaces {
public:
    /// Takes the rows' heights from top to bottom.
    template <typename Rows, typename HeightOf>
    void assign(const Rows& rows, const HeightOf& heightOf) {
        m_edges.assign(1, 0);
        m_edges.reserve(rows.size() + 1);
        for (const auto& row : rows) {
            m_edges.push_back(m_edges.back() + heightOf(row));
        }
    }

    int count() const { return static_cast<int>(m_edges.size()) - 1; }

    int top(int row) const { return m_edges[static_cast<std::size_t>(row)]; }

    int bottom(int row) const { return m_edges[static_cast<std::size_t>(row) + 1]; }

    int height(int row) const { return bottom(row) - top(row); }

    /// The height of all rows.
    int total() const { return m_edges.back(); }

    /// The row that covers a place; -1 above the first row, and `count()` below the last.
    int rowAt(int y) const {
        return static_cast<int>(std::upper_bound(m_edges.begin(), m_edges.end(), y) - m_edges.begin()) - 1;
    }

private:
    std::vector<int> m_edges{0};
};

} // namespace quillary
