// Reads the records of a catalogue one behind the other, in pieces: what it takes of memory does
// not grow with their number.
#pragma once

#include "database/database_file.h"

#include <cstdint>
#include <functional>
#include <span>

namespace tonewright {

// Of a record in the file: its index from 0, and its bytes, which are fewer than a record has where
// the file ends in it. They are valid during the call. False: it wants no more of them.
using RecordVisitor = std::function<bool(std::uint32_t index, std::span<const std::uint8_t> bytes)>;

// How many records a load tries: those that the header counts, as far as they begin in the file.
std::uint32_t RecordsToLoad(DatabaseHandle &database);

// Calls `visit` with the records `from` to `end` less one as far as they begin in the file. False,
// with the reason in errno, when the file cannot be read further.
bool ReadRecords(DatabaseHandle &database, std::uint32_t from, std::uint32_t end,
                 const RecordVisitor &visit);

} // namespace tonewright
