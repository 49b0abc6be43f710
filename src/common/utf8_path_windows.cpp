// Paths of the file system and their text on Windows, where a path is UTF-16. What is neither valid
// here nor there, in a damaged file for instance, becomes the replacement character.
#include "common/utf8_path.h"

#include <windows.h>

namespace tonewright {

std::filesystem::path PathOfUtf8(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring path(text.size(), L'\0'); // no text takes more units than bytes
    const int length =
        size > 0 ? MultiByteToWideChar(CP_UTF8, 0, text.data(), size, path.data(), size) : 0;
    path.resize(static_cast<std::size_t>(length));
    return path;
}

std::string Utf8OfPath(const std::filesystem::path &path) {
    constexpr std::size_t MostBytesOfUnit = 3;
    const std::wstring &units = path.native();
    std::string text(MostBytesOfUnit * units.size(), '\0');
    const int length =
        units.empty()
            ? 0
            : WideCharToMultiByte(CP_UTF8, 0, units.data(), static_cast<int>(units.size()),
                                  text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace tonewright
