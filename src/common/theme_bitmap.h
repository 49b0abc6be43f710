// The bitmaps that a theme hands over: a header of 40 bytes and rows of pixels in one block
// (themes/tonewright_theme.h tells the form). A theme is a stranger's code, so that everything is
// checked before a pixel is read.
//
//   bytes  0  28 00 00 00   size of the header, 40
//          4  02 00 00 00   width in pixels, 1 to 4096
//          8  01 00 00 00   height in pixels, the same; the rows go from the lowest one up
//         12  01 00         planes, 1
//         14  20 00         bits a pixel: 24, or 32 with alpha
//         16  00 00 00 00   compression, none
//         20  00 00 00 00   bytes of the rows, or 0
//         24  88 1D 00 00   pixels a metre, across: 3780 at scale 1, 7560 at scale 2, up to 30240
//                           at scale 8
//         28  88 1D 00 00   and down: the same number; with other ones the scale is 1
//         32  00 00 00 00   colours of a table, none
//         36  00 00 00 00   not looked at
//         40  FF 00 00 80   blue, green, red, alpha of the lowest row's first pixel: a blue that
//                           half of the background shows through
//         44  ...           each row padded to a multiple of four bytes
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

struct ThemeBitmap {
    int width = 0, height = 0; // pixels
    double ratio = 1;          // its scale: pixels for each of the screen at scale 1, 1 to 8
    // 0xAARRGGBB, from the highest row down, each from the left.
    std::vector<std::uint32_t> pixels;
};

// Bytes of the header with which every bitmap begins.
constexpr std::size_t ThemeBitmapHeaderSize = 40;

constexpr std::uint32_t LargestThemeBitmapSide = 4096; // pixels

// Reads the bitmap at the beginning of `block`; its pixels are opaque where they have no alpha.
// Nothing when the header tells of anything but the above, or when the block ends before the last
// row.
std::optional<ThemeBitmap> ReadThemeBitmap(std::span<const std::uint8_t> block);

// Lays a bitmap over a ground of one colour, 0xRRGGBB: for each of red, green and blue its own
// share by its alpha in 255 parts, and the ground's by the rest, each without its fraction. The
// alpha of the result is 255 everywhere.
void BlendThemeBitmap(ThemeBitmap &bitmap, std::uint32_t background);

} // namespace tonewright
