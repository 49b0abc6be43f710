// Paths of the file system and their text.
#include "common/utf8_path.h"

#include <system_error>

namespace tonewright {

std::filesystem::path PathOfUtf8(std::string_view text) {
    return std::u8string_view(reinterpret_cast<const char8_t *>(text.data()), text.size());
}

std::string Utf8OfPath(const std::filesystem::path &path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string AbsolutePath(const std::string &path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(PathOfUtf8(path), error);
    return error ? path : Utf8OfPath(absolute);
}

} // namespace tonewright
