// How long the start takes over the files that it reads, the settings, the history of the File menu
// and the settings of a reface DX that are sent to it, when they hold garbage. Each line of results
// should stay below a tenth of a second.
#include "common/folders.h"
#include "common/settings.h"
#include "drivers/reface_dx/settings_file.h"
#include "shell/history.h"
#include "shell/settings_file.h"
#include "shell/single_setting.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t FileSize = 10'000'000; // bytes

std::string RandomBytes(unsigned first, unsigned last) {
    std::mt19937 random(17);
    std::uniform_int_distribution<unsigned> byte(first, last);
    std::string bytes(FileSize, 0);
    std::ranges::generate(bytes, [&] { return static_cast<char>(byte(random)); });
    return bytes;
}

std::string Repeated(const std::string &piece) {
    std::string bytes;
    bytes.reserve(FileSize + piece.size());
    while (bytes.size() < FileSize) {
        bytes += piece;
    }
    return bytes;
}

// Lines of printable characters, no two of them the same.
std::string ManyLines() {
    std::string bytes;
    for (int number = 0; bytes.size() < FileSize; ++number) {
        bytes += std::to_string(number) + "\n";
    }
    return bytes;
}

std::string ManyPaths(const std::string &folder) {
    std::string bytes;
    for (int number = 0; bytes.size() < FileSize; ++number) {
        bytes += folder + "/bank " + std::to_string(number) + ".syx,1700000000\n";
    }
    return bytes;
}

struct Content {
    const char *name;
    std::string (*make)();
};
const Content Contents[] = {
    {"random bytes", [] { return RandomBytes(0, 255); }},
    {"random text", [] { return RandomBytes(' ', '~'); }},
    {"one line", [] { return std::string(FileSize, 'x'); }},
    {"zero bytes", [] { return std::string(FileSize, '\0'); }},
    {"line feeds", [] { return std::string(FileSize, '\n'); }},
    {"carriage returns and line feeds", [] { return Repeated("\r\n"); }},
    {"short lines", ManyLines},
    {"keys", [] { return Repeated("MIDICtrl:1\n"); }},
    {"paths of a folder that is gone", [] { return ManyPaths("/gone/for/good"); }},
    {"paths of files that are gone", [] { return ManyPaths(fs::temp_directory_path().string()); }},
};

// A home in which `file` (in the maker's folder) holds the content of the benchmark's argument.
struct BenchHome {
    fs::path folder = fs::temp_directory_path() / "tonewright-startup-bench";

    BenchHome(benchmark::State &state, const char *file) {
        const Content &content = Contents[static_cast<std::size_t>(state.range(0))];
        PlatformFolders.applicationData = folder.string();
        fs::create_directories(folder / "Quillbrook" / "Tonewright 17");
        std::ofstream(folder / "Quillbrook" / file, std::ios::binary) << content.make();
        state.SetLabel(content.name);
    }
    ~BenchHome() {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    BenchHome(const BenchHome &) = delete;
    BenchHome &operator=(const BenchHome &) = delete;
};

void ReadSettings(benchmark::State &state) {
    const BenchHome home(state, "Tonewright 17.ini");
    for (auto _ : state) {
        // What start-up asks of the file: two keys ahead of the window, then all of them.
        benchmark::DoNotOptimize(ReadSingleInteger(ProgramSettings, "TipFont01Size", 16));
        benchmark::DoNotOptimize(ReadSingleText(ProgramSettings, "ThemeCurrent", ""));
        ConfigRead();
    }
}
BENCHMARK(ReadSettings)->DenseRange(0, std::size(Contents) - 1)->Unit(benchmark::kMillisecond);

void ReadHistory(benchmark::State &state) {
    const BenchHome home(state, "Tonewright 17/FileMenuHistory.txt");
    for (auto _ : state) {
        RememberFileHistoryCount = 10;
        HistoryInit();
        HistoryRead();
        benchmark::DoNotOptimize(HistoryEntries().size());
        HistoryEnd();
    }
}
BENCHMARK(ReadHistory)->DenseRange(0, std::size(Contents) - 1)->Unit(benchmark::kMillisecond);

// Behind the line that makes it a file of settings; without it, nothing more is read.
void ReadRefaceSettings(benchmark::State &state) {
    const Content &content = Contents[static_cast<std::size_t>(state.range(0))];
    const std::string path = (fs::temp_directory_path() / "tonewright-startup-bench.crg").string();
    std::ofstream(path, std::ios::binary) << CrgTextOf({}) << content.make();
    for (auto _ : state) {
        SynthConfigBlock block;
        benchmark::DoNotOptimize(ReadCrgFile(path.c_str(), block));
    }
    fs::remove(path);
    state.SetLabel(content.name);
}
BENCHMARK(ReadRefaceSettings)
    ->DenseRange(0, std::size(Contents) - 1)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tonewright
