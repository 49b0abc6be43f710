// Here a process cannot become another program: the new one is waited for.
#include "cli/picture_program.h"

#include "common/utf8_path.h"

#include <process.h>

namespace tonewright {
namespace {

// As the receiving program takes a command line apart: in quotes, with a backslash before each
// quote inside and before each backslash that stands before a quote.
std::string Quoted(const std::string &argument) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char character : argument) {
        if (character == '\\') {
            ++backslashes;
            continue;
        }
        quoted.append(character == '"' ? 2 * backslashes + 1 : backslashes, '\\');
        backslashes = 0;
        quoted += character;
    }
    quoted.append(2 * backslashes, '\\');
    return quoted + '"';
}

} // namespace

int RunInPlace(const std::string &program, const std::vector<std::string> &arguments) {
    std::vector<std::wstring> quoted = {PathOfUtf8(Quoted(program)).wstring()};
    for (const std::string &argument : arguments) {
        quoted.push_back(PathOfUtf8(Quoted(argument)).wstring());
    }
    std::vector<const wchar_t *> words;
    for (const std::wstring &argument : quoted) {
        words.push_back(argument.c_str());
    }
    words.push_back(nullptr);
    return static_cast<int>(_wspawnv(_P_WAIT, PathOfUtf8(program).c_str(), words.data()));
}

} // namespace tonewright
