// Computes the area of a tip.
#include "common/tip_area.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr int WithTenth = 110; // hundredths of the text
constexpr int Across = 8, Down = 4;
constexpr int BesideCursor = 2;
constexpr int BelowCursor = 16; // half the height of a cursor

} // namespace

Rectangle TipAreaOf(int textWidth, int textHeight, PicturePoint cursor, int width, int height) {
    const int across = textWidth * WithTenth / 100 + Across;
    const int down = textHeight * WithTenth / 100 + Down;
    const int left = std::max(0, std::min(cursor.x + BesideCursor, width - across));
    const int top = std::max(0, std::min(cursor.y + BelowCursor, height - down));
    return {.left = left, .top = top, .right = left + across, .bottom = top + down};
}

} // namespace tonewright
