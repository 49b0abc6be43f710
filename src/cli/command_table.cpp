// The commands of the command-line program: what each takes, and what runs it.
#include "cli/command_table.h"

#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/midi_session.h"

#include <algorithm>
#include <string>

namespace tonewright {
namespace {

constexpr unsigned Answers = OptionBit(CliOption::Yes) | OptionBit(CliOption::No);
// Of whatever writes voices into a file or sends them.
constexpr unsigned Careful = OptionBit(CliOption::Careful) | OptionBit(CliOption::NoCareful);
// Of what unpacks the voices of a bank.
constexpr unsigned Detune = OptionBit(CliOption::WholeDetune) | OptionBit(CliOption::NoWholeDetune);
constexpr unsigned Extras = Careful | Detune;
// Of what plays notes into a sound file.
constexpr unsigned Notes = OptionBit(CliOption::Note) | OptionBit(CliOption::Velocity) |
                           OptionBit(CliOption::Seconds) | OptionBit(CliOption::Release) |
                           OptionBit(CliOption::Rate) | OptionBit(CliOption::Bits);

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

constexpr const char *HelpOfRender =
    "\nA built-in instrument of the file's family plays it, without a device and faster than it\n"
    "sounds: C3, which is 60, unless --note names another, or up to 64 of them for a chord. It is\n"
    "held for 2 seconds. Then it sounds on until it has died away, for 5 seconds at most, of "
    "which\n"
    "the last 5 thousandths fade what still sounds. The same call writes the same bytes.\n";

constexpr const char *HelpOfComplete =
    "\nThe words are those of a call behind the program's name, the last one as far as it is\n"
    "typed, and stand behind \"--\". Each line is \"word\", a word and what it means, or "
    "\"files\"\n"
    "and the extensions of the files that may stand there, or none for any.\n";

constexpr const char *HelpOfIdentify =
    "\nA line for each dump: file, offset and length in bytes, what it is, the number of its "
    "whole\n"
    "voices, and what is wrong with it. Of a folder every file in it and below is read.\n";

constexpr const char *HelpOfRescue =
    "\nEach bank becomes a file of its own, filled up with initial voices where fewer than 32 are\n"
    "whole; a voice that stands alone becomes a single-voice file. They are named as the file "
    "that\n"
    "they come from, with a number where there is such a file: none is written over. A line for\n"
    "each: file, offset, what it was, voices, what was wrong, and the path that was written. "
    "Voices\n"
    "with bytes above 7F are asked about.\n";

// Of what looks into the archive.
constexpr unsigned Archive = OptionBit(CliOption::Archive);
constexpr unsigned Filters = OptionBit(CliOption::Algorithm) | OptionBit(CliOption::Instrument) |
                             OptionBit(CliOption::Folder);

constexpr const char *HelpOfArchiveAdd =
    "\nThe archive is an index; the files stay where they are, and are never changed. Afterwards "
    "it\n"
    "prints how many files were added, changed, moved and so on, and what is in the archive now.\n"
    "Files that could not be read are told, and the others are in it.\n";

constexpr const char *HelpOfArchiveFind =
    "\nA line for each voice: its id, name, instrument, algorithm, how often it is found, and "
    "file\n"
    "and place of the first one that fits, in the order of the names. Each word stands somewhere\n"
    "in the name; \"\" finds all. Voices that sound the same are one, whatever they are called.\n";

constexpr const char *HelpOfArchiveDuplicates =
    "\nA line for each place, as find prints it, those of the voice that is found most first.\n";

constexpr const char *HelpOfArchiveSimilar =
    "\nThe twenty that are nearest, the nearest first: how far each is, then what find prints.\n"
    "FILE may be any file with voices; the voice itself is not among them.\n";

constexpr const char *HelpOfArchiveMakeBank =
    "\nThe bytes are those of the files that the voices are found in, with all bits of each "
    "detune;\n"
    "initial voices fill up the bank. A question is asked before a file is replaced.\n";

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
    {"sound", "", "print name, interface, rate and default of each sound device", 0, 0, 0,
     CliSound},
    {"find", "", "look for the instrument; print its name, firmware and ports", 0, 0, MidiOptions,
     CliFind},
    {"upload", "FILE", "send the bank to the instrument", 1, 1, Answers | Extras | MidiOptions,
     CliUpload},
    {"upload-voice", "FILE PLACE", "send the voice at PLACE to the instrument's edit buffer", 2, 2,
     Answers | Extras | MidiOptions, CliUploadVoice},
    {"download", "OUT", "write the voices of the instrument as a bank", 1, 1,
     Answers | Careful | MidiOptions, CliDownload},
    {"play", "FILE PLACE NOTE...", "send the voice at PLACE and play it: 0 to 127, or C-2 to G8", 3,
     AnyNumber, Answers | Extras | MidiOptions | OptionBit(CliOption::Silent), CliPlay},
    {"render", "FILE PLACE OUT.wav", "write how the voice at PLACE sounds as a sound file", 3, 3,
     Answers | Extras | Notes, CliRender, HelpOfRender},
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
    {"identify", "FILE...", "say what dumps any file holds, where, and what is wrong with each", 1,
     AnyNumber, 0, CliIdentify, HelpOfIdentify},
    {"rescue", "IN...", "write every bank and voice in any file into files of --into", 1, AnyNumber,
     Answers | OptionBit(CliOption::Into), CliRescue, HelpOfRescue},
    {"archive add", "FOLDER...", "add folders, and all below them, to the archive of voices", 1,
     AnyNumber, Archive, CliArchiveAdd, HelpOfArchiveAdd},
    {"archive update", "", "look what has changed in the folders of the archive", 0, 0, Archive,
     CliArchiveUpdate},
    {"archive find", "TEXT...", "print the voices whose name holds each word", 1, AnyNumber,
     Archive | Filters, CliArchiveFind, HelpOfArchiveFind},
    {"archive duplicates", "", "print the places of voices that are found more than once", 0, 0,
     Archive | Filters, CliArchiveDuplicates, HelpOfArchiveDuplicates},
    {"archive similar", "FILE PLACE", "print the voices that sound like the one at PLACE", 2, 2,
     Archive, CliArchiveSimilar, HelpOfArchiveSimilar},
    {"archive show", "ID", "print every place where the voice is found", 1, 1, Archive,
     CliArchiveShow},
    {"archive make-bank", "OUT ID...", "write a bank of these voices, at most 32", 2, 33,
     Answers | Archive, CliArchiveMakeBank, HelpOfArchiveMakeBank},
    {"archive forget", "FOLDER", "take a folder out of the archive; its files stay", 1, 1, Archive,
     CliArchiveForget},
    {"archive check", "", "say whether the archive is whole", 0, 0, Archive, CliArchiveCheck},
    {"complete", "WORD...", "print what the last word of a call may become, for a shell", 1,
     AnyNumber, 0, CliComplete, HelpOfComplete},
};

} // namespace

const std::span<const CliCommand> CliCommands = Commands;

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

bool IsOfGroup(const CliCommand &command, std::string_view group) {
    return std::string_view(command.name).starts_with(std::string(group) + ' ');
}

} // namespace tonewright
