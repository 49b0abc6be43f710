// The theme that the program draws with.
#include "common/view/theme.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/theme_files.h"
#include "common/utf8_path.h"
#include "common/view/theme_library.h"

#include <QColor>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tonewright {
namespace {

constexpr const char *LoadFailure =
    "There has been an error initializing the current theme for this application. The default "
    "theme will be used.";

// The library that draws, and what it draws with. Without one all calls go to the linked theme.
struct LoadedTheme {
    std::unique_ptr<QLibrary> module;
    std::string path;
    ThemeDrawing drawing;
};
LoadedTheme &Loaded() {
    static LoadedTheme theme;
    return theme;
}

// An entry point of the theme that draws.
template <typename Entry> Entry Serving(Entry ThemeDrawing::*entry, Entry linked) {
    const Entry loaded = Loaded().drawing.*entry;
    return loaded ? loaded : linked;
}

ThemeRectangle RectangleOf(const QRect &rectangle) {
    return {.left = rectangle.left(),
            .top = rectangle.top(),
            .right = rectangle.left() + rectangle.width(),
            .bottom = rectangle.top() + rectangle.height()};
}

// Keeps the state of a painter over the call of a theme.
struct KeptPainter {
    QPainter &painter;
    explicit KeptPainter(QPainter &kept) : painter(kept) { painter.save(); }
    ~KeptPainter() { painter.restore(); }
    KeptPainter(const KeptPainter &) = delete;
    KeptPainter &operator=(const KeptPainter &) = delete;
};

} // namespace

bool ThemeLoad() {
    Loaded() = {};
    std::string path = ThemeFilePath(ApplicationPath, ThemeCurrent);
    if (!ThemeFileExists(path)) {
        ThemeCurrent = ThemeMedium;
        path = ThemeFilePath(ApplicationPath, ThemeCurrent);
    }
    StartedTheme theme = StartTheme(path);
    Loaded().module = std::move(theme.module);
    if (theme.fault.empty()) {
        Loaded().path = path;
        Loaded().drawing = theme.drawing;
        return true;
    }
    ThemeUnload();
    ::THEMEInit(THEME_VERSION, THEME_PROGRAM, THEME_INIT_THIRD, THEME_INIT_FOURTH);
    ShowMessage(nullptr, LoadFailure); // with a picture of the linked theme
    return false;
}

void ThemeUnload() {
    LoadedTheme former = std::exchange(Loaded(), {});
    if (former.module) {
        EndTheme(std::move(former.module));
    } else {
        ::THEMEDeInit();
    }
}

bool ThemeIsLoadedFrom(const std::string &path) {
    std::error_code error;
    return !Loaded().path.empty() &&
           std::filesystem::equivalent(PathOfUtf8(Loaded().path), PathOfUtf8(path), error);
}

int ThemeGetMetric(int number) {
    const bool isOfPicture =
        number == THEME_METRIC_PICTURE_WIDTH || number == THEME_METRIC_PICTURE_HEIGHT;
    return std::clamp(Serving(&ThemeDrawing::getMetric, &::THEMEGetMetric)(number), 0,
                      isOfPicture ? LargestPictureMetric : LargestBarMetric);
}

std::optional<ThemeBitmap> ThemeGetBitmap(std::uint32_t number) {
    return TakeThemeBitmap(Serving(&ThemeDrawing::getBitmap, &::THEMEGetBitmap)(number));
}

void ThemeDrawButton(QWidget &window, QPainter &painter, const QRect &rectangle, int picture,
                     unsigned state) {
    const KeptPainter kept(painter);
    const ThemeRectangle area = RectangleOf(rectangle);
    Serving(&ThemeDrawing::drawButton, &::THEMEDrawButton)(&window, &painter, &area, picture,
                                                           state);
}

void ThemeDrawToolbarBackground(QWidget &window, QPainter &painter) {
    const KeptPainter kept(painter);
    Serving(&ThemeDrawing::drawToolbarBackground, &::THEMEDrawToolbarBackground)(&window, &painter,
                                                                                 0, 0);
}

QSizeF SizeOfThemeBitmap(const ThemeBitmap &bitmap) {
    return QSizeF(bitmap.width, bitmap.height) / bitmap.ratio;
}

QImage ImageOfThemeBitmap(const ThemeBitmap &bitmap, double devicePixelRatio) {
    const QImage pixels(reinterpret_cast<const uchar *>(bitmap.pixels.data()), bitmap.width,
                        bitmap.height, QImage::Format_ARGB32);
    const double longest = std::max(bitmap.width, bitmap.height);
    devicePixelRatio = std::min(devicePixelRatio, LargestThemeBitmapSide / longest * bitmap.ratio);
    const double scale = devicePixelRatio / bitmap.ratio;
    const auto side = [scale](int length) {
        return std::max(1, static_cast<int>(std::lround(length * scale)));
    };
    const QSize size(side(bitmap.width), side(bitmap.height));
    QImage image = size == pixels.size()
                       ? pixels.copy()
                       : pixels.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

void ThemeSizePicture(QWidget &control) {
    const QSize size(ThemeGetMetric(THEME_METRIC_PICTURE_WIDTH),
                     ThemeGetMetric(THEME_METRIC_PICTURE_HEIGHT));
    if (size.width() >= 1 && size.height() >= 1) {
        control.setFixedSize(size);
    }
}

void ThemeDrawBitmap(QPainter &painter, const QRect &rectangle, std::uint32_t number,
                     const QColor &background) {
    std::optional<ThemeBitmap> bitmap = ThemeGetBitmap(number);
    if (!bitmap) {
        return;
    }
    BlendThemeBitmap(*bitmap, background.rgb());
    painter.save();
    painter.setClipRect(rectangle, Qt::IntersectClip);
    painter.drawImage(rectangle.topLeft(),
                      ImageOfThemeBitmap(*bitmap, painter.device()->devicePixelRatioF()));
    painter.restore();
}

void ThemeDrawPicture(QPainter &painter, const QRect &rectangle, std::uint32_t number,
                      const QColor &background) {
    ThemeDrawBitmap(painter, rectangle, number | THEME_BITMAP_OF_BOX, background);
}

} // namespace tonewright
