// The terminal, for Windows.
#include "cli/terminal.h"

#include <cstdio>
#include <cstdlib>

#include <io.h>
#include <windows.h>

namespace tonewright {

void UseUtf8Terminal() {
    static const UINT former = GetConsoleOutputCP(); // 0 without a terminal
    if (former != 0 && SetConsoleOutputCP(CP_UTF8)) {
        std::atexit([] { SetConsoleOutputCP(former); });
    }
}

bool StandardInputIsTerminal() {
    return _isatty(_fileno(stdin)) != 0;
}

bool StandardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

} // namespace tonewright
