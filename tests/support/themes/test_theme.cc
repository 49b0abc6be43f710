// A theme for tests, which needs nothing but the header of themes, and Qt in one case. It is
// compiled once for each thing that may be wrong with a theme: WITHOUT_... leaves an entry point
// out, the others change an answer. What it is called with goes as lines to the file that
// TEST_THEME_CALLS names.
#include "tonewright_theme.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef LEAVES_DIALOG
#include <QDialog>
#endif

#ifndef SUPPORT
#define SUPPORT 1
#endif
#ifndef INIT
#define INIT 1
#endif
#ifndef BITMAP_WIDTH
#define BITMAP_WIDTH 8
#endif
#ifndef BITMAP_HEIGHT
#define BITMAP_HEIGHT 8
#endif
#ifndef BITMAP_BITS
#define BITMAP_BITS 32
#endif
#ifndef BITMAP_CUT // bytes that the block has too few
#define BITMAP_CUT 0
#endif

namespace {

void Tell(const char *format, ...) {
    const char *path = std::getenv("TEST_THEME_CALLS");
    std::FILE *file = path ? std::fopen(path, "a") : nullptr;
    if (!file) {
        return;
    }
    va_list values;
    va_start(values, format);
    std::vfprintf(file, format, values);
    va_end(values);
    std::fputc('\n', file);
    std::fclose(file);
}

#ifdef LEAVES_DIALOG
// Its code is this library's.
class LeftDialog : public QDialog {
public:
    using QDialog::QDialog;
    ~LeftDialog() override { Tell("dialog gone"); }
};
#endif

} // namespace

#ifdef CALLS_WHAT_NOBODY_HAS
extern "C" int TonewrightTestFunctionThatNobodyHas(void);
#endif

#ifndef WITHOUT_GET_SUPPORT
int THEMEGetSupport(int version) {
    Tell("THEMEGetSupport %d", version);
    return SUPPORT;
}
#endif

#ifndef WITHOUT_INIT
int THEMEInit(int version, int program, int third, int fourth) {
    Tell("THEMEInit %d %d %d %d", version, program, third, fourth);
#ifdef ABORTS
    std::_Exit(134); // as abort() would, without a core
#endif
    return INIT;
}
#endif

#ifndef WITHOUT_DE_INIT
void THEMEDeInit(void) {
    Tell("THEMEDeInit");
}
#endif

#ifndef WITHOUT_DRAW_BUTTON
int THEMEDrawButton(ThemeWindow *window, ThemePainter *painter, const ThemeRectangle *rectangle,
                    int picture, unsigned state) {
    Tell("THEMEDrawButton %s %s %d %d %d %d picture %d state %x", window ? "window" : "null",
         painter ? "painter" : "null", rectangle->left, rectangle->top, rectangle->right,
         rectangle->bottom, picture, state);
#ifdef CALLS_WHAT_NOBODY_HAS
    return TonewrightTestFunctionThatNobodyHas();
#else
    return 1;
#endif
}
#endif

#ifndef WITHOUT_DRAW_SMALL_BUTTON
int THEMEDrawSmallButton(ThemeWindow *, ThemePainter *, const ThemeRectangle *, int, unsigned) {
    Tell("THEMEDrawSmallButton");
    return 0;
}
#endif

#ifndef WITHOUT_DRAW_TOOL
int THEMEDrawTool(ThemeWindow *, ThemePainter *, const ThemeRectangle *, int, unsigned) {
    Tell("THEMEDrawTool");
    return 0;
}
#endif

#ifndef WITHOUT_DRAW_TOOLBAR_BACKGROUND
int THEMEDrawToolbarBackground(ThemeWindow *window, ThemePainter *painter, uintptr_t first,
                               intptr_t second) {
    Tell("THEMEDrawToolbarBackground %s %s %d %d", window ? "window" : "null",
         painter ? "painter" : "null", static_cast<int>(first), static_cast<int>(second));
    return 1;
}
#endif

#ifndef WITHOUT_GET_METRIC
int THEMEGetMetric(int number) {
#ifdef METRICS // all of them
    return number > 0 ? METRICS : 0;
#else
    switch (number) {
    case THEME_METRIC_PICTURE_WIDTH:
        return 40;
    case THEME_METRIC_PICTURE_HEIGHT:
        return 24;
    case THEME_METRIC_TOOL_LEFT: // a senseless one
        return -7;
    case THEME_METRIC_TOOL_TOP: // another
        return 1000000;
    default:
        return 30 + number;
    }
#endif
}
#endif

#ifndef WITHOUT_GET_BITMAP
// Half transparent red, or red where there is no alpha; nothing for the number 99.
void *THEMEGetBitmap(uint32_t number) {
    Tell("THEMEGetBitmap %x", number);
#ifdef NO_BITMAP
    return nullptr;
#else
    if (number == 99) {
        return nullptr;
    }
    constexpr int PixelsPerMetre = 2835; // as many programs write, and no scale of a screen
    const std::size_t pixelBytes = BITMAP_BITS / 8;
    const std::size_t rowSize = (BITMAP_WIDTH * pixelBytes + 3) / 4 * 4;
    const int rows = BITMAP_HEIGHT < 0 ? -(BITMAP_HEIGHT) : BITMAP_HEIGHT;
    const std::size_t size = 40 + rowSize * static_cast<std::size_t>(rows) - BITMAP_CUT;
    auto *block = static_cast<unsigned char *>(std::calloc(size, 1));
    block[0] = 40;
    for (int index = 0; index < 4; ++index) {
        block[4 + index] = static_cast<unsigned char>(BITMAP_WIDTH >> 8 * index);
        block[8 + index] = static_cast<unsigned char>(BITMAP_HEIGHT >> 8 * index);
        block[24 + index] = block[28 + index] =
            static_cast<unsigned char>(PixelsPerMetre >> 8 * index);
    }
    block[12] = 1;
    block[14] = BITMAP_BITS;
    const unsigned char pixel[4] = {0, 0, 255, 128};
    for (std::size_t place = 40; place + rowSize <= size; place += rowSize) {
        for (std::size_t column = 0; column < BITMAP_WIDTH; ++column) {
            std::memcpy(block + place + column * pixelBytes, pixel, pixelBytes);
        }
    }
    return block;
#endif
}
#endif

#ifndef WITHOUT_CONFIGURE
void THEMEConfigure(ThemeWindow *owner, int version) {
    Tell("THEMEConfigure %s %d", owner ? "owner" : "null", version);
#ifdef LEAVES_DIALOG
    (new LeftDialog(static_cast<QWidget *>(owner)))->show();
#endif
}
#endif
