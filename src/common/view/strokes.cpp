// Pens and pixel offsets of crisp strokes.
#include "common/view/strokes.h"

#include <algorithm>

namespace tonewright {

QPen StrokePen(const QColor &ink, int width) {
    return QPen(ink, std::max(0, width), Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin);
}

double StrokeOffset(int width) {
    return width > 0 && width % 2 == 0 ? 0.0 : 0.5;
}

} // namespace tonewright
