// The boxes with which the program says that it cannot run here.
#pragma once

class QWidget;

namespace tonewright {

// The display has too few colours or is too narrow. Returns when the box over the main window has
// been closed.
void ShowScreenDriverMessage();

// The operating system is too old. Returns when the box has been dismissed.
void ShowVersionRefusedBox();

} // namespace tonewright
