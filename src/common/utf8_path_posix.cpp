// Paths of the file system and their text on POSIX systems, where a path is its bytes.
#include "common/utf8_path.h"

namespace tonewright {

std::filesystem::path PathOfUtf8(std::string_view text) {
    return std::u8string_view(reinterpret_cast<const char8_t *>(text.data()), text.size());
}

std::string Utf8OfPath(const std::filesystem::path &path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace tonewright
