// Colours and outlines.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRect>

namespace tonewright::theme {

// A colour between two others; `partOfSecond` from 0 to 1.
QColor Mixed(const QColor &first, const QColor &second, double partOfSecond);

// A path whose outline, drawn by a pen of this width, ends with the rectangle.
QPainterPath RoundedOutline(const QRect &rectangle, double radius, int penWidth = 1);

} // namespace tonewright::theme
