// The About box.
#pragma once

class QWidget;

namespace tonewright {

// Says which version of the program this is and what it is made with. Returns when the box has
// been closed.
void ShowAboutBox(QWidget *owner);

} // namespace tonewright
