// Paints the boxes, lines and numbers of a DX7 algorithm.
#include "drivers/dx7/view/algorithm_view.h"

#include "common/view/fonts.h"
#include "common/view/strokes.h"
#include "common/view/text_line.h"
#include "drivers/dx7/algorithms.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygonF>

namespace tonewright {

int DrawDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                     QColor background, int lineWeight, int flags) {
    const Dx7AlgorithmUnits units =
        MakeDx7AlgorithmUnits(rectangle.bottom - rectangle.top, lineWeight);
    const int innerTop = rectangle.top + 2 * lineWeight;
    const int innerBottom = innerTop + units.innerHeight;
    int originX = rectangle.left + 2 * lineWeight;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setPen(StrokePen(ink, lineWeight));
    painter.setBrush(background);
    if (rectangle.left < rectangle.right && rectangle.top < rectangle.bottom) {
        painter.fillRect(rectangle.left, rectangle.top, rectangle.right - rectangle.left,
                         rectangle.bottom - rectangle.top, background);
    }

    if ((flags & ShowAlgorithmNumber) != 0) {
        painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), 2 * units.font, 700));
        const QFontMetrics metrics = painter.fontMetrics();
        const QString number = QString::number(algorithm + 1) + QStringLiteral("  ");
        originX += metrics.horizontalAdvance(QStringLiteral("00  "));
        WriteAt(painter, originX - metrics.horizontalAdvance(number), innerTop, innerBottom,
                number);
    }

    // In the list a digit is five pixels high; without hinting a 5 cannot be told from a 6.
    QFont labelFont = FontOfHeight(QStringLiteral("Arial"), units.font, 700);
    labelFont.setHintingPreference(QFont::PreferFullHinting);
    painter.setFont(labelFont);
    const double offset = StrokeOffset(lineWeight);
    const QPointF shift(originX + offset, innerTop + offset);
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
    for (const std::vector<PicturePoint> &line : picture.lines) {
        QPolygonF points;
        for (const PicturePoint &point : line) {
            points << QPointF(point.x, point.y) + shift;
        }
        painter.drawPolyline(points);
    }
    painter.restore();
    return 1;
}

} // namespace tonewright
