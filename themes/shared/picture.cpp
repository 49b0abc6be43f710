#include "shared/picture.h"

#include <QPainter>
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

double RatioOf(const QPainter &painter) {
    return painter.device()->devicePixelRatioF();
}

void DrawInMiddle(QPainter &painter, const QRect &rectangle, const QImage &image) {
    const QSizeF room = QSizeF(rectangle.size()) - image.deviceIndependentSize();
    const QTransform toPixels = painter.deviceTransform();
    const QPointF corner =
        toPixels.map(QPointF(rectangle.topLeft()) + QPointF(room.width(), room.height()) / 2);
    painter.drawImage(
        toPixels.inverted().map(QPointF(std::floor(corner.x()), std::floor(corner.y()))), image);
}

} // namespace tonewright::theme
