// What is asked of the operating system directly, on Linux and macOS.
#include "common/platform.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <limits.h>
#include <pwd.h>
#include <stdlib.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#include <malloc/malloc.h>
#else
#include <malloc.h>
#endif

namespace tonewright {
namespace {

constexpr std::uint64_t UnitsPerSecond = 10'000'000;
constexpr std::uint64_t NanosecondsPerUnit = 100;
constexpr std::int64_t SecondsFrom1601To1970 = 11'644'473'600;

// Closes a descriptor on every way out.
struct OpenDescriptor {
    int value;
    ~OpenDescriptor() {
        if (value >= 0) {
            close(value);
        }
    }
};

std::uint64_t FileTimeOf(std::int64_t seconds, std::uint64_t nanoseconds) {
    return static_cast<std::uint64_t>(seconds + SecondsFrom1601To1970) * UnitsPerSecond +
           nanoseconds / NanosecondsPerUnit;
}

bool BirthTime(int descriptor, std::uint64_t *time) {
#ifdef __APPLE__
    struct stat status;
    if (fstat(descriptor, &status) != 0) {
        return false;
    }
    *time = FileTimeOf(status.st_birthtimespec.tv_sec,
                       static_cast<std::uint64_t>(status.st_birthtimespec.tv_nsec));
#else
    struct statx status;
    if (statx(descriptor, "", AT_EMPTY_PATH, STATX_BTIME, &status) != 0 ||
        (status.stx_mask & STATX_BTIME) == 0) {
        return false;
    }
    *time = FileTimeOf(status.stx_btime.tv_sec, status.stx_btime.tv_nsec);
#endif
    return true;
}

// A path as part of an address: what an address would take for its own is written in hexadecimal.
std::string EscapeForAddress(const std::string &path) {
    constexpr std::string_view kept = "/-._~";
    constexpr char digits[] = "0123456789ABCDEF";
    std::string escaped;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') ||
                           kept.find(character) != std::string_view::npos;
        if (plain) {
            escaped += character;
        } else {
            escaped += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return escaped;
}

} // namespace

const char PathSeparator = '/';
const char *const PlatformLibraryExtension = "so";

bool PlatformFileCreationTime(const char *path, std::uint64_t *time) {
    // Neither a pipe without a reader nor a terminal holds the program up.
    const OpenDescriptor file{open(path, O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    // A lock that another program holds counts as a file that is in use.
    if (file.value < 0 || flock(file.value, LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    return BirthTime(file.value, time);
}

std::size_t PlatformBlockSize(const void *block) {
#ifdef __APPLE__
    return malloc_size(block);
#else
    return malloc_usable_size(const_cast<void *>(block));
#endif
}

std::string PlatformBrowserProgram(const char *windowsProgram) {
    struct Name {
        std::string_view windows;
        const char *here;
    };
    static constexpr Name Names[] = {
        {"chrome.exe", "google-chrome"},
        {"msedge.exe", "microsoft-edge"},
    };
    std::string_view program(windowsProgram);
    for (const Name &name : Names) {
        if (name.windows == program) {
            return name.here;
        }
    }
    if (program.ends_with(".exe")) {
        program.remove_suffix(4);
    }
    return std::string(program);
}

std::string PlatformLines(std::string text) {
    return text;
}

void PlatformLetLongWritesFail() {
    std::signal(SIGXFSZ, SIG_IGN);
}

std::vector<char *> PlatformArguments(int argumentCount, char **arguments) {
    std::vector<char *> texts(arguments, arguments + argumentCount);
    texts.push_back(nullptr);
    return texts;
}

std::string PlatformCommandLine(int argumentCount, char **arguments) {
    std::string line;
    for (int i = 1; i < argumentCount; ++i) {
        line += i > 1 ? " " : "";
        line += arguments[i];
    }
    return line;
}

void PlatformUseTerminalOfParent() {} // its standard output is the terminal's already

bool PlatformFindHome() {
    const char *home = std::getenv("HOME");
    if (home && *home) {
        return true;
    }
    const passwd *account = getpwuid(getuid());
    return account && *account->pw_dir && setenv("HOME", account->pw_dir, 1) == 0;
}

std::string PlatformExecutablePath() {
    char path[PATH_MAX + 1];
#ifdef __APPLE__
    char reported[PATH_MAX + 1];
    std::uint32_t size = sizeof reported;
    if (_NSGetExecutablePath(reported, &size) != 0 || !realpath(reported, path)) {
        return {};
    }
    return path;
#else
    const ssize_t length = readlink("/proc/self/exe", path, PATH_MAX);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
#endif
}

std::string PlatformApplicationDataFolder(const std::string &configuration) {
    return configuration;
}

std::string PlatformProgramsFolder(const std::string &applications) {
    return applications;
}

std::string PlatformFontFolder() {
    return {};
}

std::vector<std::string> PlatformSystemConfigurationFolders() {
    const char *variable = std::getenv("XDG_CONFIG_DIRS");
    std::string_view rest = variable && *variable ? variable : "/etc/xdg";
    std::vector<std::string> folders;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (rest.starts_with('/')) { // a relative one would depend on the current folder
            folders.emplace_back(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}

FileManagerCall PlatformFileManagerCall(const std::string &folder, const std::string &) {
    return {.program = "", .argument = "file://" + EscapeForAddress(folder)};
}

} // namespace tonewright
