// Opening a file on Windows, where only the wide functions take every path.
#include "common/open_file.h"

#include <filesystem>
#include <string>

namespace tonewright {

FilePointer OpenFile(const char *path, const char *mode) {
    const std::filesystem::path wide(reinterpret_cast<const char8_t *>(path));
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    return FilePointer(_wfopen(wide.c_str(), wideMode.c_str()));
}

} // namespace tonewright
