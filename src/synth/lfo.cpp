// A key that synchronises it sets it just before half a cycle: there the triangle is at its top,
// the sine falls through zero and the saws are at their jump.
#include "synth/lfo.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tonewright {

namespace {

constexpr double SyncPhase = 32767.0 / 65536.0;

// The next value of a sequence without a visible order, -1 to 1.
double NextRandom(std::uint32_t &state) {
    state = state * 1664525u + 1013904223u;
    return static_cast<double>(state >> 8) / 8388607.5 - 1.0;
}

double HoldsACycle(const LfoShape &shape) {
    return shape.wave == LfoWave::SampleAndHold8 ? 8.0 : 1.0;
}

} // namespace

void LfoKeyDown(Lfo &lfo, const LfoShape &shape, bool first) {
    if (shape.keySync) {
        lfo.phase = SyncPhase;
    }
    if (first || shape.delayAtEachKey) {
        lfo.sinceFirstKey = 0.0;
    }
}

double LfoValue(const Lfo &lfo, const LfoShape &shape) {
    const double phase = lfo.phase;
    const double saw = 2.0 * (phase < 0.5 ? phase + 0.5 : phase - 0.5) - 1.0;
    switch (shape.wave) {
    case LfoWave::Triangle:
        return phase < 0.5 ? 4.0 * phase - 1.0 : 3.0 - 4.0 * phase;
    case LfoWave::SawDown:
        return -saw;
    case LfoWave::SawUp:
        return saw;
    case LfoWave::Square:
        return phase < 0.5 ? 1.0 : -1.0;
    case LfoWave::Sine:
        return std::sin(2.0 * std::numbers::pi * phase);
    case LfoWave::SampleAndHold:
    case LfoWave::SampleAndHold8:
        return lfo.held;
    }
    return 0.0;
}

double LfoFade(const Lfo &lfo, const LfoShape &shape) {
    const double faded = lfo.sinceFirstKey - shape.delay.wait;
    if (faded < 0.0) {
        return 0.0;
    }
    return shape.delay.fade > 0.0 ? std::min(1.0, faded / shape.delay.fade) : 1.0;
}

void AdvanceLfo(Lfo &lfo, const LfoShape &shape, double seconds) {
    const double holds = HoldsACycle(shape);
    const double before = std::floor(lfo.phase * holds);
    const double phase = lfo.phase + shape.frequency * seconds;
    if (std::floor(phase * holds) != before) {
        lfo.held = NextRandom(lfo.random);
    }
    lfo.phase = phase - std::floor(phase);
    lfo.sinceFirstKey += seconds;
}

} // namespace tonewright
