// The file that keeps what the built-in instruments hold between two runs.
#pragma once

#include "midi/instruments/instrument.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tonewright {

// The bytes of such a file.
std::vector<std::uint8_t> EncodeMemory(std::span<Instrument> instruments);
// False, and the instruments as they were, when the bytes are no such file's of these models, or
// hold a value that no instrument can hold.
bool DecodeMemory(std::span<const std::uint8_t> bytes, std::span<Instrument> instruments);

// False, the reason in errno, when the file cannot be written; the former one is then as it was.
bool WriteMemoryFile(const char *path, std::span<Instrument> instruments);
// As DecodeMemory for a file; false also when it cannot be read.
bool ReadMemoryFile(const char *path, std::span<Instrument> instruments);

} // namespace tonewright
