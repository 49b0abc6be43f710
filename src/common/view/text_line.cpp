// Elides and places lines of text.
#include "common/view/text_line.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

namespace tonewright {

namespace {

// Where not even an ellipsis has room the beginning of the text is better than nothing.
void WriteWhatFits(QPainter &painter, const QRect &box, const QString &text) {
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    WriteAt(painter, box.left(), box.top(), box.top() + box.height(), text);
    painter.restore();
}

} // namespace

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
    // Without the flag U+009C parts a long form of a text from a shorter one, and only one of the
    // two is shown. Painting within a rectangle knows no such flag, hence the place by hand.
    const QString elided =
        painter.fontMetrics().elidedText(line, Qt::ElideRight, box.width(), Qt::TextLongestVariant);
    if (elided.isEmpty() && !line.isEmpty()) {
        WriteWhatFits(painter, box, line.trimmed());
        return;
    }
    line = elided;
    int x = box.left();
    if ((alignment & (Qt::AlignRight | Qt::AlignHCenter)) != 0) {
        const int free = box.width() - TextLineWidth(line, painter.font());
        x += alignment.testFlag(Qt::AlignRight) ? free : free / 2;
    }
    WriteAt(painter, x, box.top(), box.top() + box.height(), line);
}

void WriteAt(QPainter &painter, int x, int top, int bottom, const QString &text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int cell = metrics.ascent() + metrics.descent();
    painter.drawText(x, top + (bottom - top - cell) / 2 + metrics.ascent(), text);
}

void WriteCentred(QPainter &painter, const Rectangle &box, const QString &text) {
    const int width = TextLineWidth(text, painter.font());
    WriteAt(painter, box.left + (box.right - box.left - width) / 2, box.top, box.bottom, text);
}

} // namespace tonewright
