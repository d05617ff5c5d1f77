#include "Quillary/Comparison/StatsView.h"

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

TEST(StatsView, CountsWithMarks) {
    EXPECT_EQ(StatsView::counters({3, 2, 10}), (std::array{u"+3"_s, u"\u22122"_s, u"~10"_s}));
}

TEST(StatsView, TellsASentence) {
    StatsView view;
    view.setStats({1, 2, 3});
    EXPECT_EQ(view.toolTip(), u"1 righe aggiunte, 2 rimosse, 3 modificate"_s);
    EXPECT_EQ(view.accessibleName(), view.toolTip());
}

TEST(StatsView, TheBarHasTheProportions) {
    EXPECT_EQ(StatsView::barParts({1, 1, 2}), (std::array{13.5, 27.0, 13.5}));
    EXPECT_EQ(StatsView::barParts({0, 0, 0}), (std::array{0.0, 0.0, 0.0}));
    EXPECT_EQ(StatsView::barParts({0, 5, 0}), (std::array{0.0, 0.0, 54.0}));
}
