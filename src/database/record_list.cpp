// The rows of a list of records, and the catalogue that they come from and go to.
#include "database/record_list.h"

#include "common/settings.h"
#include "common/whole_file.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "database/database_file.h"
#include "database/database_names.h"
#include "database/record_reader.h"
#include "database/record_sort.h"

#include <algorithm>
#include <cassert>
#include <string>
#include <utility>

namespace tonewright {
namespace {

bool HaveSameFields(const DatabaseRecord &one, const DatabaseRecord &other) {
    const auto fields = RecordFields(one), otherFields = RecordFields(other);
    return fields && otherFields && fields->name == otherFields->name &&
           fields->source == otherFields->source && fields->date == otherFields->date &&
           fields->position == otherFields->position;
}

// The row of the driver table, if it has what loading and storing need.
const SynthDriver *RowWithCatalogue(int driverIndex) {
    const SynthDriver *row = DriverOfId(DriverIdAt(driverIndex));
    return row && row->DatabaseOpen && row->DatabaseClose && row->DatabaseReadRecord &&
                   row->DatabaseWriteRecord && row->DatabasePath && row->DatabaseInfo &&
                   row->database
               ? row
               : nullptr;
}

// Whether what a store replaces is a catalogue of the family, or nothing; errno tells why not.
bool IsCatalogueOrNothing(const SynthDriver &row) {
    const char *path = row.DatabasePath();
    return !FileExists(path) || row.DatabaseOpen(path, DatabaseRead);
}

// Whether the store may go on.
bool KeepBackup(QWidget *window, const SynthDriver &row) {
    const std::string path = row.DatabasePath();
    const char *extension = row.DatabaseInfo(DatabaseInfoBackupExtension).text;
    return MakeBackupAs(window, path.c_str(), DatabaseBackupPathOf(path, extension).c_str());
}

} // namespace

const char *RecordListFault(const RecordList &list) {
    if (list.items.size() != static_cast<std::size_t>(list.count)) {
        return "the rows are not as many as the records";
    }
    return ListBoxFault(list);
}

const DatabaseRecord *ListRecord(const RecordList &list, int row) {
    return ListHasRow(list, row) ? &list.items[static_cast<std::size_t>(row)] : nullptr;
}

int RecordListAdd(RecordList &list, DatabaseRecord record) {
    if (record.bytes.empty()) {
        return NoRow;
    }
    auto place = list.items.end();
    if (list.sorted) {
        place = std::ranges::upper_bound(
            list.items, record, [](const DatabaseRecord &one, const DatabaseRecord &other) {
                return CompareRecords(one, other, DatabaseSortMode) < 0;
            });
    }
    const auto row = static_cast<int>(place - list.items.begin());
    list.items.insert(place, std::move(record));
    ListBoxInsert(list, row);
    assert(!RecordListFault(list));
    return row;
}

void RecordListFill(RecordList &list, std::vector<DatabaseRecord> records) {
    std::erase_if(records, [](const DatabaseRecord &record) { return record.bytes.empty(); });
    if (list.sorted) {
        SortRecords(records, DatabaseSortMode);
    }
    list.items = std::move(records);
    ListBoxFill(list, static_cast<int>(list.items.size()));
    assert(!RecordListFault(list));
}

bool RecordListDelete(RecordList &list, int row) {
    if (!ListHasRow(list, row)) {
        return false;
    }
    list.items.erase(list.items.begin() + row);
    ListBoxDelete(list, row);
    assert(!RecordListFault(list));
    return true;
}

bool RecordListPut(RecordList &list, int row, DatabaseRecord record) {
    if (!ListHasRow(list, row) || record.bytes.empty()) {
        return false;
    }
    list.items[static_cast<std::size_t>(row)] = std::move(record);
    ListBoxTellItem(list, row);
    return true;
}

void RecordListSort(RecordList &list) {
    const DatabaseRecord *selected = ListRecord(list, list.selection);
    const DatabaseRecord copy = selected ? *selected : DatabaseRecord{};
    RecordListFill(list, std::exchange(list.items, {}));
    const auto same = std::ranges::find_if(
        list.items, [&copy](const DatabaseRecord &record) { return HaveSameFields(record, copy); });
    if (same != list.items.end()) {
        ListSelect(list, static_cast<int>(same - list.items.begin()));
    }
}

int DatabaseLoadList(int driverIndex, RecordList &list) {
    const SynthDriver *row = RowWithCatalogue(driverIndex);
    auto database = row ? row->DatabaseOpen(row->DatabasePath(), DatabaseUpdate) : nullptr;
    if (!database) {
        return 0;
    }
    if (DatabaseCount(*database) > 0) {
        const std::uint32_t end = RecordsToLoad(*database);
        std::vector<DatabaseRecord> records;
        records.reserve(end);
        DatabaseRecord record;
        for (std::uint32_t index = 0; index < end; ++index) {
            if (row->DatabaseReadRecord(*database, index, record)) {
                records.push_back(std::move(record));
            }
        }
        RecordListFill(list, std::move(records));
    }
    row->DatabaseClose(std::move(database));
    ListSelect(list, 0);
    return 1;
}

int DatabaseStoreList(QWidget *window, const RecordList &list, int driverIndex) {
    const SynthDriver *row = RowWithCatalogue(driverIndex);
    const bool keeps = KeepsFormerDocuments();
    if (!row || (keeps && !IsCatalogueOrNothing(*row)) || !KeepBackup(window, *row)) {
        return 0;
    }
    if (keeps) {
        return WriteFileWhole(row->DatabasePath(), [&](std::FILE *file, std::size_t &written) {
            return WriteDatabase(*row->database, list.items, file, written);
        });
    }
    auto database = row->DatabaseOpen(row->DatabasePath(), DatabaseReplace);
    if (!database) {
        return 0;
    }
    bool isWritten = true;
    for (std::size_t index = 0; isWritten && index < list.items.size(); ++index) {
        isWritten = row->DatabaseWriteRecord(*database, static_cast<std::uint32_t>(index),
                                             list.items[index]);
    }
    return row->DatabaseClose(std::move(database)) && isWritten;
}

} // namespace tonewright
