// Painted pictures, pixel by pixel.
#pragma once

#include <QImage>
#include <QRect>

#include <utility>

class QWidget;

namespace tonewright {

constexpr QRgb Black = 0xFF000000;
constexpr QRgb White = 0xFFFFFFFF;
constexpr QRgb Untouched = 0xFFC0FFEE; // a colour that nothing is painted in

QImage EmptyImage(int width, int height, QRgb colour = Untouched);

// Within `area`, which lies on the image: true when every pixel, or any pixel, has the colour.
bool IsAll(const QImage &image, const QRect &area, QRgb colour);
bool HasPixel(const QImage &image, const QRect &area, QRgb colour);
// The smallest rectangle around every pixel within `area` that differs from `background`; an empty
// one when there is none.
QRect InkOf(const QImage &image, const QRect &area, QRgb background = White);

// True when a widget is painted in more than one colour, over a ground of one.
bool HasInk(QWidget &widget);

// First and last row, or column, of the run of ink through column x and row y; -1 and -1 when the
// pixel there has another colour.
std::pair<int, int> RunOfColumn(const QImage &image, int x, int y, QRgb ink = Black);
std::pair<int, int> RunOfRow(const QImage &image, int x, int y, QRgb ink = Black);

} // namespace tonewright
