// Paints the main window into a picture file.
#pragma once

#include <string>

namespace tonewright {

// The main window with the bank at `bankPath` open, as it would look on a screen of the given
// height in pixels (the width does not count), written as PNG to `pngPath`. Needs a QApplication. False with the reason in `error`
// when the bank cannot be opened or the picture not written.
bool PaintMainWindowPicture(const std::string &bankPath, const std::string &pngPath,
                            int screenHeight, std::string &error);

} // namespace tonewright
