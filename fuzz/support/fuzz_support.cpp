// What every fuzzer needs: a desktop that says yes, a file to offer, and a check that ends the run.
#include "support/fuzz_support.h"

#include "common/desktop.h"
#include "common/settings.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

// What is freed is kept for longer than any input lasts, but not until there is no cache for it;
// and the calls that led to an allocation are kept as far as tells one from another. The
// environment has the last word.
extern "C" const char *__asan_default_options() {
    return "quarantine_size_mb=8:malloc_context_size=8";
}

namespace tonewright {

namespace {

struct FuzzFolder {
    std::filesystem::path path;
    FuzzFolder() {
        std::random_device random;
        path = std::filesystem::temp_directory_path() /
               ("tonewright-fuzz-" + std::to_string(random()));
        std::filesystem::create_directory(path);
    }
    ~FuzzFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

} // namespace

void AnswerYesToEverything() {
    TheDesktop = {};
    TheDesktop.RunMessage = [](MessageRequest &request) { request.result = ResultYes; };
    CreateBackups = 0;
}

std::string FuzzPath(const std::string &name) {
    static const FuzzFolder folder;
    return (folder.path / name).string();
}

std::string FuzzFile(const std::string &name, std::span<const std::uint8_t> bytes) {
    const std::string path = FuzzPath(name);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    Demand(!file.fail(), "the input can be written to a file");
    return path;
}

std::vector<std::uint8_t> FuzzRead(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes(std::filesystem::file_size(path));
    file.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    Demand(!file.fail(), "the file can be read");
    return bytes;
}

void Demand(bool holds, const char *what) {
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        std::abort();
    }
}

void DemandSoundList(const VoiceList &list) {
    const char *fault = VoiceListFault(list);
    Demand(!fault, fault);
}

} // namespace tonewright
