// Runs a program in a child process with its output going to temporary files.
#include "support/run_program.h"

#include "common/command_line_windows.h"
#include "support/temp_folder.h"

#include <windows.h>

namespace tonewright {
namespace {

// A file that a child process inherits open, as long as this lives.
struct InheritedFile {
    HANDLE handle;

    InheritedFile(const std::filesystem::path &path, DWORD access, DWORD whenToMake) {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                             whenToMake, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~InheritedFile() { CloseHandle(handle); }
    InheritedFile(const InheritedFile &) = delete;
    InheritedFile &operator=(const InheritedFile &) = delete;
};

// Text as its writer meant it: lines end in line feeds.
std::string ReadLines(const std::string &path) {
    std::string lines;
    for (const char character : ReadTestText(path)) {
        if (character == '\n' && lines.ends_with('\r')) {
            lines.back() = '\n';
        } else {
            lines += character;
        }
    }
    return lines;
}

} // namespace

ProgramResult RunProgram(const std::vector<std::string> &command) {
    std::wstring line;
    for (const std::string &word : command) {
        line += (line.empty() ? L"" : L" ") + QuotedWord(word);
    }
    const TempFolder folder;
    ProgramResult result;
    {
        const InheritedFile input("NUL", GENERIC_READ, OPEN_EXISTING);
        const InheritedFile output(folder.path / "output", GENERIC_WRITE, CREATE_NEW);
        const InheritedFile errors(folder.path / "errors", GENERIC_WRITE, CREATE_NEW);
        STARTUPINFOW start = {};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = input.handle;
        start.hStdOutput = output.handle;
        start.hStdError = errors.handle;
        PROCESS_INFORMATION process = {};
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                           nullptr, &start, &process)) {
            WaitForSingleObject(process.hProcess, INFINITE);
            DWORD status = 0;
            constexpr DWORD firstException = 0xC0000000;
            if (GetExitCodeProcess(process.hProcess, &status) && status < firstException) {
                result.exitStatus = static_cast<int>(status);
            }
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
    }
    result.output = ReadLines(folder.File("output"));
    result.errors = ReadLines(folder.File("errors"));
    return result;
}

} // namespace tonewright
