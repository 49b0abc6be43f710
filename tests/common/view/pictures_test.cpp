// The program's own pictures.
#include "common/desktop.h"
#include "common/view/pictures.h"

#include <gtest/gtest.h>

#include <QImage>

namespace tonewright {
namespace {

bool HasInk(const QPixmap &picture) {
    const QImage image = picture.toImage();
    QImage empty(image.size(), image.format());
    empty.fill(Qt::transparent);
    return image.copy() != empty.copy();
}

TEST(Pictures, EveryPictureOfTheProgramIsThere) {
    for (const std::uint32_t number : {8500u, 8501u, 8502u, 9001u, 9003u, ApplicationPicture}) {
        EXPECT_FALSE(PictureSize(number).isEmpty()) << number;
        EXPECT_TRUE(HasInk(PictureOf(number, {32, 32}))) << number;
    }
}

TEST(Pictures, APictureHasItsSizeInLogicalPixels) {
    EXPECT_EQ(PictureOf(8500, {32, 24}).size(), QSize(32, 24));
    const QPixmap fine = PictureOf(8500, {32, 24}, 2.0);
    EXPECT_EQ(fine.size(), QSize(64, 48));
    EXPECT_EQ(fine.deviceIndependentSize(), QSizeF(32, 24));
}

TEST(Pictures, APictureKeepsItsProportions) {
    // A square picture leaves the left and the right third of a wide rectangle empty.
    const QImage image = PictureOf(ApplicationPicture, {300, 100}).toImage();
    EXPECT_EQ(image.pixelColor(50, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(250, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(110, 50).alpha(), 255);
}

TEST(Pictures, ANumberWithoutAPictureGivesAGreyTile) {
    EXPECT_TRUE(PictureSize(12345).isEmpty());
    const QColor tile = PictureOf(12345, {40, 40}).toImage().pixelColor(20, 20);
    EXPECT_EQ(tile.alpha(), 255);
    EXPECT_EQ(tile.red(), tile.green());
    EXPECT_EQ(tile.green(), tile.blue());
}

TEST(Pictures, SenselessSizesGiveASmallPicture) {
    EXPECT_EQ(PictureOf(8500, {0, -5}).size(), QSize(1, 1));
    EXPECT_EQ(PictureOf(8500, {10, 10}, 0).size(), QSize(10, 10));
    EXPECT_LE(PictureOf(12345, {1 << 30, 1}).width(), 4096);
}

} // namespace
} // namespace tonewright
