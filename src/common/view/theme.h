// The look of tool bar, buttons and pictures: measures and the numbered pictures.
#pragma once

#include <QPixmap>
#include <QRect>
#include <QSize>

#include <cstdint>

class QPainter;

namespace tonewright {

// Measures that ThemeGetMetric knows.
constexpr int MetricToolBarHeight = 1;
constexpr int MetricToolWidth = 2;
constexpr int MetricToolHeight = 3;
constexpr int MetricToolGroupGap = 5; // extra gap behind the last button of a group
constexpr int MetricToolLeft = 6;     // left edge of the first button
constexpr int MetricToolTop = 7;
constexpr int MetricToolGap = 8;
constexpr int MetricPictureWidth = 17; // of the picture of a dialog
constexpr int MetricPictureHeight = 18;

// A measure in pixels; 0 for a number that has none.
int ThemeGetMetric(int number);

// The state of a button that is painted; the values are or-ed.
constexpr unsigned ButtonPressed = 0x1;
constexpr unsigned ButtonDisabled = 0x2;
constexpr unsigned ButtonHover = 0x4;
constexpr unsigned ButtonFocus = 0x8;
constexpr unsigned ButtonDefault = 0x10; // what the Return key presses

// Paints a tool button into a rectangle: a face that shows when the mouse is over it or presses
// it, and the picture in its middle, grey while the button is disabled.
void ThemeDrawButton(QPainter &painter, const QRect &rectangle, unsigned state,
                     const QPixmap &picture);
// The side of the square picture of a tool button, in pixels.
constexpr int ToolPictureSize = 32;

// Paints what lies behind the tool buttons.
void ThemeDrawToolbarBackground(QPainter &painter, const QRect &rectangle);

// A numbered picture in a size of logical pixels, its proportions kept, on a transparent ground. A
// number without a picture gives a grey tile. ApplicationPicture is the program's own.
QPixmap PictureOf(std::uint32_t number, QSize size, double devicePixelRatio = 1.0);

// The size in which a numbered picture was drawn; empty when there is none.
QSize PictureSize(std::uint32_t number);

// Paints a numbered picture into a rectangle, its proportions kept.
void ThemeDrawPicture(QPainter &painter, std::uint32_t number, const QRect &rectangle);

} // namespace tonewright
