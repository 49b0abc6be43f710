// Opening a file where paths are bytes.
#include "common/open_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tonewright {
namespace {

int FlagsOf(const char *mode) {
    if (mode[0] == 'w') {
        return O_WRONLY | O_CREAT | O_TRUNC;
    }
    return mode[1] == '+' ? O_RDWR : O_RDONLY;
}

// 0 for a regular file, else the reason why a descriptor is none.
int ReasonAgainst(int descriptor) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
}

} // namespace

FilePointer OpenFile(const char *path, const char *mode) {
    constexpr mode_t everybody = 0666; // less what the user's mask takes away
    // Without O_NONBLOCK a pipe would hold the program up before it can be told from a file.
    const int descriptor = open(path, FlagsOf(mode) | O_NONBLOCK | O_NOCTTY, everybody);
    if (descriptor < 0) {
        return nullptr;
    }
    int reason = ReasonAgainst(descriptor);
    if (reason == 0) {
        if (std::FILE *file = fdopen(descriptor, mode)) {
            return FilePointer(file);
        }
        reason = errno;
    }
    close(descriptor);
    errno = reason;
    return nullptr;
}

} // namespace tonewright
