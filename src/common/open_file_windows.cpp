// Files on Windows, where only the wide functions take every path.
#include "common/open_file.h"

#include "common/utf8_path.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <sys/stat.h>
#include <system_error>
#include <windows.h>

namespace tonewright {

namespace {

int FlagsOf(const char *mode) {
    const bool updates = mode[1] == '+';
    switch (mode[0]) {
    case 'w':
        return (updates ? _O_RDWR : _O_WRONLY) | _O_CREAT | _O_TRUNC;
    case 'a':
        return (updates ? _O_RDWR : _O_WRONLY) | _O_CREAT | _O_APPEND;
    default:
        return updates ? _O_RDWR : _O_RDONLY;
    }
}

// Not by the letters of a mode: those for a file that must not exist and for one that started
// programs do not inherit are unknown to older libraries of the system.
FilePointer OpenBytes(const char *path, int flags, const char *mode) {
    const int descriptor =
        _wopen(PathOfUtf8(path).c_str(), flags | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (descriptor < 0) {
        return nullptr;
    }
    FilePointer file(_fdopen(descriptor, mode));
    if (!file) {
        const int reason = errno;
        _close(descriptor);
        errno = reason;
    }
    return file;
}

// The errno that says what an error of Windows does.
int WindowsErrno(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_UNABLE_TO_REMOVE_REPLACED:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT_2:
        return EACCES;
    case ERROR_WRITE_PROTECT:
        return EROFS;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return EEXIST;
    case ERROR_DIRECTORY:
        return ENOTDIR;
    case ERROR_NOT_SAME_DEVICE:
        return EXDEV;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return ENOSPC;
    case ERROR_FILENAME_EXCED_RANGE:
        return ENAMETOOLONG;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return ENOMEM;
    default:
        return EIO;
    }
}

// A file that is replaced leaves its users, and the time of its making, to the one in its place.
// Where there is none, or the file system has no such step, the name alone is moved.
DWORD TryRenameOver(const std::filesystem::path &source, const std::filesystem::path &target) {
    if (ReplaceFileW(target.c_str(), source.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                     nullptr, nullptr)) {
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_PARAMETER:
    case ERROR_NOT_SUPPORTED:
    case ERROR_CALL_NOT_IMPLEMENTED:
        return MoveFileExW(source.c_str(), target.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
                   ? ERROR_SUCCESS
                   : GetLastError();
    default:
        return error;
    }
}

} // namespace

FilePointer OpenFile(const char *path, const char *mode) {
    FilePointer file = OpenBytes(path, FlagsOf(mode), mode);
    if (!file && errno == EACCES) {
        // Other systems tell a folder from a file that is closed; so do the texts of the program.
        std::error_code ignored;
        errno = std::filesystem::is_directory(PathOfUtf8(path), ignored) ? EISDIR : EACCES;
    }
    if (file && GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get())))) !=
                    FILE_TYPE_DISK) {
        file.reset();
        errno = EINVAL;
    }
    return file;
}

FilePointer CreateFileLike(const char *path, const char *, NewFileUsers) {
    return OpenBytes(path, _O_WRONLY | _O_CREAT | _O_EXCL, "wb");
}

// Its list of access rights goes to the file in its place.
bool IsMoreThanItsName(const char *path) {
    constexpr DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileW(PathOfUtf8(path).c_str(), FILE_READ_ATTRIBUTES, everybody,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool known = GetFileInformationByHandle(file, &information) != 0;
    CloseHandle(file);
    return known && information.nNumberOfLinks > 1;
}

std::optional<std::uint64_t> SizeOfFile(std::FILE *file) {
    const long long size = std::fflush(file) == 0 ? _filelengthi64(_fileno(file)) : -1;
    return size < 0 ? std::nullopt : std::optional<std::uint64_t>(size);
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
    // Who scans or indexes a file that has just been written lets go of it soon.
    constexpr DWORD firstPause = 10, longestPause = 160; // milliseconds, twice as long each time
    DWORD pause = firstPause;
    DWORD error = TryRenameOver(source, target);
    while (WindowsErrno(error) == EACCES && pause <= longestPause) {
        Sleep(pause);
        pause *= 2;
        error = TryRenameOver(source, target);
    }
    if (error == ERROR_SUCCESS) {
        return true;
    }
    errno = WindowsErrno(error);
    return false;
}

FileToRead::~FileToRead() {
    if (descriptor >= 0) {
        const int reason = errno;
        _close(descriptor);
        errno = reason;
    }
}

bool OpenToRead(FileToRead &file, const char *path) {
    const FilePointer stream = OpenFile(path, "rb");
    if (!stream) {
        return false;
    }
    const long long length = _filelengthi64(_fileno(stream.get()));
    file.descriptor = length < 0 ? -1 : _dup(_fileno(stream.get()));
    file.size = length < 0 ? 0 : static_cast<std::uint64_t>(length);
    return file.descriptor >= 0;
}

std::optional<std::size_t> ReadOn(FileToRead &file, std::span<std::uint8_t> bytes) {
    constexpr std::size_t most = 1 << 30; // at once
    const int got =
        _read(file.descriptor, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), most)));
    if (got < 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(got);
}

bool ReadStartOfFile(const char *path, std::size_t limit, std::vector<std::uint8_t> &bytes,
                     std::uint64_t *size) {
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return false;
    }
    if (size) {
        const long long length = _filelengthi64(_fileno(file.get()));
        if (length < 0) {
            return false;
        }
        *size = static_cast<std::uint64_t>(length);
    }
    ReadInPieces(limit, bytes, [&](std::uint8_t *place, std::size_t size) {
        return std::fread(place, 1, size, file.get());
    });
    return !std::ferror(file.get());
}

} // namespace tonewright
