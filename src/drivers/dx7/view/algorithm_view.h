// Paints DX7 algorithms.
#pragma once

#include "core/synth_driver.h"

#include <QColor>

class QPainter;

namespace tonewright {

constexpr int ShowAlgorithmNumber = 1;

// Paints the picture of `algorithm` (0 to 31; any other number paints no boxes) into `rectangle`:
// background, the number plus one at the left if `flags` has ShowAlgorithmNumber, boxes and lines.
// `lineWeight` is in pixels; 0 or less draws one device pixel. Nothing is clipped. Returns 1.
int DrawDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                     QColor background, int lineWeight, int flags);

// The same, pixel by pixel, at the cost of copying an image where the picture of that size and
// those colours has been painted before.
void DrawKeptDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                          QColor background, int lineWeight, int flags);

} // namespace tonewright
