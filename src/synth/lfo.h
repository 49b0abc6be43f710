// The low-frequency oscillator, one for all keys of an instrument, and the delay of its effect.
#pragma once

#include "synth/laws.h"

#include <cstdint>

namespace tonewright {

enum class LfoWave { Triangle, SawDown, SawUp, Square, Sine, SampleAndHold, SampleAndHold8 };

struct LfoShape {
    LfoWave wave = LfoWave::Triangle;
    double frequency = 0.0; // Hz
    LfoDelay delay;
    bool delayAtEachKey = false; // or at the first after silence
    bool keySync = false;
};

struct Lfo {
    double phase = 0.0;         // cycles, below 1
    double sinceFirstKey = 0.0; // s, since the key at which the delay began
    double held = 0.0;          // of sample and hold
    std::uint32_t random = 1;
};

// A key goes down; `first` when none sounded before.
void LfoKeyDown(Lfo &lfo, const LfoShape &shape, bool first);
// -1 to 1.
double LfoValue(const Lfo &lfo, const LfoShape &shape);
// 0 to 1: how much of it counts, by the delay.
double LfoFade(const Lfo &lfo, const LfoShape &shape);
void AdvanceLfo(Lfo &lfo, const LfoShape &shape, double seconds);

} // namespace tonewright
