// Reads the records of a catalogue one behind the other, in pieces: what it takes of memory does
// not grow with their number.
#pragma once

#include "database/database_file.h"

#include <cstdint>
#include <functional>
#include <span>

namespace tonewright {

// Of a record in the file: its index from 0, and its bytes, which are fewer than a record has where
// the file ends in it. They are valid during the call.
using RecordVisitor = std::function<void(std::uint32_t index, std::span<const std::uint8_t> bytes)>;

// How many records a load tries: those that the header counts, as far as they begin in the file.
std::uint32_t RecordsToLoad(DatabaseHandle &database);

// Calls `visit` with the first `count` records, as far as they begin in the file. False, with the
// reason in errno, when the file cannot be read further.
bool ReadRecords(DatabaseHandle &database, std::uint32_t count, const RecordVisitor &visit);
// The same with the records that a load takes: what it tries and is whole and marked as a record.
bool ReadLoadedRecords(DatabaseHandle &database, const RecordVisitor &visit);

} // namespace tonewright
