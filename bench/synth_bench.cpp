// How many keys the engine plays at once on one core at 48 kHz: the example bank voice by voice, at
// 16 and at 64 keys, and both effects of a reface DX.
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "synth/effects.h"
#include "synth/synth.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr int Voices = 32;

PreparedVoice Prepared(const std::string &bank, int place) {
    const auto *packed = reinterpret_cast<const std::uint8_t *>(bank.data()) + Dx7FileHeaderSize +
                         Dx7PackedVoiceSize * static_cast<std::size_t>(place);
    std::array<std::uint8_t, Dx7VoiceSize> unpacked = {};
    UnpackDx7Voice(unpacked, Dx7PackedConst(packed, Dx7PackedVoiceSize));
    std::uint8_t bytes[SixOperatorBytes];
    std::copy_n(unpacked.begin(), SixOperatorBytes, bytes);
    return PrepareSixOperatorVoice(bytes);
}

const std::vector<PreparedVoice> &ExampleBank() {
    static const std::vector<PreparedVoice> voices = [] {
        std::ifstream file("examples/tonewright.syx", std::ios::binary);
        const std::string bank((std::istreambuf_iterator<char>(file)), {});
        std::vector<PreparedVoice> prepared;
        for (int i = 0; i < Voices && bank.size() == Dx7BankFileSize; ++i) {
            prepared.push_back(Prepared(bank, i));
        }
        return prepared;
    }();
    return voices;
}

// A second of a chord over four octaves, all keys held and begun anew in each second, since most
// voices fade. Says how many keys that would be in real time.
void PlayKeys(benchmark::State &state, int first, int last, int keys) {
    const std::vector<PreparedVoice> &voices = ExampleBank();
    if (voices.empty()) {
        state.SkipWithError("run it in the folder of the project: no examples/tonewright.syx");
        return;
    }
    int place = first;
    for (auto _ : state) {
        Synth synth = MakeSynth(Rate, keys);
        SetVoice(synth, &voices[static_cast<std::size_t>(place)], false);
        for (int i = 0; i < keys; ++i) {
            NoteOn(synth, 36 + i * 48 / keys, 100);
        }
        for (int block = 0; block < static_cast<int>(Rate) / BlockFrames; ++block) {
            float out[BlockFrames];
            float right[BlockFrames];
            Render(synth, out, right);
            benchmark::DoNotOptimize(out);
            benchmark::DoNotOptimize(right);
        }
        place = place == last ? first : place + 1;
    }
    state.SetItemsProcessed(state.iterations() * keys);
}

void Effects(benchmark::State &state) {
    Effect chorus = MakeEffect(Rate);
    Effect reverb = MakeEffect(Rate);
    SetEffect(chorus, {.kind = EffectKind::Chorus, .first = 0.7, .second = 0.5});
    SetEffect(reverb, {.kind = EffectKind::Reverb, .first = 0.7, .second = 0.5});
    for (auto _ : state) {
        for (int block = 0; block < static_cast<int>(Rate) / BlockFrames; ++block) {
            float left[BlockFrames] = {1.0f};
            float right[BlockFrames] = {0.5f};
            ApplyEffect(chorus, left, right);
            ApplyEffect(reverb, left, right);
            benchmark::DoNotOptimize(left);
            benchmark::DoNotOptimize(right);
        }
    }
}
BENCHMARK(Effects)->Unit(benchmark::kMillisecond);

} // namespace

// Every voice for itself, and a second of each in turn, whose figure is the harmonic mean.
void RegisterVoices() {
    for (const int keys : {16, 64}) {
        for (int place = 0; place < Voices; ++place) {
            const std::string name =
                "Voice/" + std::to_string(place + 1) + "/" + std::to_string(keys);
            benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) {
                PlayKeys(state, place, place, keys);
            })->Unit(benchmark::kMillisecond);
        }
        const std::string name = "Bank/" + std::to_string(keys);
        benchmark::RegisterBenchmark(
            name.c_str(), [=](benchmark::State &state) { PlayKeys(state, 0, Voices - 1, keys); })
            ->Unit(benchmark::kMillisecond)
            ->Iterations(Voices);
    }
}

} // namespace tonewright

int main(int argc, char **argv) {
    tonewright::RegisterVoices();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
