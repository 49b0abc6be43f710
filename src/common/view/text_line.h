// Single lines of text at their place in a picture, in the font and pen of the painter. A line is
// centred by its character cell (ascent and descent), and blanks at its end count.
#pragma once

#include "common/geometry.h"

#include <QString>

class QPainter;

namespace tonewright {

// The left end at `x`, between `top` and `bottom`.
void WriteAt(QPainter &painter, int x, int top, int bottom, const QString &text);
// At the left of `box`; a text that is too wide ends in an ellipsis.
void WriteLine(QPainter &painter, const Rectangle &box, const QString &text);
// In the middle of `box`; nothing is clipped.
void WriteCentred(QPainter &painter, const Rectangle &box, const QString &text);

} // namespace tonewright
