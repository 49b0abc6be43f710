// The archive of 4,000 and of 40,000 banks (128,000 and 1,280,000 places, of which a third are
// voices that differ): reading the index, the first look at it, what is asked at every key that is
// typed, in each order, and the voices that are most similar to one.
#include "extras/archive_index.h"
#include "extras/initial_voice.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr DriverId Dx7Family = MakeDriverId("y7XD");
constexpr std::size_t VoicesOfBank = 32;

struct MadeVoice {
    ArchivePlace place;
    VoiceFeatures features;
};

MadeVoice MakeVoice(std::mt19937_64 &random) {
    constexpr const char *Words[] = {"BASS", "PIANO", "STRING", "BRASS", "E.ORGAN",
                                     "Bell", "Lead",  "Pad ",   "SYN",   "FLUTE",
                                     "Harp", "CLAV",  "Vibe",   "Marim", "Drum"};
    KeptVoice voice = InitialVoiceOf(Dx7Family);
    for (std::size_t place = 0; place < 102; ++place) {
        voice.bytes[place] = static_cast<std::uint8_t>(random() % 100);
    }
    voice.bytes[110] = static_cast<std::uint8_t>(random() % 32);
    std::string name = std::string(Words[random() % std::size(Words)]) + ' ' +
                       Words[random() % std::size(Words)] + std::to_string(random() % 100);
    name.resize(10, ' ');
    std::copy(name.begin(), name.end(), voice.bytes.end() - 10);
    MadeVoice made;
    made.place.identity = IdentityOf(voice.Voice());
    std::copy(name.begin(), name.end(), made.place.name.begin());
    made.place.algorithm = static_cast<std::uint8_t>(AlgorithmOfVoice(voice.Voice()));
    made.features = FeaturesOf(voice.Voice());
    return made;
}

void Need(bool went, const ArchiveError &error) {
    if (!went) {
        throw std::runtime_error(error.text);
    }
}

// An archive of so many banks in a folder of this process, and its index.
struct Collection {
    fs::path folder = fs::temp_directory_path() / ("archive-bench-" + std::to_string(getpid()));
    ArchiveStorePointer store;
    std::shared_ptr<const ArchiveIndex> index;

    explicit Collection(std::int64_t banks) {
        fs::create_directories(folder);
        ArchiveError error;
        store = OpenArchive((folder / (std::to_string(banks) + ".sqlite")).string(),
                            ArchiveUse::Write, error);
        Need(store != nullptr, error);
        Fill(banks);
        index = LoadArchiveIndex(*store, error);
        Need(index != nullptr, error);
    }
    ~Collection() {
        store.reset();
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    void Fill(std::int64_t banks) {
        std::mt19937_64 random(1);
        ArchiveError error;
        Need(BeginArchiveBatch(*store, error), error);
        std::array<ArchiveFolder, 100> folders;
        for (std::size_t number = 0; number < folders.size(); ++number) {
            folders[number].path = "/home/user/banks/folder " + std::to_string(number);
            Need(PutArchiveFolder(*store, folders[number], error), error);
        }
        std::vector<MadeVoice> voices;
        for (std::int64_t bank = 0; bank < banks; ++bank) {
            ArchiveFile file{.folder = folders[random() % folders.size()].id,
                             .name = "bank" + std::to_string(random() % 1'000'000) + ' ' +
                                     std::to_string(bank) + ".syx",
                             .size = 4104,
                             .voices = VoicesOfBank};
            Need(PutArchiveFile(*store, file, error), error);
            std::array<ArchivePlace, VoicesOfBank> places;
            std::array<VoiceFeatures, VoicesOfBank> features;
            for (std::size_t place = 0; place < VoicesOfBank; ++place) {
                if (voices.empty() || random() % 3 == 0) {
                    voices.push_back(MakeVoice(random));
                    places[place] = voices.back().place;
                    features[place] = voices.back().features;
                } else {
                    const MadeVoice &former = voices[random() % voices.size()];
                    places[place] = former.place;
                    features[place] = former.features;
                }
            }
            Need(PutArchiveVoices(*store, file.id, 0, places, features, error), error);
        }
        Need(EndArchiveBatch(*store, error), error);
    }
};

Collection &OfBanks(std::int64_t banks) {
    static std::map<std::int64_t, std::unique_ptr<Collection>> collections;
    auto &collection = collections[banks];
    if (!collection) {
        collection = std::make_unique<Collection>(banks);
    }
    return *collection;
}

// What a window does before its first rows are there.
void ReadIndex(benchmark::State &state) {
    Collection &collection = OfBanks(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        ArchiveError error;
        const auto index = LoadArchiveIndex(*collection.store, error);
        Need(index != nullptr, error);
        benchmark::DoNotOptimize(FindInArchive(*index, {}));
    }
    state.counters["voices"] = static_cast<double>(VoiceCount(*collection.index));
    state.counters["places"] = static_cast<double>(PlaceCount(*collection.index));
}
BENCHMARK(ReadIndex)->Arg(4'000)->Arg(40'000)->Unit(benchmark::kMillisecond);

// In the order of a column, either way.
void Find(benchmark::State &state, ArchiveQuery query) {
    const ArchiveIndex &index = *OfBanks(state.range(0)).index;
    query.sort = static_cast<ArchiveColumn>(state.range(1));
    query.descending = state.range(2) != 0;
    benchmark::DoNotOptimize(FindInArchive(index, query)); // makes the order
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(FindInArchive(index, query));
    }
}

void RegisterFinds() {
    const std::pair<const char *, ArchiveQuery> queries[] = {
        {"Find/", {}},
        {"Find/e", {.text = "e"}},
        {"Find/ba 1", {.text = "ba 1"}},
        {"Find/zzz", {.text = "zzz"}},
        {"Find/folder", {.folder = "/home/user/banks"}},
    };
    constexpr auto file = static_cast<std::int64_t>(ArchiveColumn::File);
    for (const auto &[name, query] : queries) {
        benchmark::RegisterBenchmark(name, Find, query)
            ->ArgsProduct({{4'000, 40'000}, {0, 1, 2, 3, 4, 5}, {0}})
            ->ArgsProduct({{4'000, 40'000}, {0, file}, {1}})
            ->Unit(benchmark::kMillisecond);
    }
}

// The twenty that are nearest.
void Similar(benchmark::State &state) {
    Collection &collection = OfBanks(state.range(0));
    const KeptVoice voice = InitialVoiceOf(Dx7Family);
    for ([[maybe_unused]] auto _ : state) {
        ArchiveError error;
        benchmark::DoNotOptimize(
            FindSimilar(*collection.index, *collection.store, voice.Voice(), 20, error));
    }
}
BENCHMARK(Similar)->Arg(4'000)->Arg(40'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tonewright

int main(int count, char **arguments) {
    tonewright::RegisterFinds();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
