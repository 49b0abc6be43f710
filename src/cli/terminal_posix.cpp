// The terminal, for POSIX systems.
#include "cli/terminal.h"

#include <unistd.h>

namespace tonewright {

void UseUtf8Terminal() {} // it does so by the user's locale

bool StandardInputIsTerminal() {
    return isatty(STDIN_FILENO) != 0;
}

bool StandardErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

} // namespace tonewright
