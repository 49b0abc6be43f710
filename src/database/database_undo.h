// The undo of the catalogue window: copies of the whole list of records, newest last. They live as
// long as the window.
//
//   offset  0  magic        "DMeM" (0x4D654D44), as of a level of the voice list
//           4  headSize     36
//           8  recordSize   bytes, by the first record's own sizes
//          12  count        of the records
//          16  driverId     of the first record
//          20  selection    -1 for none
//          24  topIndex
//          28  sortCommand  107 to 110; a list that is sorted by date comes back sorted by name
//          32  flags        bit 0: the list differed from the file
//          36  the records in the order of the list
//
// All fields are 32 bits, little-endian.
#pragma once

#include "database/record_list.h"

#include <cstdint>
#include <vector>

class QWidget;

namespace tonewright {

// Makes the store for MaxUndoLevel levels. 1, or 0 after a message when MaxUndoLevel lies outside 1
// to 65,536: then there is no undo.
int DatabaseUndoInit(QWidget *window);
// Frees everything.
void DatabaseUndoEnd();
// The block of a level for the list. Empty for an empty list, and when a record is not as long as
// the first one says that they are.
std::vector<std::uint8_t> DatabaseUndoBuild(const RecordList &list, bool changed);
// Takes a copy of the list, of which `changed` says whether it differs from the file. 1 if a level
// was made, also 1 (without one) for an empty list, else 0 after a message.
int DatabaseUndoPush(QWidget *window, const RecordList &list, bool changed);
// Puts the newest level back into the list, and its order into DatabaseSortMode; `changed` becomes
// what the level says, as a number. 1, or 0 after a message.
int DatabaseUndoPop(QWidget *window, RecordList &list, std::uint32_t &changed);
bool DatabaseUndoAvailable();
// Drops all levels; the store stays.
void DatabaseUndoClear();

} // namespace tonewright
