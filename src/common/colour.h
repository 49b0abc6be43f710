// Colours as numbers: red in the bits 0 to 7, green in 8 to 15, blue in 16 to 23; nothing above.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

struct ColourParts {
    std::uint8_t red = 0, green = 0, blue = 0;
};

constexpr ColourParts PartsOf(std::uint32_t colour) {
    return {.red = static_cast<std::uint8_t>(colour),
            .green = static_cast<std::uint8_t>(colour >> 8),
            .blue = static_cast<std::uint8_t>(colour >> 16)};
}
constexpr std::uint32_t ColourOf(ColourParts parts) {
    return parts.red | static_cast<std::uint32_t>(parts.green) << 8 |
           static_cast<std::uint32_t>(parts.blue) << 16;
}

// A colour as its place in the field of colours: each from 0 to HueRange. The hue 0 is red, a third
// of the range green, two thirds blue, the whole range red again; the luminance 0 is black, the
// whole range white.
constexpr int HueRange = 240;
struct ColourPlace {
    int hue = 0, saturation = 0, luminance = 0;
    bool operator==(const ColourPlace &) const = default;
};
// Hue and saturation of a grey, which has none: GreyHue and 0.
constexpr int GreyHue = 160;
ColourPlace PlaceOfColour(std::uint32_t colour);
// What lies beyond the range counts as its end.
std::uint32_t ColourAt(ColourPlace place);

// "#RRGGBB": red comes first.
std::string HexOfColour(std::uint32_t colour);
// The colour of a hash sign and hexadecimal digits, of which the last six count: red in the highest
// byte of the number, which is 0 without a digit. What stands behind the digits is passed over.
// Nothing for a text without the sign.
std::optional<std::uint32_t> ReadHexColour(std::string_view text);
// A part of a colour, 0 to 255, as "0FH".
std::string HexOfPart(unsigned part);

} // namespace tonewright
