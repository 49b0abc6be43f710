// Paints the boxes, lines and numbers of a reface DX algorithm.
#include "drivers/reface_dx/view/algorithm_view.h"

#include "common/view/text_line.h"
#include "drivers/reface_dx/algorithms.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/view/algorithm_painting.h"
#include "drivers/view/kept_pictures.h"

#include <cmath>
#include <cstdint>

#include <QImage>
#include <QPainter>

namespace tonewright {

namespace {

constexpr int Reduction = 4;

// A larger picture needs no smoothing: what is painted on that many pixels, before they are reduced,
// is a cell of a printed page, and no window.
constexpr std::int64_t MostPixelsToSmooth = 8 * 1024 * 1024;

// The average of each square of Reduction by Reduction pixels, rounded, colour by colour.
QImage ReducedImage(const QImage &large) {
    QImage small(large.width() / Reduction, large.height() / Reduction, QImage::Format_RGB32);
    constexpr int Pixels = Reduction * Reduction;
    for (int y = 0; y < small.height(); ++y) {
        const QRgb *lines[Reduction];
        for (int line = 0; line < Reduction; ++line) {
            lines[line] = reinterpret_cast<const QRgb *>(large.constScanLine(y * Reduction + line));
        }
        QRgb *target = reinterpret_cast<QRgb *>(small.scanLine(y));
        for (int x = 0; x < small.width(); ++x) {
            int red = Pixels / 2, green = Pixels / 2, blue = Pixels / 2;
            for (const QRgb *line : lines) {
                for (int pixel = x * Reduction; pixel < (x + 1) * Reduction; ++pixel) {
                    red += qRed(line[pixel]);
                    green += qGreen(line[pixel]);
                    blue += qBlue(line[pixel]);
                }
            }
            target[x] = qRgb(red / Pixels, green / Pixels, blue / Pixels);
        }
    }
    return small;
}

Rectangle Moved(const Rectangle &rectangle, int x, int y) {
    return {.left = rectangle.left + x,
            .top = rectangle.top + y,
            .right = rectangle.right + x,
            .bottom = rectangle.bottom + y};
}

} // namespace

void DrawRefaceAlgorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                         QColor paper, int lineWeight, bool withNumber) {
    const int width = rectangle.right - rectangle.left;
    const int height = rectangle.bottom - rectangle.top;
    const int border = 2 * lineWeight;
    const int originX = rectangle.left + border;
    const int originY = rectangle.top + border;
    const RefaceAlgorithmUnits units =
        MakeRefaceAlgorithmUnits(width - 2 * border, height - 2 * border, withNumber);

    painter.save();
    BeginAlgorithm(painter, rectangle, ink, paper, lineWeight);
    SelectAlgorithmFont(painter, units.font);
    const QPointF shift = AlgorithmShift(originX, originY, lineWeight);
    const RefaceAlgorithmPicture picture = MakeRefaceAlgorithmPicture(algorithm, units);
    for (const RefaceAlgorithmBox &box : picture.boxes) {
        const QRectF area =
            QRectF(box.area.left + shift.x(), box.area.top + shift.y(), units.box, units.box)
                .normalized();
        if (box.isCarrier) {
            painter.drawRect(area);
        } else {
            painter.drawEllipse(area);
        }
        WriteCentred(painter, Moved(box.area, originX, originY), QString::number(box.number));
    }
    if (withNumber && !picture.boxes.empty()) {
        WriteCentred(painter, Moved(picture.number, originX, originY),
                     QString::number(algorithm + 1));
    }
    DrawAlgorithmLines(painter, picture.lines, shift);
    painter.restore();
}

// Null where there are no pixels, or too many.
static QImage SmoothPicture(const PictureKey &key) {
    // Pixels of the device, of which a dense screen has more than one for each of ours.
    const auto large = [&key](int length) {
        return static_cast<int>(std::lround(length * key.density)) * Reduction;
    };
    const int width = large(key.width);
    const int height = large(key.height);
    QImage image;
    if (width > 0 && height > 0 && std::int64_t{width} * height <= MostPixelsToSmooth) {
        image = QImage(width, height, QImage::Format_RGB32);
    }
    if (image.isNull()) {
        return {};
    }
    image.fill(key.paper);
    {
        QPainter painter(&image);
        DrawRefaceAlgorithm(painter, {.left = 0, .top = 0, .right = width, .bottom = height},
                            key.algorithm, QColor::fromRgba(key.ink), QColor::fromRgba(key.paper),
                            // Rounded once, when it is large: a quarter of a pixel counts.
                            static_cast<int>(std::lround(key.lineWeight * key.density * Reduction)),
                            key.withNumber);
    }
    QImage reduced = ReducedImage(image);
    reduced.setDevicePixelRatio(key.density);
    return reduced;
}

void DrawRefaceAlgorithmSmooth(QPainter &painter, const Rectangle &rectangle, int algorithm,
                               QColor ink, QColor paper, int lineWeight, bool withNumber) {
    const PictureKey key = {.family = RefaceDriverId,
                            .algorithm = algorithm,
                            .width = rectangle.right - rectangle.left,
                            .height = rectangle.bottom - rectangle.top,
                            .density = painter.device()->devicePixelRatioF(),
                            .ink = ink.rgba(),
                            .paper = paper.rgba(),
                            .lineWeight = lineWeight,
                            .withNumber = withNumber};
    const QImage picture = KeptPicture(key, [&key] { return SmoothPicture(key); });
    if (picture.isNull()) {
        DrawRefaceAlgorithm(painter, rectangle, algorithm, ink, paper, lineWeight, withNumber);
    } else {
        painter.drawImage(rectangle.left, rectangle.top, picture);
    }
}

} // namespace tonewright
