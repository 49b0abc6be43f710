// Bitmaps of themes, byte by byte.
#include "common/theme_bitmap.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A header of a bitmap of 2 by 2 pixels at scale 1.
Bytes Header(std::uint8_t bits) {
    return {40, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 1, 0, bits, 0, 0, 0, 0, 0,
            0,  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0, 0, 0};
}

Bytes Bitmap32() {
    Bytes block = Header(32);
    block.insert(block.end(), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16});
    return block;
}

// Each row of 6 bytes has 2 more.
Bytes Bitmap24() {
    Bytes block = Header(24);
    block.insert(block.end(), {1, 2, 3, 4, 5, 6, 0xEE, 0xEE, 7, 8, 9, 10, 11, 12, 0xEE, 0xEE});
    return block;
}

// The bitmap of 32 bits with some bytes of its header changed.
std::optional<ThemeBitmap> ReadChanged(const std::vector<std::pair<int, int>> &changes) {
    Bytes block = Bitmap32();
    for (const auto &[place, value] : changes) {
        block[static_cast<std::size_t>(place)] = static_cast<std::uint8_t>(value);
    }
    return ReadThemeBitmap(block);
}

TEST(ThemeBitmap, RowsGoFromTheLowestUpAndAPixelIsBlueGreenRedAlpha) {
    const auto bitmap = ReadThemeBitmap(Bitmap32());
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->width, 2);
    EXPECT_EQ(bitmap->height, 2);
    EXPECT_EQ(bitmap->ratio, 1.0);
    EXPECT_EQ(bitmap->pixels,
              (std::vector<std::uint32_t>{0x0C0B0A09, 0x100F0E0D, 0x04030201, 0x08070605}));
}

TEST(ThemeBitmap, RowsOf24BitsArePaddedAndOpaque) {
    const auto bitmap = ReadThemeBitmap(Bitmap24());
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->pixels,
              (std::vector<std::uint32_t>{0xFF090807, 0xFF0C0B0A, 0xFF030201, 0xFF060504}));
}

TEST(ThemeBitmap, PixelsPerMetreAreItsScale) {
    // None, 3780, 5670, 7560 and 30240.
    EXPECT_EQ(ReadChanged({})->ratio, 1.0);
    EXPECT_EQ(ReadChanged({{24, 0xC4}, {25, 0x0E}, {28, 0xC4}, {29, 0x0E}})->ratio, 1.0);
    EXPECT_EQ(ReadChanged({{24, 0x26}, {25, 0x16}, {28, 0x26}, {29, 0x16}})->ratio, 1.5);
    EXPECT_EQ(ReadChanged({{24, 0x88}, {25, 0x1D}, {28, 0x88}, {29, 0x1D}})->ratio, 2.0);
    EXPECT_EQ(ReadChanged({{24, 0x20}, {25, 0x76}, {28, 0x20}, {29, 0x76}})->ratio, 8.0);
}

struct Change {
    const char *what;
    std::vector<std::pair<int, int>> bytes; // place and value
};

TEST(ThemeBitmap, PixelsPerMetreThatAreNoScaleOfAScreenLeaveItAsItStands) {
    const Change densities[] = {
        {"across only", {{24, 0x88}, {25, 0x1D}}},
        {"1", {{24, 1}, {28, 1}}},
        {"2835", {{24, 0x13}, {25, 0x0B}, {28, 0x13}, {29, 0x0B}}},
        {"3779", {{24, 0xC3}, {25, 0x0E}, {28, 0xC3}, {29, 0x0E}}},
        {"30241", {{24, 0x21}, {25, 0x76}, {28, 0x21}, {29, 0x76}}},
        {"negative", {{27, 0x80}, {31, 0x80}}},
    };
    for (const auto &[what, bytes] : densities) {
        const auto bitmap = ReadChanged(bytes);
        ASSERT_TRUE(bitmap) << what;
        EXPECT_EQ(bitmap->ratio, 1.0) << what;
    }
}

TEST(ThemeBitmap, AHeaderThatTellsOfAnythingElseIsNoBitmap) {
    const Change lies[] = {
        {"size of the header 12", {{0, 12}}},
        {"size of the header 124", {{0, 124}}},
        {"width 0", {{4, 0}}},
        {"width 4097", {{4, 0x01}, {5, 0x10}}},
        {"width -2", {{4, 0xFE}, {5, 0xFF}, {6, 0xFF}, {7, 0xFF}}},
        {"height 0", {{8, 0}}},
        {"height 4097", {{8, 0x01}, {9, 0x10}}},
        {"height -2", {{8, 0xFE}, {9, 0xFF}, {10, 0xFF}, {11, 0xFF}}},
        {"planes 0", {{12, 0}}},
        {"planes 2", {{12, 2}}},
        {"1 bit", {{14, 1}}},
        {"8 bits", {{14, 8}}},
        {"16 bits", {{14, 16}}},
        {"288 bits", {{15, 1}}},
        {"compression", {{16, 3}}},
        {"15 bytes of rows", {{20, 15}}},
        {"17 bytes of rows", {{20, 17}}},
        {"a table of colours", {{32, 1}}},
    };
    for (const Change &lie : lies) {
        EXPECT_FALSE(ReadChanged(lie.bytes)) << lie.what;
    }
    EXPECT_TRUE(ReadChanged({{20, 16}}));
    EXPECT_TRUE(ReadChanged({{36, 1}}));
}

TEST(ThemeBitmap, ABlockThatEndsBeforeTheLastRowIsNoBitmap) {
    for (const Bytes &block : {Bitmap32(), Bitmap24()}) {
        for (std::size_t size = 0; size < block.size(); ++size) {
            EXPECT_FALSE(ReadThemeBitmap(
                Bytes(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(size))))
                << size;
        }
    }
    Bytes longer = Bitmap32();
    longer.push_back(0);
    EXPECT_TRUE(ReadThemeBitmap(longer));
}

TEST(ThemeBitmap, TheLargestSidesAre4096) {
    Bytes block = Header(24);
    block[4] = 0, block[5] = 0x10; // across
    block[8] = 1;
    block.resize(block.size() + 4096 * 3);
    const auto wide = ReadThemeBitmap(block);
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->pixels.size(), 4096u);
    block = Header(32);
    block[8] = 0, block[9] = 0x10;
    block[4] = 1;
    block.resize(block.size() + 4096 * 4);
    EXPECT_TRUE(ReadThemeBitmap(block));
}

std::uint32_t Blended(std::uint32_t pixel, std::uint32_t background) {
    ThemeBitmap bitmap{.width = 1, .height = 1, .pixels = {pixel}};
    BlendThemeBitmap(bitmap, background);
    return bitmap.pixels[0];
}

TEST(ThemeBitmap, EachShareIsWholeBeforeTheyAreAdded) {
    // 200 * 100 / 255 = 78, 60 * 155 / 255 = 36; 10 * 100 / 255 = 3, 255 * 155 / 255 = 155;
    // 255 * 100 / 255 = 100, 0.
    EXPECT_EQ(Blended(0x64'C8'0A'FF, 0x3C'FF'00), 0xFF'72'9E'64u);
    // 99 * 128 / 255 = 49.69, 99 * 127 / 255 = 49.30
    EXPECT_EQ(Blended(0x80'63'63'63, 0x636363), 0xFF'62'62'62u);
}

TEST(ThemeBitmap, OpaquePixelsStandAsTheyAreAndTransparentOnesShowTheGround) {
    EXPECT_EQ(Blended(0xFF123456, 0xFFFFFF), 0xFF123456u);
    EXPECT_EQ(Blended(0x00123456, 0xABCDEF), 0xFFABCDEFu);
    EXPECT_EQ(Blended(0x00123456, 0x77ABCDEF), 0xFFABCDEFu);
}

} // namespace
} // namespace tonewright
