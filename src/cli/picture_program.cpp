// Hands the commands that paint to tonewright-picture, which takes the same command line.
#include "cli/picture_program.h"

#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "common/platform.h"
#include "common/text.h"

#include <cerrno>
#include <cstring>

namespace tonewright {
namespace {

constexpr const char *ProgramName = "tonewright-picture";

// The arguments of a call of `command`, from which the same call can be read.
std::vector<std::string> ArgumentsOf(const char *command, const CliCall &call) {
    std::vector<std::string> arguments;
    for (const CliOptionRow &row : CliOptions) {
        if (const char *value = call[row.option]) {
            arguments.emplace_back(row.name);
            if (row.valueName) {
                arguments.emplace_back(value);
            }
        }
    }
    arguments.emplace_back("--");
    for (const std::string &word : SplitList(command, ' ')) {
        arguments.push_back(word);
    }
    arguments.insert(arguments.end(), call.words.begin(), call.words.end());
    return arguments;
}

// Runs it as this call of `command`.
int RunPainting(const char *command, const CliCall &call) {
    const std::string self = PlatformExecutablePath();
    const std::string extension = ExtensionOfPath(self);
    const std::string program =
        FolderOfPath(self) + ProgramName + (extension.empty() ? "" : "." + extension);
    const int status = RunInPlace(program, ArgumentsOf(command, call));
    if (status == EndedByFault) {
        TellError(program, "has ended unexpectedly");
        return ExitFailed;
    }
    if (status == NotStarted) {
        TellError(program, std::string("could not be started: ") + std::strerror(errno));
        return ExitFailed;
    }
    return status;
}

} // namespace

int CliPicture(const CliCall &call) {
    return RunPainting("picture", call);
}

int CliThemes(const CliCall &call) {
    return RunPainting("themes", call);
}

int CliPrint(const CliCall &call) {
    return RunPainting("print", call);
}

int CliDbPrint(const CliCall &call) {
    return RunPainting("db print", call);
}

} // namespace tonewright
