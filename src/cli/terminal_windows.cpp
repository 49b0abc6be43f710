// The terminal, for Windows.
#include "cli/terminal.h"

#include <cstdio>

#include <io.h>

namespace tonewright {

bool StandardInputIsTerminal() {
    return _isatty(_fileno(stdin)) != 0;
}

bool StandardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

} // namespace tonewright
