// What the player costs of a core at 48 kHz: idle, with sixteen keys in two effects, while voices
// fade for a minute, and at its worst.
#include "synth/player.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <random>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr int Buffer = 256;
constexpr int BuffersASecond = 48000 / Buffer;

// A reface DX with four operators one after the other, all of which feed back.
PreparedVoice Voice(EffectKind first, EffectKind second) {
    std::uint8_t bytes[FourOperatorBytes] = {};
    bytes[12] = bytes[15] = 64; // transpose and bend range: none
    std::fill_n(bytes + 21, 8, std::uint8_t{64});
    for (int i = 0; i < 4; ++i) {
        std::uint8_t *own = bytes + 38 + 28 * i;
        own[0] = 1;
        std::fill_n(own + 1, 4, std::uint8_t{90});
        std::fill_n(own + 5, 3, std::uint8_t{127});
        own[18] = static_cast<std::uint8_t>(i == 0 ? 127 : 90); // level
        own[19] = 60;                                           // feedback
        own[22] = static_cast<std::uint8_t>(1 + i);             // coarse
        own[24] = 64;                                           // detune
    }
    PreparedVoice voice = PrepareFourOperatorVoice(bytes);
    voice.effects[0] = {.kind = first, .first = 0.7, .second = 0.5};
    voice.effects[1] = {.kind = second, .first = 0.7, .second = 0.5};
    return voice;
}

SynthEvent Key(SynthEventKind kind, int number) {
    return {.kind = kind, .number = static_cast<std::uint8_t>(number), .value = 100};
}

// As the program has it: three instruments.
OwnedSynthPlayer PlayerWith(const PreparedVoice &voice, int polyphony) {
    OwnedSynthPlayer player = MakeSynthPlayer(3, Rate, polyphony);
    for (int instrument = 0; instrument < 3; ++instrument) {
        SendVoice(*player, instrument, voice, false);
    }
    return player;
}

void PlayBuffers(SynthPlayer &player, int buffers) {
    for (int i = 0; i < buffers; ++i) {
        float frames[2 * Buffer];
        RenderFrames(player, frames, Buffer);
        benchmark::DoNotOptimize(frames);
    }
}

// Of this program's own time.
double Seconds(SynthPlayer &player, int buffers) {
    const std::clock_t begin = std::clock();
    PlayBuffers(player, buffers);
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// In percent of a core, a second of sound at a time.
void Play(benchmark::State &state, SynthPlayer &player) {
    double seconds = 0.0;
    for (auto _ : state) {
        seconds += Seconds(player, BuffersASecond);
    }
    const double played = static_cast<double>(state.iterations()) * BuffersASecond * Buffer / Rate;
    state.counters["percent_of_a_core"] = 100.0 * seconds / played;
}

void Idle(benchmark::State &state) {
    const OwnedSynthPlayer player = PlayerWith(Voice(EffectKind::Chorus, EffectKind::Reverb), 16);
    SendEvent(*player, 2, Key(SynthEventKind::NoteOn, 60));
    SendEvent(*player, 2, Key(SynthEventKind::NoteOff, 60));
    PlayBuffers(*player, 20 * BuffersASecond);
    if (!IsSilent(*player)) {
        state.SkipWithError("not idle");
        return;
    }
    Play(state, *player);
}
BENCHMARK(Idle)->Unit(benchmark::kMillisecond);

void SixteenKeysInTwoEffects(benchmark::State &state) {
    const OwnedSynthPlayer player = PlayerWith(
        Voice(static_cast<EffectKind>(state.range(0)), static_cast<EffectKind>(state.range(1))),
        16);
    for (int key = 0; key < 16; ++key) {
        SendEvent(*player, 2, Key(SynthEventKind::NoteOn, 36 + 3 * key));
    }
    Play(state, *player);
}
BENCHMARK(SixteenKeysInTwoEffects)
    ->Unit(benchmark::kMillisecond)
    ->Args({static_cast<int>(EffectKind::Chorus), static_cast<int>(EffectKind::Reverb)})
    ->Args({static_cast<int>(EffectKind::Phaser), static_cast<int>(EffectKind::Flanger)})
    ->Args({static_cast<int>(EffectKind::TouchWah), static_cast<int>(EffectKind::Delay)})
    ->Args({static_cast<int>(EffectKind::Distortion), static_cast<int>(EffectKind::Reverb)});

// A buffer of the last seconds of a minute in which keys fade beside one of the first second.
void MinuteOfDecay(benchmark::State &state) {
    PreparedVoice voice = Voice(EffectKind::Delay, EffectKind::Reverb);
    for (PreparedOperator &prepared : voice.operators) {
        prepared.rates = {63, 8, 8, 8};
        prepared.levels[1] = prepared.levels[2] = 0.0;
    }
    double first = 0.0;
    double last = 0.0;
    for (auto _ : state) {
        const OwnedSynthPlayer player = PlayerWith(voice, 16);
        for (int key = 0; key < 16; ++key) {
            SendEvent(*player, 2, Key(SynthEventKind::NoteOn, 36 + 3 * key));
        }
        first += Seconds(*player, BuffersASecond);
        PlayBuffers(*player, 56 * BuffersASecond);
        last += Seconds(*player, 3 * BuffersASecond) / 3.0;
    }
    state.counters["last_by_first"] = last / first;
}
BENCHMARK(MinuteOfDecay)->Unit(benchmark::kMillisecond)->Iterations(1);

// Buffers while everything happens beside the worst ones while all keys merely sound. Each buffer
// counts as the quickest of several runs, so that others on this machine do not count.
std::vector<double> QuickestBuffers(int polyphony, bool everything) {
    constexpr int Runs = 15;
    constexpr int Buffers = 2 * BuffersASecond;
    const PreparedVoice voices[] = {Voice(EffectKind::Chorus, EffectKind::Reverb),
                                    Voice(EffectKind::Delay, EffectKind::Reverb),
                                    Voice(EffectKind::Flanger, EffectKind::Phaser)};
    std::vector<double> quickest(Buffers, 1e9);
    for (int run = 0; run < Runs; ++run) {
        std::mt19937 random(1);
        const OwnedSynthPlayer player = PlayerWith(voices[0], polyphony);
        for (int key = 0; key < 3 * polyphony; ++key) {
            SendEvent(*player, key % 3, Key(SynthEventKind::NoteOn, 30 + key / 3));
        }
        PlayBuffers(*player, 10);
        for (double &buffer : quickest) {
            for (unsigned i = everything ? random() % 6 : 0; i > 0; --i) {
                const int instrument = static_cast<int>(random() % 3);
                switch (random() % 8) {
                case 0:
                    SendVoice(*player, instrument, voices[random() % 3], random() % 4 != 0);
                    break;
                case 1:
                    SendEvent(*player, instrument,
                              {.kind = SynthEventKind::Bend,
                               .value = static_cast<std::uint16_t>(random() % 16384)});
                    break;
                case 2:
                    if (random() % 20 == 0) {
                        SendPanic(*player);
                    }
                    break;
                default:
                    SendEvent(*player, instrument,
                              Key(SynthEventKind::NoteOn, static_cast<int>(random() % 128)));
                    break;
                }
            }
            const auto begin = std::chrono::steady_clock::now();
            PlayBuffers(*player, 1);
            const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
            buffer = std::min(buffer, took.count());
        }
    }
    return quickest;
}

void WorstBuffer(benchmark::State &state) {
    const int polyphony = static_cast<int>(state.range(0));
    for (auto _ : state) {
        const std::vector<double> steady = QuickestBuffers(polyphony, false);
        const std::vector<double> all = QuickestBuffers(polyphony, true);
        const double usual = *std::ranges::max_element(steady);
        const double worst = *std::ranges::max_element(all);
        state.counters["usual_worst_us"] = 1e6 * usual;
        state.counters["worst_us"] = 1e6 * worst;
        state.counters["worst_by_usual"] = worst / usual;
    }
}
BENCHMARK(WorstBuffer)->Unit(benchmark::kMillisecond)->Iterations(1)->Arg(16)->Arg(64);

} // namespace
} // namespace tonewright
