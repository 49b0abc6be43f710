// The table of the commands, in the order of the help, and the one that a call names.
#pragma once

#include "cli/command_line.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace tonewright {

extern const std::span<const CliCommand> CliCommands;

// Of every command, and of a call without one.
constexpr unsigned CliOptionsOfAll = OptionBit(CliOption::Help) | OptionBit(CliOption::Version);

// The command that the first words name, of which `taken` are its name; or nullptr.
const CliCommand *CommandOfWords(std::span<char *const> words, std::size_t &taken);

// True for a command whose name begins with this word and a blank.
bool IsOfGroup(const CliCommand &command, std::string_view group);

} // namespace tonewright
