// The effects of a reface DX: one stage, of two in series, with two parameters of 0 to 1 each. None
// of their laws is published: they are sensible ones, whose tails end.
#pragma once

#include "synth/block.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tonewright {

enum class EffectKind { Through, Distortion, TouchWah, Chorus, Flanger, Phaser, Delay, Reverb };

struct EffectShape {
    EffectKind kind = EffectKind::Through;
    double first = 0.0;  // drive, sensitivity, depth
    double second = 0.0; // tone, resonance, rate, time
};

// What a stage remembers. Its lines hold as much as the longest delay needs.
struct Effect {
    double rate = 48000.0;
    EffectShape shape;
    EffectShape next; // what it is on its way to
    // What its two parameters make of it, at the end of the last block.
    std::array<float, 6> settings = {};
    // How much goes in, which begins at 0 with an effect, and how much of it is heard, which ends
    // there: it fades out before another kind begins.
    float feed = 0.0f;
    float mix = 0.0f;
    std::vector<float> left;
    std::vector<float> right;
    std::uint32_t place = 0;   // of the next frame in the lines
    std::uint32_t written = 0; // frames in them since the effect began; what is older is silence
    // Of a delay: its time in frames, and the one that it is changing to by such a part.
    double time = 0.0;
    double nextTime = 0.0;
    float changed = 0.0f;
    double phase = 0.0;                // of a sweep, in cycles
    std::array<float, 24> memory = {}; // of filters
    std::uint32_t quiet = 0;           // frames since anything could be heard
};

// For a rate of 8,000 to 192,000 frames a second; the only place that allocates.
Effect MakeEffect(double rate);
// Another shape: parameters of the same kind are on their way for a twentieth of a second, another
// kind begins anew.
void SetEffect(Effect &effect, const EffectShape &shape);
// A block, in place. Through changes nothing. When nothing has come in or gone out for longer than
// the longest delay, what goes out is exactly 0.
void ApplyEffect(Effect &effect, float (&left)[BlockFrames], float (&right)[BlockFrames]);
// Nothing of a tail is left.
bool IsQuiet(const Effect &effect);
// Forgets the tail, at once.
void ClearEffect(Effect &effect);

} // namespace tonewright
