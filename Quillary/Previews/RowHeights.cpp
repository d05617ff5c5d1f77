#include "Quillary/Previews/RowHeights.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quillary {

void RowHeights::assign(std::vector<float> heights) {
    m_heights = std::move(heights);
    m_sums.assign(m_heights.size() + 1, 0);
    for (std::size_t i = 1; i < m_sums.size(); ++i) {
        m_sums[i] += static_cast<double>(m_heights[i - 1]);
        const std::size_t parent = i + (i & (~i + 1));
        if (parent < m_sums.size()) {
            m_sums[parent] += m_sums[i];
        }
    }
}

void RowHeights::setHeight(qsizetype row, double height) {
    float& stored = m_heights[static_cast<std::size_t>(row)];
    const auto rounded = static_cast<float>(height);
    const double change = static_cast<double>(rounded) - static_cast<double>(stored);
    if (change == 0) {
        return;
    }
    stored = rounded;
    for (std::size_t i = static_cast<std::size_t>(row) + 1; i < m_sums.size(); i += i & (~i + 1)) {
        m_sums[i] += change;
    }
}

double RowHeights::top(qsizetype row) const {
    double sum = 0;
    for (auto i = static_cast<std::size_t>(row); i > 0; i &= i - 1) {
        sum += m_sums[i];
    }
    return sum;
}

qsizetype RowHeights::rowAt(double place) const {
    std::size_t before = 0;
    for (std::size_t step = std::bit_floor(m_heights.size()); step > 0; step /= 2) {
        if (before + step < m_sums.size() && m_sums[before + step] <= place) {
            before += step;
            place -= m_sums[before];
        }
    }
    return static_cast<qsizetype>(std::min(before, m_heights.size() - 1));
}

} // namespace quillary
