// What stands in a folder on Windows.
#include "extras/folder_listing.h"

#include "common/utf8_path.h"

#include <cerrno>
#include <string>
#include <vector>
#include <windows.h>

namespace tonewright {
namespace {

struct OpenHandle {
    HANDLE handle = INVALID_HANDLE_VALUE;

    ~OpenHandle() {
        if (handle != INVALID_HANDLE_VALUE) {
            CloseHandle(handle);
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
    case ERROR_INVALID_PARAMETER: // what is listed is no folder
        return ENOTDIR;
    case ERROR_CANT_RESOLVE_FILENAME:
        return ELOOP;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        return EACCES;
    default:
        return EIO;
    }
}

// A drive is named with its separator.
HANDLE OpenPath(const std::string &path, DWORD access) {
    const std::string named = path.ends_with(':') ? path + '/' : path;
    return CreateFileW(PathOfUtf8(named).c_str(), access,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

EntryKind KindOf(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::Folder : EntryKind::File;
}

// Of a time in units of 100 nanoseconds since 1601; 0 stays 0, for none.
std::int64_t Nanoseconds(const LARGE_INTEGER &time) {
    constexpr std::int64_t UnitsFrom1601To1970 = 116'444'736'000'000'000;
    return time.QuadPart == 0 ? 0 : (time.QuadPart - UnitsFrom1601To1970) * 100;
}

std::uint64_t Joined(DWORD high, DWORD low) {
    return static_cast<std::uint64_t>(high) << 32 | low;
}

// An entry as the system lists it. `name` keeps the bytes of its name.
FolderEntry EntryOf(const FILE_ID_BOTH_DIR_INFO &listed, std::uint64_t device, std::string &name) {
    name = Utf8OfPath(std::wstring(listed.FileName, listed.FileNameLength / sizeof(WCHAR)));
    FolderEntry entry{name, KindOf(listed.FileAttributes), {}, {}};
    // The tag of what leads elsewhere stands in the place of something that few files have.
    const bool leadsElsewhere =
        (listed.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        (listed.EaSize == IO_REPARSE_TAG_SYMLINK || listed.EaSize == IO_REPARSE_TAG_MOUNT_POINT);
    if (leadsElsewhere) {
        entry.kind = EntryKind::Link;
    } else if (entry.kind == EntryKind::File) {
        entry.state = {static_cast<std::uint64_t>(listed.EndOfFile.QuadPart),
                       Nanoseconds(listed.LastWriteTime), Nanoseconds(listed.ChangeTime)};
        entry.key = {device, static_cast<std::uint64_t>(listed.FileId.QuadPart)};
    }
    return entry;
}

} // namespace

int ListFolder(const std::string &path, const std::function<bool(const FolderEntry &)> &visit) {
    const OpenHandle folder{OpenPath(path, FILE_LIST_DIRECTORY)};
    BY_HANDLE_FILE_INFORMATION about;
    if (folder.handle == INVALID_HANDLE_VALUE ||
        !GetFileInformationByHandle(folder.handle, &about)) {
        return ReasonOfLastError();
    }
    constexpr std::size_t RoomForEntries = 64 * 1024;
    std::vector<LARGE_INTEGER> room(RoomForEntries / sizeof(LARGE_INTEGER)); // aligned as entries
    std::string name;
    while (GetFileInformationByHandleEx(folder.handle, FileIdBothDirectoryInfo, room.data(),
                                        RoomForEntries)) {
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(room.data());
        for (DWORD next = 1; next != 0; bytes += next) {
            const auto &listed = *reinterpret_cast<const FILE_ID_BOTH_DIR_INFO *>(bytes);
            next = listed.NextEntryOffset;
            const FolderEntry entry = EntryOf(listed, about.dwVolumeSerialNumber, name);
            if (name != "." && name != ".." && !visit(entry)) {
                return 0;
            }
        }
    }
    return GetLastError() == ERROR_NO_MORE_FILES ? 0 : ReasonOfLastError();
}

std::optional<PathTarget> TargetOf(const std::string &path) {
    const OpenHandle file{OpenPath(path, FILE_READ_ATTRIBUTES)};
    BY_HANDLE_FILE_INFORMATION about;
    FILE_BASIC_INFO times;
    if (file.handle == INVALID_HANDLE_VALUE || !GetFileInformationByHandle(file.handle, &about) ||
        !GetFileInformationByHandleEx(file.handle, FileBasicInfo, &times, sizeof times)) {
        errno = ReasonOfLastError();
        return std::nullopt;
    }
    return PathTarget{
        KindOf(about.dwFileAttributes),
        {Joined(about.nFileSizeHigh, about.nFileSizeLow), Nanoseconds(times.LastWriteTime),
         Nanoseconds(times.ChangeTime)},
        {about.dwVolumeSerialNumber, Joined(about.nFileIndexHigh, about.nFileIndexLow)}};
}

bool IsSystemFolder(std::string_view) {
    return false;
}

} // namespace tonewright
