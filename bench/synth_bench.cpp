// How many keys the engine plays at once on one core at 48 kHz, at 16 and at 64 keys: each voice of
// the example bank, and the whole bank, whose figures are the harmonic mean of the voices and the
// worst one, with its name.
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "synth/synth.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr int Voices = 32;

struct NamedVoice {
    std::string name;
    PreparedVoice voice;
};

NamedVoice Unpacked(const std::string &bank, int place) {
    const auto *packed = reinterpret_cast<const std::uint8_t *>(bank.data()) + Dx7FileHeaderSize +
                         Dx7PackedVoiceSize * static_cast<std::size_t>(place);
    std::array<std::uint8_t, Dx7VoiceSize> unpacked = {};
    UnpackDx7Voice(unpacked, Dx7PackedConst(packed, Dx7PackedVoiceSize));
    std::uint8_t bytes[SixOperatorBytes];
    std::copy_n(unpacked.begin(), SixOperatorBytes, bytes);
    std::string name(unpacked.begin() + Dx7Voice::name,
                     unpacked.begin() + Dx7Voice::name + Dx7NameSize);
    name.erase(name.find_last_not_of(' ') + 1);
    return {.name = name, .voice = PrepareSixOperatorVoice(bytes)};
}

// Empty where the bank cannot be read.
std::vector<NamedVoice> ExampleBank() {
    std::ifstream file("examples/tonewright.syx", std::ios::binary);
    const std::string bank((std::istreambuf_iterator<char>(file)), {});
    std::vector<NamedVoice> voices;
    for (int i = 0; i < Voices && bank.size() == Dx7BankFileSize; ++i) {
        voices.push_back(Unpacked(bank, i));
    }
    return voices;
}

// A second of a chord over four octaves, all keys held and begun anew in each second, since most
// voices fade.
void PlayASecond(const PreparedVoice &voice, int keys) {
    Synth synth = MakeSynth(Rate, keys);
    SetVoice(synth, &voice, false);
    for (int i = 0; i < keys; ++i) {
        NoteOn(synth, 36 + i * 48 / keys, 100);
    }
    for (int block = 0; block < static_cast<int>(Rate) / BlockFrames; ++block) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        benchmark::DoNotOptimize(left);
        benchmark::DoNotOptimize(right);
    }
}

void PlayVoice(benchmark::State &state, const PreparedVoice &voice, int keys) {
    for (auto _ : state) {
        PlayASecond(voice, keys);
    }
    state.SetItemsProcessed(state.iterations() * keys);
}

double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Every voice in turn.
void PlayBank(benchmark::State &state, const std::vector<NamedVoice> &voices, int keys) {
    std::vector<double> seconds(voices.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < voices.size(); ++i) {
            const double begin = ProcessorSeconds();
            PlayASecond(voices[i].voice, keys);
            seconds[i] += ProcessorSeconds() - begin;
        }
    }
    const auto played = static_cast<double>(keys) * static_cast<double>(state.iterations());
    const auto worst = std::ranges::max_element(seconds);
    double sum = 0.0;
    for (const double voice : seconds) {
        sum += voice;
    }
    state.counters["harmonic_mean"] = played * static_cast<double>(voices.size()) / sum;
    state.counters["worst"] = played / *worst;
    state.SetLabel("worst: " + voices[static_cast<std::size_t>(worst - seconds.begin())].name);
}

template <typename Function> void Register(const std::string &name, Function function) {
    benchmark::RegisterBenchmark(name.c_str(), function)->Unit(benchmark::kMillisecond);
}

void RegisterAll(const std::vector<NamedVoice> &voices) {
    using benchmark::State;
    for (const int keys : {16, 64}) {
        const std::string number = std::to_string(keys);
        for (const NamedVoice &voice : voices) {
            Register("Voice/" + number + "/" + voice.name,
                     [&voice, keys](State &state) { PlayVoice(state, voice.voice, keys); });
        }
        Register("Bank/" + number,
                 [&voices, keys](State &state) { PlayBank(state, voices, keys); });
    }
}

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    const std::vector<tonewright::NamedVoice> voices = tonewright::ExampleBank();
    if (voices.empty()) {
        std::fprintf(stderr, "synth_bench: run it in the folder of the project: no "
                             "examples/tonewright.syx\n");
        return 1;
    }
    tonewright::RegisterAll(voices);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
