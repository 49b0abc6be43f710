// Bitmaps of themes: whatever the block holds, nothing behind its end is read, and what is taken
// has as many pixels as it says.
#include "common/theme_bitmap.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

using namespace tonewright;

namespace {

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    // Half of the inputs get a header that is taken, so that there are pixels to read.
    std::vector<std::uint8_t> block(data, data + size);
    if (size > ThemeBitmapHeaderSize && data[size - 1] % 2 == 0) {
        std::fill_n(block.begin(), ThemeBitmapHeaderSize, 0);
        block[0] = ThemeBitmapHeaderSize;
        block[4] = data[4];
        block[5] = data[5] % 17; // up to 4351 pixels across
        block[8] = data[8];
        block[12] = 1;
        block[14] = data[14] % 2 ? 24 : 32;
    }
    block.shrink_to_fit(); // no room behind the end
    std::optional<ThemeBitmap> bitmap = ReadThemeBitmap(block);
    if (!bitmap) {
        return 0;
    }
    Check(bitmap->width >= 1 && bitmap->width <= 4096);
    Check(bitmap->height >= 1 && bitmap->height <= 4096);
    Check(bitmap->ratio >= 1 && bitmap->ratio <= 8);
    const std::size_t count = static_cast<std::size_t>(bitmap->width) * bitmap->height;
    Check(bitmap->pixels.size() == count);
    Check(ThemeBitmapHeaderSize + count * 3 <= block.size());
    const std::vector<std::uint32_t> before = bitmap->pixels;
    constexpr std::uint32_t Background = 0x3366CC;
    BlendThemeBitmap(*bitmap, Background);
    for (std::size_t index = 0; index < count; ++index) {
        const std::uint32_t blended = bitmap->pixels[index], alpha = before[index] >> 24;
        Check(blended >> 24 == 0xFF);
        Check(alpha != 0xFF || blended == before[index]);
        Check(alpha != 0 || blended == (0xFF000000 | Background));
    }
    return 0;
}
