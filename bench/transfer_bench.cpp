// How long the engine works on a transfer: against the built-in instruments on their simulated
// clock, so that all that is waited for costs nothing but the polls.
#include "bench_bank.h"
#include "common/settings.h"
#include "core/current.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int Dx7Out = 1, RefaceIn = 4, RefaceOut = 5;

void UseInstruments(DriverId driver) {
    ResetBuiltinInstruments();
    TheMidi = MakeBuiltinInstruments({.simulatedClock = true});
    CurrentDriverId = driver;
}

bool IsWhole(const VoiceList &list) {
    const auto hasName = [](const VoiceObject &voice) { return voice.bytes[52] != 0; };
    return ListCount(list) == 32 && std::ranges::all_of(list.items, hasName);
}

// Both sides of the conversation: 82 messages out, 225 back. Items are voices.
void DownloadRefaceBank(benchmark::State &state) {
    UseInstruments(RefaceDriverId);
    VoiceList list;
    for (auto _ : state) {
        if (!RefaceDownloadBank(nullptr, list, {RefaceIn, RefaceOut}) || !IsWhole(list)) {
            state.SkipWithError("the voices did not arrive");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * 32);
}
BENCHMARK(DownloadRefaceBank)->Unit(benchmark::kMicrosecond);

// 32 waits of 1500 ms, poll by poll.
void DownloadFromASilentReface(benchmark::State &state) {
    UseInstruments(RefaceDriverId);
    SysexWait = 1500;
    VoiceList list;
    for (auto _ : state) {
        FaultsOf(BuiltinInstrument::Reface).silentAfterMessages = 1;
        if (!RefaceDownloadBank(nullptr, list, {RefaceIn, RefaceOut}) || IsWhole(list)) {
            state.SkipWithError("the settings did not arrive, or a voice did");
            break;
        }
    }
}
BENCHMARK(DownloadFromASilentReface)->Unit(benchmark::kMicrosecond);

void UploadRefaceVoice(benchmark::State &state) {
    UseInstruments(RefaceDriverId);
    VoiceList list;
    RefaceDownloadBank(nullptr, list, {RefaceIn, RefaceOut});
    for (auto _ : state) {
        if (!RefaceUploadVoice(nullptr, list, nullptr, {RefaceIn, RefaceOut}, 5, 0)) {
            state.SkipWithError("the voice was not sent");
            break;
        }
    }
}
BENCHMARK(UploadRefaceVoice)->Unit(benchmark::kMicrosecond);

void UploadDx7Bank(benchmark::State &state) {
    UseInstruments(Dx7DriverId);
    VoiceList list;
    DecodeDx7Bank(list, MakeBenchBank());
    for (auto _ : state) {
        if (!Dx7UploadBank(nullptr, list, {-1, Dx7Out})) {
            state.SkipWithError("the bank was not sent");
            break;
        }
    }
}
BENCHMARK(UploadDx7Bank)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tonewright
