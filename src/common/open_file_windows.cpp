// Opening a file on Windows, where only the wide functions take every path.
#include "common/open_file.h"

#include <cerrno>
#include <filesystem>
#include <io.h>
#include <string>
#include <windows.h>

namespace tonewright {

FilePointer OpenFile(const char *path, const char *mode) {
    const std::filesystem::path wide(reinterpret_cast<const char8_t *>(path));
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    FilePointer file(_wfopen(wide.c_str(), wideMode.c_str()));
    if (file && GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get())))) !=
                    FILE_TYPE_DISK) {
        file.reset();
        errno = EINVAL;
    }
    return file;
}

} // namespace tonewright
