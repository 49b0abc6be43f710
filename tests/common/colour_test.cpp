// Colours as parts, as places in the field of colours and as hexadecimal numbers.
#include "common/colour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

namespace tonewright {
namespace {

TEST(Colour, HasRedInItsLowByteAndNothingAboveBlue) {
    EXPECT_EQ(ColourOf({.red = 0x11, .green = 0x22, .blue = 0x33}), 0x00332211u);
    const ColourParts parts = PartsOf(0xFF332211u);
    EXPECT_EQ(parts.red, 0x11);
    EXPECT_EQ(parts.green, 0x22);
    EXPECT_EQ(parts.blue, 0x33);
}

TEST(Colour, HexadecimalTheRedPairComesFirstAlthoughItIsTheLowByte) {
    EXPECT_EQ(HexOfColour(0x00000FABu), "#AB0F00");
    EXPECT_EQ(ReadHexColour("#AB0F01"), 0x00010FABu);
    EXPECT_EQ(HexOfPart(15), "0FH");
    EXPECT_EQ(HexOfPart(255), "FFH");
    EXPECT_EQ(HexOfPart(0), "00H");
}

TEST(Colour, AHexadecimalTextNeedsItsSignAndIs0WithoutADigit) {
    EXPECT_EQ(ReadHexColour("#f"), 0x000F0000u);
    EXPECT_EQ(ReadHexColour("#12G"), 0x00120000u);
    EXPECT_EQ(ReadHexColour("#9990aBcDe"), 0x00DEBC0Au);
    for (const char *text : {"#", "#x", "##1", "# 12"}) {
        EXPECT_EQ(ReadHexColour(text), 0u) << text;
    }
    for (const char *text : {"", "AB0F01", " #AB0F01"}) {
        EXPECT_EQ(ReadHexColour(text), std::nullopt) << text;
    }
}

TEST(Colour, TheCornersOfTheFieldOfColours) {
    const struct {
        std::uint32_t colour;
        ColourPlace place;
    } corners[] = {
        {0x000000FF, {0, 240, 120}},   {0x0000FFFF, {40, 240, 120}},  {0x0000FF00, {80, 240, 120}},
        {0x00FFFF00, {120, 240, 120}}, {0x00FF0000, {160, 240, 120}}, {0x00FF00FF, {200, 240, 120}},
        {0x00000000, {160, 0, 0}},     {0x00FFFFFF, {160, 0, 240}},
    };
    for (const auto &[colour, place] : corners) {
        EXPECT_EQ(PlaceOfColour(colour), place) << HexOfColour(colour);
        EXPECT_EQ(ColourAt(place), colour) << HexOfColour(colour);
    }
    EXPECT_EQ(ColourAt({.hue = 240, .saturation = 240, .luminance = 120}), 0x000000FFu);
    EXPECT_EQ(ColourAt({.hue = -9, .saturation = 999, .luminance = 120}), 0x000000FFu);
    // Navy, and a colour of unequal parts.
    EXPECT_EQ(PlaceOfColour(0x00800000), (ColourPlace{160, 240, 60}));
    EXPECT_EQ(PlaceOfColour(0x004080C0), (ColourPlace{20, 121, 120}));
}

TEST(Colour, APlaceLeadsBackToNearlyTheColourThatItIsOf) {
    for (int red = 0; red < 256; red += 15) {
        for (int green = 0; green < 256; green += 15) {
            for (int blue = 0; blue < 256; blue += 15) {
                const std::uint32_t colour = ColourOf({.red = static_cast<std::uint8_t>(red),
                                                       .green = static_cast<std::uint8_t>(green),
                                                       .blue = static_cast<std::uint8_t>(blue)});
                const ColourPlace place = PlaceOfColour(colour);
                EXPECT_TRUE(place.hue >= 0 && place.hue < HueRange);
                EXPECT_TRUE(place.saturation >= 0 && place.saturation <= HueRange);
                EXPECT_TRUE(place.luminance >= 0 && place.luminance <= HueRange);
                const ColourParts parts = PartsOf(ColourAt(place));
                const int off = std::max({std::abs(parts.red - red), std::abs(parts.green - green),
                                          std::abs(parts.blue - blue)});
                EXPECT_LE(off, 5) << HexOfColour(colour);
            }
        }
    }
}

} // namespace
} // namespace tonewright
