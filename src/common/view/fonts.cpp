// Finds the pixel size at which a face has the wanted height of the character cell.
#include "common/view/fonts.h"

#include <algorithm>
#include <map>
#include <tuple>

#include <QFontMetrics>
#include <QStringList>

namespace tonewright {

namespace {

// A face by the name that it is asked for, and the face of the same widths that stands in for it
// where the first is not installed.
struct FaceRow {
    const char *name;
    const char *substitute;
    QFont::StyleHint style;
};
constexpr FaceRow Faces[] = {
    {"Arial", "Liberation Sans", QFont::SansSerif},
    {"Times New Roman", "Liberation Serif", QFont::Serif},
    {"Verdana", "DejaVu Sans", QFont::SansSerif},
};

QFont FontOfPixelSize(const QString &family, int pixelSize, int weight) {
    QFont font(family);
    for (const FaceRow &face : Faces) {
        if (family.compare(QLatin1String(face.name), Qt::CaseInsensitive) == 0) {
            font.setFamilies({QLatin1String(face.name), QLatin1String(face.substitute)});
            font.setStyleHint(face.style);
        }
    }
    font.setPixelSize(std::max(1, pixelSize));
    font.setWeight(static_cast<QFont::Weight>(std::clamp(weight, 1, 1000)));
    return font;
}

int CellHeight(const QString &family, int pixelSize, int weight) {
    const QFontMetrics metrics(FontOfPixelSize(family, pixelSize, weight));
    return metrics.ascent() + metrics.descent();
}

// The largest pixel size whose cell is not higher than `height`. Ascent and descent are rounded
// one by one, so that not every height has a size of its own.
int FindPixelSize(const QString &family, int height, int weight) {
    constexpr int ReferenceSize = 100;
    const int referenceHeight = std::max(1, CellHeight(family, ReferenceSize, weight));
    int pixelSize = std::max(1, height * ReferenceSize / referenceHeight);
    while (pixelSize > 1 && CellHeight(family, pixelSize, weight) > height) {
        --pixelSize;
    }
    // The bound is for a face of one size only.
    while (pixelSize < 2 * height && CellHeight(family, pixelSize + 1, weight) <= height) {
        ++pixelSize;
    }
    return pixelSize;
}

} // namespace

QFont FontOfHeight(const QString &family, int height, int weight) {
    constexpr int LargestHeight = 10000; // beyond it no device has a cell
    height = std::clamp(height, -LargestHeight, LargestHeight);
    if (height < 0) {
        return FontOfPixelSize(family, -height, weight);
    }
    // Sizes, not fonts, are kept: a font must not outlive the application object.
    static std::map<std::tuple<QString, int, int>, int> pixelSizes;
    const auto [entry, isNew] = pixelSizes.try_emplace({family, height, weight}, 1);
    if (isNew) {
        entry->second = FindPixelSize(family, height, weight);
    }
    return FontOfPixelSize(family, entry->second, weight);
}

QFont DialogFont() {
    constexpr int DialogFontHeight = 16;
    return FontOfHeight(QStringLiteral("Arial"), DialogFontHeight);
}

} // namespace tonewright
