// Looks a whole catalogue through for what is wrong with it, without changing it and in memory that
// does not grow with its records.
#pragma once

#include "database/database_file.h"

#include <cstdint>
#include <functional>

namespace tonewright {

// What there is in an open catalogue.
struct DatabaseReport {
    std::uint32_t counted = 0;   // records, by the header
    std::uint32_t present = 0;   // of these, begin in the file
    std::uint32_t faulty = 0;    // of these that are present, have a fault
    std::uint32_t uncounted = 0; // whole records behind those that are counted
    std::uint64_t rest = 0;      // further bytes behind them
};

// True when nothing is wrong.
bool IsSound(const DatabaseReport &report);

// `tell` hears of each counted record with a fault in the order of the file: its index from 0, its
// RecordFaultsOf and how many bytes it has. False, with the reason in errno, when the file cannot
// be read to its end.
bool CheckDatabase(
    DatabaseHandle &database, DatabaseReport &report,
    const std::function<void(std::uint32_t index, unsigned faults, std::size_t size)> &tell);

} // namespace tonewright
