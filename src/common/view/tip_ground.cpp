#include "common/view/tip_ground.h"

#include "common/view/system_colours.h"

#include <QPainter>

namespace tonewright {

void PaintTipGround(QPainter &painter, const QRect &area, const QColor &shade, int shadowBegin) {
    const QRect box = area.adjusted(0, 0, -1, -1);
    painter.fillRect(area.adjusted(shadowBegin, area.height() - 1, 0, 0), shade);
    painter.fillRect(area.adjusted(area.width() - 1, shadowBegin, 0, 0), shade);
    painter.fillRect(box, Qt::black);
    painter.fillRect(box.adjusted(1, 1, -1, -1), SystemColourOf(SystemColour::Info));
    painter.setPen(SystemColourOf(SystemColour::InfoText));
}

} // namespace tonewright
