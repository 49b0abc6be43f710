// Measures and pictures of the look.
#include "common/desktop.h"
#include "common/view/theme.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

namespace tonewright {
namespace {

bool HasInk(const QPixmap &picture) {
    const QImage image = picture.toImage();
    QImage empty(image.size(), image.format());
    empty.fill(Qt::transparent);
    return image.copy() != empty.copy();
}

QImage DrawnButton(unsigned state) {
    QImage image(48, 48, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    ThemeDrawButton(painter, image.rect(), state, PictureOf(50, {32, 32}));
    return image;
}

TEST(Theme, MetricsHaveTheirValuesAndOthersAre0) {
    const std::pair<int, int> metrics[] = {{1, 56}, {2, 48}, {3, 48},  {4, 0},   {5, 16}, {6, 8},
                                           {7, 4},  {8, 4},  {17, 96}, {18, 96}, {19, 0}, {-1, 0}};
    for (const auto &[number, pixels] : metrics) {
        EXPECT_EQ(ThemeGetMetric(number), pixels) << number;
    }
}

TEST(Theme, EveryPictureOfTheToolBarIsThere) {
    for (const std::uint32_t number : {50u, 51u, 54u, 55u, 56u, 58u, 59u, 60u, 103u, 9003u}) {
        EXPECT_FALSE(PictureSize(number).isEmpty()) << number;
        EXPECT_TRUE(HasInk(PictureOf(number, {32, 32}))) << number;
    }
    EXPECT_FALSE(PictureSize(ApplicationPicture).isEmpty());
}

TEST(Theme, APictureHasItsSizeInLogicalPixels) {
    EXPECT_EQ(PictureOf(50, {32, 24}).size(), QSize(32, 24));
    const QPixmap fine = PictureOf(50, {32, 24}, 2.0);
    EXPECT_EQ(fine.size(), QSize(64, 48));
    EXPECT_EQ(fine.deviceIndependentSize(), QSizeF(32, 24));
}

TEST(Theme, APictureKeepsItsProportions) {
    // A square picture leaves the left and the right third of a wide rectangle empty.
    const QImage image = PictureOf(ApplicationPicture, {300, 100}).toImage();
    EXPECT_EQ(image.pixelColor(50, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(250, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(110, 50).alpha(), 255);
}

TEST(Theme, ANumberWithoutAPictureGivesAGreyTile) {
    EXPECT_TRUE(PictureSize(12345).isEmpty());
    const QColor tile = PictureOf(12345, {40, 40}).toImage().pixelColor(20, 20);
    EXPECT_EQ(tile.alpha(), 255);
    EXPECT_EQ(tile.red(), tile.green());
    EXPECT_EQ(tile.green(), tile.blue());
}

TEST(Theme, SenselessSizesGiveASmallPicture) {
    EXPECT_EQ(PictureOf(50, {0, -5}).size(), QSize(1, 1));
    EXPECT_EQ(PictureOf(50, {10, 10}, 0).size(), QSize(10, 10));
    EXPECT_LE(PictureOf(12345, {1 << 30, 1}).width(), 4096);
}

TEST(Theme, ThePictureOfADialogIsDrawnIntoItsRectangle) {
    QImage image(96, 96, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        ThemeDrawPicture(painter, ApplicationPicture, QRect(0, 0, 48, 48));
    }
    EXPECT_NE(image.pixelColor(24, 3), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(60, 60), QColor(Qt::white));
}

TEST(Theme, EachStateOfAToolButtonLooksDifferent) {
    const unsigned states[] = {0, ButtonHover, ButtonPressed, ButtonDisabled, ButtonFocus};
    for (const unsigned first : states) {
        for (const unsigned second : states) {
            if (first != second) {
                EXPECT_NE(DrawnButton(first), DrawnButton(second)) << first << " " << second;
            }
        }
    }
    EXPECT_EQ(DrawnButton(ButtonDisabled), DrawnButton(ButtonDisabled | ButtonHover));
}

TEST(Theme, TheBackgroundOfTheToolBarFillsItsRectangleOnly) {
    QImage image(20, 80, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    {
        QPainter painter(&image);
        ThemeDrawToolbarBackground(painter, QRect(0, 0, 20, 56));
    }
    EXPECT_NE(image.pixelColor(10, 0), QColor(Qt::magenta));
    EXPECT_NE(image.pixelColor(19, 55), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(10, 56), QColor(Qt::magenta));
}

} // namespace
} // namespace tonewright
