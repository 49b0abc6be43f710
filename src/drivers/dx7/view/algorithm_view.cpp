// Paints the boxes, lines and numbers of a DX7 algorithm.
#include "drivers/dx7/view/algorithm_view.h"

#include "common/view/fonts.h"
#include "common/view/text_line.h"
#include "drivers/dx7/algorithms.h"
#include "drivers/view/algorithm_painting.h"

#include <QFontMetrics>
#include <QPainter>

namespace tonewright {

int DrawDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                     QColor background, int lineWeight, int flags) {
    const Dx7AlgorithmUnits units =
        MakeDx7AlgorithmUnits(rectangle.bottom - rectangle.top, lineWeight);
    const int innerTop = rectangle.top + 2 * lineWeight;
    const int innerBottom = innerTop + units.innerHeight;
    int originX = rectangle.left + 2 * lineWeight;

    painter.save();
    BeginAlgorithm(painter, rectangle, ink, background, lineWeight);

    if ((flags & ShowAlgorithmNumber) != 0) {
        painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), 2 * units.font, 700));
        const QFontMetrics metrics = painter.fontMetrics();
        const QString number = QString::number(algorithm + 1) + QStringLiteral("  ");
        originX += metrics.horizontalAdvance(QStringLiteral("00  "));
        WriteAt(painter, originX - metrics.horizontalAdvance(number), innerTop, innerBottom,
                number);
    }

    SelectAlgorithmFont(painter, units.font);
    const QPointF shift = AlgorithmShift(originX, innerTop, lineWeight);
    const Dx7AlgorithmPicture picture = MakeDx7AlgorithmPicture(algorithm, units);
    for (const Dx7AlgorithmBox &box : picture.boxes) {
        painter.drawRect(
            QRectF(box.corner.x + shift.x(), box.corner.y + shift.y(), units.box, units.box)
                .normalized());
        const QString label = QString::number(box.number);
        const int top = innerTop + box.corner.y;
        const int left = originX + box.corner.x;
        WriteCentred(
            painter,
            {.left = left, .top = top, .right = left + units.box, .bottom = top + units.box},
            label);
    }
    DrawAlgorithmLines(painter, picture.lines, shift);
    painter.restore();
    return 1;
}

} // namespace tonewright
