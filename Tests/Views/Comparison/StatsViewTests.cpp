#include "Quillary/Comparison/StatsView.h"

#include "Quillary/Theme/Theme.h"

#include <QImage>

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

TEST(StatsView, TheBarIsAddedChangedAndRemovedFromLeftToRight) {
    StatsView view;
    view.setStats({1, 1, 1});
    view.resize(view.sizeHint());
    const QImage image = view.grab().toImage();
    const auto inPart = [&](int part) {
        return image.pixelColor(image.width() - static_cast<int>(StatsView::barWidth) + 9 + 18 * part,
                                image.height() / 2);
    };
    EXPECT_EQ(inPart(0).rgb(), Theme::diffAdded.in(view.palette()).rgb());
    EXPECT_EQ(inPart(1).rgb(), Theme::accentDot.rgb());
    EXPECT_EQ(inPart(2).rgb(), Theme::diffRemoved.in(view.palette()).rgb());
}
