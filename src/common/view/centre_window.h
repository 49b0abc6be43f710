// Places windows on the screen.
#pragma once

class QWidget;

namespace tonewright {

// Moves a window to the centre of the primary screen.
void CentreWindow(QWidget &window);

} // namespace tonewright
