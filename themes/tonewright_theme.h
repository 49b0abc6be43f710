/* The theme interface of Tonewright: what a shared library exports so that the program draws its
 * tool bar and the pictures of its boxes.
 *
 * A theme is a library named "THEME_<name>_x64" with the suffix of the platform (".so", ".dll"),
 * in the folder "theme" beside the program. All entry points are called on the thread of the
 * windows, after the application object of Qt has been made; a theme links the Qt of the program.
 * This header is all that a theme needs besides.
 *
 * A theme that the program loads is asked in this order: THEMEGetSupport, THEMEInit, then the
 * drawing as long as the program runs, at last THEMEDeInit. THEMEDeInit is called also when
 * THEMEGetSupport or THEMEInit gave 0 or is missing, so that it ends only what has begun. To show
 * its preview the program calls THEMEInit, THEMEGetBitmap(0) and THEMEDeInit only, and to configure
 * it THEMEConfigure only, without a beginning or an end. A theme without a preview, bitmap 0, is
 * not shown to be chosen.
 *
 * So that one theme may be loaded beside another, a theme calls its own entry points by names that
 * are not exported. The code of a theme stays in memory until the program ends. No exception of C++
 * may leave an entry point: it would end the program. */
#ifndef TONEWRIGHT_THEME_H
#define TONEWRIGHT_THEME_H

#include <stdint.h>

#if defined(_WIN32)
#define THEME_EXPORT __declspec(dllexport)
#else
#define THEME_EXPORT __attribute__((visibility("default")))
#endif

/* The version of this interface; the argument `version` below. */
#define THEME_VERSION 18

/* The other arguments that the program passes to THEMEInit. */
#define THEME_PROGRAM 17
#define THEME_INIT_THIRD 0
#define THEME_INIT_FOURTH 1

typedef void ThemeWindow;  /* a QWidget */
typedef void ThemePainter; /* a QPainter; its state is the same again when the call returns */

/* In device-independent pixels; `right` and `bottom` lie outside. */
typedef struct ThemeRectangle {
    int32_t left, top, right, bottom;
} ThemeRectangle;

/* The item state of a button that is drawn; the values are or-ed. */
#define THEME_STATE_PRESSED 0x1u
#define THEME_STATE_DISABLED 0x4u
#define THEME_STATE_FOCUS 0x10u
#define THEME_STATE_DEFAULT 0x20u /* what the Return key presses */
#define THEME_STATE_HOVER 0x40u   /* the mouse is over it */

/* Numbers of metrics, all in device-independent pixels. A value below 0 counts as 0, one above 128,
 * or above 192 for the picture of a box, as that, since there are screens of 800 by 480. */
#define THEME_METRIC_TOOLBAR_HEIGHT 1
#define THEME_METRIC_TOOL_WIDTH 2
#define THEME_METRIC_TOOL_HEIGHT 3
#define THEME_METRIC_TOOL_GROUP_GAP 5 /* extra, behind the last button of a group */
#define THEME_METRIC_TOOL_LEFT 6      /* left edge of the first button */
#define THEME_METRIC_TOOL_TOP 7
#define THEME_METRIC_TOOL_GAP 8
#define THEME_METRIC_PICTURE_WIDTH 17 /* of the picture of a box */
#define THEME_METRIC_PICTURE_HEIGHT 18

/* Pictures of the tool bar, for THEMEDrawButton. */
#define THEME_TOOL_UNDO 30
#define THEME_TOOL_UPLOAD 33
#define THEME_TOOL_DOWNLOAD 34
#define THEME_TOOL_OPEN 8
#define THEME_TOOL_SAVE 7
#define THEME_TOOL_MANUAL 2
#define THEME_TOOL_SETTINGS 4
#define THEME_TOOL_EXIT 5

/* Numbers of bitmaps. */
#define THEME_BITMAP_PREVIEW 0
#define THEME_BITMAP_TIP_HEADING 2
/* Or-ed with the number of a picture: the picture of a box (its control 10). */
#define THEME_BITMAP_OF_BOX 0x10000000u

/* Numbers of the pictures of boxes. A box that asks for another one, or for one that the theme does
 * not have, shows none. */
#define THEME_PICTURE_PROGRAM 0x8000001u /* the emblem of the program: messages and most boxes */
#define THEME_PICTURE_SETTINGS 103u
#define THEME_PICTURE_VOICE 8804u /* the page of a voice in its editor */

#ifdef __cplusplus
extern "C" {
#endif

/* Nonzero when the theme speaks this version. */
THEME_EXPORT int THEMEGetSupport(int version);

/* Called with THEME_VERSION, THEME_PROGRAM, THEME_INIT_THIRD and THEME_INIT_FOURTH before anything
 * is drawn; nonzero on success. */
THEME_EXPORT int THEMEInit(int version, int program, int third, int fourth);

/* Optional: called before the library is let go. */
THEME_EXPORT void THEMEDeInit(void);

/* Draws a button of the tool bar, all of the rectangle that is not to show the background of the
 * tool bar. `picture` is one of THEME_TOOL_..., `state` of THEME_STATE_... Nonzero if drawn. */
THEME_EXPORT int THEMEDrawButton(ThemeWindow *window, ThemePainter *painter,
                                 const ThemeRectangle *rectangle, int picture, unsigned state);

/* These two must be there; Tonewright calls neither. */
THEME_EXPORT int THEMEDrawSmallButton(ThemeWindow *window, ThemePainter *painter,
                                      const ThemeRectangle *rectangle, int picture,
                                      unsigned state);
THEME_EXPORT int THEMEDrawTool(ThemeWindow *window, ThemePainter *painter,
                               const ThemeRectangle *rectangle, int picture, unsigned state);

/* Draws what lies behind the buttons, over the whole of `window`. The last two arguments are those
 * of the event of the platform; 0 where it has none. */
THEME_EXPORT int THEMEDrawToolbarBackground(ThemeWindow *window, ThemePainter *painter,
                                            uintptr_t first, intptr_t second);

/* The value of a metric; 0 for a number that has none. */
THEME_EXPORT int THEMEGetMetric(int number);

/* A bitmap of the theme, or a null pointer where it has none: a packed device-independent bitmap
 * in one block from malloc(), which the caller frees with free(). Its header has 40 bytes
 * (BITMAPINFOHEADER, little-endian): size 40, width and height above 0 and up to 4096, 1 plane, 24
 * or 32 bits, no compression, no colour table. The rows follow bottom-up, each padded to a
 * multiple of four bytes, a pixel being blue, green, red and, with 32 bits, alpha (not
 * premultiplied). The size of the rows in the header is theirs, or 0. Whatever differs from this
 * counts as no bitmap. The pixels a metre, the same across and down, tell the scale: 3780 is one
 * pixel of the bitmap for each of the screen at scale 1, 7560 two, up to 30240, which is eight; with
 * any others the bitmap is drawn as it stands. What is scaled for the screen is never made larger than 4096 a side, and a preview and
 * the heading of the tips are cut at 600 by 200 device-independent pixels. */
THEME_EXPORT void *THEMEGetBitmap(uint32_t number);

/* Optional: lets the user configure the theme, in a window of its own above `owner`. */
THEME_EXPORT void THEMEConfigure(ThemeWindow *owner, int version);

#ifdef __cplusplus
}
#endif

#endif
