// Places windows on the screen.
#pragma once

class QWidget;

namespace tonewright {

// Moves a window to the centre of the primary screen: its size is that with the frame, for which a
// window that is not shown yet moves once more when it has got it.
void CentreWindow(QWidget &window);

} // namespace tonewright
