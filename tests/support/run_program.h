// Runs a program as a user would and hands back all that it said.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

struct ProgramResult {
    int exitStatus = -1; // -1 when the program could not be started or was ended by a signal
    std::string output;  // standard output
    std::string errors;  // standard error
};

// `command`: path of the program and its arguments, handed over as they are (no shell). Waits until
// the program has ended; its standard input is empty.
ProgramResult RunProgram(const std::vector<std::string> &command);

} // namespace tonewright
