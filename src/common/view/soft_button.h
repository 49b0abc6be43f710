// The program's own painting of push buttons.
#pragma once

#include <QRect>

#include <cstdint>

class QPainter;
class QPushButton;
class QString;
class QWidget;

namespace tonewright {

// The looks of push buttons, the values of the setting SoftButtons. Any other value is drawn as
// Soft.
constexpr std::uint32_t SoftButtonNone = 0;  // the platform's own
constexpr std::uint32_t SoftButtonSoft = 1;  // round corners, a broad edge at the top and left
constexpr std::uint32_t SoftButtonFlex = 2;  // a double frame, which turns inside out when pressed
constexpr std::uint32_t SoftButtonWedge = 3; // cut corners, a bevel of single lines

// Gives a push button the look that the setting SoftButtons names now, for the rest of its life;
// with SoftButtonNone it stays as it is, and so does one that paints itself. A second call changes
// nothing.
void MakeSoftButton(QPushButton *button);

// Leaves a button to the painting of its own that it has.
void KeepOwnPainting(QWidget *button);

// From now on each push button of a dialog, the program's or the toolkit's, gets its look when it
// is first shown. For the life of the application.
void MakeDialogButtonsSoft();

// Paints a button of a look at rest, with a caption in the painter's font, to show what it is like.
void DrawSoftButtonSample(QPainter &painter, const QRect &rectangle, std::uint32_t style,
                          const QString &caption);

} // namespace tonewright
