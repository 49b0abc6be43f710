// The bytes of a bitmap, all numbers little-endian:
//
//   0  size of the header, 40         20  bytes of all rows
//   4  width in pixels                24  pixels a metre, across
//   8  height in pixels               28  pixels a metre, down
//  12  planes, 1 (two bytes)          32  colours of a table, 0
//  14  bits of a pixel, 32 (two)      36  important ones of them, 0
//  16  compression, 0                 40  rows, the lowest first: blue, green, red, alpha
#include "shared/bitmap.h"

#include <QtEndian>

#include <cstdlib>

namespace tonewright::theme {
namespace {

constexpr std::size_t HeaderSize = 40;
constexpr std::size_t PixelSize = 4;
constexpr double PixelsAMetre = 3780; // at scale 1

} // namespace

void *PackedBitmap(const QImage &image, double ratio) {
    if (image.isNull()) {
        return nullptr;
    }
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    const std::size_t rowSize = pixels.width() * PixelSize;
    const std::size_t size = HeaderSize + rowSize * pixels.height();
    auto *block = static_cast<uchar *>(std::calloc(size, 1));
    if (!block) {
        return nullptr;
    }
    const auto putLong = [block](std::size_t place, std::size_t value) {
        qToLittleEndian(static_cast<quint32>(value), block + place);
    };
    putLong(0, HeaderSize);
    putLong(4, pixels.width());
    putLong(8, pixels.height());
    qToLittleEndian(quint16{1}, block + 12);
    qToLittleEndian(quint16{PixelSize * 8}, block + 14);
    putLong(20, size - HeaderSize);
    putLong(24, qRound(PixelsAMetre * ratio));
    putLong(28, qRound(PixelsAMetre * ratio));
    uchar *pixel = block + HeaderSize;
    for (int y = pixels.height() - 1; y >= 0; --y) {
        const auto *row = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x, pixel += PixelSize) {
            pixel[0] = static_cast<uchar>(qBlue(row[x]));
            pixel[1] = static_cast<uchar>(qGreen(row[x]));
            pixel[2] = static_cast<uchar>(qRed(row[x]));
            pixel[3] = static_cast<uchar>(qAlpha(row[x]));
        }
    }
    return block;
}

} // namespace tonewright::theme
