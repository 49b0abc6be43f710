// Colours and outlines.
#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRect>

namespace tonewright::theme {

// A colour between two others; `partOfSecond` from 0 to 1.
QColor Mixed(const QColor &first, const QColor &second, double partOfSecond);

// A path whose outline runs through the middle of the outermost pixels of a rectangle.
QPainterPath RoundedOutline(const QRect &rectangle, double radius);

} // namespace tonewright::theme
