// The window of the archive: the user's voices, found as one types, taken into the main list.
#pragma once

#include <memory>

class QWidget;

namespace tonewright {

// Opens the window, which stays beside the main window until it is closed; one at a time: one that
// stands already comes to the top.
void ShowArchiveWindow();
// Hides it and has what it does end, as at the end of the program; it goes with
// `DropArchiveWindow`, when no box of it stands any more.
void EndArchiveWindow();
void DropArchiveWindow();

} // namespace tonewright
