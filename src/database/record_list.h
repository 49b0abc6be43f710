// The records in the rows of a list box, each brought in where DatabaseSortMode puts it; see
// common/list_box for selection, scrolling and state.
//
// What holds besides between any two calls (RecordListFault names what does not, and a debug build
// stops there after each change): the list has one row for each of its records, and each of them
// holds bytes.
#pragma once

#include "common/list_box.h"
#include "database/database_record.h"

#include <vector>

class QWidget;

namespace tonewright {

struct RecordList : ListBox {
    std::vector<DatabaseRecord> items; // one per row
    bool sorted = true; // false: in the order in which they were added, whatever the settings say
};

// What does not hold of a list and its list box, as a text; nullptr when all of it holds.
const char *RecordListFault(const RecordList &list);

// The record of a row, or nullptr for a row that does not exist.
const DatabaseRecord *ListRecord(const RecordList &list, int row);

// Puts a record where it belongs, behind those that are equal to it; the row. NoRow, and nothing
// added, for a record without bytes.
int RecordListAdd(RecordList &list, DatabaseRecord record);
// All records are these now, in their order; selection and scroll position are gone. Those without
// bytes are left out.
void RecordListFill(RecordList &list, std::vector<DatabaseRecord> records);
// Removes a row and its record. False when there is no such row. A selection behind it moves up;
// the selection is gone when its row is.
bool RecordListDelete(RecordList &list, int row);
// Puts another record in the place of one, which stays where it is until the list is sorted. False
// when there is no such row, or for a record without bytes.
bool RecordListPut(RecordList &list, int row, DatabaseRecord record);

// Sorts the list anew, and selects the first record that has name, source, date and position of the
// one that was selected.
void RecordListSort(RecordList &list);

// Reads the current catalogue of a row of the driver table, which is made if there is none, in the
// place of all records, and selects the first. When its header counts no records the list keeps
// what it holds. 0 when there is no such row, it has no catalogues, or the file does not open as
// one; else 1.
int DatabaseLoadList(int driverIndex, RecordList &list);
// Writes the records, in their order, as the current catalogue, after a backup of the former file
// where the settings ask for it; asks whether to go on without a backup that failed. 0 when there
// is no such row, the answer was not Yes, and when not all of it could be written: the catalogue
// then ends with the record that fell short, and the backup is what is left of the former one. In
// careful mode the former one is left in each case, also when the file is no catalogue of the
// family, and errno tells why.
int DatabaseStoreList(QWidget *window, const RecordList &list, int driverIndex);

} // namespace tonewright
