// Here a process cannot become another program: the new one is waited for.
#include "cli/picture_program.h"

#include "common/command_line_windows.h"
#include "common/utf8_path.h"

#include <cerrno>
#include <cstdint>
#include <process.h>

namespace tonewright {

int RunInPlace(const std::string &program, const std::vector<std::string> &arguments) {
    std::vector<std::wstring> quoted = {QuotedWord(program)};
    for (const std::string &argument : arguments) {
        quoted.push_back(QuotedWord(argument));
    }
    std::vector<const wchar_t *> words;
    for (const std::wstring &argument : quoted) {
        words.push_back(argument.c_str());
    }
    words.push_back(nullptr);
    errno = 0;
    const intptr_t status = _wspawnv(_P_WAIT, PathOfUtf8(program).c_str(), words.data());
    if (status == -1 && errno != 0) {
        return NotStarted;
    }
    // As 0xC0000005, for an address that is not there.
    constexpr std::uint32_t firstException = 0xC0000000;
    return static_cast<std::uint32_t>(status) >= firstException ? EndedByFault
                                                                : static_cast<int>(status);
}

} // namespace tonewright
