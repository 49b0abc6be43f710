// The box that stands over a window while a transfer blocks it. It has no buttons.
#pragma once

#include <string>

class QWidget;

namespace tonewright {

// Shows the box in the middle of the screen with one line of text. It is on the screen when this
// returns, although the caller then blocks the thread. As long as it stands, what the user does is
// dropped, but for a message dialog that asks something meanwhile. A second box covers the first.
// True when the box was made. Needs a QApplication.
bool ShowBusyBoxWindow(QWidget *owner, const std::string &text);

// Shows another text in the box at once; nothing without a box.
void SetBusyBoxText(const std::string &text);

// Takes the box away, drops what the user did in the meantime and brings the owner to the top.
// Nothing without a box.
void CloseBusyBoxWindow();

} // namespace tonewright
