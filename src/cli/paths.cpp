// Paths of the command line.
#include "cli/paths.h"

#include <filesystem>

namespace tonewright {

std::string AbsolutePath(const char *path) {
    std::error_code error;
    const std::filesystem::path given(reinterpret_cast<const char8_t *>(path));
    const std::u8string absolute = std::filesystem::absolute(given, error).u8string();
    return error ? std::string(path) : std::string(absolute.begin(), absolute.end());
}

} // namespace tonewright
