// Words of command lines, by the rules of the system's own library.
#include "common/command_line_windows.h"

#include "common/utf8_path.h"

namespace tonewright {

std::wstring QuotedWord(const std::string &argument) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : PathOfUtf8(argument).wstring()) {
        if (character == L'\\') {
            ++backslashes;
            continue;
        }
        quoted.append(character == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        quoted += character;
    }
    quoted.append(2 * backslashes, L'\\');
    return quoted + L'"';
}

std::wstring_view BehindProgramName(std::wstring_view commandLine) {
    std::size_t end = 0;
    bool quoted = false;
    while (end < commandLine.size() && (quoted || commandLine[end] > L' ')) {
        quoted = quoted != (commandLine[end] == L'"');
        ++end;
    }
    while (end < commandLine.size() && commandLine[end] <= L' ') {
        ++end;
    }
    return commandLine.substr(end);
}

} // namespace tonewright
