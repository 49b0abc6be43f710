// Writes single lines of text at their place in a picture.
#include "common/view/text_line.h"

#include <QFontMetrics>
#include <QPainter>

namespace tonewright {

void WriteAt(QPainter &painter, int x, int top, int bottom, const QString &text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int cell = metrics.ascent() + metrics.descent();
    painter.drawText(x, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
}

void WriteLine(QPainter &painter, const Rectangle &box, const QString &text) {
    WriteAt(painter, box.left, box.top, box.bottom,
            painter.fontMetrics().elidedText(text, Qt::ElideRight, box.right - box.left));
}

void WriteCentred(QPainter &painter, const Rectangle &box, const QString &text) {
    const int width = painter.fontMetrics().horizontalAdvance(text);
    WriteAt(painter, box.left + (box.right - box.left - width) / 2, box.top, box.bottom, text);
}

} // namespace tonewright
