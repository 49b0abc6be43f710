// Any bytes as a catalogue of each family: what loads is stored byte for byte, and adding to it
// leaves a catalogue or none. Slow, since every run writes and reads files; the fuzzer of records
// looks at many more inputs.
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "core/dispatch.h"
#include "database/database_check.h"
#include "database/record_list.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <filesystem>
#include <optional>

using namespace tonewright;

namespace {

constexpr std::size_t RecordsAt = 152;

// The catalogue of the settings becomes one in the folder of this process.
std::string CataloguePath(const SynthDriver &family) {
    PlatformFolders.documents = FuzzPath("documents") + PathSeparator;
    std::filesystem::create_directories(DefaultDocumentsFolder());
    return family.DatabasePath();
}

// What the check says of a file; nothing when it does not open. It changes no byte.
std::optional<DatabaseReport> Check(const SynthDriver &family, const std::string &path) {
    const auto before = FuzzRead(path);
    const auto database = family.DatabaseOpen(path.c_str(), DatabaseRead);
    if (!database) {
        return std::nullopt;
    }
    DatabaseReport report;
    std::uint32_t told = 0;
    const bool isRead =
        CheckDatabase(*database, report, [&](std::uint32_t index, unsigned faults, std::size_t) {
            ++told;
            Demand(faults != 0 && index < report.present, "a counted record is told of");
        });
    Demand(isRead, "a file can be read to its end");
    Demand(told == report.faulty, "each bad record is told of once");
    Demand(report.faulty <= report.present && report.present <= report.counted,
           "the numbers fit each other");
    Demand(FuzzRead(path) == before, "a check changes nothing");
    return report;
}

void LoadAndStore(int index, const SynthDriver &family, std::span<const std::uint8_t> input) {
    const std::string path = CataloguePath(family);
    std::filesystem::rename(FuzzFile("catalogue", input), path);
    const auto report = Check(family, path);
    RecordList list;
    list.sorted = false;
    if (!DatabaseLoadList(index, list)) {
        Demand(FuzzRead(path).size() == input.size(), "what is no catalogue stays");
        Demand(!report, "and is none for the check");
        return;
    }
    const auto loaded = static_cast<std::uint32_t>(ListCount(list));
    Demand(report && report->present - report->faulty <= loaded && loaded <= report->present,
           "a load takes what is good");
    Demand(!RecordListFault(list), "the list is sound");
    std::vector<std::uint8_t> records;
    for (const DatabaseRecord &record : list.items) {
        records.insert(records.end(), record.bytes.begin(), record.bytes.end());
        RecordFields(record);
        RecordToVoice(record);
    }
    Demand(records.size() <= std::max(input.size(), RecordsAt) - RecordsAt, "no record is made up");
    Demand(DatabaseStoreList(nullptr, list, index) == 1, "it can be stored");
    const auto stored = FuzzRead(path);
    Demand(std::equal(stored.begin() + RecordsAt, stored.end(), records.begin(), records.end()),
           "byte for byte");
    const auto again = Check(family, path);
    Demand(again && again->counted == list.items.size() && again->present == again->counted &&
               again->rest == 0 && again->uncounted == 0,
           "what was stored is what its header counts");
}

void Add(const SynthDriver &family, std::span<const std::uint8_t> input) {
    const std::string path = CataloguePath(family);
    std::filesystem::rename(FuzzFile("catalogue", input), path);
    auto database = family.DatabaseOpen(path.c_str(), DatabaseRead);
    DatabaseRecord record;
    if (!database || !family.DatabaseReadRecord(*database, 0, record)) {
        return;
    }
    const VoiceObject voice = RecordToVoice(record);
    database.reset();
    if (family.DatabaseAddVoice(nullptr, voice, nullptr, "source", 1)) {
        database = family.DatabaseOpen(path.c_str(), DatabaseRead);
        Demand(database != nullptr, "it is a catalogue afterwards");
    } else {
        Demand(!std::filesystem::exists(path), "or gone");
    }
}

} // namespace

// The first byte chooses the family and what is done, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    if (size == 0) {
        return 0;
    }
    const std::span<const std::uint8_t> input(data + 1, size - 1);
    const int index = data[0] / 2 % static_cast<int>(SynthDrivers.size());
    const SynthDriver &family = *SynthDrivers[static_cast<std::size_t>(index)];
    if (!family.DatabaseOpen) {
        return 0;
    }
    if (data[0] % 2 == 0) {
        LoadAndStore(index, family, input);
    } else {
        Add(family, input);
    }
    return 0;
}
