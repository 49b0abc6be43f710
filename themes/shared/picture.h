// The pictures of a theme: SVG files that the build puts into its library.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QRect>
#include <QSize>

#include <span>

class QPainter;

namespace tonewright::theme {

// A row of embedded_pictures.inc, which the build makes of the SVG files that a theme names.
struct EmbeddedPicture {
    const char *name; // of the file, without ".svg"
    const char *svg;
};

// The text of a picture; empty when there is none of this name.
QByteArray SvgOf(std::span<const EmbeddedPicture> pictures, const char *name);

// The size in which an SVG was drawn, in device-independent pixels.
QSize SizeOfSvg(const QByteArray &svg);

// An SVG in a size of device-independent pixels, its proportions kept, on a transparent ground,
// with `ratio` pixels for each of them.
QImage ImageOf(const QByteArray &svg, QSize size, double ratio);

// The same in the pixels of a painter, kept for the next time.
QPixmap PixmapFor(const QPainter &painter, const QByteArray &svg, QSize size);

// Draws a picture in the middle of a rectangle, on whole pixels, so that it stays as sharp as it
// is.
void DrawInMiddle(QPainter &painter, const QRect &rectangle, const QPixmap &picture);

} // namespace tonewright::theme
