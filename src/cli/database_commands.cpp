// The commands of catalogues. Those that read take one record after the other, and open the
// catalogue for reading, so that none of its bytes changes.
#include "cli/cli_commands.h"
#include "cli/database_choice.h"
#include "cli/text_output.h"
#include "database/record_reader.h"
#include "database/record_sort.h"

#include <cerrno>
#include <vector>

namespace tonewright {
namespace {

// The line of a record: N, name, source, date and position, both numbers from 1.
void PutRecord(std::uint32_t index, const DatabaseFields &fields) {
    PutNumber(StandardOutput, index + 1);
    Put(StandardOutput, '\t');
    PutVoiceName(StandardOutput, fields.name);
    Put(StandardOutput, '\t');
    PutVoiceName(StandardOutput, fields.source);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, fields.date);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, fields.position + 1);
    Put(StandardOutput, '\n');
}

int TellNotReadable(const ChosenDatabase &chosen) {
    return TellFailure(chosen.path, WithSystemReason("not readable", errno));
}

// Calls `visit` with the records that a load of the catalogue takes. False when it cannot be read.
bool ReadLoadedRecords(DatabaseHandle &database,
                       const std::function<void(std::uint32_t, std::span<const std::uint8_t>,
                                                const DatabaseFields &)> &visit) {
    const std::size_t size = DatabaseRecordSize(*database.family);
    return ReadRecords(database, 0, RecordsToLoad(database),
                       [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
                           const auto fields = RecordFields(bytes);
                           if (fields && bytes.size() == size) {
                               visit(index, bytes, *fields);
                           }
                           return true;
                       });
}

int ListSorted(const ChosenDatabase &chosen, DatabaseHandle &database, std::uint32_t mode) {
    std::vector<DatabaseRecord> records;
    std::vector<std::uint32_t> indices;
    const bool isRead = ReadLoadedRecords(
        database, [&](std::uint32_t index, std::span<const std::uint8_t> bytes, const auto &) {
            records.push_back({{bytes.begin(), bytes.end()}});
            indices.push_back(index);
        });
    if (!isRead) {
        return TellNotReadable(chosen);
    }
    for (const std::uint32_t at : OrderOfRecords(records, mode)) {
        PutRecord(indices[at], *RecordFields(records[at]));
    }
    return ExitDone;
}

} // namespace

int CliDbList(const CliCall &call) {
    std::optional<std::uint32_t> mode;
    const auto chosen = ReadSortMode(call, mode) ? ChooseDatabase(call) : std::nullopt;
    if (!chosen) {
        return ExitWrongCall;
    }
    const auto database = OpenChosenDatabase(*chosen);
    if (!database) {
        return ExitFailed;
    }
    if (mode) {
        return ListSorted(*chosen, *database, *mode);
    }
    const bool isRead = ReadLoadedRecords(
        *database, [](std::uint32_t index, std::span<const std::uint8_t>,
                      const DatabaseFields &fields) { PutRecord(index, fields); });
    return isRead ? ExitDone : TellNotReadable(*chosen);
}

} // namespace tonewright
