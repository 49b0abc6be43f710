// Elides and places a line of text.
#include "common/view/text_line.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

namespace tonewright {

int TextLineWidth(const QString &text, const QFont &font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return line.isValid() ? qRound(line.horizontalAdvance()) : 0;
}

void DrawTextLine(QPainter &painter, const QRect &box, const QString &text,
                  Qt::Alignment alignment) {
    QString line = text;
    for (const QChar breaking : {u'\t', u'\n', u'\r'}) {
        line.replace(breaking, QLatin1Char(' '));
    }
    const QFontMetrics metrics = painter.fontMetrics();
    // Without the flag U+009C parts a long form of a text from a shorter one, and only one of the
    // two is shown. Painting within a rectangle knows no such flag, hence the place by hand.
    line = metrics.elidedText(line, Qt::ElideRight, box.width(), Qt::TextLongestVariant);
    const int cell = metrics.ascent() + metrics.descent();
    int x = box.left();
    if ((alignment & (Qt::AlignRight | Qt::AlignHCenter)) != 0) {
        const int free = box.width() - TextLineWidth(line, painter.font());
        x += alignment.testFlag(Qt::AlignRight) ? free : free / 2;
    }
    painter.drawText(x, box.top() + (box.height() - cell) / 2 + metrics.ascent(), line);
}

} // namespace tonewright
