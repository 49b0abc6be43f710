// What the commands that paint need of the toolkit: no display, and no words of its own.
#pragma once

namespace tonewright {

// From now on the toolkit paints without a display and tells nothing but what ends the program.
// Before the application object is made.
void UseOffscreenToolkit();

} // namespace tonewright
