// Runs tonewright-cli where permissions stand in the way.
#pragma once

#include "support/paths.h"
#include "support/posix_limits.h"
#include "support/run_program.h"

#include <functional>
#include <string>
#include <vector>

namespace tonewright {

// With these words behind the program's name, without root's privileges and under `permissions`;
// expectations of `judge` that fail, fail the test.
inline void RunCliUnprivileged(const std::vector<Permissions> &permissions,
                               std::vector<std::string> arguments,
                               const std::function<void(const ProgramResult &)> &judge) {
    arguments.insert(arguments.begin(), CliProgram());
    RunUnprivileged(permissions, [&] { judge(RunProgram(arguments)); });
}

} // namespace tonewright
