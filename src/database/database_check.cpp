// Looks a catalogue through for faults.
#include "database/database_check.h"

#include "database/record_reader.h"

#include <algorithm>

namespace tonewright {

bool IsSound(const DatabaseReport &report) {
    return report.present == report.counted && report.faulty == 0 && report.uncounted == 0 &&
           report.rest == 0;
}

bool CheckDatabase(
    DatabaseHandle &database, DatabaseReport &report,
    const std::function<void(std::uint32_t index, unsigned faults, std::size_t size)> &tell) {
    constexpr unsigned NoRecord = RecordIsShort | RecordHasNoMagic;
    const DatabaseFamily &family = *database.family;
    report = {.counted = DatabaseCount(database), .present = RecordsToLoad(database)};
    const std::uint32_t begun = RecordsThatBegin(database);
    // What lies where no record can begin is not looked at.
    const std::uint64_t reached =
        DatabaseHeaderSize + std::uint64_t{begun} * DatabaseRecordSize(family);
    report.rest = std::max(DatabaseSize(database), reached) - reached;
    return ReadRecords(database, begun,
                       [&](std::uint32_t index, std::span<const std::uint8_t> bytes) {
                           const unsigned faults = RecordFaultsOf(family, bytes);
                           if (index >= report.present) {
                               if (faults & NoRecord) {
                                   report.rest += bytes.size();
                               } else {
                                   ++report.uncounted;
                               }
                               return;
                           }
                           if (faults != 0) {
                               ++report.faulty;
                               tell(index, faults, bytes.size());
                           }
                       });
}

} // namespace tonewright
