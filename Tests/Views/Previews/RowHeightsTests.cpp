#include "Quillary/Previews/RowHeights.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <vector>

using namespace quillary;

TEST(RowHeights, PlacesAreSumsOfTheHeightsBefore) {
    RowHeights heights;
    heights.assign({10, 0, 5, 20});
    EXPECT_EQ(heights.top(0), 0);
    EXPECT_EQ(heights.top(1), 10);
    EXPECT_EQ(heights.top(2), 10);
    EXPECT_EQ(heights.top(3), 15);
    EXPECT_EQ(heights.total(), 35);
}

TEST(RowHeights, TheRowOfAPlaceIsTheOneThatHoldsIt) {
    RowHeights heights;
    heights.assign({10, 0, 5, 20});
    EXPECT_EQ(heights.rowAt(-1), 0);
    EXPECT_EQ(heights.rowAt(0), 0);
    EXPECT_EQ(heights.rowAt(9.5), 0);
    EXPECT_EQ(heights.rowAt(10), 2);
    EXPECT_EQ(heights.rowAt(15), 3);
    EXPECT_EQ(heights.rowAt(1000), 3);
}

TEST(RowHeights, AgreesWithPlainSumsWhateverIsSet) {
    std::mt19937 random(20240607);
    for (const std::size_t count : {1U, 2U, 3U, 31U, 32U, 33U, 64U, 1000U, 1024U}) {
        std::vector<float> plain(count);
        for (float& height : plain) {
            height = static_cast<float>(random() % 50);
        }
        RowHeights heights;
        heights.assign(plain);
        for (int step = 0; step < 200; ++step) {
            const std::size_t row = random() % count;
            plain[row] = static_cast<float>(random() % 50);
            heights.setHeight(static_cast<qsizetype>(row), static_cast<double>(plain[row]));
            const std::size_t asked = random() % (count + 1);
            const float sum = std::accumulate(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(asked), 0.F);
            ASSERT_EQ(heights.top(static_cast<qsizetype>(asked)), static_cast<double>(sum));
            const double place = static_cast<double>(random() % 2000);
            const qsizetype found = heights.rowAt(place);
            ASSERT_LE(heights.top(found), place);
            ASSERT_TRUE(found == heights.count() - 1 || heights.top(found + 1) > place);
        }
    }
}
