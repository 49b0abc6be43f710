// make_icons: paints the icons of the program and of its documents from
// packaging/linux/icons/*.svg, in every size that desktops ask for, beside the SVG files, and those
// of Windows into packaging/windows/. Sizes up to 24 are painted from a drawing of their own, whose
// lines fall on whole pixels at 16.
//
// usage: make_icons PACKAGING_FOLDER
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int LinuxSizes[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr int WindowsSizes[] = {16, 20, 24, 32, 40, 48, 64, 256};
constexpr int LargestSmallSize = 24;

struct Icon {
    const char *name;   // of its files
    const char *folder; // within a size's folder of an icon theme
    const char *target; // its name there
};

constexpr Icon Icons[] = {
    {"tonewright", "apps", "tonewright"},
    {"tonewright-document", "mimetypes", "application-x-tonewright-document"},
};

[[noreturn]] void Fail(const QString &what) {
    std::fprintf(stderr, "make_icons: %s\n", qPrintable(what));
    std::exit(1);
}

void WriteFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        Fail("cannot write " + path);
    }
}

QImage Painted(const QString &drawings, const Icon &icon, int size) {
    const QString small = size <= LargestSmallSize ? "-small" : "";
    const QString path = drawings + "/" + icon.name + small + ".svg";
    QSvgRenderer drawing(path);
    if (!drawing.isValid()) {
        Fail("no drawing: " + path);
    }
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(0, 0, size, size));
    return image;
}

QByteArray PngOf(const QImage &image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, "PNG", 0)) {
        Fail("cannot write PNG");
    }
    return bytes;
}

template <typename Number> void Append(QByteArray &bytes, Number number) {
    const Number little = qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
}

// A bitmap as icons have it: its header, which counts the mask's rows too, the pixels from the
// bottom up as blue, green, red and opacity, and a mask of one bit for each pixel, which is all
// zero since the opacity says it.
QByteArray BitmapOf(const QImage &image) {
    const int size = image.width();
    const int maskRow = (size + 31) / 32 * 4;
    QByteArray bytes;
    Append<uint32_t>(bytes, 40);
    Append<int32_t>(bytes, size);
    Append<int32_t>(bytes, 2 * size);
    Append<uint16_t>(bytes, 1);  // planes
    Append<uint16_t>(bytes, 32); // bits of a pixel
    Append<uint32_t>(bytes, 0);  // not compressed
    Append<uint32_t>(bytes, 4 * size * size + maskRow * size);
    bytes.append(16, '\0'); // resolution and colors: none
    for (int y = size - 1; y >= 0; --y) {
        for (int x = 0; x < size; ++x) {
            Append<uint32_t>(bytes, image.pixel(x, y));
        }
    }
    bytes.append(maskRow * size, '\0');
    return bytes;
}

// An icon file: 00 00 01 00 and the number of pictures, for each of them 16 bytes (width and
// height, 0 for 256, two zeros, planes, bits of a pixel, length and place of its bytes), then the
// pictures. That of 256 is a PNG, as Windows has it, to be small.
QByteArray IconFile(const QString &drawings, const Icon &icon) {
    QByteArray entries, pictures;
    Append<uint16_t>(entries, 0);
    Append<uint16_t>(entries, 1);
    Append<uint16_t>(entries, std::size(WindowsSizes));
    const auto firstPicture = entries.size() + 16 * qsizetype(std::size(WindowsSizes));
    for (const int size : WindowsSizes) {
        const QImage image = Painted(drawings, icon, size);
        const QByteArray picture = size < 256 ? BitmapOf(image) : PngOf(image);
        Append<uint8_t>(entries, size % 256);
        Append<uint8_t>(entries, size % 256);
        Append<uint16_t>(entries, 0);
        Append<uint16_t>(entries, 1);
        Append<uint16_t>(entries, 32);
        Append<uint32_t>(entries, picture.size());
        Append<uint32_t>(entries, firstPicture + pictures.size());
        pictures += picture;
    }
    return entries + pictures;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("usage: make_icons PACKAGING_FOLDER\n", stderr);
        return 2;
    }
    const QString packaging = QString::fromLocal8Bit(argv[1]);
    const QString drawings = packaging + "/linux/icons";
    for (const Icon &icon : Icons) {
        for (const int size : LinuxSizes) {
            const QString folder =
                QString("%1/%2x%2/%3").arg(drawings, QString::number(size), icon.folder);
            QDir().mkpath(folder);
            WriteFile(folder + "/" + icon.target + ".png", PngOf(Painted(drawings, icon, size)));
        }
        WriteFile(packaging + "/windows/" + icon.name + ".ico", IconFile(drawings, icon));
    }
    return 0;
}
