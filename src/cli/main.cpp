// tonewright-cli, the program without windows: for scripts, for servers and for tests from outside.
#include "cli/command_table.h"
#include "cli/midi_session.h"
#include "cli/terminal.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/platform.h"
#include "common/text.h"
#include "common/version.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tonewright {
namespace {

void PutColumns(TextOutput &output, std::string_view left, std::string_view right) {
    constexpr std::size_t RightColumn = 32;
    std::string line = "  " + std::string(left);
    line.resize(std::max(line.size() + 2, RightColumn), ' ');
    Put(output, line);
    Put(output, right);
    Put(output, '\n');
}

void PutOptions(TextOutput &output, unsigned options) {
    Put(output, "\nOptions, anywhere on the line (-- ends them):\n");
    for (const CliOptionRow &row : CliOptions) {
        if (options & OptionBit(row.option)) {
            std::string left(row.name);
            if (row.valueName) {
                left += std::string(" ") + row.valueName;
            }
            PutColumns(output, left, row.help);
        }
    }
}

// The command's name and its arguments, if it takes any.
std::string CallOf(const CliCommand &command) {
    return std::string(command.name) + (*command.arguments ? " " : "") + command.arguments;
}

std::string UsageOf(const CliCommand &command) {
    return "usage: tonewright-cli " + CallOf(command) + "\n";
}

void PutHelp(TextOutput &output) {
    Put(output, "usage: tonewright-cli COMMAND [ARGUMENT...]\n\nCommands:\n");
    for (const CliCommand &command : CliCommands) {
        PutColumns(output, CallOf(command), command.help);
    }
    PutOptions(output, ~0u);
    Put(output, '\n');
    Put(output, MidiHelp());
    Put(output, "\nPlaces count from 1. Output is tab-separated, one record a line. Exit status: 0 "
                "success,\n1 a failure told on standard error, 2 a wrong call.\n");
}

void PutHelpOf(TextOutput &output, const CliCommand &command) {
    Put(output, UsageOf(command));
    Put(output, command.help);
    Put(output, '\n');
    Put(output, command.more);
    PutOptions(output, command.options | CliOptionsOfAll);
    if (command.options & OptionBit(CliOption::In)) {
        Put(output, '\n');
        Put(output, MidiHelp());
    }
}

// What may stand behind the first word of a group's commands; empty for what is no group.
std::string NamesOfGroup(std::string_view group) {
    std::string names;
    for (const CliCommand &command : CliCommands) {
        if (IsOfGroup(command, group)) {
            names += (names.empty() ? "" : ", ") + std::string(command.name + group.size() + 1);
        }
    }
    return names;
}

void PutHelpOfGroup(TextOutput &output, const std::string &group) {
    Put(output, "usage: tonewright-cli " + group + " COMMAND [ARGUMENT...]\n\nCommands:\n");
    for (const CliCommand &command : CliCommands) {
        if (IsOfGroup(command, group)) {
            PutColumns(output, CallOf(command), command.help);
        }
    }
}

// The option that was given and that the command does not take; null: none.
const CliOptionRow *ForeignOption(const CliCommand &command, const CliCall &call) {
    for (const CliOptionRow &row : CliOptions) {
        if (call[row.option] && !(OptionBit(row.option) & (command.options | CliOptionsOfAll))) {
            return &row;
        }
    }
    return nullptr;
}

int WrongCall(std::string_view reason, const CliCommand *command) {
    TellError("", reason);
    Put(StandardError, command
                           ? UsageOf(*command)
                           : "usage: tonewright-cli COMMAND [ARGUMENT...]; --help tells more\n");
    return ExitWrongCall;
}

int Run(std::span<char *> arguments) {
    CliCall call;
    if (const auto reason = ReadCommandLine(arguments, call)) {
        return WrongCall(*reason, nullptr);
    }
    if (call[CliOption::Version]) {
        Put(StandardOutput,
            FormatText("tonewright-cli %s revision %d\n", ProgramVersion, ProgramRevision));
        return ExitDone;
    }
    if (call.words.empty()) {
        if (call[CliOption::Help]) {
            PutHelp(StandardOutput);
            return ExitDone;
        }
        return WrongCall("no command", nullptr);
    }
    std::size_t taken = 0;
    const CliCommand *command = CommandOfWords(call.words, taken);
    const std::string members = command ? "" : NamesOfGroup(call.words[0]);
    if (!members.empty()) {
        if (call[CliOption::Help]) {
            PutHelpOfGroup(StandardOutput, call.words[0]);
            return ExitDone;
        }
        const std::string group(call.words[0]);
        return WrongCall(call.words.size() > 1
                             ? group + " takes " + members + ", not " + FieldText(call.words[1])
                             : group + " lacks a command: " + members,
                         nullptr);
    }
    if (!command) {
        return WrongCall(std::string("unknown command ") + FieldText(call.words[0]), nullptr);
    }
    if (call[CliOption::Help]) {
        PutHelpOf(StandardOutput, *command);
        return ExitDone;
    }
    call.words = call.words.subspan(taken);
    if (const CliOptionRow *foreign = ForeignOption(*command, call)) {
        return WrongCall(FormatText("%s takes no %s", command->name, foreign->name.data()),
                         command);
    }
    if (call.words.size() < command->minimumWords) {
        return WrongCall(FormatText("%s lacks arguments", command->name), command);
    }
    if (call.words.size() > command->maximumWords) {
        return WrongCall(FormatText("%s has too many arguments", command->name), command);
    }
    ReadExtras(call);
    return command->run(call);
}

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    using namespace tonewright;
    PlatformLetLongWritesFail();
    UseUtf8Terminal();
    std::vector<char *> texts = PlatformArguments(argc, argv);
    const std::span<char *> arguments(texts.data(), texts.size() - 1);
    int status = Run(arguments.empty() ? arguments : arguments.subspan(1));
    errno = 0;
    if (!Flush(StandardOutput)) {
        TellError("standard output", errno ? std::strerror(errno) : "could not be written");
        status = ExitFailed;
    }
    Flush(StandardError);
    return status;
}
