// Wet is at most as loud as dry, but for distortion and wah, which replace it; feedback stays below
// 0.95.
#include "synth/effects.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace tonewright {

namespace {

constexpr double LongestDelay = 1.2; // s
constexpr float Silence = 1e-5f;     // -100 dB of a carrier at full level

using Block = float[BlockFrames];

// A parameter's exponential way from `low` to `high`.
double Between(double low, double high, double part) {
    return low * std::pow(high / low, part);
}

float Tap(const Effect &effect, const std::vector<float> &line, double frames) {
    const auto whole = static_cast<std::uint32_t>(frames);
    const auto part = static_cast<float>(frames - whole);
    const auto mask = static_cast<std::uint32_t>(line.size() - 1);
    const auto at = [&](std::uint32_t back) {
        return back <= effect.written ? line[(effect.place - back) & mask] : 0.0f;
    };
    return at(whole) + part * (at(whole + 1) - at(whole));
}

void Write(Effect &effect, float left, float right) {
    const auto mask = static_cast<std::uint32_t>(effect.left.size() - 1);
    effect.left[effect.place & mask] = left;
    effect.right[effect.place & mask] = right;
    ++effect.place;
    effect.written = std::min<std::uint32_t>(effect.written + 1, mask);
}

// A tangent hyperbolic, within 3 %, that is quick.
float Saturated(float x) {
    const float limited = std::clamp(x, -3.0f, 3.0f);
    return limited * (27.0f + limited * limited) / (27.0f + 9.0f * limited * limited);
}

float Sweep(double phase) {
    return static_cast<float>(0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * phase));
}

// Moves the sweep on by a frame and returns where it is, a quarter of a cycle apart on both sides.
struct Sides {
    float left;
    float right;
};
Sides NextSweep(Effect &effect, double hz) {
    const Sides sides = {Sweep(effect.phase), Sweep(effect.phase + 0.25)};
    effect.phase += hz / effect.rate;
    effect.phase -= std::floor(effect.phase);
    return sides;
}

double SweepFrequency(const Effect &effect) {
    return Between(0.1, 5.0, effect.shape.second);
}

void Distort(Effect &effect, Block &left, Block &right) {
    const auto drive = static_cast<float>(Between(0.5, 40.0, effect.shape.first));
    const float level = 1.0f / Saturated(drive);
    const double corner =
        std::min(Between(500.0, 12000.0, effect.shape.second), 0.45 * effect.rate);
    const auto open =
        static_cast<float>(1.0 - std::exp(-2.0 * std::numbers::pi * corner / effect.rate));
    for (int i = 0; i < BlockFrames; ++i) {
        effect.memory[0] += open * (Saturated(drive * left[i]) * level - effect.memory[0]);
        effect.memory[1] += open * (Saturated(drive * right[i]) * level - effect.memory[1]);
        left[i] = effect.memory[0];
        right[i] = effect.memory[1];
    }
}

// A band pass that the loudness of what comes in opens.
void Wah(Effect &effect, Block &left, Block &right) {
    const auto rise = static_cast<float>(1.0 - std::exp(-1.0 / (0.005 * effect.rate)));
    const auto fall = static_cast<float>(1.0 - std::exp(-1.0 / (0.15 * effect.rate)));
    const auto damping = static_cast<float>(1.0 / Between(1.0, 8.0, effect.shape.second));
    const auto sensitivity = static_cast<float>(effect.shape.first);
    float *memory = effect.memory.data();
    float g = 0.0f;
    for (int i = 0; i < BlockFrames; ++i) {
        const float loudness = std::max(std::fabs(left[i]), std::fabs(right[i]));
        memory[4] += (loudness > memory[4] ? rise : fall) * (loudness - memory[4]);
        if (i % 16 == 0) {
            const double octaves = 3.5 * std::min(1.0f, sensitivity * memory[4]);
            const double hz = std::min(250.0 * std::exp2(octaves), 0.4 * effect.rate);
            g = static_cast<float>(std::tan(std::numbers::pi * hz / effect.rate));
        }
        const float scale = 1.0f / (1.0f + g * (g + damping));
        for (int side = 0; side < 2; ++side) {
            float &sample = side == 0 ? left[i] : right[i];
            float *state = memory + 2 * side;
            const float high = (sample - (g + damping) * state[0] - state[1]) * scale;
            const float band = g * high + state[0];
            const float low = g * band + state[1];
            state[0] = g * high + band;
            state[1] = g * band + low;
            sample = 2.0f * damping * band + 0.25f * low;
        }
    }
}

// A swept delay beside the dry sound: of 5 to 25 ms without feedback, or of 0.5 to 8 ms with it.
void SweepDelay(Effect &effect, double shortest, double longest, float feedback, Block &left,
                Block &right) {
    const double hz = SweepFrequency(effect);
    const double from = shortest * effect.rate;
    const double way = (longest - shortest) * effect.rate * effect.shape.first;
    const auto wet = static_cast<float>(0.7 * std::min(1.0, 4.0 * effect.shape.first));
    for (int i = 0; i < BlockFrames; ++i) {
        const Sides sweep = NextSweep(effect, hz);
        const float a = Tap(effect, effect.left, from + way * sweep.left);
        const float b = Tap(effect, effect.right, from + way * sweep.right);
        Write(effect, left[i] + feedback * a, right[i] + feedback * b);
        left[i] += wet * a;
        right[i] += wet * b;
    }
}

// Six all-pass stages whose corner is swept, beside the dry sound.
void Phase(Effect &effect, Block &left, Block &right) {
    constexpr int Stages = 6;
    const double hz = SweepFrequency(effect);
    const auto wet = static_cast<float>(std::min(1.0, 2.0 * effect.shape.first));
    float corner[2] = {};
    for (int i = 0; i < BlockFrames; ++i) {
        const Sides sweep = NextSweep(effect, hz);
        for (int side = 0; side < 2; ++side) {
            if (i % 16 == 0) {
                const double octaves =
                    4.0 * effect.shape.first * (side == 0 ? sweep.left : sweep.right);
                const double at = std::min(200.0 * std::exp2(octaves), 0.4 * effect.rate);
                const double tangent = std::tan(std::numbers::pi * at / effect.rate);
                corner[side] = static_cast<float>((tangent - 1.0) / (tangent + 1.0));
            }
            float &sample = side == 0 ? left[i] : right[i];
            float *state = effect.memory.data() + (Stages + 1) * side;
            float value = sample + 0.4f * state[Stages];
            for (int stage = 0; stage < Stages; ++stage) {
                const float passed = corner[side] * value + state[stage];
                state[stage] = value - corner[side] * passed;
                value = passed;
            }
            state[Stages] = value;
            sample += wet * value * 0.7f;
        }
    }
}

void Echo(Effect &effect, Block &left, Block &right) {
    const auto depth = static_cast<float>(effect.shape.first);
    const double frames = (0.012 + (LongestDelay - 0.012) * effect.shape.second) * effect.rate;
    for (int i = 0; i < BlockFrames; ++i) {
        const float a = Tap(effect, effect.left, frames);
        const float b = Tap(effect, effect.right, frames);
        Write(effect, left[i] + 0.85f * depth * a, right[i] + 0.85f * depth * b);
        left[i] += 0.8f * depth * a;
        right[i] += 0.8f * depth * b;
    }
}

// Four delays that feed each other, two a side: the lines hold one in each half of them.
void Reverberate(Effect &effect, Block &left, Block &right) {
    constexpr double Lengths[4] = {0.0297, 0.0371, 0.0411, 0.0437}; // s
    const double seconds = Between(0.3, 5.0, effect.shape.second);
    const auto wet = static_cast<float>(0.8 * effect.shape.first);
    const auto half = static_cast<std::uint32_t>(effect.left.size() / 2);
    std::uint32_t length[4];
    float keep[4];
    for (int line = 0; line < 4; ++line) {
        length[line] = static_cast<std::uint32_t>(Lengths[line] * effect.rate);
        keep[line] = static_cast<float>(std::pow(10.0, -3.0 * Lengths[line] / seconds));
    }
    for (int i = 0; i < BlockFrames; ++i) {
        float out[4];
        for (int line = 0; line < 4; ++line) {
            const std::vector<float> &buffer = line < 2 ? effect.left : effect.right;
            const std::uint32_t at = ((effect.place - length[line]) & (half - 1)) + line % 2 * half;
            float &damped = effect.memory[line];
            const float read = length[line] <= effect.written ? buffer[at] : 0.0f;
            damped += 0.6f * (read - damped);
            out[line] = damped * keep[line];
        }
        // An orthogonal mix of the four: no energy is made.
        const float a = 0.5f * (out[0] + out[1] + out[2] + out[3]);
        const float b = 0.5f * (out[0] - out[1] + out[2] - out[3]);
        const float c = 0.5f * (out[0] + out[1] - out[2] - out[3]);
        const float d = 0.5f * (out[0] - out[1] - out[2] + out[3]);
        const std::uint32_t at = effect.place & (half - 1);
        effect.left[at] = left[i] + a;
        effect.left[at + half] = left[i] + b;
        effect.right[at] = right[i] + c;
        effect.right[at + half] = right[i] + d;
        ++effect.place;
        effect.written = std::min<std::uint32_t>(effect.written + 1, half - 1);
        left[i] += 0.5f * wet * (out[0] + out[2]);
        right[i] += 0.5f * wet * (out[1] + out[3]);
    }
}

void Apply(Effect &effect, Block &left, Block &right) {
    switch (effect.shape.kind) {
    case EffectKind::Through:
        break;
    case EffectKind::Distortion:
        Distort(effect, left, right);
        break;
    case EffectKind::TouchWah:
        Wah(effect, left, right);
        break;
    case EffectKind::Chorus:
        SweepDelay(effect, 0.005, 0.025, 0.0f, left, right);
        break;
    case EffectKind::Flanger:
        SweepDelay(effect, 0.0005, 0.008, 0.6f, left, right);
        break;
    case EffectKind::Phaser:
        Phase(effect, left, right);
        break;
    case EffectKind::Delay:
        Echo(effect, left, right);
        break;
    case EffectKind::Reverb:
        Reverberate(effect, left, right);
        break;
    }
}

float Peak(const Block &left, const Block &right) {
    float peak = 0.0f;
    for (int i = 0; i < BlockFrames; ++i) {
        peak = std::max({peak, std::fabs(left[i]), std::fabs(right[i])});
    }
    return peak;
}

std::uint32_t QuietFrames(const Effect &effect) {
    return static_cast<std::uint32_t>((LongestDelay + 0.1) * effect.rate);
}

} // namespace

Effect MakeEffect(double rate) {
    Effect effect;
    effect.rate = rate;
    const auto frames = static_cast<std::uint32_t>(LongestDelay * rate) + 2 * BlockFrames;
    effect.left.resize(std::bit_ceil(frames));
    effect.right.resize(effect.left.size());
    effect.quiet = QuietFrames(effect);
    return effect;
}

void SetEffect(Effect &effect, const EffectShape &shape) {
    effect.next = shape;
}

bool IsQuiet(const Effect &effect) {
    return effect.shape.kind == EffectKind::Through || effect.quiet >= QuietFrames(effect);
}

void ClearEffect(Effect &effect) {
    effect.written = 0; // what is older than that is silence
    effect.memory = {};
    effect.quiet = QuietFrames(effect);
}

void Process(Effect &effect, float (&left)[BlockFrames], float (&right)[BlockFrames]) {
    if (effect.next.kind != effect.shape.kind && effect.mix == 0.0f) {
        effect.shape = effect.next;
        effect.written = 0;
        effect.memory = {};
        effect.phase = 0.0;
    }
    if (effect.shape.kind == EffectKind::Through) {
        return;
    }
    const float heard = Peak(left, right);
    if (heard == 0.0f && IsQuiet(effect)) {
        effect.mix = effect.next.kind == effect.shape.kind ? 1.0f : 0.0f;
        return;
    }
    // Parameters move a part of their way in each block, within 20 ms in all.
    const double part = 1.0 - std::exp(-BlockFrames / (0.02 * effect.rate));
    const bool stays = effect.next.kind == effect.shape.kind;
    if (stays) {
        effect.shape.first += part * (effect.next.first - effect.shape.first);
        effect.shape.second += part * (effect.next.second - effect.shape.second);
    }
    Block dryLeft;
    Block dryRight;
    std::copy_n(left, BlockFrames, dryLeft);
    std::copy_n(right, BlockFrames, dryRight);
    Apply(effect, left, right);
    const auto step = static_cast<float>(1.0 / (FadeTime * effect.rate)) * (stays ? 1.0f : -1.0f);
    float mix = effect.mix;
    for (int i = 0; i < BlockFrames; ++i) {
        mix = std::clamp(mix + step, 0.0f, 1.0f);
        left[i] = dryLeft[i] + mix * (left[i] - dryLeft[i]);
        right[i] = dryRight[i] + mix * (right[i] - dryRight[i]);
    }
    effect.mix = mix;
    if (heard < Silence && Peak(left, right) < Silence) {
        effect.quiet = std::min(effect.quiet + BlockFrames, QuietFrames(effect));
    } else {
        effect.quiet = 0;
    }
}

} // namespace tonewright
