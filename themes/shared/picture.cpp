#include "shared/picture.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>
#include <cstring>

namespace tonewright::theme {

QByteArray SvgOf(std::span<const EmbeddedPicture> pictures, const char *name) {
    for (const EmbeddedPicture &picture : pictures) {
        if (std::strcmp(picture.name, name) == 0) {
            return QByteArray::fromRawData(picture.svg, qstrlen(picture.svg));
        }
    }
    return {};
}

QSize SizeOfSvg(const QByteArray &svg) {
    return QSvgRenderer(svg).defaultSize();
}

QImage ImageOf(const QByteArray &svg, QSize size, double ratio) {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QSvgRenderer renderer(svg);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(&painter, QRectF(image.rect()));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

QPixmap PixmapFor(const QPainter &painter, const QByteArray &svg, QSize size) {
    const double ratio = painter.device()->devicePixelRatioF();
    const QString key = QStringLiteral("%1x%2 %3 %4")
                            .arg(size.width())
                            .arg(size.height())
                            .arg(ratio)
                            .arg(QLatin1StringView(svg));
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = QPixmap::fromImage(ImageOf(svg, size, ratio));
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

void DrawInMiddle(QPainter &painter, const QRect &rectangle, const QPixmap &picture) {
    const QSizeF room = QSizeF(rectangle.size()) - picture.deviceIndependentSize();
    const QTransform toPixels = painter.deviceTransform();
    const QPointF corner =
        toPixels.map(QPointF(rectangle.topLeft()) + QPointF(room.width(), room.height()) / 2);
    const QPointF pixel(std::floor(corner.x()), std::floor(corner.y()));
    painter.drawPixmap(toPixels.inverted().map(pixel), picture);
}

} // namespace tonewright::theme
