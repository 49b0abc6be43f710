// The settings that an instrument itself keeps, for whoever names them, reads them and changes them
// without knowing the family: one record of functions, which the family's row may name.
#pragma once

#include "core/midi_ports.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

// All settings of an instrument are one block of bytes, `size` of them, which is the caller's. A
// setting is told by its place in `names`. Texts are UTF-8. Read, Write, ReadFile and WriteFile
// return 1, or 0 on failure, with no message.
struct SynthSettings {
    std::span<const char *const> names; // words in lower camel case: "masterTune"
    std::size_t size = 0;
    std::size_t writtenSize = 0; // so many from the start are in a file and go to the instrument

    // A setting in words and numbers as its user knows them.
    std::string (*Text)(std::size_t setting, std::span<const std::uint8_t> bytes) = nullptr;
    // Takes a text as Text writes it of a value that the setting can be given; the case of letters
    // does not count. An instrument or a file may hold other ones, which Text writes and Store
    // refuses: those out of range, those that would be rounded, and the numbers of a list that has
    // no word for them. Empty when the setting has just that value now; otherwise why it cannot
    // have it, and the bytes are as they were.
    std::string (*Store)(std::size_t setting, std::string_view text,
                         std::span<std::uint8_t> bytes) = nullptr;

    // Asks the instrument for its settings. 0, and the bytes as they were, when a port does not
    // open or no settings come.
    int (*Read)(MidiPorts ports, std::span<std::uint8_t> bytes) = nullptr;
    // Sends them; what the instrument makes of them is not known. 0 when the output does not open.
    int (*Write)(MidiPorts ports, std::span<const std::uint8_t> bytes) = nullptr;

    // Reads a settings file, in which a setting or a part of it that it does not tell is zero;
    // `missing` becomes what the file calls those. 0, the reason in errno, when it cannot be opened
    // or is none of the family (EINVAL).
    int (*ReadFile)(const char *path, std::span<std::uint8_t> bytes,
                    std::vector<std::string> &missing) = nullptr;
    // Writes one, without a backup of the former file. 0, the reason in errno, when it is not all
    // there: a file that was begun has been deleted then, one that could not be opened, and in
    // careful mode any, is as it was.
    int (*WriteFile)(const char *path, std::span<const std::uint8_t> bytes) = nullptr;
};

} // namespace tonewright
