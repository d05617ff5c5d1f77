#include "Quillary/Comparison/DiffStrips.h"

#include <algorithm>
#include <bit>

namespace quillary {

namespace {

std::size_t lowestBit(std::size_t i) {
    return i & (~i + 1);
}

} // namespace

void DiffStrips::clear() {
    m_firstStrip.clear();
    m_heights.clear();
    m_sums.clear();
}

void DiffStrips::close() {
    m_firstStrip.push_back(count());
    m_sums.assign(m_heights.begin(), m_heights.end());
    for (std::size_t i = 1; i <= m_sums.size(); ++i) {
        const std::size_t parent = i + lowestBit(i);
        if (parent <= m_sums.size()) {
            m_sums[parent - 1] += m_sums[i - 1];
        }
    }
}

qsizetype DiffStrips::itemOf(qsizetype strip) const {
    return std::upper_bound(m_firstStrip.begin(), m_firstStrip.end(), strip) - m_firstStrip.begin() - 1;
}

void DiffStrips::setHeight(qsizetype strip, int height) {
    const std::size_t at = static_cast<std::size_t>(strip);
    const int difference = height - m_heights[at];
    m_heights[at] = height;
    if (difference != 0) {
        for (std::size_t i = at + 1; i <= m_sums.size(); i += lowestBit(i)) {
            m_sums[i - 1] += difference;
        }
    }
}

qint64 DiffStrips::top(qsizetype strip) const {
    qint64 sum = 0;
    for (std::size_t i = static_cast<std::size_t>(strip); i > 0; i -= lowestBit(i)) {
        sum += m_sums[i - 1];
    }
    return sum;
}

qsizetype DiffStrips::stripAt(qint64 y) const {
    std::size_t before = 0;
    for (std::size_t step = std::bit_floor(m_sums.size()); step > 0; step /= 2) {
        if (before + step <= m_sums.size() && m_sums[before + step - 1] <= y) {
            before += step;
            y -= m_sums[before - 1];
        }
    }
    return std::min(static_cast<qsizetype>(before), count() - 1);
}

} // namespace quillary
