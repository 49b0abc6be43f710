// Checks and reads the bitmaps of themes.
#include "common/theme_bitmap.h"

namespace tonewright {
namespace {

constexpr std::uint32_t PixelsPerMetre = 3780;          // at scale 1
constexpr std::uint32_t MostPixelsPerMetre = 8 * 3780u; // at scale 8
constexpr std::uint32_t Opaque = 0xFF;

// Little-endian, whatever the machine is.
std::uint32_t NumberAt(std::span<const std::uint8_t> bytes, std::size_t place, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t index = size; index-- > 0;) {
        number = number << 8 | bytes[place + index];
    }
    return number;
}

struct Header {
    std::uint32_t size, width, height, planes, bits, compression, rowBytes, across, down, colours;
};

Header ReadHeader(std::span<const std::uint8_t> block) {
    return {.size = NumberAt(block, 0, 4),
            .width = NumberAt(block, 4, 4),
            .height = NumberAt(block, 8, 4),
            .planes = NumberAt(block, 12, 2),
            .bits = NumberAt(block, 14, 2),
            .compression = NumberAt(block, 16, 4),
            .rowBytes = NumberAt(block, 20, 4),
            .across = NumberAt(block, 24, 4),
            .down = NumberAt(block, 28, 4),
            .colours = NumberAt(block, 32, 4)};
}

bool IsSide(std::uint32_t pixels) {
    return pixels >= 1 && pixels <= LargestThemeBitmapSide; // a negative one is above
}

// Programs that make pictures write densities of many kinds there, 2835 for one: what is no scale
// of a screen is drawn as it stands.
double ScaleOf(std::uint32_t across, std::uint32_t down) {
    const bool isScale = across == down && across >= PixelsPerMetre && across <= MostPixelsPerMetre;
    return isScale ? static_cast<double>(across) / PixelsPerMetre : 1.0;
}

bool IsTaken(const Header &header) {
    return header.size == ThemeBitmapHeaderSize && IsSide(header.width) && IsSide(header.height) &&
           header.planes == 1 && (header.bits == 24 || header.bits == 32) &&
           header.compression == 0 && header.colours == 0;
}

std::uint32_t Blended(std::uint32_t source, std::uint32_t alpha, std::uint32_t background) {
    return source * alpha / 255 + background * (255 - alpha) / 255;
}

} // namespace

std::optional<ThemeBitmap> ReadThemeBitmap(std::span<const std::uint8_t> block) {
    if (block.size() < ThemeBitmapHeaderSize) {
        return std::nullopt;
    }
    const Header header = ReadHeader(block);
    if (!IsTaken(header)) {
        return std::nullopt;
    }
    const std::size_t pixelBytes = header.bits / 8;
    const std::size_t rowSize = (header.width * pixelBytes + 3) / 4 * 4;
    const std::size_t size = rowSize * header.height;
    if ((header.rowBytes != 0 && header.rowBytes != size) ||
        block.size() - ThemeBitmapHeaderSize < size) {
        return std::nullopt;
    }
    ThemeBitmap bitmap{.width = static_cast<int>(header.width),
                       .height = static_cast<int>(header.height),
                       .ratio = ScaleOf(header.across, header.down),
                       .pixels = {}};
    bitmap.pixels.reserve(std::size_t{header.width} * header.height);
    for (std::uint32_t row = header.height; row-- > 0;) {
        std::span<const std::uint8_t> bytes =
            block.subspan(ThemeBitmapHeaderSize + row * rowSize, rowSize);
        for (std::uint32_t column = 0; column < header.width; ++column) {
            const std::uint32_t colour = NumberAt(bytes, column * pixelBytes, pixelBytes);
            bitmap.pixels.push_back(pixelBytes == 4 ? colour : Opaque << 24 | colour);
        }
    }
    return bitmap;
}

void BlendThemeBitmap(ThemeBitmap &bitmap, std::uint32_t background) {
    for (std::uint32_t &pixel : bitmap.pixels) {
        const std::uint32_t alpha = pixel >> 24;
        std::uint32_t blended = Opaque << 24;
        for (const int shift : {16, 8, 0}) {
            blended |= Blended(pixel >> shift & 0xFF, alpha, background >> shift & 0xFF) << shift;
        }
        pixel = blended;
    }
}

} // namespace tonewright
