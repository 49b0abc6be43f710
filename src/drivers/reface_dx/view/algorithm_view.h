// Paints reface DX algorithms.
#pragma once

#include "common/geometry.h"

#include <QColor>

class QPainter;

namespace tonewright {

// Paints the picture of `algorithm` (0 to 11; any other number only the paper) into `rectangle`:
// paper, boxes with their numbers, lines, and with `withNumber` the algorithm's number plus one
// below them. `lineWeight` is in pixels; 0 or less draws one device pixel. Nothing is clipped.
void DrawRefaceAlgorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                         QColor paper, int lineWeight, bool withNumber);

// The same picture with smooth edges: drawn at four times its size, of which each square of 4 by 4
// pixels becomes their average. What lies outside the rectangle is cut off. A picture too large for
// that, and an empty one, is drawn as above.
void DrawRefaceAlgorithmSmooth(QPainter &painter, const Rectangle &rectangle, int algorithm,
                               QColor ink, QColor paper, int lineWeight, bool withNumber);

} // namespace tonewright
