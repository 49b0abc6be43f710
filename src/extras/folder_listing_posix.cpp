// What stands in a folder on POSIX systems.
#include "extras/folder_listing.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace tonewright {
namespace {

struct CloseFolder {
    void operator()(DIR *folder) const { closedir(folder); }
};

std::int64_t Nanoseconds(const timespec &time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

EntryKind KindOf(mode_t mode) {
    return S_ISREG(mode)   ? EntryKind::File
           : S_ISDIR(mode) ? EntryKind::Folder
           : S_ISLNK(mode) ? EntryKind::Link
                           : EntryKind::Other;
}

// Unknown, where the file system does not say it in the listing, asks for the status.
EntryKind KindOfListed(unsigned char type, bool &unknown) {
    unknown = type == DT_UNKNOWN;
    return type == DT_REG   ? EntryKind::File
           : type == DT_DIR ? EntryKind::Folder
           : type == DT_LNK ? EntryKind::Link
                            : EntryKind::Other;
}

FileState StateOf(const struct stat &status) {
#ifdef __APPLE__
    return {static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtimespec),
            Nanoseconds(status.st_ctimespec)};
#else
    return {static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtim),
            Nanoseconds(status.st_ctim)};
#endif
}

FileKey KeyOf(const struct stat &status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
}

} // namespace

int ListFolder(const std::string &path, const std::function<bool(const FolderEntry &)> &visit) {
    const int descriptor =
        open((path + '/').c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return errno;
    }
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor));
    if (!folder) {
        const int reason = errno;
        close(descriptor);
        return reason;
    }
    int reason = 0;
    for (;;) {
        errno = 0;
        const dirent *listed = readdir(folder.get());
        if (!listed) {
            return errno != 0 ? errno : reason;
        }
        FolderEntry entry{.name = listed->d_name, .state = {}, .key = {}};
        if (entry.name == "." || entry.name == "..") {
            continue;
        }
        bool unknown = false;
        entry.kind = KindOfListed(listed->d_type, unknown);
        if (unknown || entry.kind == EntryKind::File) {
            struct stat status;
            if (fstatat(descriptor, listed->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
                if (errno != ENOENT) { // else removed meanwhile
                    reason = errno;
                }
                continue;
            }
            entry.kind = KindOf(status.st_mode);
            entry.state = StateOf(status);
            entry.key = KeyOf(status);
        }
        if (!visit(entry)) {
            return 0;
        }
    }
}

std::optional<PathTarget> TargetOf(const std::string &path) {
    struct stat status;
    if (stat(path.empty() ? "/" : path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return PathTarget{KindOf(status.st_mode), StateOf(status), KeyOf(status)};
}

bool IsSystemFolder(std::string_view path) {
    constexpr std::string_view folders[] = {"/proc", "/sys", "/dev", "/run/user"};
    return std::ranges::find(folders, path) != std::end(folders);
}

} // namespace tonewright
