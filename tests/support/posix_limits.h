// Real obstacles for tests on POSIX systems: a limit on the size of files, files and folders whose
// permissions stand in the way, and a named pipe in place of a file.
#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <linux/capability.h>
#include <sched.h>
#include <span>
#include <string>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tonewright {

// While it lives no file of this process grows beyond `bytes`: a longer write falls short. Print
// nothing meanwhile, since standard output may be a file. With SIG_DFL as the handler the process
// ends of a longer write, and so does a program that it starts, unless the program sees to that.
struct FileSizeLimit {
    rlimit former{};
    void (*formerHandler)(int);

    explicit FileSizeLimit(rlim_t bytes, void (*handler)(int) = SIG_IGN)
        : formerHandler(std::signal(SIGXFSZ, handler)) {
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

// While it lives this process can open no further file.
struct NoMoreFiles {
    rlimit former{};

    NoMoreFiles() {
        getrlimit(RLIMIT_NOFILE, &former);
        const rlimit limited = {.rlim_cur = 0, .rlim_max = former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limited), 0);
    }
    ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &former); }
    NoMoreFiles(const NoMoreFiles &) = delete;
    NoMoreFiles &operator=(const NoMoreFiles &) = delete;
};

// Runs `body` in a child process. `prepare` comes first; without it the test fails in these words.
inline void RunInChild(bool (*prepare)(const std::string &folder), const std::string &folder,
                       const char *whatPrepares, const std::function<void()> &body) {
    enum { Passed = 0, Failed = 1, NotPrepared = 2 };
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (!prepare(folder)) {
            _exit(NotPrepared);
        }
        try {
            body();
        } catch (const std::exception &error) {
            // Beyond the fork the test program must not go on with its other tests.
            std::fprintf(stderr, "the child process ended by an exception: %s\n", error.what());
            _exit(Failed);
        }
        std::fflush(nullptr);
        _exit(testing::Test::HasFailure() ? Failed : Passed);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "the child process was ended by a signal";
    EXPECT_EQ(WEXITSTATUS(status), Passed)
        << (WEXITSTATUS(status) == NotPrepared ? whatPrepares : "see the failures above");
}

// The permissions of a file or folder, of which those for its owner count in RunUnprivileged.
struct Permissions {
    std::string path;
    mode_t mode;
};

// Runs `body` in a child process while files and folders have these permissions; afterwards they
// have their former ones again. They bind whoever runs the test, their owner: root too, whose
// privileges are given up in the child, by the programs that it starts as well. Expectations that
// fail inside fail the test.
inline void RunUnprivileged(const std::vector<Permissions> &permissions,
                            const std::function<void()> &body) {
    const auto giveUp = [](const std::string &) {
        __user_cap_header_struct self{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
        __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
        return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && syscall(SYS_capset, &self, none) == 0;
    };
    std::vector<Permissions> former;
    for (const auto &[path, mode] : permissions) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
        former.push_back({path, status.st_mode & 07777});
        EXPECT_EQ(chmod(path.c_str(), mode), 0) << path;
    }
    RunInChild(giveUp, "", "could not give up root's privileges", body);
    for (auto last = former.rbegin(); last != former.rend(); ++last) {
        EXPECT_EQ(chmod(last->path.c_str(), last->mode), 0) << last->path;
    }
}

// Moves the process into a name space of users of its own, where it may do what root may and is the
// user of that number, though it owns the files of its former one. False when it may not.
inline bool EnterUserSpace(uid_t number) {
    const auto write = [](const char *path, const std::string &text) {
        const int descriptor = open(path, O_WRONLY | O_CLOEXEC);
        const bool written =
            ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        close(descriptor);
        return written;
    };
    const std::string user = std::to_string(geteuid()), group = std::to_string(getegid());
    return unshare(CLONE_NEWUSER) == 0 &&
           write("/proc/self/uid_map", std::to_string(number) + " " + user + " 1") &&
           write("/proc/self/setgroups", "deny") &&
           write("/proc/self/gid_map", group + " " + group + " 1");
}

// Runs `body` in a child process that belongs to a user without an account. Where there are no name
// spaces of users, root becomes that user, who may not enter what is closed to others.
inline void RunWithoutAccount(const std::function<void()> &body) {
    const auto become = [](const std::string &) {
        constexpr uid_t NoUser = 54321;
        return EnterUserSpace(NoUser) ||
               (setresgid(NoUser, NoUser, NoUser) == 0 && setresuid(NoUser, NoUser, NoUser) == 0);
    };
    RunInChild(become, "", "could not become another user", body);
}

// Runs `body` in a child process for which a disk of 64 KB, of its own, stands at `folder`.
inline void RunOnSmallDisk(const std::string &folder, const std::function<void()> &body) {
    const auto mountDisk = [](const std::string &at) {
        const uid_t user = geteuid();
        return (user == 0 || EnterUserSpace(user)) && unshare(CLONE_NEWNS) == 0 &&
               mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("tmpfs", at.c_str(), "tmpfs", 0, "size=64k") == 0;
    };
    RunInChild(mountDisk, folder, "could not mount a disk", body);
}

// Fills the disk of a folder with a file of that path.
inline void FillDisk(const std::string &path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    const char zeros[4096] = {};
    while (write(descriptor, zeros, sizeof zeros) > 0) {
    }
    close(descriptor);
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
