// Controls that show a picture of the theme.
#pragma once

#include "tonewright_theme.h"

#include <cstdint>

class QLabel;

namespace tonewright {

// Makes a label the picture of its box that goes with a number, THEME_PICTURE_..., in the size that
// the theme has for it. It is asked of the theme each time the label is painted.
void ShowThemePicture(QLabel &control, std::uint32_t number);

// Makes a label show a bitmap of the theme by its number, THEME_BITMAP_..., in the size of the
// bitmap, cut to LargestShownBitmap; hides it where the theme has none.
void ShowThemeBitmap(QLabel &control, std::uint32_t number);

} // namespace tonewright
