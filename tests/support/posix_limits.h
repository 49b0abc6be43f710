// Real obstacles for tests on POSIX systems: a limit on the size of files, a child process that is
// not root, and a named pipe in place of a file.
#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <grp.h>
#include <span>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tonewright {

// While it lives no file of this process grows beyond `bytes`: a longer write falls short. Print
// nothing meanwhile, since standard output may be a file.
struct FileSizeLimit {
    rlimit former{};
    void (*formerHandler)(int);

    explicit FileSizeLimit(rlim_t bytes) : formerHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former);
        const rlimit limited = {.rlim_cur = bytes, .rlim_max = former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former);
        std::signal(SIGXFSZ, formerHandler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
};

// Runs `body` in a child process under an unprivileged user, for whom a file without permission
// really is closed. Expectations that fail inside fail the test.
inline void RunUnprivileged(const std::function<void()> &body) {
    constexpr uid_t nobody = 65534;
    enum { Passed = 0, Failed = 1, StillPrivileged = 2 };
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 &&
            (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
            _exit(StillPrivileged);
        }
        body();
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? Failed : Passed);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "the child process was ended by a signal";
    EXPECT_EQ(WEXITSTATUS(status), Passed)
        << (WEXITSTATUS(status) == StillPrivileged ? "could not become an unprivileged user"
                                                   : "see the failures above");
}

// A named pipe. Whoever opens its only other end the plain way waits for ever.
inline std::string MakePipe(const std::string &path) {
    EXPECT_EQ(mkfifo(path.c_str(), 0666), 0);
    return path;
}

// Both ends of a named pipe held open, with some bytes in it.
struct BusyPipe {
    int descriptor;

    BusyPipe(const std::string &path, std::span<const unsigned char> bytes)
        : descriptor(open(path.c_str(), O_RDWR | O_NONBLOCK)) {
        EXPECT_EQ(write(descriptor, bytes.data(), bytes.size()),
                  static_cast<ssize_t>(bytes.size()));
    }
    ~BusyPipe() { close(descriptor); }
    BusyPipe(const BusyPipe &) = delete;
    BusyPipe &operator=(const BusyPipe &) = delete;

    // How many bytes wait in it.
    ssize_t Waiting() const {
        unsigned char bytes[65536];
        return read(descriptor, bytes, sizeof bytes);
    }
};

} // namespace tonewright
