#include "shared/shapes.h"

namespace tonewright::theme {

QColor Mixed(const QColor &first, const QColor &second, double partOfSecond) {
    const auto mix = [&](float a, float b) {
        return static_cast<float>(a + (b - a) * partOfSecond);
    };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

QPainterPath RoundedOutline(const QRect &rectangle, double radius) {
    QPainterPath path;
    path.addRoundedRect(QRectF(rectangle).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    return path;
}

} // namespace tonewright::theme
