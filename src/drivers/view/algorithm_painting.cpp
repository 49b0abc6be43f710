// Ground, labels and lines of the pictures of algorithms.
#include "drivers/view/algorithm_painting.h"

#include "common/view/fonts.h"
#include "common/view/strokes.h"

#include <QPainter>
#include <QPolygonF>

namespace tonewright {

void BeginAlgorithm(QPainter &painter, const Rectangle &area, QColor ink, QColor paper,
                    int lineWeight) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setPen(StrokePen(ink, lineWeight));
    painter.setBrush(paper);
    if (area.left < area.right && area.top < area.bottom) {
        painter.fillRect(area.left, area.top, area.right - area.left, area.bottom - area.top,
                         paper);
    }
}

void SelectAlgorithmFont(QPainter &painter, int height) {
    // In the list a digit is five pixels high; without hinting a 5 cannot be told from a 6, nor a 3
    // from an 8.
    QFont font = FontOfHeight(QStringLiteral("Arial"), height, 700);
    font.setHintingPreference(QFont::PreferFullHinting);
    painter.setFont(font);
}

QPointF AlgorithmShift(int x, int y, int lineWeight) {
    const double offset = StrokeOffset(lineWeight);
    return QPointF(x + offset, y + offset);
}

void DrawAlgorithmLines(QPainter &painter, const std::vector<std::vector<PicturePoint>> &lines,
                        const QPointF &shift) {
    for (const std::vector<PicturePoint> &line : lines) {
        QPolygonF points;
        for (const PicturePoint &point : line) {
            points << QPointF(point.x, point.y) + shift;
        }
        painter.drawPolyline(points);
    }
}

} // namespace tonewright
