#include "Quillary/Comparison/DiffStrips.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

using namespace quillary;

namespace {

DiffStrips stripsOf(const std::vector<std::vector<int>>& items) {
    DiffStrips strips;
    for (const std::vector<int>& heights : items) {
        strips.beginItem();
        for (const int height : heights) {
            strips.addStrip(height);
        }
    }
    strips.close();
    return strips;
}

} // namespace

TEST(DiffStrips, OfNoItemsHaveNoHeight) {
    DiffStrips strips = stripsOf({});
    EXPECT_EQ(strips.count(), 0);
    EXPECT_EQ(strips.totalHeight(), 0);
}

TEST(DiffStrips, KnowTheirItemsAndPlaces) {
    DiffStrips strips = stripsOf({{10}, {20, 30}, {5}});
    EXPECT_EQ(strips.totalHeight(), 65);
    EXPECT_EQ(strips.itemOf(0), 0);
    EXPECT_EQ(strips.itemOf(1), 1);
    EXPECT_EQ(strips.itemOf(2), 1);
    EXPECT_EQ(strips.itemOf(3), 2);
    EXPECT_EQ(strips.firstStrip(2), 3);
    EXPECT_EQ(strips.endStrip(1), 3);
    EXPECT_EQ(strips.stripAt(0), 0);
    EXPECT_EQ(strips.stripAt(9), 0);
    EXPECT_EQ(strips.stripAt(10), 1);
    EXPECT_EQ(strips.stripAt(59), 2);
    EXPECT_EQ(strips.stripAt(60), 3);
    EXPECT_EQ(strips.stripAt(1000), 3);
    strips.setHeight(1, 100);
    EXPECT_EQ(strips.top(2), 110);
    EXPECT_EQ(strips.stripAt(109), 1);
}

TEST(DiffStrips, AgreeWithPlainSumsAfterAnyCorrections) {
    std::mt19937 random(1);
    for (int round = 0; round < 30; ++round) {
        std::vector<int> heights(1 + random() % 200);
        std::vector<std::vector<int>> items;
        for (int& height : heights) {
            height = static_cast<int>(1 + random() % 40);
            items.push_back({height});
        }
        DiffStrips strips = stripsOf(items);
        for (int step = 0; step < 100; ++step) {
            const std::size_t at = random() % heights.size();
            heights[at] = static_cast<int>(1 + random() % 90);
            strips.setHeight(static_cast<qsizetype>(at), heights[at]);
            const std::size_t asked = random() % heights.size();
            const qint64 top =
                std::accumulate(heights.begin(), heights.begin() + static_cast<std::ptrdiff_t>(asked), qint64(0));
            ASSERT_EQ(strips.top(static_cast<qsizetype>(asked)), top);
            ASSERT_EQ(strips.stripAt(top), static_cast<qsizetype>(asked));
            ASSERT_EQ(strips.stripAt(top + heights[asked] - 1), static_cast<qsizetype>(asked));
        }
    }
}
