// Computes the areas of tips.
#include "common/tip_area.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr int WithTenth = 110; // hundredths of the text
constexpr int Across = 8, Down = 4;
constexpr int BesideCursor = 2;
constexpr int BelowCursor = 16; // half the height of a cursor

constexpr int ToolAcross = 8, ToolDown = 3;
constexpr int BesidePicture = 7, BelowPicture = 8;
constexpr int BesideControl = 12;
constexpr int Step = 8;

// The start of a stretch of `length` that begins at `from`, moved back in steps until it ends
// within `first` and `last`; or the first step that is not before `first`.
int SteppedBack(int from, int length, int first, int last) {
    const int over = from + length - last;
    if (over > 0) {
        from -= (over + Step - 1) / Step * Step;
    }
    if (from < first) {
        from += (first - from + Step - 1) / Step * Step;
    }
    return from;
}

} // namespace

Rectangle TipAreaOf(int textWidth, int textHeight, PicturePoint cursor, int width, int height) {
    const int across = textWidth * WithTenth / 100 + Across;
    const int down = textHeight * WithTenth / 100 + Down;
    const int left = std::max(0, std::min(cursor.x + BesideCursor, width - across));
    const int top = std::max(0, std::min(cursor.y + BelowCursor, height - down));
    return {.left = left, .top = top, .right = left + across, .bottom = top + down};
}

TipSize ToolTipSizeOf(int textWidth, int textHeight) {
    return {.width = textWidth + ToolAcross, .height = textHeight + ToolDown};
}

TipSize ToolTipSizeWith(TipSize tip, TipSize picture) {
    return {.width = std::max(tip.width, picture.width + BesidePicture),
            .height = tip.height + picture.height + BelowPicture};
}

Rectangle ToolTipAreaOf(TipSize tip, PicturePoint corner, Rectangle screen) {
    const int left = SteppedBack(corner.x + BesideControl, tip.width, screen.left, screen.right);
    const int top = SteppedBack(corner.y, tip.height, screen.top, screen.bottom);
    return {.left = left, .top = top, .right = left + tip.width, .bottom = top + tip.height};
}

int ToolTipFontHeight(std::uint32_t setting) {
    constexpr int Plain = 16, Largest = 128;
    const int height = static_cast<int>(setting);
    return height == 0 || height < -Largest || height > Largest ? Plain : height;
}

} // namespace tonewright
