// How long the engine takes for a bank: codec, file image, list, undo.
#include "bench_bank.h"
#include "common/settings.h"
#include "core/current.h"
#include "core/undo_level.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "shell/undo.h"

#include <benchmark/benchmark.h>

#include <array>

namespace tonewright {
namespace {

using PackedBank = std::array<std::array<std::uint8_t, Dx7PackedVoiceSize>, Dx7VoicesPerBank>;
using UnpackedBank = std::array<std::array<std::uint8_t, Dx7VoiceSize>, Dx7VoicesPerBank>;

PackedBank MakePackedBank() {
    const BankBytes bank = MakeBenchBank();
    PackedBank packed;
    for (std::size_t voice = 0; voice < packed.size(); ++voice) {
        std::copy_n(&bank[Dx7FileHeaderSize + Dx7PackedVoiceSize * voice], Dx7PackedVoiceSize,
                    packed[voice].begin());
    }
    return packed;
}

void UnpackBank(benchmark::State &state) {
    const PackedBank packed = MakePackedBank();
    UnpackedBank unpacked;
    for (auto _ : state) {
        for (std::size_t voice = 0; voice < packed.size(); ++voice) {
            UnpackDx7Voice(unpacked[voice], packed[voice]);
        }
        benchmark::DoNotOptimize(unpacked);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(UnpackBank)->Unit(benchmark::kMicrosecond);

void PackBank(benchmark::State &state) {
    PackedBank packed = MakePackedBank();
    UnpackedBank unpacked;
    for (std::size_t voice = 0; voice < packed.size(); ++voice) {
        UnpackDx7Voice(unpacked[voice], packed[voice]);
    }
    for (auto _ : state) {
        for (std::size_t voice = 0; voice < packed.size(); ++voice) {
            PackDx7Voice(packed[voice], unpacked[voice]);
        }
        benchmark::DoNotOptimize(packed);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(PackBank)->Unit(benchmark::kMicrosecond);

void JudgeBank(benchmark::State &state) {
    const BankBytes bank = MakeBenchBank();
    for (auto _ : state) {
        benchmark::DoNotOptimize(JudgeDx7Bank(bank));
    }
}
BENCHMARK(JudgeBank)->Unit(benchmark::kMicrosecond);

void FillListFromBank(benchmark::State &state) {
    const BankBytes bank = MakeBenchBank();
    VoiceList list;
    for (auto _ : state) {
        DecodeDx7Bank(list, bank);
        benchmark::DoNotOptimize(list.items.data());
    }
}
BENCHMARK(FillListFromBank)->Unit(benchmark::kMicrosecond);

void BuildBankFromList(benchmark::State &state) {
    BankBytes bank = MakeBenchBank();
    VoiceList list;
    DecodeDx7Bank(list, bank);
    for (auto _ : state) {
        EncodeDx7Bank(list, bank);
        benchmark::DoNotOptimize(bank);
    }
}
BENCHMARK(BuildBankFromList)->Unit(benchmark::kMicrosecond);

void MakeAnUndoLevel(benchmark::State &state) {
    VoiceList list;
    DecodeDx7Bank(list, MakeBenchBank());
    for (auto _ : state) {
        benchmark::DoNotOptimize(MakeUndoLevel(nullptr, list));
    }
}
BENCHMARK(MakeAnUndoLevel)->Unit(benchmark::kMicrosecond);

// Into a store that is full, so that the oldest level gives way each time.
void PushUndo(benchmark::State &state) {
    MaxUndoLevel = static_cast<std::uint32_t>(state.range(0));
    CurrentDriverId = Dx7DriverId;
    DecodeDx7Bank(MainList, MakeBenchBank());
    UndoInit(nullptr);
    for (auto _ : state) {
        if (!UndoPush(nullptr, MainList)) {
            state.SkipWithError("no undo level was made");
            break;
        }
    }
    UndoEnd();
}
BENCHMARK(PushUndo)->Arg(3)->Arg(32)->Unit(benchmark::kMicrosecond);

void PushAndPopUndo(benchmark::State &state) {
    MaxUndoLevel = 3;
    CurrentDriverId = Dx7DriverId;
    DecodeDx7Bank(MainList, MakeBenchBank());
    UndoInit(nullptr);
    for (auto _ : state) {
        if (!UndoPush(nullptr, MainList) || !UndoPop(nullptr, MainList)) {
            state.SkipWithError("no undo level was made or restored");
            break;
        }
    }
    UndoEnd();
}
BENCHMARK(PushAndPopUndo)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tonewright
