// Everything that can be sent to a player, at random, for tests that look at how it is taken.
#pragma once

#include "synth/player.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <vector>

namespace tonewright {

// Voices of both kinds of random bytes, the effects of a reface DX among them.
inline std::vector<PreparedVoice> RandomVoices(std::mt19937 &random, int count) {
    std::vector<PreparedVoice> voices;
    for (int i = 0; i < count; ++i) {
        std::uint8_t six[SixOperatorBytes];
        std::ranges::generate(six, [&] { return static_cast<std::uint8_t>(random() % 128); });
        voices.push_back(PrepareSixOperatorVoice(six));
        std::uint8_t four[FourOperatorBytes];
        std::ranges::generate(four, [&] { return static_cast<std::uint8_t>(random() % 128); });
        voices.push_back(PrepareFourOperatorVoice(four));
    }
    return voices;
}

// One thing to one of the instruments.
inline void SendAnything(SynthPlayer &player, int instruments,
                         const std::vector<PreparedVoice> &voices, std::mt19937 &random) {
    const int instrument = static_cast<int>(random() % static_cast<unsigned>(instruments));
    const auto number = static_cast<std::uint8_t>(random() % 128);
    const auto value = static_cast<std::uint16_t>(random() % 128);
    constexpr std::uint8_t Controllers[] = {1, 2, 4, 5, 7, 11, 64, 65, 120, 121, 123, 126, 127};
    switch (random() % 16) {
    case 0:
        SendVoice(player, instrument, voices[random() % voices.size()], false);
        break;
    case 1:
    case 2:
        SendVoice(player, instrument, voices[random() % voices.size()], true);
        break;
    case 3:
        SendEvent(player, instrument,
                  {.kind = SynthEventKind::Controller,
                   .number = Controllers[random() % std::size(Controllers)],
                   .value = value});
        break;
    case 4:
        SendEvent(
            player, instrument,
            {.kind = SynthEventKind::Bend, .value = static_cast<std::uint16_t>(random() % 16384)});
        break;
    case 5:
        SendEvent(player, instrument, {.kind = SynthEventKind::Pressure, .value = value});
        break;
    case 6:
        if (random() % 8 == 0) {
            SendPanic(player);
        }
        break;
    case 7:
        SetPlayerVolume(player, value / 127.0);
        break;
    case 8:
    case 9:
    case 10:
        SendEvent(player, instrument, {.kind = SynthEventKind::NoteOff, .number = number});
        break;
    default:
        SendEvent(player, instrument,
                  {.kind = SynthEventKind::NoteOn,
                   .number = number,
                   .value = std::max<std::uint16_t>(1, value)});
        break;
    }
}

} // namespace tonewright
