// Paints numbered pictures out of the SVG files of the program's resources.
#include "common/view/pictures.h"

#include "common/desktop.h"
#include "common/view/shapes.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int LargestPictureSide = 4096; // pixels

QString PicturePath(std::uint32_t number) {
    return number == ApplicationPicture ? QStringLiteral(":/pictures/app.svg")
                                        : QStringLiteral(":/pictures/%1.svg").arg(number);
}

// A tile where a picture is missing.
void DrawMissingPicture(QPainter &painter, const QRect &rectangle) {
    const QPalette palette = QApplication::palette();
    const double radius = std::min(rectangle.width(), rectangle.height()) / 8.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(Mixed(palette.color(QPalette::Window), palette.color(QPalette::Mid), 0.4));
    painter.drawPath(RoundedOutline(rectangle, radius));
}

void DrawPicture(QPainter &painter, std::uint32_t number, const QRect &rectangle) {
    const QString path = PicturePath(number);
    QSvgRenderer renderer;
    if (QFile::exists(path) && renderer.load(path)) {
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(rectangle));
    } else {
        DrawMissingPicture(painter, rectangle);
    }
}

} // namespace

QPixmap PictureOf(std::uint32_t number, QSize size, double devicePixelRatio) {
    const double ratio = devicePixelRatio > 0 ? std::min(devicePixelRatio, 16.0) : 1.0;
    const auto side = [ratio](int length) {
        return std::clamp(qRound(std::max(length, 1) * ratio), 1, LargestPictureSide);
    };
    const QSize pixels(side(size.width()), side(size.height()));
    const QString key = QStringLiteral("picture %1 %2x%3 %4")
                            .arg(number)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(ratio);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) {
        return picture;
    }
    picture = QPixmap(pixels);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        DrawPicture(painter, number, QRect(QPoint(0, 0), pixels));
    }
    picture.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, picture);
    return picture;
}

QSize PictureSize(std::uint32_t number) {
    const QString path = PicturePath(number);
    return QFile::exists(path) ? QSvgRenderer(path).defaultSize() : QSize();
}

} // namespace tonewright
