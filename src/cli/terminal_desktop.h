// The desktop table of the command-line program: messages on standard error, questions answered by
// --yes and --no or on the terminal.
#pragma once

#include "cli/command_line.h"

namespace tonewright {

// Makes TheDesktop ask and tell here. Without an option and without a terminal every answer is no.
void UseTerminalDesktop(const CliCall &call);

// True when a question has been answered with no.
bool SomethingWasRefused();

} // namespace tonewright
