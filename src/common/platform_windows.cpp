// What is asked of the operating system directly, on Windows.
#include "common/platform.h"

#include "common/utf8_path.h"

#include <windows.h>

#include <filesystem>
#include <malloc.h>

namespace tonewright {

const char PathSeparator = '\\';
const char *const PlatformLibraryExtension = "dll";

bool PlatformFileCreationTime(const char *path, std::uint64_t *time) {
    const HANDLE file =
        CreateFileA(path, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    FILETIME created = {};
    const bool read = GetFileTime(file, &created, nullptr, nullptr) != 0;
    CloseHandle(file);
    if (read) {
        *time = static_cast<std::uint64_t>(created.dwHighDateTime) << 32 | created.dwLowDateTime;
    }
    return read;
}

std::size_t PlatformBlockSize(const void *block) {
    return _msize(const_cast<void *>(block));
}

std::string PlatformBrowserProgram(const char *windowsProgram) {
    const std::string key =
        std::string("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\") + windowsProgram;
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        char path[MAX_PATH + 1] = {};
        DWORD size = MAX_PATH;
        if (RegGetValueA(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size) ==
                ERROR_SUCCESS &&
            path[0] != 0) {
            return path;
        }
    }
    return windowsProgram;
}

std::string PlatformLines(std::string text) {
    std::string lines;
    for (const char character : text) {
        if (character == '\n') {
            lines += '\r';
        }
        lines += character;
    }
    return lines;
}

void PlatformLetLongWritesFail() {} // no such signal here

std::string PlatformExecutablePath() {
    wchar_t path[MAX_PATH + 1] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return Utf8OfPath(std::filesystem::path(path, path + (length < MAX_PATH ? length : 0)));
}

std::vector<std::string> PlatformSystemConfigurationFolders() {
    const std::string program = PlatformExecutablePath();
    const std::size_t separator = program.rfind(PathSeparator);
    if (separator == std::string::npos) {
        return {};
    }
    return {program.substr(0, separator)};
}

FileManagerCall PlatformFileManagerCall(const std::string &folder, const std::string &file) {
    const std::string quoted =
        file.empty() ? "\"" + folder + "\"" : "/select,\"" + folder + "\\" + file + "\"";
    return {.program = "explorer.exe", .argument = quoted};
}

} // namespace tonewright
