#include "shared/shapes.h"

namespace tonewright::theme {

QColor Mixed(const QColor &first, const QColor &second, double partOfSecond) {
    const auto mix = [&](float a, float b) {
        return static_cast<float>(a + (b - a) * partOfSecond);
    };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

QPainterPath RoundedOutline(const QRect &rectangle, double radius, int penWidth) {
    const double inset = penWidth / 2.0;
    QPainterPath path;
    path.addRoundedRect(QRectF(rectangle).adjusted(inset, inset, -inset, -inset), radius, radius);
    return path;
}

} // namespace tonewright::theme
