// Pens for pictures of straight lines, and the place at which their strokes cover whole pixels.
#pragma once

#include <QColor>
#include <QPen>

namespace tonewright {

// A pen of `width` pixels with square ends and mitred corners; 0 or less is one device pixel.
QPen StrokePen(const QColor &ink, int width);

// What to add to whole coordinates so that a stroke of `width` pixels covers whole pixels. A stroke
// lies half on either side of its coordinates: an even one is at home on the edges between pixels
// (2 wide at 10 covers 9 and 10), an odd one on their centres (1 wide at 10 covers 10, 3 wide
// covers 9 to 11).
double StrokeOffset(int width);

} // namespace tonewright
