// Paths of the command line.
#pragma once

#include <string>

namespace tonewright {

// The path against the current folder; itself when it is absolute or there is no current folder.
std::string AbsolutePath(const char *path);

} // namespace tonewright
