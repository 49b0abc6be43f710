// Takes the command line apart.
#include "cli/command_line.h"

#include "common/text.h"

#include <charconv>
#include <utility>

namespace tonewright {
namespace {

constexpr int LargestPlace = 9'999'999;
constexpr int LastChannel = 16;
constexpr int LastNote = 127;
constexpr int LowestVelocity = 1, HighestVelocity = 127;
constexpr int LowestSoundRate = 8'000, HighestSoundRate = 192'000;
constexpr int LowestOctave = -2, HighestOctave = 8, NotesInAnOctave = 12;
constexpr int SmallestScreen = 200, LargestScreen = 16'384;

const CliOptionRow *OptionOfName(std::string_view name) {
    for (const CliOptionRow &row : CliOptions) {
        if (row.name == name) {
            return &row;
        }
    }
    return nullptr;
}

const CliOptionRow &RowOf(CliOption option) {
    return CliOptions[static_cast<std::size_t>(option)];
}

// Options that exclude each other.
constexpr std::pair<CliOption, CliOption> Opposites[] = {
    {CliOption::Yes, CliOption::No},
    {CliOption::Careful, CliOption::NoCareful},
    {CliOption::WholeDetune, CliOption::NoWholeDetune},
};

std::optional<int> ReadNumber(std::string_view text, int smallest, int largest) {
    int number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < smallest || number > largest) {
        return std::nullopt;
    }
    return number;
}

} // namespace

const std::array<CliOptionRow, CliOptionCount> CliOptions = {{
    {CliOption::Yes, "--yes", nullptr, "answer every question with yes"},
    {CliOption::No, "--no", nullptr, "answer every question with no"},
    {CliOption::Screen, "--screen", "WIDTHxHEIGHT", "size of the screen in pixels (1920x1080)"},
    {CliOption::File, "--file", "FILE", "a history file other than the user's"},
    {CliOption::Synth, "--synth", "NAME", "the instrument, by its name or a part of it"},
    {CliOption::In, "--in", "NAME", "the MIDI input, by its name or a part of it"},
    {CliOption::Out, "--out", "NAME", "the MIDI output, by its name or a part of it"},
    {CliOption::Channel, "--channel", "N", "the MIDI channel, 1 to 16"},
    {CliOption::Trace, "--trace", nullptr, "print every MIDI message on standard error"},
    {CliOption::Memory, "--memory", "FILE", "keep the memory of the built-in instruments there"},
    {CliOption::Silent, "--silent", nullptr, "do not let the built-in instruments be heard"},
    {CliOption::Careful, "--careful", nullptr, "careful mode: lose no voice and no former file"},
    {CliOption::NoCareful, "--no-careful", nullptr, "the plain ways, whatever Extras.ini says"},
    {CliOption::WholeDetune, "--whole-detune", nullptr, "keep all steps of a packed detune"},
    {CliOption::NoWholeDetune, "--no-whole-detune", nullptr, "read three bits of a packed detune"},
    {CliOption::Database, "--database", "NAME|PATH", "a catalogue other than the current one"},
    {CliOption::Sort, "--sort", "FIELD", "the order: name, source, date or position"},
    {CliOption::Paper, "--paper", "SIZE",
     "the size of the pages: A4, which is taken without it, or Letter"},
    {CliOption::Note, "--note", "NOTE",
     "a note to play, 0 to 127 or C-2 to G8; several are a chord"},
    {CliOption::Velocity, "--velocity", "N", "how hard its key is hit, 1 to 127 (100)"},
    {CliOption::Seconds, "--seconds", "S", "how long it is held, 0.01 to 1800 (2)"},
    {CliOption::Release, "--release", "S", "how long it may sound on, 0 to 60 (5)"},
    {CliOption::Rate, "--rate", "N", "frames a second, 8000 to 192000 (48000)"},
    {CliOption::Bits, "--bits", "KIND", "the samples: 16, which is taken without it, 24 or 32f"},
    {CliOption::Into, "--into", "FOLDER", "the folder for what is written"},
    {CliOption::Archive, "--archive", "FILE", "an archive other than the user's"},
    {CliOption::Algorithm, "--algorithm", "N", "voices of this algorithm, 1 to 32, alone"},
    {CliOption::Instrument, "--instrument", "NAME",
     "voices of this instrument alone: dx7 or reface"},
    {CliOption::Folder, "--folder", "FOLDER", "voices in this folder and below it alone"},
    {CliOption::Help, "--help", nullptr, "show this help, or that of a command"},
    {CliOption::Version, "--version", nullptr, "show the program's version"},
}};

std::optional<std::string> ReadCommandLine(std::span<char *> arguments, CliCall &call) {
    call = {};
    std::size_t words = 0;
    bool optionsEnded = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view argument(arguments[at]);
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            arguments[words++] = arguments[at];
            continue;
        }
        if (argument == "--") {
            optionsEnded = true;
            continue;
        }
        const std::size_t equals = argument.find('=');
        const std::string name(argument.substr(0, equals));
        const CliOptionRow *row = OptionOfName(name);
        if (!row) {
            return "unknown option " + name;
        }
        const char *value = "";
        if (equals != std::string_view::npos) {
            if (!row->valueName) {
                return name + " takes no value";
            }
            value = arguments[at] + equals + 1;
        } else if (row->valueName) {
            if (++at == arguments.size()) {
                return name + " needs a value: " + row->valueName;
            }
            value = arguments[at];
        }
        call.options[static_cast<std::size_t>(row->option)] = value;
        if (row->option == CliOption::Note) {
            call.notes.push_back(value);
        }
    }
    call.words = arguments.first(words);
    for (const auto &[one, other] : Opposites) {
        if (call[one] && call[other]) {
            return std::string(RowOf(one).name) + " and " + std::string(RowOf(other).name) +
                   " exclude each other";
        }
    }
    return std::nullopt;
}

std::optional<int> ReadPlace(std::string_view text) {
    return ReadNumber(text, 1, LargestPlace);
}

std::optional<Assignment> ReadAssignment(std::string_view word) {
    const std::size_t separator = word.find_first_of("=\t");
    if (separator == std::string_view::npos) {
        return std::nullopt;
    }
    return Assignment{word.substr(0, separator), word.substr(separator + 1)};
}

std::optional<int> ReadMidiChannel(std::string_view text) {
    return ReadNumber(text, 1, LastChannel);
}

std::optional<int> ReadNote(std::string_view text) {
    if (const auto number = ReadNumber(text, 0, LastNote)) {
        return number;
    }
    constexpr std::string_view letters = "c d ef g a b"; // at their places in an octave
    const std::size_t letter =
        text.empty() || text[0] == ' ' ? letters.npos : letters.find(LowerAscii(text[0]));
    if (letter == letters.npos) {
        return std::nullopt;
    }
    int note = static_cast<int>(letter);
    text.remove_prefix(1);
    if (text.starts_with('#') || text.starts_with('b')) {
        note += text[0] == '#' ? 1 : -1;
        text.remove_prefix(1);
    }
    const auto octave = ReadNumber(text, LowestOctave, HighestOctave);
    if (!octave) {
        return std::nullopt;
    }
    note += (*octave - LowestOctave) * NotesInAnOctave;
    return note >= 0 && note <= LastNote ? std::optional(note) : std::nullopt;
}

std::optional<int> ReadVelocity(std::string_view text) {
    return ReadNumber(text, LowestVelocity, HighestVelocity);
}

std::optional<int> ReadSoundRate(std::string_view text) {
    return ReadNumber(text, LowestSoundRate, HighestSoundRate);
}

std::optional<double> ReadSeconds(std::string_view text, double shortest, double longest) {
    double seconds = 0.0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(seconds >= shortest && seconds <= longest)) {
        return std::nullopt;
    }
    return seconds;
}

std::optional<ScreenSize> ReadScreenSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) {
        return std::nullopt;
    }
    const auto width = ReadNumber(text.substr(0, cross), SmallestScreen, LargestScreen);
    const auto height = ReadNumber(text.substr(cross + 1), SmallestScreen, LargestScreen);
    if (!width || !height) {
        return std::nullopt;
    }
    return ScreenSize{*width, *height};
}

} // namespace tonewright
