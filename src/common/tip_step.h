// When the tool tip of a control comes and goes.
#pragma once

#include "common/geometry.h"

namespace tonewright {

constexpr int ToolTipDelay = 250; // milliseconds

// What the mouse does, or a key.
struct TipEvent {
    bool isMove = false; // of the mouse, not a button, the wheel or a key
    bool leftButtonDown = false;
    PicturePoint cursor; // of a move, from the control's corner
};

enum class TipStep {
    None,
    StartTimer, // unless it runs
    Hide,       // stop the timer as well
};
// What follows for the tip of a control of `width` by `height` pixels, which shows or does not.
TipStep TipStepOf(const TipEvent &event, int width, int height, bool tipShows);

// True when a cursor is inside a control and on none of its edges: then its tip is shown after the
// delay.
bool IsStrictlyInside(PicturePoint cursor, int width, int height);

} // namespace tonewright
