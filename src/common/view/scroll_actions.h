// What the user does on a scroll bar, handed to whoever decides how far it moves.
#pragma once

#include "common/scroll_step.h"

#include <functional>

class QScrollBar;

namespace tonewright {

// `act` hears of each action of mouse and keys, and of each notch of the wheel as one line; `thumb`
// is where the thumb was drawn to. The bar then stands where `act` put it with setSliderPosition,
// or else where the toolkit would have it. Upwards adds: the wheel, and the keys Up and Page Up.
void TakeScrollActions(QScrollBar *bar, std::function<void(ScrollAction action, int thumb)> act);

} // namespace tonewright
