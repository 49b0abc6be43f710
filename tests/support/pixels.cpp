// Looks at the pixels of a painted picture.
#include "support/pixels.h"

#include <QPixmap>
#include <QTransform>
#include <QWidget>

namespace tonewright {

QImage EmptyImage(int width, int height, QRgb colour) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

bool IsAll(const QImage &image, const QRect &area, QRgb colour) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) != colour) {
                return false;
            }
        }
    }
    return true;
}

QRect InkOf(const QImage &image, const QRect &area, QRgb background) {
    QRect ink;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) != background) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

bool HasInk(QWidget &widget) {
    const QImage image = widget.grab().toImage();
    return !InkOf(image, image.rect(), image.pixel(0, 0)).isEmpty();
}

bool HasPixel(const QImage &image, const QRect &area, QRgb colour) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) == colour) {
                return true;
            }
        }
    }
    return false;
}

std::pair<int, int> RunOfColumn(const QImage &image, int x, int y, QRgb ink) {
    if (image.pixel(x, y) != ink) {
        return {-1, -1};
    }
    int first = y;
    int last = y;
    while (first > 0 && image.pixel(x, first - 1) == ink) {
        --first;
    }
    while (last + 1 < image.height() && image.pixel(x, last + 1) == ink) {
        ++last;
    }
    return {first, last};
}

std::pair<int, int> RunOfRow(const QImage &image, int x, int y, QRgb ink) {
    return RunOfColumn(image.transformed(QTransform(0, 1, 1, 0, 0, 0)), y, x, ink);
}

} // namespace tonewright
