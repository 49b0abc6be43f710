// Pictures as the interface hands them out: packed device-independent bitmaps.
#pragma once

#include <QImage>

namespace tonewright::theme {

// An image as a bitmap of 32 bits with alpha in one block from malloc(), which the caller frees;
// `ratio` of its pixels are one of the screen at scale 1. Null for a null image, and when there is
// no memory for it.
void *PackedBitmap(const QImage &image, double ratio);

} // namespace tonewright::theme
