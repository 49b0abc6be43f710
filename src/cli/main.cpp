// tonewright-cli, the program without windows: for scripts, for servers and for tests from outside.
#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/midi_session.h"
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

constexpr unsigned Answers = OptionBit(CliOption::Yes) | OptionBit(CliOption::No);
// Of whatever writes voices into a file or sends them.
constexpr unsigned Careful = OptionBit(CliOption::Careful) | OptionBit(CliOption::NoCareful);
// Of what unpacks the voices of a bank.
constexpr unsigned Detune = OptionBit(CliOption::WholeDetune) | OptionBit(CliOption::NoWholeDetune);
constexpr unsigned Extras = Careful | Detune;
constexpr unsigned Always = OptionBit(CliOption::Help) | OptionBit(CliOption::Version);

constexpr const char *HelpOfEdit =
    "\nNames and values are those that show prints. For a value of a list the part of it in\n"
    "front of the parentheses or within them will do, or its number from 0; for a switch yes\n"
    "and no, or 1 and 0. All is checked before anything is written.\n"
    "What opening a bank of the DX7 family loses is lost for its other voices too: a detune\n"
    "above 0 comes back 8 lower, but with --whole-detune. Such a bank keeps no level of an\n"
    "operator that is switched off.\n";

constexpr const char *HelpOfSettingsSet =
    "\nNames and values are those that get prints. Refused are those that an instrument may hold\n"
    "and nobody can give it: a tempo below 30 or above 255, a master tune with an odd tenth or\n"
    "outside of 414.8 to 466.8, a transpose outside of -12 to 12, an LCD contrast above 63, and\n"
    "the number that get prints where a list has no word. Nothing is sent then.\n";

constexpr const char *HelpOfSettingsLoad =
    "\nA question is asked before a file is sent that does not tell all settings, or that holds\n"
    "numbers above 127. Then it is looked whether the instrument has what was sent.\n";

constexpr CliCommand Commands[] = {
    {"list", "FILE...", "print place, name and algorithm (also one above 32) of each voice", 1,
     AnyNumber, Answers, CliList},
    {"check", "FILE...", "say of each file whether it is ok, refused or damaged, and why", 1,
     AnyNumber, 0, CliCheck},
    {"save", "IN OUT", "open a bank and write it again", 2, 2, Answers | Extras, CliSave},
    {"move", "IN FROM TO OUT", "write a bank with the voice at FROM moved to stand at TO", 4, 4,
     Answers | Extras, CliMove},
    {"export", "IN PLACE OUT", "write the voice at PLACE into a file of its own", 3, 3,
     Answers | Extras, CliExport},
    {"import", "IN PLACE VOICE OUT", "write a bank with the voice of the file VOICE at PLACE", 4, 4,
     Answers | Extras, CliImport},
    {"show", "FILE PLACE", "print name and value of each parameter of the voice at PLACE", 2, 2,
     Answers | Detune, CliShow},
    {"edit", "FILE PLACE NAME=VALUE... OUT", "write the file with these parameters changed", 4,
     AnyNumber, Answers | Extras, CliEdit, HelpOfEdit},
    {"picture", "FILE OUT.png", "paint the main window with a bank open", 2, 2,
     Answers | OptionBit(CliOption::Screen), CliPicture},
    {"print", "FILE OUT.pdf", "print the voices of a bank on a page", 2, 2,
     Answers | OptionBit(CliOption::Paper), CliPrint},
    {"config", "FILE", "print every setting as the program would read it from FILE", 1, 1, 0,
     CliConfig},
    {"settings", "WHAT [KEY [VALUE]]", "list, get or set the user's settings", 1, 3, 0,
     CliSettings},
    {"history", "", "print the documents in the history of the File menu", 0, 0,
     OptionBit(CliOption::File), CliHistory},
    {"colours", "FILE", "print name, red, green and blue of each color of a color table", 1, 1, 0,
     CliColours},
    {"themes", "", "print name and file of each theme, and whether it loads or why not", 0, 0, 0,
     CliThemes},
    {"tip", "", "print the tip of the day that comes next, which stays the next one", 0, 0, 0,
     CliTip},
    {"system-information", "", "print facts about the machine and the program", 0, 0, 0,
     CliSystemInformation},
    {"ports", "", "print index, interface, name, input and output of each MIDI port", 0, 0, 0,
     CliPorts},
    {"find", "", "look for the instrument; print its name, firmware and ports", 0, 0, MidiOptions,
     CliFind},
    {"upload", "FILE", "send the bank to the instrument", 1, 1, Answers | Extras | MidiOptions,
     CliUpload},
    {"upload-voice", "FILE PLACE", "send the voice at PLACE to the instrument's edit buffer", 2, 2,
     Answers | Extras | MidiOptions, CliUploadVoice},
    {"download", "OUT", "write the voices of the instrument as a bank", 1, 1,
     Answers | Careful | MidiOptions, CliDownload},
    {"play", "FILE PLACE NOTE...", "send the voice at PLACE and play it: 0 to 127, or C-2 to G8", 3,
     AnyNumber, Answers | Extras | MidiOptions, CliPlay},
    {"memory", "MEMORY NAME OUT", "write what a built-in instrument holds as a bank or voice", 3, 3,
     Answers | Extras, CliMemory},
    {"reface-settings get", "[KEY...]", "print these or all settings of a reface DX", 0, AnyNumber,
     MidiOptions, CliRefaceSettingsGet},
    {"reface-settings set", "KEY=VALUE...", "change settings of a reface DX", 1, AnyNumber,
     MidiOptions, CliRefaceSettingsSet, HelpOfSettingsSet},
    {"reface-settings save", "OUT.crg", "write the settings of a reface DX into a file", 1, 1,
     Answers | Careful | MidiOptions, CliRefaceSettingsSave},
    {"reface-settings load", "FILE.crg", "send the settings of a file to a reface DX", 1, 1,
     Answers | MidiOptions, CliRefaceSettingsLoad, HelpOfSettingsLoad},
    {"db names", "", "print name, family, records, bytes and path of each catalogue", 0, 0, 0,
     CliDbNames},
    {"db add", "FILE...", "add the voices of banks and single voices to their catalogues", 1,
     AnyNumber, Answers | Extras | OptionBit(CliOption::Database), CliDbAdd},
    {"db list", "", "print N, name, source, date and position of each record", 0, 0,
     DatabaseOptions | OptionBit(CliOption::Sort), CliDbList},
    {"db find", "TEXT", "print the same of the records whose name or source holds TEXT", 1, 1,
     DatabaseOptions, CliDbFind},
    {"db export", "N OUT", "write the voice of record N into a file of its own", 2, 2,
     Answers | Careful | DatabaseOptions, CliDbExport},
    {"db insert", "BANK PLACE N OUT", "write a bank with the voice of record N at PLACE", 4, 4,
     Answers | Extras | OptionBit(CliOption::Database), CliDbInsert},
    {"db check", "", "say what is wrong with a catalogue, and with which records", 0, 0,
     DatabaseOptions, CliDbCheck},
    {"db print", "OUT.pdf", "print the records as a table", 1, 1,
     DatabaseOptions | OptionBit(CliOption::Sort) | OptionBit(CliOption::Paper), CliDbPrint},
};

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
    for (const CliCommand &command : Commands) {
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
    PutOptions(output, command.options | Always);
    if (command.options & OptionBit(CliOption::In)) {
        Put(output, '\n');
        Put(output, MidiHelp());
    }
}

// The command that the first words name, of which `taken` are its name; or nullptr.
const CliCommand *CommandOfWords(std::span<char *const> words, std::size_t &taken) {
    std::string name;
    for (taken = 1; taken <= std::min<std::size_t>(words.size(), 2); ++taken) {
        const std::string_view word = words[taken - 1];
        if (word.find(' ') != std::string_view::npos) {
            return nullptr; // a name of two words is two arguments
        }
        name += (taken > 1 ? " " : "") + std::string(word);
        const auto *command = std::ranges::find(Commands, name, &CliCommand::name);
        if (command != std::end(Commands)) {
            return command;
        }
    }
    return nullptr;
}

// True for a command whose name begins with this word and a blank.
bool IsOfGroup(const CliCommand &command, std::string_view group) {
    return std::string_view(command.name).starts_with(std::string(group) + ' ');
}

// What may stand behind the first word of a group's commands; empty for what is no group.
std::string NamesOfGroup(std::string_view group) {
    std::string names;
    for (const CliCommand &command : Commands) {
        if (IsOfGroup(command, group)) {
            names += (names.empty() ? "" : ", ") + std::string(command.name + group.size() + 1);
        }
    }
    return names;
}

void PutHelpOfGroup(TextOutput &output, const std::string &group) {
    Put(output, "usage: tonewright-cli " + group + " COMMAND [ARGUMENT...]\n\nCommands:\n");
    for (const CliCommand &command : Commands) {
        if (IsOfGroup(command, group)) {
            PutColumns(output, CallOf(command), command.help);
        }
    }
}

// The option that was given and that the command does not take; null: none.
const CliOptionRow *ForeignOption(const CliCommand &command, const CliCall &call) {
    for (const CliOptionRow &row : CliOptions) {
        if (call[row.option] && !(OptionBit(row.option) & (command.options | Always))) {
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
    std::span<char *> arguments(argv, static_cast<std::size_t>(argc));
    int status = Run(arguments.empty() ? arguments : arguments.subspan(1));
    errno = 0;
    if (!Flush(StandardOutput)) {
        TellError("standard output", errno ? std::strerror(errno) : "could not be written");
        status = ExitFailed;
    }
    Flush(StandardError);
    return status;
}
