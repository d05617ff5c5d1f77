#include "Quillary/Theme/Contrast.h"

#include <gtest/gtest.h>

using namespace quillary;

TEST(Contrast, IsThatOfTheGuidelines) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 0.001);
    EXPECT_NEAR(contrast(Qt::red, Qt::red), 1, 0.001);
    // The lightest grey that passes on white.
    EXPECT_GE(contrast(QColor(0x76, 0x76, 0x76), Qt::white), textContrast);
    EXPECT_LT(contrast(QColor(0x77, 0x77, 0x77), Qt::white), textContrast);
}

TEST(Contrast, ATranslucentColourIsMixedWithItsGround) {
    QColor half = Qt::black;
    half.setAlphaF(0.5F);
    EXPECT_NEAR(over(half, Qt::white).redF(), 0.5, 0.001);
    EXPECT_EQ(over(Qt::red, Qt::white).rgb(), QColor(Qt::red).rgb());
}

TEST(Contrast, ATextThatIsTooFaintGoesTowardsTheTextColourOnlyAsFarAsItMust) {
    const QColor dark(0x30, 0x30, 0x30);
    EXPECT_EQ(readable(dark, Qt::white, Qt::black).rgb(), dark.rgb());
    const QColor faint(0xb0, 0xb0, 0xb0);
    const QColor mended = readable(faint, Qt::white, Qt::black);
    EXPECT_GE(contrast(mended, Qt::white), textContrast);
    EXPECT_LT(contrast(mended, Qt::white), 6);
    EXPECT_GE(contrast(readable(faint, Qt::white, dark), Qt::white), textContrast);
}

TEST(Contrast, AMarkNeedsLess) {
    const QColor faint(0xb0, 0xb0, 0xb0);
    const QColor mended = readable(faint, Qt::white, Qt::black, markContrast);
    EXPECT_GE(contrast(mended, Qt::white), markContrast);
    EXPECT_LT(contrast(mended, Qt::white), textContrast);
}
