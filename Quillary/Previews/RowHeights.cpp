#include "Quillary/Previews/RowHeights.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quillary {

void RowHeights::assign(std::vector<float> heights) {
    m_heights = std::move(heights);
    m_sums.assign((m_heights.size() + groupSize - 1) / groupSize + 1, 0);
    for (std::size_t row = 0; row < m_heights.size(); ++row) {
        m_sums[row / groupSize + 1] += static_cast<double>(m_heights[row]);
    }
    for (std::size_t i = 1; i < m_sums.size(); ++i) {
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
    for (std::size_t i = static_cast<std::size_t>(row) / groupSize + 1; i < m_sums.size(); i += i & (~i + 1)) {
        m_sums[i] += change;
    }
}

double RowHeights::top(qsizetype row) const {
    const auto place = static_cast<std::size_t>(row);
    double sum = 0;
    for (std::size_t i = place / groupSize; i > 0; i &= i - 1) {
        sum += m_sums[i];
    }
    for (std::size_t i = place / groupSize * groupSize; i < place; ++i) {
        sum += static_cast<double>(m_heights[i]);
    }
    return sum;
}

qsizetype RowHeights::rowAt(double place) const {
    std::size_t groups = 0;
    for (std::size_t step = std::bit_floor(m_sums.size()); step > 0; step /= 2) {
        if (groups + step < m_sums.size() && m_sums[groups + step] <= place) {
            groups += step;
            place -= m_sums[groups];
        }
    }
    std::size_t row = groups * groupSize;
    for (; row + 1 < m_heights.size() && static_cast<double>(m_heights[row]) <= place; ++row) {
        place -= static_cast<double>(m_heights[row]);
    }
    return static_cast<qsizetype>(std::min(row, m_heights.size() - 1));
}

} // namespace quillary
