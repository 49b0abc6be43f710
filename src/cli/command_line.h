// The call of the program: one command, its words and the options, which may stand anywhere on the
// line.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

constexpr int ExitDone = 0;
constexpr int ExitFailed = 1;    // explained on standard error
constexpr int ExitWrongCall = 2; // the command line itself is wrong

enum class CliOption : std::size_t {
    Yes, No, Screen, File, Synth, In, Out, Channel, Trace, Memory, Silent, Careful, NoCareful,
    WholeDetune, NoWholeDetune, Database, Sort, Paper, Note, Velocity, Seconds, Release, Rate, Bits,
    Into, Archive, Algorithm, Instrument, Folder, Help, Version,
};
constexpr std::size_t CliOptionCount = 31;

constexpr unsigned OptionBit(CliOption option) {
    return 1u << static_cast<unsigned>(option);
}

struct CliOptionRow {
    CliOption option;
    std::string_view name; // with its two dashes
    const char *valueName; // null: takes no value
    const char *help;
};
// One row for each option, in the order of CliOption.
extern const std::array<CliOptionRow, CliOptionCount> CliOptions;

struct CliCall {
    std::span<char *const> words;                     // behind the command's name
    std::array<const char *, CliOptionCount> options; // value, or "" without one; null: not given
    std::vector<const char *> notes;                  // every --note, in their order

    const char *operator[](CliOption option) const {
        return options[static_cast<std::size_t>(option)];
    }
};

struct CliCommand {
    const char *name;      // one word, or two with a blank between them
    const char *arguments; // as the help shows them
    const char *help;      // one line
    std::size_t minimumWords, maximumWords;
    unsigned options; // OptionBit of those that it takes, beside --help and --version
    int (*run)(const CliCall &call);
    const char *more = ""; // further lines of its own help
};
constexpr std::size_t AnyNumber = static_cast<std::size_t>(-1);

// Sorts the arguments (without the program's name) in place: `call.words` are those that are no
// options, in their order. The reason in words when an option is not known, or lacks its value or
// has one that it does not take, or excludes another one. "--" ends the options; "-" alone is a
// word.
std::optional<std::string> ReadCommandLine(std::span<char *> arguments, CliCall &call);

// A whole number in decimal digits, from 1 to 9,999,999.
std::optional<int> ReadPlace(std::string_view text);

// "NAME=VALUE"; or a tab in the stead of the equal sign, as the commands print it. Nothing for a
// word with neither.
struct Assignment {
    std::string_view name, value;
};
std::optional<Assignment> ReadAssignment(std::string_view word);

// A MIDI channel, 1 to 16.
std::optional<int> ReadMidiChannel(std::string_view text);

// A note: its number, 0 to 127, or its name with the maker's octaves, "C-2" to "G8", "C3" being 60;
// "#" and "b" raise and lower it: "F#2", "Eb4". Letters in either case.
std::optional<int> ReadNote(std::string_view text);

// A velocity, 1 to 127; a rate in frames a second, 8,000 to 192,000.
std::optional<int> ReadVelocity(std::string_view text);
std::optional<int> ReadSoundRate(std::string_view text);

// Seconds in decimal digits, "2" or "0.5", from `shortest` to `longest`.
std::optional<double> ReadSeconds(std::string_view text, double shortest, double longest);

// "WIDTHxHEIGHT" in pixels, each 200 to 16,384.
struct ScreenSize {
    int width = 0, height = 0;
};
std::optional<ScreenSize> ReadScreenSize(std::string_view text);

} // namespace tonewright
