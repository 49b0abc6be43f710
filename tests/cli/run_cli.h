// Runs tonewright-cli as its users do.
#pragma once

#include "support/paths.h"
#include "support/run_program.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {

// With these words behind the program's name.
inline ProgramResult Cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CliProgram());
    return RunProgram(arguments);
}

// A call that prints exactly this and explains nothing.
inline void ExpectOutput(const std::vector<std::string> &arguments, const std::string &output,
                         int status = 0) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ProgramResult result = Cli(arguments);
    EXPECT_EQ(result.exitStatus, status);
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.errors, "");
}

// A call that succeeds and says nothing.
inline void ExpectDone(const std::vector<std::string> &arguments) {
    ExpectOutput(arguments, "");
}

// A call that fails, prints nothing and explains itself so.
inline void ExpectFailure(const std::vector<std::string> &arguments, const std::string &reason,
                          int status = 1) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ProgramResult result = Cli(arguments);
    EXPECT_EQ(result.exitStatus, status);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n");
}

} // namespace tonewright
