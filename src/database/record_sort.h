// The orders in which a list of records is shown.
#pragma once

#include "database/database_record.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace tonewright {

// Values of DatabaseSortMode, which are the commands and the header buttons too. Any other one
// sorts by name.
constexpr std::uint32_t SortByName = 107;
constexpr std::uint32_t SortBySource = 108;
constexpr std::uint32_t SortByDate = 109;
constexpr std::uint32_t SortByPosition = 110;

// Below 0, 0 or above 0 as `one` stands in front of `other`, with it or behind it. Texts are
// compared by their bytes with A to Z taken for small letters, positions as signed numbers; records
// that are equal in what is sorted by stand in the order of their names. 0 when one of them is no
// record.
int CompareRecords(const DatabaseRecord &one, const DatabaseRecord &other, std::uint32_t mode);

// Where the records stand, each as its index, in the order of a mode; those that are equal stay in
// the order that they had.
std::vector<std::uint32_t> OrderOfRecords(const std::vector<DatabaseRecord> &records,
                                          std::uint32_t mode);
// Brings records into that order.
void SortRecords(std::vector<DatabaseRecord> &records, std::uint32_t mode);

} // namespace tonewright
