// Runs tonewright-cli as a user who is not root.
#pragma once

#include "support/environment.h"
#include "support/paths.h"
#include "support/posix_limits.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tonewright {

// With these words behind the program's name; expectations of `judge` that fail, fail the test.
// What runs is a copy, since such a user may be kept out of the folder that the program was built
// in; the same goes for the list of what libraries leak.
inline void RunCliUnprivileged(std::vector<std::string> arguments,
                               const std::function<void(const ProgramResult &)> &judge) {
    const TempFolder open;
    const std::string program = open.File("tonewright-cli");
    const std::string leaks = open.File("lsan.supp");
    std::filesystem::copy_file(CliProgram(), program);
    std::filesystem::copy_file(SourceFile("tests/lsan.supp"), leaks);
    for (const std::string &path : {open.path.string(), program, leaks}) {
        ASSERT_EQ(chmod(path.c_str(), 0755), 0);
    }
    arguments.insert(arguments.begin(), program);
    RunUnprivileged([&] {
        const std::string options = "suppressions=" + leaks + ":print_suppressions=0";
        SetVariable("LSAN_OPTIONS", options);
        judge(RunProgram(arguments));
    });
}

} // namespace tonewright
