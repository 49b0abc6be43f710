// Keeps pictures of algorithms.
#include "drivers/view/kept_pictures.h"

#include <QCache>
#include <QPainter>

#include <cmath>

namespace tonewright {
namespace {

constexpr qsizetype MostBytes = 32 * 1024 * 1024;
constexpr qsizetype MostBytesOfOne = MostBytes / 16;
constexpr qsizetype BytesOfAnEntry = 256; // about what a key and an image without pixels take

bool IsWhole(double pixels) {
    return std::floor(pixels) == pixels;
}

} // namespace

// Found by the cache through its argument.
static std::size_t qHash(const PictureKey &key, std::size_t seed) {
    return qHashMulti(seed, key.family, key.algorithm, key.width, key.height, key.density, key.ink,
                      key.paper, key.lineWeight, key.withNumber);
}

QImage KeptPicture(const PictureKey &key, const std::function<QImage()> &paint) {
    static QCache<PictureKey, QImage> kept(MostBytes);
    if (const QImage *found = kept.object(key)) {
        return *found;
    }
    QImage image = paint();
    if (image.sizeInBytes() <= MostBytesOfOne) {
        kept.insert(key, new QImage(image), BytesOfAnEntry + image.sizeInBytes());
    }
    return image;
}

bool CoversWholePixels(const QPainter &painter, const Rectangle &area) {
    const double density = painter.device()->devicePixelRatioF();
    const QTransform transform = painter.deviceTransform();
    const QPointF corner = transform.map(QPointF(area.left, area.top));
    return transform.type() <= QTransform::TxScale && transform.m11() == density &&
           transform.m22() == density && IsWhole(corner.x()) && IsWhole(corner.y()) &&
           IsWhole((area.right - area.left) * density) &&
           IsWhole((area.bottom - area.top) * density);
}

} // namespace tonewright
