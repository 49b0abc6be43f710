// Paints tool bar and pictures out of the palette and the SVG files.
#include "common/view/theme.h"

#include "common/desktop.h"
#include "common/view/shapes.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace tonewright {
namespace {

struct MetricRow {
    int number;
    int pixels;
};
constexpr MetricRow Metrics[] = {
    {MetricToolBarHeight, 56}, {MetricToolWidth, 48},    {MetricToolHeight, 48},
    {MetricToolGroupGap, 16},  {MetricToolLeft, 8},      {MetricToolTop, 4},
    {MetricToolGap, 4},        {MetricPictureWidth, 96}, {MetricPictureHeight, 96},
};

constexpr int LargestPictureSide = 4096; // pixels
constexpr double ToolRadius = 8;
constexpr double DisabledOpacity = 0.38;

QString PicturePath(std::uint32_t number) {
    return number == ApplicationPicture ? QStringLiteral(":/pictures/app.svg")
                                        : QStringLiteral(":/pictures/%1.svg").arg(number);
}

QPixmap GreyPicture(const QPixmap &picture) {
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(pixels[x]);
            pixels[x] = qRgba(grey, grey, grey, qRound(qAlpha(pixels[x]) * DisabledOpacity));
        }
    }
    QPixmap grey = QPixmap::fromImage(image);
    grey.setDevicePixelRatio(picture.devicePixelRatio());
    return grey;
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

} // namespace

int ThemeGetMetric(int number) {
    for (const MetricRow &row : Metrics) {
        if (row.number == number) {
            return row.pixels;
        }
    }
    return 0;
}

void ThemeDrawButton(QPainter &painter, const QRect &rectangle, unsigned state,
                     const QPixmap &picture) {
    const bool disabled = state & ButtonDisabled;
    const bool pressed = (state & ButtonPressed) && !disabled;
    const bool hover = (state & ButtonHover) && !disabled;
    painter.save();
    if (pressed || hover) {
        const QPalette palette = QApplication::palette();
        const QColor face = palette.color(QPalette::Window);
        const QColor accent = palette.color(QPalette::Highlight);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Mixed(face, accent, pressed ? 0.7 : 0.45));
        painter.setBrush(pressed ? Mixed(face, accent, 0.3)
                                 : Mixed(palette.color(QPalette::Light), accent, 0.08));
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    if ((state & ButtonFocus) && !disabled) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QApplication::palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(RoundedOutline(rectangle, ToolRadius));
    }
    const QSizeF size = picture.deviceIndependentSize();
    QPointF corner(rectangle.left() + std::floor((rectangle.width() - size.width()) / 2),
                   rectangle.top() + std::floor((rectangle.height() - size.height()) / 2));
    if (pressed) {
        corner += QPointF(1, 1);
    }
    painter.drawPixmap(corner, disabled ? GreyPicture(picture) : picture);
    painter.restore();
}

void ThemeDrawToolbarBackground(QPainter &painter, const QRect &rectangle) {
    const QPalette palette = QApplication::palette();
    const QColor face = palette.color(QPalette::Window);
    QLinearGradient shade(rectangle.topLeft(), rectangle.bottomLeft());
    shade.setColorAt(0, Mixed(face, palette.color(QPalette::Light), 0.7));
    shade.setColorAt(1, Mixed(face, palette.color(QPalette::Mid), 0.25));
    painter.save();
    painter.fillRect(rectangle, shade);
    painter.fillRect(QRect(rectangle.left(), rectangle.bottom(), rectangle.width(), 1),
                     palette.color(QPalette::Mid));
    painter.restore();
}

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
        ThemeDrawPicture(painter, number, QRect(QPoint(0, 0), pixels));
    }
    picture.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, picture);
    return picture;
}

QSize PictureSize(std::uint32_t number) {
    const QString path = PicturePath(number);
    return QFile::exists(path) ? QSvgRenderer(path).defaultSize() : QSize();
}

void ThemeDrawPicture(QPainter &painter, std::uint32_t number, const QRect &rectangle) {
    painter.save();
    const QString path = PicturePath(number);
    QSvgRenderer renderer;
    if (QFile::exists(path) && renderer.load(path)) {
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(rectangle));
    } else {
        DrawMissingPicture(painter, rectangle);
    }
    painter.restore();
}

} // namespace tonewright
