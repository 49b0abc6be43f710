// Paths of the file system and their text, which is UTF-8 everywhere in the program.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tonewright {

// The path that a text stands for. Off Windows its bytes are those of the text, UTF-8 or not.
std::filesystem::path PathOfUtf8(std::string_view text);
std::string Utf8OfPath(const std::filesystem::path &path);

// The path against the current folder; itself when it is absolute or there is no current folder.
std::string AbsolutePath(const std::string &path);

} // namespace tonewright
