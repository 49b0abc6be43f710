// Files where paths are bytes.
#include "common/open_file.h"

#include "common/text.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __APPLE__
#include <sys/acl.h>
#else
#include <sys/xattr.h>
#endif

namespace tonewright {
namespace {

int FlagsOf(const char *mode) {
    const bool updates = mode[1] == '+';
    switch (mode[0]) {
    case 'w':
        return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
    case 'a':
        return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
    default:
        return updates ? O_RDWR : O_RDONLY;
    }
}

// 0 for a regular file, else the reason why a descriptor is none.
int ReasonAgainst(int descriptor, struct stat &status) {
    if (fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
}

constexpr mode_t Everybody = 0666; // less what the user's mask takes away

// Some file systems have no way to wait for the disk.
bool SyncOrCannot(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP || errno == ENOSYS;
}

bool HasAccessList(const char *path) {
#ifdef __APPLE__
    const acl_t list = acl_get_file(path, ACL_TYPE_EXTENDED);
    if (!list) {
        return false;
    }
    acl_free(list);
    return true;
#else
    return getxattr(path, "system.posix_acl_access", nullptr, 0) > 0;
#endif
}

constexpr mode_t Permissions = 07777;
constexpr mode_t OfGroup = 070;

// `groupMayBeMore`: what the group may do with the model is not told by its permissions alone.
void GiveTo(int descriptor, const struct stat &model, bool groupMayBeMore) {
    constexpr uid_t sameOwner = static_cast<uid_t>(-1);
    // Only a privileged user gives files away; a group may be any of one's own.
    const bool given = fchown(descriptor, model.st_uid, model.st_gid) == 0 ||
                       fchown(descriptor, sameOwner, model.st_gid) == 0;
    const mode_t mode = model.st_mode & Permissions;
    // What its group could do with the model is not for another group.
    if (fchmod(descriptor, given && !groupMayBeMore ? mode : mode & ~OfGroup) != 0) {
        return; // it keeps the permissions that it was made with, for nobody else
    }
}

// A folder may have given the new file a list of access rights of its own.
bool HasUsersOf(int descriptor, const char *path, const struct stat &model) {
    struct stat status;
    return !HasAccessList(path) && fstat(descriptor, &status) == 0 &&
           status.st_uid == model.st_uid && status.st_gid == model.st_gid &&
           (status.st_mode & Permissions) == (model.st_mode & Permissions);
}

void CloseWithReason(int descriptor, int reason) {
    close(descriptor);
    errno = reason;
}

// A descriptor of a regular file; -1 with the reason in errno.
int OpenRegularFile(const char *path, int flags, std::uint64_t *size = nullptr) {
    // Without O_NONBLOCK a pipe would hold the program up before it can be told from a file.
    const int descriptor = open(path, flags | O_NONBLOCK | O_NOCTTY, Everybody);
    if (descriptor < 0) {
        return -1;
    }
    struct stat status;
    if (const int reason = ReasonAgainst(descriptor, status)) {
        CloseWithReason(descriptor, reason);
        return -1;
    }
    if (size) {
        *size = static_cast<std::uint64_t>(status.st_size);
    }
    return descriptor;
}

} // namespace

FilePointer OpenFile(const char *path, const char *mode) {
    const int descriptor = OpenRegularFile(path, FlagsOf(mode));
    if (descriptor < 0) {
        return nullptr;
    }
    if (std::FILE *file = fdopen(descriptor, mode)) {
        return FilePointer(file);
    }
    CloseWithReason(descriptor, errno);
    return nullptr;
}

FilePointer CreateFileLike(const char *path, const char *model, NewFileUsers users) {
    struct stat status;
    const bool hasModel = stat(model, &status) == 0;
    constexpr mode_t nobodyElse = 0600; // until it is given to the users of the model
    const int descriptor =
        open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, hasModel ? nobodyElse : Everybody);
    if (descriptor < 0) {
        return nullptr;
    }
    if (hasModel) {
        GiveTo(descriptor, status, HasAccessList(model) || HasAccessList(path));
    }
    int reason = EPERM;
    if (!hasModel || users == NewFileUsers::AsModelOrFewer ||
        HasUsersOf(descriptor, path, status)) {
        if (std::FILE *file = fdopen(descriptor, "wb")) {
            return FilePointer(file);
        }
        reason = errno;
    }
    unlink(path);
    CloseWithReason(descriptor, reason);
    return nullptr;
}

bool IsMoreThanItsName(const char *path) {
    struct stat status;
    return stat(path, &status) == 0 && (status.st_nlink > 1 || HasAccessList(path));
}

std::optional<std::uint64_t> SizeOfFile(std::FILE *file) {
    struct stat status = {};
    if (std::fflush(file) != 0 || fstat(fileno(file), &status) != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

bool SetFileSize(std::FILE *file, std::size_t size) {
    return std::fflush(file) == 0 && ftruncate(fileno(file), static_cast<off_t>(size)) == 0;
}

bool FlushToDisk(std::FILE *file) {
    return std::fflush(file) == 0 && SyncOrCannot(fileno(file));
}

bool RenameOver(const char *from, const char *to) {
    if (std::rename(from, to) != 0) {
        return false;
    }
    // The name is in the folder. One that may be written to and not read cannot be waited for.
    const std::string folder = FolderOfPath(to);
    const int descriptor =
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        SyncOrCannot(descriptor);
        close(descriptor);
    }
    return true;
}

FileToRead::~FileToRead() {
    if (descriptor >= 0) {
        const int reason = errno;
        CloseWithReason(descriptor, reason);
    }
}

bool OpenToRead(FileToRead &file, const char *path) {
    file.descriptor = OpenRegularFile(path, O_RDONLY, &file.size);
    return file.descriptor >= 0;
}

std::optional<std::size_t> ReadOn(FileToRead &file, std::span<std::uint8_t> bytes) {
    ssize_t got = 0;
    do {
        got = read(file.descriptor, bytes.data(), bytes.size());
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(got);
}

// Without a stream a file that reaches its limit costs one call of the system each for opening,
// looking at it, reading and closing, which is what thousands of small files in one run are
// measured by.
bool ReadStartOfFile(const char *path, std::size_t limit, std::vector<std::uint8_t> &bytes,
                     std::uint64_t *size) {
    FileToRead file;
    if (!OpenToRead(file, path)) {
        return false;
    }
    if (size) {
        *size = file.size;
    }
    int reason = 0;
    ReadInPieces(limit, bytes, [&](std::uint8_t *place, std::size_t wanted) {
        const auto got = ReadOn(file, {place, wanted});
        if (!got) {
            reason = errno;
        }
        return got.value_or(0);
    });
    errno = reason;
    return reason == 0;
}

} // namespace tonewright
