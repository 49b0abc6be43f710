// Pictures of algorithms that have been painted once and are shown again: the list paints the same
// few at every repaint, and each costs more than its two lines of text together.
#pragma once

#include "common/geometry.h"
#include "core/voice_object.h"

#include <QColor>
#include <QImage>

#include <functional>

class QPainter;

namespace tonewright {

// All that a picture depends on.
struct PictureKey {
    DriverId family = NoDriverId;
    int algorithm = 0;
    int width = 0, height = 0; // pixels
    double density = 1;        // pixels of the device for each of them
    QRgb ink = 0, paper = 0;
    int lineWeight = 0;
    bool withNumber = false;

    bool operator==(const PictureKey &) const = default;
};

// The picture of `key`, which `paint` makes when it is not kept; a null image is kept too. 32 MB
// are kept at most: those that have not been asked for longest go, and one larger than a sixteenth
// of that is not kept at all.
QImage KeptPicture(const PictureKey &key, const std::function<QImage()> &paint);

// True when an image of the size of `area` and of the density of the painter's device covers whole
// pixels there, so that it can stand for what was painted.
bool CoversWholePixels(const QPainter &painter, const Rectangle &area);

} // namespace tonewright
