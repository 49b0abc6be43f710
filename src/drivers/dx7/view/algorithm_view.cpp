// Paints the boxes, lines and numbers of a DX7 algorithm.
#include "drivers/dx7/view/algorithm_view.h"

#include "common/view/fonts.h"
#include "common/view/text_line.h"
#include "drivers/dx7/algorithms.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/view/algorithm_painting.h"
#include "drivers/view/kept_pictures.h"

#include <algorithm>

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace tonewright {
namespace {

// Selects the font of the algorithm's number, and returns the width of the strip that it stands in.
int BeginNumber(QPainter &painter, const Dx7AlgorithmUnits &units) {
    painter.setFont(FontOfHeight(QStringLiteral("ARIAL"), 2 * units.font, 700));
    return painter.fontMetrics().horizontalAdvance(QStringLiteral("00  "));
}

// Loops may leave the rectangle by less than the border within it; a kept picture has room for
// that.
int MarginOf(int lineWeight) {
    return 2 * lineWeight;
}

// Whether all strokes of a picture with its origin at x, y lie within `area`.
bool StaysWithin(const Dx7AlgorithmPicture &picture, const Dx7AlgorithmUnits &units, int x, int y,
                 int lineWeight, const Rectangle &area) {
    const int half = (lineWeight + 1) / 2;
    const auto isInside = [&](const PicturePoint &point) {
        return x + point.x - half >= area.left && x + point.x + half <= area.right &&
               y + point.y - half >= area.top && y + point.y + half <= area.bottom;
    };
    const auto boxIsInside = [&](const Dx7AlgorithmBox &box) {
        return isInside(box.corner) &&
               isInside({.x = box.corner.x + units.box, .y = box.corner.y + units.box});
    };
    const auto lineIsInside = [&](const std::vector<PicturePoint> &line) {
        return std::ranges::all_of(line, isInside);
    };
    return std::ranges::all_of(picture.boxes, boxIsInside) &&
           std::ranges::all_of(picture.lines, lineIsInside);
}

// A picture and its margin as an image; null for one that has no lines or needs more room.
QImage ImageOf(const PictureKey &key) {
    if (key.width <= 0 || key.height <= 0 || key.lineWeight <= 0) {
        return {};
    }
    const auto draw = [&key](QPainter &painter, const Rectangle &area) {
        DrawDx7Algorithm(painter, area, key.algorithm, QColor::fromRgba(key.ink),
                         QColor::fromRgba(key.paper), key.lineWeight,
                         key.withNumber ? ShowAlgorithmNumber : 0);
    };
    const auto blank = [&key](int width, int height, QImage::Format format) {
        QImage image(static_cast<int>(width * key.density), static_cast<int>(height * key.density),
                     format);
        image.setDevicePixelRatio(key.density);
        image.fill(Qt::transparent);
        return image;
    };
    // Texts are smoothed for an opaque ground, so what lies on the paper is painted on one.
    QImage onPaper = blank(key.width, key.height, QImage::Format_RGB32);
    QPainter painter(&onPaper);
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(key.height, key.lineWeight);
    const int border = 2 * key.lineWeight;
    const int originX = border + (key.withNumber ? BeginNumber(painter, units) : 0);
    const int margin = MarginOf(key.lineWeight);
    const Rectangle room = {.left = -margin,
                            .top = -margin,
                            .right = key.width + margin,
                            .bottom = key.height + margin};
    if (originX > key.width || !StaysWithin(MakeDx7AlgorithmPicture(key.algorithm, units), units,
                                            originX, border, key.lineWeight, room)) {
        return {};
    }
    draw(painter, {.left = 0, .top = 0, .right = key.width, .bottom = key.height});
    painter.end();

    QImage image =
        blank(key.width + 2 * margin, key.height + 2 * margin, QImage::Format_ARGB32_Premultiplied);
    painter.begin(&image);
    draw(painter, {.left = margin,
                   .top = margin,
                   .right = margin + key.width,
                   .bottom = margin + key.height});
    painter.drawImage(margin, margin, onPaper);
    painter.end();
    return image;
}

} // namespace

int DrawDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                     QColor background, int lineWeight, int flags) {
    const Dx7AlgorithmUnits units =
        MakeDx7AlgorithmUnits(rectangle.bottom - rectangle.top, lineWeight);
    const int innerTop = rectangle.top + 2 * lineWeight;
    const int innerBottom = innerTop + units.innerHeight;
    int originX = rectangle.left + 2 * lineWeight;

    painter.save();
    BeginAlgorithm(painter, rectangle, ink, background, lineWeight);

    if ((flags & ShowAlgorithmNumber) != 0) {
        originX += BeginNumber(painter, units);
        const QString number = QString::number(algorithm + 1) + QStringLiteral("  ");
        WriteAt(painter, originX - painter.fontMetrics().horizontalAdvance(number), innerTop,
                innerBottom, number);
    }

    SelectAlgorithmFont(painter, units.font);
    const QPointF shift = AlgorithmShift(originX, innerTop, lineWeight);
    const Dx7AlgorithmPicture picture = MakeDx7AlgorithmPicture(algorithm, units);
    for (const Dx7AlgorithmBox &box : picture.boxes) {
        painter.drawRect(
            QRectF(box.corner.x + shift.x(), box.corner.y + shift.y(), units.box, units.box)
                .normalized());
        const QString label = QString::number(box.number);
        const int top = innerTop + box.corner.y;
        const int left = originX + box.corner.x;
        WriteCentred(
            painter,
            {.left = left, .top = top, .right = left + units.box, .bottom = top + units.box},
            label);
    }
    DrawAlgorithmLines(painter, picture.lines, shift);
    painter.restore();
    return 1;
}

void DrawKeptDx7Algorithm(QPainter &painter, const Rectangle &rectangle, int algorithm, QColor ink,
                          QColor background, int lineWeight, int flags) {
    const PictureKey key = {.family = Dx7DriverId,
                            .algorithm = algorithm,
                            .width = rectangle.right - rectangle.left,
                            .height = rectangle.bottom - rectangle.top,
                            .density = painter.device()->devicePixelRatioF(),
                            .ink = ink.rgba(),
                            .paper = background.rgba(),
                            .lineWeight = lineWeight,
                            .withNumber = (flags & ShowAlgorithmNumber) != 0};
    const int margin = MarginOf(lineWeight);
    QImage picture;
    // The margin need not be whole pixels where the area with it is.
    if (CoversWholePixels(painter, rectangle) &&
        CoversWholePixels(painter, {.left = rectangle.left - margin,
                                    .top = rectangle.top - margin,
                                    .right = rectangle.right + margin,
                                    .bottom = rectangle.bottom + margin})) {
        picture = KeptPicture(key, [&key] { return ImageOf(key); });
    }
    if (picture.isNull()) {
        DrawDx7Algorithm(painter, rectangle, algorithm, ink, background, lineWeight, flags);
    } else {
        painter.drawImage(rectangle.left - margin, rectangle.top - margin, picture);
    }
}

} // namespace tonewright
