// The entry points of the theme interface, for every theme: they answer from TheLook.
#include "shared/bitmap.h"
#include "shared/box_pictures.h"
#include "shared/look.h"
#include "shared/tool_bar.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace tonewright::theme {
namespace {

constexpr double LargestRatio = 8; // keeps every bitmap within 4096 pixels a side

QPalette PaletteOf(ThemeWindow *window) {
    return window ? static_cast<QWidget *>(window)->palette() : QGuiApplication::palette();
}

} // namespace

int MetricOf(int number) {
    for (const MetricRow &row : TheLook.metrics) {
        if (row.number == number) {
            return row.pixels;
        }
    }
    return 0;
}

} // namespace tonewright::theme

using namespace tonewright::theme;

int THEMEGetSupport(int version) {
    return version == THEME_VERSION;
}

int THEMEInit(int version, int, int, int) {
    return version == THEME_VERSION;
}

void THEMEDeInit() {}

int THEMEDrawButton(ThemeWindow *window, ThemePainter *painter, const ThemeRectangle *rectangle,
                    int picture, unsigned state) {
    if (!painter || !rectangle) {
        return 0;
    }
    auto &target = *static_cast<QPainter *>(painter);
    target.save();
    const bool drawn = TheLook.drawButton(target, PaletteOf(window),
                                          QRect(rectangle->left, rectangle->top,
                                                rectangle->right - rectangle->left,
                                                rectangle->bottom - rectangle->top),
                                          picture, state);
    target.restore();
    return drawn;
}

// Tonewright has neither small buttons nor tools, so there is nothing to draw.
int THEMEDrawSmallButton(ThemeWindow *, ThemePainter *, const ThemeRectangle *, int, unsigned) {
    return 0;
}

int THEMEDrawTool(ThemeWindow *, ThemePainter *, const ThemeRectangle *, int, unsigned) {
    return 0;
}

int THEMEDrawToolbarBackground(ThemeWindow *window, ThemePainter *painter, uintptr_t, intptr_t) {
    if (!window || !painter) {
        return 0;
    }
    auto &target = *static_cast<QPainter *>(painter);
    target.save();
    TheLook.drawBackground(target, PaletteOf(window), static_cast<QWidget *>(window)->rect());
    target.restore();
    return 1;
}

int THEMEGetMetric(int number) {
    return MetricOf(number);
}

void *THEMEGetBitmap(uint32_t number) {
    const double ratio = qGuiApp ? std::clamp(qGuiApp->devicePixelRatio(), 1.0, LargestRatio) : 1.0;
    return PackedBitmap(number == THEME_BITMAP_PREVIEW ? PreviewOfToolBar(ratio)
                                                       : BoxPicture(number, ratio),
                        ratio);
}
