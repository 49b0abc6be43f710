#include "shared/box_pictures.h"

#include "shared/look.h"

namespace tonewright::theme {
namespace {

struct BoxPictureRow {
    std::uint32_t number;
    const char *name;
};
constexpr BoxPictureRow BoxPictures[] = {
    {THEME_BITMAP_TIP_HEADING, "tip-heading"},
    {THEME_PICTURE_PROGRAM | THEME_BITMAP_OF_BOX, "app"},
    {THEME_PICTURE_SETTINGS | THEME_BITMAP_OF_BOX, "settings-box"},
    {THEME_PICTURE_VOICE | THEME_BITMAP_OF_BOX, "voice-box"},
};

} // namespace

QImage BoxPicture(std::uint32_t number, double ratio) {
    for (const BoxPictureRow &row : BoxPictures) {
        if (row.number != number) {
            continue;
        }
        const QByteArray svg = SvgOf(TheLook.pictures, row.name);
        const QSize size =
            number & THEME_BITMAP_OF_BOX
                ? QSize(MetricOf(THEME_METRIC_PICTURE_WIDTH), MetricOf(THEME_METRIC_PICTURE_HEIGHT))
                : SizeOfSvg(svg);
        return ImageOf(svg, size, ratio);
    }
    return {};
}

} // namespace tonewright::theme
