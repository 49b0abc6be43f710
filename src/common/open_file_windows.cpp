// Files on Windows, where only the wide functions take every path.
#include "common/open_file.h"

#include "common/utf8_path.h"

#include <cerrno>
#include <filesystem>
#include <io.h>
#include <string>
#include <system_error>
#include <windows.h>

namespace tonewright {

FilePointer OpenFile(const char *path, const char *mode) {
    const std::filesystem::path wide = PathOfUtf8(path);
    const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
    FilePointer file(_wfopen(wide.c_str(), wideMode.c_str()));
    if (file && GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get())))) !=
                    FILE_TYPE_DISK) {
        file.reset();
        errno = EINVAL;
    }
    return file;
}

// RenameOver keeps the users of the file that is replaced; a new file has those of its folder.
FilePointer CreateFileLike(const char *path, const char *, NewFileUsers) {
    return FilePointer(_wfopen(PathOfUtf8(path).c_str(), L"wbx"));
}

bool IsMoreThanItsName(const char *path) {
    std::error_code error;
    const auto names = std::filesystem::hard_link_count(PathOfUtf8(path), error);
    return !error && names > 1;
}

bool SetFileSize(std::FILE *file, std::size_t size) {
    if (std::fflush(file) != 0) {
        return false;
    }
    const errno_t reason = _chsize_s(_fileno(file), static_cast<long long>(size));
    errno = reason;
    return reason == 0;
}

bool FlushToDisk(std::FILE *file) {
    return std::fflush(file) == 0 && _commit(_fileno(file)) == 0;
}

bool RenameOver(const char *from, const char *to) {
    const std::filesystem::path target = PathOfUtf8(to), source = PathOfUtf8(from);
    if (ReplaceFileW(target.c_str(), source.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                     nullptr, nullptr) != 0 ||
        MoveFileExW(source.c_str(), target.c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
        return true;
    }
    errno = EACCES;
    return false;
}

bool ReadStartOfFile(const char *path, std::size_t limit, std::vector<std::uint8_t> &bytes,
                     std::uint64_t *size) {
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return false;
    }
    if (size) {
        *size = static_cast<std::uint64_t>(_filelengthi64(_fileno(file.get())));
    }
    ReadInPieces(limit, bytes, [&](std::uint8_t *place, std::size_t size) {
        return std::fread(place, 1, size, file.get());
    });
    return !std::ferror(file.get());
}

} // namespace tonewright
