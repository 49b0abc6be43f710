// The screen saver of the desktop.
#pragma once

#include <string>

namespace tonewright {

// Makes a screen saver of the system's folder (its file name) the desktop's and switches it on,
// with the time that stands, but at least 300 seconds. Where the system has no such files nothing
// happens.
void InstallScreenSaver(const std::string &fileName);

} // namespace tonewright
