// The file that keeps what the built-in instruments hold between two runs.
#pragma once

#include "midi/instruments/instrument.h"

#include <span>

namespace tonewright {

// False when the file cannot be written; the former one is then as it was. On the way the bytes
// stand in a file beside it, whose name has a number and ".new" behind the name.
bool WriteMemoryFile(const char *path, std::span<Instrument> instruments);
// False, and the instruments as they were, when the file cannot be read, is no such file of these
// models, or holds a value that no instrument can hold.
bool ReadMemoryFile(const char *path, std::span<Instrument> instruments);

} // namespace tonewright
