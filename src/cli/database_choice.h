// Which catalogue a command means: that of --database and --synth, or else of the user's settings.
#pragma once

#include "cli/command_line.h"
#include "core/synth_driver.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

// Whether the command line can do anything with a family's catalogues.
bool HasCatalogues(const SynthDriver &family);

// The path of the family's catalogue of that name in the user's documents, however long.
std::string PathOfName(const SynthDriver &family, std::string_view name);

// The options that choose a catalogue.
constexpr unsigned DatabaseOptions = OptionBit(CliOption::Database) | OptionBit(CliOption::Synth);

struct ChosenDatabase {
    const SynthDriver *family = nullptr; // one that has catalogues
    std::string path;
};

// Reads the user's settings of catalogues and chooses by them and the options. `--database` is a
// path when it has a separator in it or ends in the extension of a family's catalogues, else a name
// in the user's documents; without it the current catalogue is meant. The family is that of the
// extension, else of `--synth`, else of the settings, else the first one that has catalogues.
// Nothing after telling why the call is wrong.
std::optional<ChosenDatabase> ChooseDatabase(const CliCall &call);

// The same for a family that is known, by settings that have been read. A path that ends in the
// extension of another family's catalogues is one of that family all the same: `family` tells.
// Nothing after telling that the family has no catalogues, too.
std::optional<ChosenDatabase> ChooseDatabaseOf(const CliCall &call, const SynthDriver &family);

// Opens the catalogue for reading, which changes no byte of it. Null after telling why it does not
// open.
std::shared_ptr<DatabaseHandle> OpenChosenDatabase(const ChosenDatabase &chosen);
// "the NAME", or "an instrument that is not known" for nullptr.
std::string FamilyInWords(const SynthDriver *family);
// Why it did not open, in words, by the error number that was left then.
std::string ReasonNotOpened(const ChosenDatabase &chosen, int error);

// The order that --sort asks for, as a value of DatabaseSortMode; nothing without the option. False
// after telling that it names no order.
bool ReadSortMode(const CliCall &call, std::optional<std::uint32_t> &mode);

} // namespace tonewright
