// The box with the tip of the day.
#pragma once

class QWidget;

namespace tonewright {

// Shows the next tip, and those after it as long as Shift is held at "Done". Returns when the box
// has been closed; "Done" keeps whether tips are wanted, in ShowTipOfTheDay.
void ShowTipBox(QWidget *owner);

} // namespace tonewright
