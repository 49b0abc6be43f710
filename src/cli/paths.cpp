// Paths of the command line.
#include "cli/paths.h"

namespace tonewright {

std::filesystem::path PathOfUtf8(const char *path) {
    return std::filesystem::path(reinterpret_cast<const char8_t *>(path));
}

std::string AbsolutePath(const char *path) {
    std::error_code error;
    const std::u8string absolute = std::filesystem::absolute(PathOfUtf8(path), error).u8string();
    return error ? std::string(path) : std::string(absolute.begin(), absolute.end());
}

} // namespace tonewright
