// Runs tonewright-cli as its users do.
#pragma once

#include "support/paths.h"
#include "support/run_program.h"

#include <string>
#include <vector>

namespace tonewright {

// With these words behind the program's name.
inline ProgramResult Cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CliProgram());
    return RunProgram(arguments);
}

} // namespace tonewright
