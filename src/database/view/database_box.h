// The catalogue window as a dialog.
#pragma once

namespace tonewright {

// Fills TheDatabaseViews with this dialog and with what else the catalogue window shows, but for
// what the main window does.
void UseDatabaseBox();

} // namespace tonewright
