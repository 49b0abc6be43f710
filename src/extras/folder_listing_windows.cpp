// What stands in a folder on Windows.
#include "extras/folder_listing.h"

#include "common/utf8_path.h"

#include <cerrno>
#include <windows.h>

namespace tonewright {
namespace {

struct OpenHandle {
    HANDLE handle = INVALID_HANDLE_VALUE;
    BOOL(WINAPI *close)(HANDLE);

    ~OpenHandle() {
        if (handle != INVALID_HANDLE_VALUE) {
            close(handle);
        }
    }
};

int ReasonOfLastError() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return ENOENT;
    case ERROR_DIRECTORY:
        return ENOTDIR;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return EACCES;
    default:
        return EIO;
    }
}

EntryKind KindOf(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::Folder : EntryKind::File;
}

std::int64_t Nanoseconds(const FILETIME &time) {
    constexpr std::int64_t UnitsFrom1601To1970 = 116'444'736'000'000'000;
    const auto units = static_cast<std::int64_t>(
        static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime);
    return (units - UnitsFrom1601To1970) * 100;
}

std::uint64_t Joined(DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | low;
}

} // namespace

int ListFolder(const std::string &path, const std::function<bool(const FolderEntry &)> &visit) {
    WIN32_FIND_DATAW found;
    const OpenHandle search{FindFirstFileExW(PathOfUtf8(path + "/*").c_str(), FindExInfoBasic,
                                             &found, FindExSearchNameMatch, nullptr,
                                             FIND_FIRST_EX_LARGE_FETCH),
                            FindClose};
    if (search.handle == INVALID_HANDLE_VALUE) {
        return ReasonOfLastError();
    }
    do {
        const std::string name = Utf8OfPath(found.cFileName);
        if (name == "." || name == "..") {
            continue;
        }
        FolderEntry entry{name, KindOf(found.dwFileAttributes), {}, {}};
        const bool leadsElsewhere = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
                                    (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
                                     found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
        if (leadsElsewhere) {
            entry.kind = EntryKind::Link;
        } else if (entry.kind == EntryKind::File) {
            entry.state = {Joined(found.nFileSizeHigh, found.nFileSizeLow),
                           Nanoseconds(found.ftLastWriteTime), 0};
        }
        if (!visit(entry)) {
            return 0;
        }
    } while (FindNextFileW(search.handle, &found));
    return GetLastError() == ERROR_NO_MORE_FILES ? 0 : ReasonOfLastError();
}

std::optional<PathTarget> TargetOf(const std::string &path) {
    // A drive is named with its separator.
    const std::string named = path.ends_with(':') ? path + '/' : path;
    const OpenHandle file{CreateFileW(PathOfUtf8(named).c_str(), 0,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr),
                          CloseHandle};
    BY_HANDLE_FILE_INFORMATION about;
    if (file.handle == INVALID_HANDLE_VALUE || !GetFileInformationByHandle(file.handle, &about)) {
        errno = ReasonOfLastError();
        return std::nullopt;
    }
    return PathTarget{
        KindOf(about.dwFileAttributes),
        {Joined(about.nFileSizeHigh, about.nFileSizeLow), Nanoseconds(about.ftLastWriteTime), 0},
        {about.dwVolumeSerialNumber, Joined(about.nFileIndexHigh, about.nFileIndexLow)}};
}

bool IsSystemFolder(std::string_view) {
    return false;
}

} // namespace tonewright
