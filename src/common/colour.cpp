// Colours as places in the field of colours, and as hexadecimal numbers.
#include "common/colour.h"

#include "common/text.h"

#include <algorithm>
#include <cmath>

namespace tonewright {
namespace {

constexpr double Third = HueRange / 3.0;

// The part of a colour whose hue is `hue` away from that part's own, between the parts at least and
// at most; `hue` may lie beyond either end of the range by a third.
double PartAt(double least, double most, double hue) {
    hue = hue < 0 ? hue + HueRange : hue > HueRange ? hue - HueRange : hue;
    if (hue < Third / 2) {
        return least + (most - least) * hue / (Third / 2);
    }
    if (hue < HueRange / 2.0) {
        return most;
    }
    return hue < 2 * Third ? least + (most - least) * (2 * Third - hue) / (Third / 2) : least;
}

std::uint8_t ByteOf(double part) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0, 1.0) * 255));
}

} // namespace

ColourPlace PlaceOfColour(std::uint32_t colour) {
    const ColourParts parts = PartsOf(colour);
    const double red = parts.red / 255.0, green = parts.green / 255.0, blue = parts.blue / 255.0;
    const double most = std::max({red, green, blue}), least = std::min({red, green, blue});
    const double sum = most + least, span = most - least;
    ColourPlace place{.hue = GreyHue,
                      .saturation = 0,
                      .luminance = static_cast<int>(std::lround(sum / 2 * HueRange))};
    if (span == 0) {
        return place;
    }
    place.saturation = static_cast<int>(std::lround(span / (sum <= 1 ? sum : 2 - sum) * HueRange));
    const double sixth = Third / 2;
    double hue = most == red     ? sixth * (green - blue) / span
                 : most == green ? Third + sixth * (blue - red) / span
                                 : 2 * Third + sixth * (red - green) / span;
    place.hue = static_cast<int>(std::lround(hue < 0 ? hue + HueRange : hue)) % HueRange;
    return place;
}

std::uint32_t ColourAt(ColourPlace place) {
    const double hue = std::clamp(place.hue, 0, HueRange);
    const double saturation = std::clamp(place.saturation, 0, HueRange) / double(HueRange);
    const double luminance = std::clamp(place.luminance, 0, HueRange) / double(HueRange);
    const double most = luminance <= 0.5 ? luminance * (1 + saturation)
                                         : luminance + saturation - luminance * saturation;
    const double least = 2 * luminance - most;
    return ColourOf({.red = ByteOf(PartAt(least, most, hue + Third)),
                     .green = ByteOf(PartAt(least, most, hue)),
                     .blue = ByteOf(PartAt(least, most, hue - Third))});
}

std::string HexOfColour(std::uint32_t colour) {
    const ColourParts parts = PartsOf(colour);
    return FormatText("#%02X%02X%02X", parts.red, parts.green, parts.blue);
}

std::optional<std::uint32_t> ReadHexColour(std::string_view text) {
    constexpr std::string_view Digits = "0123456789abcdef";
    if (!text.starts_with('#')) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const char character : text.substr(1)) {
        const std::size_t digit = Digits.find(LowerAscii(character));
        if (digit == Digits.npos) {
            break;
        }
        number = number << 4 | static_cast<std::uint32_t>(digit);
    }
    return ColourOf({.red = static_cast<std::uint8_t>(number >> 16),
                     .green = static_cast<std::uint8_t>(number >> 8),
                     .blue = static_cast<std::uint8_t>(number)});
}

std::string HexOfPart(unsigned part) {
    return FormatText("%02XH", part);
}

} // namespace tonewright
