// A catalogue of 120,000 DX7 voices (54 MB), in files that the system has at hand: loading,
// sorting, undo, storing and adding, with one plain read of the file into fresh memory beside them.
#include "common/folders.h"
#include "common/settings.h"
#include "core/dispatch.h"
#include "database/database_file.h"
#include "database/database_undo.h"
#include "database/database_window.h"
#include "database/record_list.h"
#include "database/record_sort.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr int Records = 120'000;
constexpr int Driver = 0; // row of the table

const SynthDriver &Family() {
    return *SynthDrivers[Driver];
}

// The settings' documents are a folder of this process while it lives.
struct Home {
    fs::path path = fs::temp_directory_path() / ("database-bench-" + std::to_string(getpid()));
    Home() {
        fs::create_directories(path);
        PlatformFolders.documents = path.string() + "/";
        fs::create_directories(DefaultDocumentsFolder());
        DatabaseNoDuplicates = 0;
    }
    ~Home() { fs::remove_all(path); }
};

VoiceObject VoiceOf(std::mt19937 &random) {
    std::array<std::uint8_t, 156> payload;
    for (std::uint8_t &byte : payload) {
        byte = static_cast<std::uint8_t>(random() % 100);
    }
    return MakeVoiceObject(Family().id, payload);
}

// Names and sources as they come from banks: words and numbers, many beginnings alike.
DatabaseRecord RecordOf(std::mt19937 &random) {
    constexpr const char *Words[] = {"Piano", "Brass", "E.Piano", "Strings", "Bell", "Bass"};
    const std::string name =
        std::string(Words[random() % 6]) + " " + std::to_string(random() % 999);
    const std::string source = "Collection of bank " + std::to_string(random() % 3750) + ".syx";
    DatabaseRecord record{std::vector<std::uint8_t>(446)};
    WriteLittle32(record.bytes, 0, DatabaseRecordMagic);
    WriteLittle32(record.bytes, 4, Family().id);
    WriteLittle32(record.bytes, 8, static_cast<std::uint32_t>(random()));
    WriteLittle32(record.bytes, 16, 290);
    WriteLittle32(record.bytes, 20, 156);
    std::copy(name.begin(), name.end(), record.bytes.begin() + 28);
    std::copy(source.begin(), source.end(), record.bytes.begin() + 93);
    WriteLittle32(record.bytes, 158, static_cast<std::uint32_t>(random() % 32));
    return record;
}

// The catalogue with its records, made once.
const std::string &Catalogue() {
    static const Home home;
    static const std::string path = [] {
        RecordList list;
        list.sorted = false;
        std::mt19937 random(17);
        std::vector<DatabaseRecord> records;
        for (int index = 0; index < Records; ++index) {
            records.push_back(RecordOf(random));
        }
        RecordListFill(list, std::move(records));
        DatabaseStoreList(nullptr, list, Driver);
        return std::string(Family().DatabasePath());
    }();
    return path;
}

void ReadWholeFile(benchmark::State &state) {
    const std::string path = Catalogue();
    for (auto _ : state) {
        std::vector<char> bytes(fs::file_size(path));
        std::ifstream(path, std::ios::binary)
            .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    }
}
BENCHMARK(ReadWholeFile)->Unit(benchmark::kMillisecond);

void ReadEachRecord(benchmark::State &state) {
    const std::string path = Catalogue();
    for (auto _ : state) {
        auto database = Family().DatabaseOpen(path.c_str(), DatabaseRead);
        DatabaseRecord record;
        std::uint32_t index = 0;
        while (Family().DatabaseReadRecord(*database, index, record)) {
            benchmark::DoNotOptimize(RecordFields(record));
            ++index;
        }
        if (index != Records) {
            state.SkipWithError("not all records were read");
        }
    }
}
BENCHMARK(ReadEachRecord)->Unit(benchmark::kMillisecond);

void LoadAndSort(benchmark::State &state) {
    Catalogue();
    DatabaseSortMode = SortByName;
    for (auto _ : state) {
        RecordList list;
        if (!DatabaseLoadList(Driver, list) || ListCount(list) != Records) {
            state.SkipWithError("not loaded");
        }
    }
}
BENCHMARK(LoadAndSort)->Unit(benchmark::kMillisecond);

// All that the catalogue window does ahead of its first picture.
void OpenWindow(benchmark::State &state) {
    Catalogue();
    for (auto _ : state) {
        DatabaseWindow window;
        window.driverIndex = Driver;
        OpenDatabaseWindow(window, nullptr);
        benchmark::DoNotOptimize(window.records.items.data());
        state.PauseTiming();
        CloseDatabaseWindow(window);
        window = {};
        state.ResumeTiming();
    }
}
BENCHMARK(OpenWindow)->Unit(benchmark::kMillisecond);

void Sort(benchmark::State &state) {
    Catalogue();
    RecordList list;
    list.sorted = false;
    DatabaseLoadList(Driver, list);
    const auto records = list.items;
    list.sorted = true;
    DatabaseSortMode = static_cast<std::uint32_t>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        list.items = records;
        state.ResumeTiming();
        RecordListSort(list);
    }
    DatabaseSortMode = SortByName;
}
BENCHMARK(Sort)->DenseRange(SortByName, SortByPosition)->Unit(benchmark::kMillisecond);

void PushUndo(benchmark::State &state) {
    Catalogue();
    RecordList list;
    DatabaseLoadList(Driver, list);
    DatabaseUndoInit(nullptr);
    for (auto _ : state) {
        if (!DatabaseUndoPush(nullptr, list, false)) {
            state.SkipWithError("no level");
        }
    }
    DatabaseUndoEnd();
}
BENCHMARK(PushUndo)->Unit(benchmark::kMillisecond);

void PopUndo(benchmark::State &state) {
    Catalogue();
    RecordList list;
    DatabaseLoadList(Driver, list);
    DatabaseUndoInit(nullptr);
    std::uint32_t changed = 0;
    for (auto _ : state) {
        state.PauseTiming();
        DatabaseUndoPush(nullptr, list, false);
        state.ResumeTiming();
        DatabaseUndoPop(nullptr, list, changed);
    }
    DatabaseUndoEnd();
}
BENCHMARK(PopUndo)->Unit(benchmark::kMillisecond);

void StoreWithBackup(benchmark::State &state) {
    Catalogue();
    RecordList list;
    list.sorted = false;
    DatabaseLoadList(Driver, list);
    for (auto _ : state) {
        if (!DatabaseStoreList(nullptr, list, Driver)) {
            state.SkipWithError("not stored");
        }
    }
}
BENCHMARK(StoreWithBackup)->Unit(benchmark::kMillisecond);

// Behind as many records as the argument says.
void AddVoice(benchmark::State &state) {
    Catalogue();
    DatabaseCurrentName = "Added";
    DatabaseNoDuplicates = 1;
    fs::remove(Family().DatabasePath());
    if (state.range(0) > 0) {
        fs::copy_file(Catalogue(), Family().DatabasePath());
    }
    std::mt19937 random(18);
    for (auto _ : state) {
        state.PauseTiming();
        const VoiceObject voice = VoiceOf(random);
        state.ResumeTiming();
        if (!Family().DatabaseAddVoice(nullptr, voice, nullptr, "Bank.syx", 0)) {
            state.SkipWithError("not added");
        }
    }
    DatabaseCurrentName = "Voices";
}
BENCHMARK(AddVoice)->Arg(0)->Arg(Records)->Iterations(4000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tonewright
