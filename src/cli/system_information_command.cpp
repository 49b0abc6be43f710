// The command that prints the report about machine and program.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "shell/system_information.h"

namespace tonewright {

int CliSystemInformation(const CliCall &) {
    for (const auto &lines : {SystemLines(ReadSystemFacts()), ProgramLines()}) {
        for (const std::string &line : lines) {
            Put(StandardOutput, line);
            Put(StandardOutput, '\n');
        }
    }
    return ExitDone;
}

} // namespace tonewright
