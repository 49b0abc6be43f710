// Here a process cannot become another program: the new one is waited for.
#include "cli/picture_program.h"

#include "common/command_line_windows.h"
#include "common/utf8_path.h"

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
    return static_cast<int>(_wspawnv(_P_WAIT, PathOfUtf8(program).c_str(), words.data()));
}

} // namespace tonewright
