// Paths of the command line.
#pragma once

#include <filesystem>
#include <string>

namespace tonewright {

// The path in UTF-8 as the standard library takes it.
std::filesystem::path PathOfUtf8(const char *path);

// The path against the current folder; itself when it is absolute or there is no current folder.
std::string AbsolutePath(const char *path);

} // namespace tonewright
