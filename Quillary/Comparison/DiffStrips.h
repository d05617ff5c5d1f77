#pragma once

#include <QtGlobal>

#include <vector>

namespace quillary {

/// Where the items of a long list lie. An item takes one strip or, where its lines are very long, several; only strips
/// that were looked at have their true height, the others an estimate. Finding a place and correcting a height take
/// logarithmic time.
class DiffStrips {
public:
    /// No items.
    DiffStrips() = default;

    /// Begins anew; items are added in their order and then the list is closed.
    void clear();

    void beginItem() { m_firstStrip.push_back(count()); }

    void addStrip(int estimatedHeight) { m_heights.push_back(estimatedHeight); }

    void close();

    qsizetype count() const { return static_cast<qsizetype>(m_heights.size()); }

    /// The item that a strip belongs to.
    qsizetype itemOf(qsizetype strip) const;

    qsizetype firstStrip(qsizetype item) const { return m_firstStrip[static_cast<std::size_t>(item)]; }

    qsizetype endStrip(qsizetype item) const { return m_firstStrip[static_cast<std::size_t>(item) + 1]; }

    int height(qsizetype strip) const { return m_heights[static_cast<std::size_t>(strip)]; }

    void setHeight(qsizetype strip, int height);

    /// Where a strip begins; that behind the last one is the height of all.
    qint64 top(qsizetype strip) const;

    qint64 totalHeight() const { return top(count()); }

    /// The strip at a place; the first or the last one for places beyond them. There must be one.
    qsizetype stripAt(qint64 y) const;

private:
    std::vector<qsizetype> m_firstStrip;
    std::vector<int> m_heights;
    /// A Fenwick tree: element i - 1 holds the sum of as many heights before i as the lowest bit of i says.
    std::vector<qint64> m_sums;
};

} // namespace quillary
