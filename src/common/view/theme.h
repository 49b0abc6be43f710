// The look of tool bar and pictures of boxes: the theme that the program draws with, a library
// named by the setting ThemeCurrent or, where none is loaded, the one that is linked to the
// program. Callers do not care which; a new choice counts from the next start on.
#pragma once

#include "common/theme_bitmap.h"
#include "tonewright_theme.h"

#include <QImage>
#include <QSizeF>

#include <cstdint>
#include <optional>
#include <string>

class QColor;
class QPainter;
class QRect;
class QWidget;

namespace tonewright {

// Loads the theme that ThemeCurrent names from the folder "theme" below ApplicationPath. Where no
// such file is, ThemeCurrent becomes the medium theme. True when the program draws with it from now
// on. False when something is wrong with it: then the linked theme draws, and a message says so.
// Once, after the application object of the toolkit is made.
bool ThemeLoad();
// Ends the theme that the program draws with; from now on the linked one would draw.
void ThemeUnload();
// True when the program draws with the library in this file, under whatever path.
bool ThemeIsLoadedFrom(const std::string &path);

// The largest measures that are believed, in device-independent pixels: no theme pushes the list or
// the buttons of the settings off a small screen, so that another one can be chosen.
constexpr int LargestBarMetric = 128;     // of the tool bar
constexpr int LargestPictureMetric = 192; // of the picture of a box
// A measure by its number, THEME_METRIC_..., from 0 to the largest; 0 for one that has none.
int ThemeGetMetric(int number);

// A bitmap by its number, THEME_BITMAP_..., if the theme has it.
std::optional<ThemeBitmap> ThemeGetBitmap(std::uint32_t number);

// The state of a button that is painted; the values are or-ed.
constexpr unsigned ButtonPressed = THEME_STATE_PRESSED;
constexpr unsigned ButtonDisabled = THEME_STATE_DISABLED;
constexpr unsigned ButtonHover = THEME_STATE_HOVER;
constexpr unsigned ButtonFocus = THEME_STATE_FOCUS;
constexpr unsigned ButtonDefault = THEME_STATE_DEFAULT; // what the Return key presses

// Paints a tool button with a picture, THEME_TOOL_..., into a rectangle of a window.
void ThemeDrawButton(QWidget &window, QPainter &painter, const QRect &rectangle, int picture,
                     unsigned state);

// Paints what lies behind the tool buttons over a whole window.
void ThemeDrawToolbarBackground(QWidget &window, QPainter &painter);

// What a box has room for of a bitmap that is shown in its own size.
constexpr QSize LargestShownBitmap{600, 200}; // device-independent pixels
// How large a bitmap is shown, in device-independent pixels.
QSizeF SizeOfThemeBitmap(const ThemeBitmap &bitmap);
// A bitmap in the device pixels of a screen that has so many for one at scale 1; in as many as a
// bitmap may have, where it would get more.
QImage ImageOfThemeBitmap(const ThemeBitmap &bitmap, double devicePixelRatio);

// Gives the picture of a box, its control 10, the size that the theme has for it, if it has one.
void ThemeSizePicture(QWidget &control);
// Paints a bitmap of the theme at the top left of a rectangle, over a ground of one colour. Where
// the theme has none of that number nothing is painted.
void ThemeDrawBitmap(QPainter &painter, const QRect &rectangle, std::uint32_t number,
                     const QColor &background);
// The same with the picture of a box that goes with a number, THEME_PICTURE_...
void ThemeDrawPicture(QPainter &painter, const QRect &rectangle, std::uint32_t number,
                      const QColor &background);

} // namespace tonewright
