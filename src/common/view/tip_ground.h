// What every tip is painted on.
#pragma once

#include <QColor>
#include <QRect>

class QPainter;

namespace tonewright {

// Paints the ground of a tip into `area`, whose last row and column are a shadow of `shade`: in the
// colour of information, with a black frame. The shadow begins some pixels behind the top right and
// the bottom left corner. The pen is then the colour of the text.
void PaintTipGround(QPainter &painter, const QRect &area, const QColor &shade, int shadowBegin);

} // namespace tonewright
