// Writes one line of text into a rectangle or at a place, in the painter's font and pen. A line is
// centred from top to bottom by its character cell (ascent and descent), and blanks at its end
// count.
#pragma once

#include "common/geometry.h"

#include <QRect>
#include <QString>

class QFont;
class QPainter;

namespace tonewright {

// The width of a line of text in pixels. (Font metrics measure it up to its first U+009C only.)
int TextLineWidth(const QString &text, const QFont &font);

// Writes `text` in the middle of `box` from top to bottom, placed across it as `alignment` says
// (left, right or horizontally centred; 0 is left). A text that is wider than `box` ends in an
// ellipsis. Line breaks and tabs are written as blanks; all other characters, an ampersand and the
// control characters from 0x80 on among them, stand for themselves.
void DrawTextLine(QPainter &painter, const QRect &box, const QString &text,
                  Qt::Alignment alignment = {});

// The left end at `x`, between `top` and `bottom`; nothing is elided.
void WriteAt(QPainter &painter, int x, int top, int bottom, const QString &text);
// In the middle of `box`; nothing is elided or clipped.
void WriteCentred(QPainter &painter, const Rectangle &box, const QString &text);

} // namespace tonewright
