// Writes one line of text into a rectangle.
#pragma once

#include <QRect>
#include <QString>

class QFont;
class QPainter;

namespace tonewright {

// The width of a line of text in pixels. (Font metrics measure it up to its first U+009C only.)
int TextLineWidth(const QString &text, const QFont &font);

// Writes `text` in the painter's font and pen, centred in `box` from top to bottom and placed
// across it as `alignment` says (left, right or horizontally centred; 0 is left). A text that is
// wider than `box` ends in an ellipsis. Line breaks and tabs are written as blanks; all other
// characters, an ampersand and the control characters from 0x80 on among them, stand for
// themselves.
void DrawTextLine(QPainter &painter, const QRect &box, const QString &text,
                  Qt::Alignment alignment = {});

} // namespace tonewright
