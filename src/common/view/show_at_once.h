// Brings a window to the screen before the event loop runs.
#pragma once

class QWidget;

namespace tonewright {

// Shows a window and waits until it is on the screen and painted, half a second at most. The user's
// events wait meanwhile; all others are handled.
void ShowAtOnce(QWidget &window);

} // namespace tonewright
