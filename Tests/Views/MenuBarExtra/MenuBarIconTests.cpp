#include "Quillary/MenuBarExtra/MenuBarIcon.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

using namespace quillary;

namespace {

/// The greatest difference of a pixel's lightness from the panel's, of 255.
int markContrast(bool isMadeForDark, const QColor& panel, int side) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(panel);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, MenuBarIcon::image(isMadeForDark).pixmap(side));
    painter.end();
    int greatest = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            greatest = std::max(greatest, std::abs(image.pixelColor(x, y).lightness() - panel.lightness()));
        }
    }
    return greatest;
}

} // namespace

TEST(MenuBarIcon, IsDrawnForTheSizesOfPanelsAndNotScaled) {
    const QList<QSize> sizes = MenuBarIcon::image(true).availableSizes();
    for (const int side : {16, 22, 24, 32, 64}) {
        EXPECT_TRUE(sizes.contains(QSize(side, side))) << side;
    }
}

TEST(MenuBarIcon, CanBeSeenOnPanelsOfBothKinds) {
    for (const bool isMadeForDark : {true, false}) {
        for (const QColor& panel :
             {QColor(Qt::black), QColor(0x20, 0x22, 0x28), QColor(0xef, 0xf0, 0xf1), QColor(Qt::white)}) {
            EXPECT_GE(markContrast(isMadeForDark, panel, 22), 100) << isMadeForDark << panel.name().toStdString();
        }
    }
}

TEST(MenuBarIcon, IsWholeWithinItsSquare) {
    for (const int side : {16, 22, 64}) {
        const QImage image = MenuBarIcon::image(true).pixmap(side).toImage();
        for (int y = 0; y < side; ++y) {
            // The outermost columns may have the rim, never a stroke of a letter.
            EXPECT_LT(image.pixelColor(0, y).lightness() * image.pixelColor(0, y).alpha() / 255, 128) << side;
            EXPECT_LT(image.pixelColor(side - 1, y).lightness() * image.pixelColor(side - 1, y).alpha() / 255, 128)
                << side;
        }
    }
}
