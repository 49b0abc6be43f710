// The command that prints the report about machine and program.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "shell/system_information.h"

#include <string>

namespace tonewright {

int CliSystemInformation(const CliCall &) {
    for (const auto &lines : {SystemLines(ReadSystemFacts()), ProgramLines()}) {
        for (const std::string &line : lines) {
            const std::size_t tab = line.find('\t');
            Put(StandardOutput, FieldText(line.substr(0, tab)));
            Put(StandardOutput, '\t');
            Put(StandardOutput, FieldText(line.substr(tab + 1)));
            Put(StandardOutput, '\n');
        }
    }
    return ExitDone;
}

} // namespace tonewright
