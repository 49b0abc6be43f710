// Size and place of the tip that tells of a row of a list.
#pragma once

#include "common/geometry.h"

namespace tonewright {

// The area of a tip in a list of `width` by `height` pixels, for a text of the measured size with
// the cursor at a place in the list: the text and a tenth more, and 8 by 4 pixels; right of the
// cursor and below it, but within the list. Of a tip that is larger than the list the top left
// corner is seen.
Rectangle TipAreaOf(int textWidth, int textHeight, PicturePoint cursor, int width, int height);

} // namespace tonewright
