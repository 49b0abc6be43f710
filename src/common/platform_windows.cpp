// What is asked of the operating system directly, on Windows.
#include "common/platform.h"

#include "common/command_line_windows.h"
#include "common/utf8_path.h"

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <cstdio>
#include <filesystem>
#include <malloc.h>

namespace tonewright {
namespace {

// The arguments of this process, without those that an expansion of wildcards has made of them.
std::vector<std::string> ReadArguments() {
    std::vector<std::string> arguments;
    int count = 0;
    if (LPWSTR *words = CommandLineToArgvW(GetCommandLineW(), &count)) {
        for (int i = 0; i < count; ++i) {
            arguments.push_back(Utf8OfPath(words[i]));
        }
        LocalFree(words);
    }
    return arguments;
}

// Where it is, or is to be made.
std::string KnownFolder(REFKNOWNFOLDERID id) {
    PWSTR path = nullptr;
    std::string folder;
    if (SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &path) == S_OK) {
        folder = Utf8OfPath(std::filesystem::path(path).make_preferred());
    }
    CoTaskMemFree(path);
    return folder;
}

} // namespace

const char PathSeparator = '\\';
const char *const PlatformLibraryExtension = "dll";

bool PlatformFileCreationTime(const char *path, std::uint64_t *time) {
    const HANDLE file = CreateFileW(PathOfUtf8(path).c_str(), GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
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
        wchar_t path[MAX_PATH + 1] = {};
        DWORD size = sizeof path;
        if (RegGetValueW(root, PathOfUtf8(key).c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path,
                         &size) == ERROR_SUCCESS &&
            path[0] != 0) {
            return Utf8OfPath(path);
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

// What main() gets is in the code page of the system, which need not hold every name of a file.
std::vector<char *> PlatformArguments(int, char **) {
    static std::vector<std::string> arguments = ReadArguments();
    std::vector<char *> texts;
    for (std::string &argument : arguments) {
        texts.push_back(argument.data());
    }
    texts.push_back(nullptr);
    return texts;
}

std::string PlatformCommandLine(int, char **) {
    return Utf8OfPath(BehindProgramName(GetCommandLineW()));
}

void PlatformUseTerminalOfParent() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if ((!output || output == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS)) {
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
    }
}

bool PlatformFindHome() {
    return true; // the system keeps it for every user
}

std::string PlatformExecutablePath() {
    constexpr std::size_t LongestPath = 32767;
    std::wstring path(LongestPath + 1, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), LongestPath + 1));
    return Utf8OfPath(path);
}

// The one that follows the user from machine to machine; the toolkit's stays on this one.
std::string PlatformApplicationDataFolder(const std::string &) {
    return KnownFolder(FOLDERID_RoamingAppData);
}

// That of 32-bit programs, where the maker's other programs look too.
std::string PlatformProgramsFolder(const std::string &) {
    return KnownFolder(FOLDERID_ProgramFilesX86);
}

std::string PlatformFontFolder() {
    return KnownFolder(FOLDERID_Fonts);
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
