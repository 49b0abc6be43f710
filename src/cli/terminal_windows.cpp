// The terminal, for Windows.
#include "cli/terminal.h"

#include <cstdlib>

#include <windows.h>

namespace tonewright {
namespace {

// The library takes every device for one, NUL too.
bool IsTerminal(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

} // namespace

void UseUtf8Terminal() {
    static const UINT former = GetConsoleOutputCP(); // 0 without a terminal
    if (former != 0 && SetConsoleOutputCP(CP_UTF8)) {
        std::atexit([] { SetConsoleOutputCP(former); });
    }
}

bool StandardInputIsTerminal() {
    return IsTerminal(STD_INPUT_HANDLE);
}

bool StandardErrorIsTerminal() {
    return IsTerminal(STD_ERROR_HANDLE);
}

} // namespace tonewright
