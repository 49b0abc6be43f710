// Sizes and places of the tip that tells of a row of a list, and of the one that tells of a
// control.
#pragma once

#include "common/geometry.h"

#include <cstdint>

namespace tonewright {

// The area of a tip in a list of `width` by `height` pixels, for a text of the measured size with
// the cursor at a place in the list: the text and a tenth more, and 8 by 4 pixels; right of the
// cursor and below it, but within the list. Of a tip that is larger than the list the top left
// corner is seen.
Rectangle TipAreaOf(int textWidth, int textHeight, PicturePoint cursor, int width, int height);

struct TipSize {
    int width = 0, height = 0; // pixels
    bool operator==(const TipSize &) const = default;
};

// The size of a tool tip for a text of the measured size, and of that tip with a picture above its
// text.
TipSize ToolTipSizeOf(int textWidth, int textHeight);
TipSize ToolTipSizeWith(TipSize tip, TipSize picture);

// The area of a tool tip on a screen, for a corner below the control: 12 pixels right of it, and
// back from there in steps of 8 until the tip fits, across and down for themselves. Of a tip that
// is larger than the screen the top left corner is seen: it stands at the first step on the screen.
Rectangle ToolTipAreaOf(TipSize tip, PicturePoint corner, Rectangle screen);

// The height of the tips' font that the setting TipFont01Size gives: its value, which is the size
// of the em where it is negative; but nothing, or a value that no tip can be written in, is 16.
int ToolTipFontHeight(std::uint32_t setting);

} // namespace tonewright
