// Wet is at most as loud as dry, over all frequencies (a tone that meets a resonance may be
// louder), but for distortion and wah, which replace it; feedback stays below 0.95.
#include "synth/effects.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace tonewright {

namespace {

constexpr double LongestDelay = 1.2; // s
constexpr float Silence = 1e-5f;     // -100 dB of a carrier at full level
constexpr float Nothing = 1e-15f;    // what is not even worth to be kept
constexpr double MoveTime = 0.05;    // s, of parameters
constexpr double ChangeTime = 0.02;  // s, from one time of a delay to another

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

// Without what would go on for ever and ever smaller, in numbers that processors are slow with.
float Kept(float sample) {
    return std::fabs(sample) < Nothing ? 0.0f : sample;
}

void Write(Effect &effect, float left, float right) {
    const auto mask = static_cast<std::uint32_t>(effect.left.size() - 1);
    effect.left[effect.place & mask] = Kept(left);
    effect.right[effect.place & mask] = Kept(right);
    ++effect.place;
    effect.written = std::min<std::uint32_t>(effect.written + 1, mask);
}

// A setting on its straight way through a block.
struct Way {
    float value;
    float step;

    Way(float from, float to) : value(from), step((to - from) / BlockFrames) {}
    float Next() { return value += step; }
};

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

using Settings = std::array<float, 6>;

double SweepFrequency(const EffectShape &shape) {
    return Between(0.1, 5.0, shape.second);
}

// Drive, level, how far the filter is open.
Settings DistortionSettings(const EffectShape &shape, double rate) {
    const auto drive = static_cast<float>(Between(0.5, 40.0, shape.first));
    const double corner = std::min(Between(500.0, 12000.0, shape.second), 0.45 * rate);
    return {drive, 1.0f / Saturated(drive),
            static_cast<float>(1.0 - std::exp(-2.0 * std::numbers::pi * corner / rate))};
}

void Distort(Effect &effect, const Settings &settings, Block &left, Block &right) {
    Way drive(effect.settings[0], settings[0]);
    Way level(effect.settings[1], settings[1]);
    Way open(effect.settings[2], settings[2]);
    // A wave that is not the same on both sides of zero gets an offset, which is taken away.
    const float keep = OffsetFilterKeeps(effect.rate);
    float *memory = effect.memory.data();
    for (int i = 0; i < BlockFrames; ++i) {
        const float driven = drive.Next();
        const float loud = level.Next();
        const float part = open.Next();
        for (int side = 0; side < 2; ++side) {
            float &sample = side == 0 ? left[i] : right[i];
            float *state = memory + 2 * side;
            const float before = state[0];
            state[0] += part * (Saturated(driven * sample) * loud - state[0]);
            state[1] = keep * (state[1] + state[0] - before);
            sample = state[1];
        }
    }
}

// Sensitivity, damping.
Settings WahSettings(const EffectShape &shape, double) {
    return {static_cast<float>(shape.first),
            static_cast<float>(1.0 / Between(1.0, 8.0, shape.second))};
}

// A band pass that the loudness of what comes in opens.
void Wah(Effect &effect, const Settings &settings, Block &left, Block &right) {
    const auto rise = static_cast<float>(1.0 - std::exp(-1.0 / (0.005 * effect.rate)));
    const auto fall = static_cast<float>(1.0 - std::exp(-1.0 / (0.15 * effect.rate)));
    Way sensitivity(effect.settings[0], settings[0]);
    Way damping(effect.settings[1], settings[1]);
    float *memory = effect.memory.data();
    float g = 0.0f;
    for (int i = 0; i < BlockFrames; ++i) {
        const float loudness = std::max(std::fabs(left[i]), std::fabs(right[i]));
        memory[4] += (loudness > memory[4] ? rise : fall) * (loudness - memory[4]);
        const float sensitive = sensitivity.Next();
        const float damped = damping.Next();
        if (i % 16 == 0) {
            const double octaves = 3.5 * std::min(1.0f, sensitive * memory[4]);
            const double hz = std::min(250.0 * std::exp2(octaves), 0.4 * effect.rate);
            g = static_cast<float>(std::tan(std::numbers::pi * hz / effect.rate));
        }
        const float scale = 1.0f / (1.0f + g * (g + damped));
        for (int side = 0; side < 2; ++side) {
            float &sample = side == 0 ? left[i] : right[i];
            float *state = memory + 2 * side;
            const float high = (sample - (g + damped) * state[0] - state[1]) * scale;
            const float band = g * high + state[0];
            const float low = g * band + state[1];
            state[0] = g * high + band;
            state[1] = g * band + low;
            sample = 2.0f * damped * band + 0.25f * low;
        }
    }
}

// A swept delay beside the dry sound: of 5 to 25 ms without feedback, or of 0.5 to 8 ms with it.
struct SweptDelay {
    double shortest; // s
    double longest;
    float feedback;
    double wet; // at most
};
constexpr SweptDelay ChorusDelay = {0.005, 0.025, 0.0f, 0.7};
constexpr SweptDelay FlangerDelay = {0.0005, 0.008, 0.6f, 0.6};

// Frames of the sweep, how loud it is.
template <const SweptDelay &Delay>
Settings SweptDelaySettings(const EffectShape &shape, double rate) {
    return {static_cast<float>((Delay.longest - Delay.shortest) * rate * shape.first),
            static_cast<float>(Delay.wet * std::min(1.0, 4.0 * shape.first))};
}

template <const SweptDelay &Delay>
void SweepDelay(Effect &effect, const Settings &settings, Block &left, Block &right) {
    const double hz = SweepFrequency(effect.shape);
    const double from = Delay.shortest * effect.rate;
    Way way(effect.settings[0], settings[0]);
    Way wet(effect.settings[1], settings[1]);
    for (int i = 0; i < BlockFrames; ++i) {
        const Sides sweep = NextSweep(effect, hz);
        const float frames = way.Next();
        const float loud = wet.Next();
        const float a = Tap(effect, effect.left, from + frames * sweep.left);
        const float b = Tap(effect, effect.right, from + frames * sweep.right);
        Write(effect, left[i] + Delay.feedback * a, right[i] + Delay.feedback * b);
        left[i] += loud * a;
        right[i] += loud * b;
    }
}

// Octaves of the sweep, how loud it is.
Settings PhaserSettings(const EffectShape &shape, double) {
    return {static_cast<float>(4.0 * shape.first),
            static_cast<float>(0.7 * std::min(1.0, 2.0 * shape.first))};
}

// Six all-pass stages whose corner is swept, beside the dry sound.
void Phase(Effect &effect, const Settings &settings, Block &left, Block &right) {
    constexpr int Stages = 6;
    const double hz = SweepFrequency(effect.shape);
    Way range(effect.settings[0], settings[0]);
    Way wet(effect.settings[1], settings[1]);
    float corner[2] = {};
    for (int i = 0; i < BlockFrames; ++i) {
        const Sides sweep = NextSweep(effect, hz);
        const float octaves = range.Next();
        const float loud = wet.Next();
        for (int side = 0; side < 2; ++side) {
            if (i % 16 == 0) {
                const double up = octaves * (side == 0 ? sweep.left : sweep.right);
                const double at = std::min(200.0 * std::exp2(up), 0.4 * effect.rate);
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
            sample += loud * value;
        }
    }
}

double EchoFrames(const EffectShape &shape, double rate) {
    return (0.012 + (LongestDelay - 0.012) * shape.second) * rate;
}

// Feedback, how loud it is: the louder the echoes of echoes, the softer each.
Settings EchoSettings(const EffectShape &shape, double) {
    const double feedback = 0.85 * shape.first;
    return {static_cast<float>(feedback),
            static_cast<float>(0.8 * shape.first * std::sqrt(1.0 - feedback * feedback))};
}

// To another time it fades over, since a sweep to it would be heard as one.
void Echo(Effect &effect, const Settings &settings, Block &left, Block &right) {
    const double wanted = effect.next.kind == EffectKind::Delay
                              ? EchoFrames(effect.next, effect.rate)
                              : effect.nextTime;
    const bool begins = effect.written == 0;
    if (begins) {
        effect.time = wanted;
    }
    if (begins || effect.changed == 0.0f) {
        effect.nextTime = wanted;
        effect.changed = 0.0f;
    }
    const bool changes = effect.nextTime != effect.time;
    const auto step = changes ? static_cast<float>(1.0 / (ChangeTime * effect.rate)) : 0.0f;
    Way feedback(effect.settings[0], settings[0]);
    Way wet(effect.settings[1], settings[1]);
    for (int i = 0; i < BlockFrames; ++i) {
        const float keep = feedback.Next();
        const float loud = wet.Next();
        float a = Tap(effect, effect.left, effect.time);
        float b = Tap(effect, effect.right, effect.time);
        if (changes) {
            effect.changed = std::min(1.0f, effect.changed + step);
            a += effect.changed * (Tap(effect, effect.left, effect.nextTime) - a);
            b += effect.changed * (Tap(effect, effect.right, effect.nextTime) - b);
        }
        Write(effect, left[i] + keep * a, right[i] + keep * b);
        left[i] += loud * a;
        right[i] += loud * b;
    }
    if (effect.changed >= 1.0f) {
        effect.time = effect.nextTime;
        effect.changed = 0.0f;
    }
}

// In seconds: so long that none keeps 0.95 of what it holds in the longest reverb.
constexpr double ReverbLengths[4] = {0.0383, 0.0411, 0.0437, 0.0479};

// How much each delay keeps, how loud it is, how little it is damped.
Settings ReverbSettings(const EffectShape &shape, double rate) {
    const double seconds = Between(0.3, 5.0, shape.second);
    Settings settings = {};
    double sum = 0.0;
    for (int line = 0; line < 4; ++line) {
        settings[line] = static_cast<float>(std::pow(10.0, -3.0 * ReverbLengths[line] / seconds));
        sum += settings[line];
    }
    const double keeps = sum / 4.0;
    const double wet = std::min(1.0, 1.4 * std::sqrt(1.0 - keeps * keeps));
    settings[4] = static_cast<float>(0.8 * shape.first * wet);
    settings[5] = static_cast<float>(1.0 - std::exp(-2.0 * std::numbers::pi * 7000.0 / rate));
    return settings;
}

// Four delays that feed each other, two a side: the lines hold one in each half of them.
void Reverberate(Effect &effect, const Settings &settings, Block &left, Block &right) {
    const auto half = static_cast<std::uint32_t>(effect.left.size() / 2);
    std::uint32_t length[4];
    Way keep[4] = {{effect.settings[0], settings[0]},
                   {effect.settings[1], settings[1]},
                   {effect.settings[2], settings[2]},
                   {effect.settings[3], settings[3]}};
    Way wet(effect.settings[4], settings[4]);
    for (int line = 0; line < 4; ++line) {
        length[line] = static_cast<std::uint32_t>(ReverbLengths[line] * effect.rate);
    }
    for (int i = 0; i < BlockFrames; ++i) {
        float out[4];
        for (int line = 0; line < 4; ++line) {
            const std::vector<float> &buffer = line < 2 ? effect.left : effect.right;
            const std::uint32_t at = ((effect.place - length[line]) & (half - 1)) + line % 2 * half;
            float &damped = effect.memory[line];
            const float read = length[line] <= effect.written ? buffer[at] : 0.0f;
            damped += settings[5] * (read - damped);
            out[line] = damped * keep[line].Next();
        }
        // An orthogonal mix of the four: no energy is made.
        const float a = 0.5f * (out[0] + out[1] + out[2] + out[3]);
        const float b = 0.5f * (out[0] - out[1] + out[2] - out[3]);
        const float c = 0.5f * (out[0] + out[1] - out[2] - out[3]);
        const float d = 0.5f * (out[0] - out[1] - out[2] + out[3]);
        const std::uint32_t at = effect.place & (half - 1);
        effect.left[at] = Kept(left[i] + a);
        effect.left[at + half] = Kept(left[i] + b);
        effect.right[at] = Kept(right[i] + c);
        effect.right[at + half] = Kept(right[i] + d);
        ++effect.place;
        effect.written = std::min<std::uint32_t>(effect.written + 1, half - 1);
        const float loud = 0.5f * wet.Next();
        left[i] += loud * (out[0] + out[2]);
        right[i] += loud * (out[1] + out[3]);
    }
}

// What each kind does: what its parameters mean for it, and a block of it in place.
struct Kind {
    Settings (*settings)(const EffectShape &shape, double rate);
    void (*apply)(Effect &effect, const Settings &settings, Block &left, Block &right);
};

// Through is none of them.
constexpr Kind Kinds[] = {
    {DistortionSettings, Distort},
    {WahSettings, Wah},
    {SweptDelaySettings<ChorusDelay>, SweepDelay<ChorusDelay>},
    {SweptDelaySettings<FlangerDelay>, SweepDelay<FlangerDelay>},
    {PhaserSettings, Phase},
    {EchoSettings, Echo},
    {ReverbSettings, Reverberate},
};

const Kind &KindOf(const Effect &effect) {
    return Kinds[static_cast<std::size_t>(effect.shape.kind) - 1];
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

// A part of the way, and the rest of it at its end.
void Approach(double &value, double target, double part) {
    value += part * (target - value);
    if (std::fabs(target - value) < 1e-6) {
        value = target;
    }
}

// What a gain that is on its way to `target` is after another block.
float Faded(const Effect &effect, float gain, float target) {
    const auto most = static_cast<float>(BlockFrames / (FadeTime * effect.rate));
    return std::clamp(target, gain - most, gain + most);
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

void ApplyEffect(Effect &effect, float (&left)[BlockFrames], float (&right)[BlockFrames]) {
    if (effect.next.kind != effect.shape.kind && effect.mix == 0.0f) {
        ClearEffect(effect);
        effect.shape = effect.next;
        effect.phase = 0.0;
        effect.feed = 0.0f;
        if (effect.shape.kind != EffectKind::Through) {
            effect.settings = KindOf(effect).settings(effect.shape, effect.rate);
        }
    }
    if (effect.shape.kind == EffectKind::Through) {
        return;
    }
    const bool stays = effect.next.kind == effect.shape.kind;
    const float heard = Peak(left, right);
    if (heard == 0.0f && IsQuiet(effect)) {
        effect.mix = effect.feed = stays ? 1.0f : 0.0f;
        return;
    }
    if (stays) {
        const double part = 1.0 - std::exp(-BlockFrames / (MoveTime * effect.rate));
        Approach(effect.shape.first, effect.next.first, part);
        Approach(effect.shape.second, effect.next.second, part);
    }
    Block fedLeft;
    Block fedRight;
    Block wetLeft;
    Block wetRight;
    Way feed(effect.feed, Faded(effect, effect.feed, 1.0f));
    for (int i = 0; i < BlockFrames; ++i) {
        const float part = feed.Next();
        fedLeft[i] = wetLeft[i] = part * left[i];
        fedRight[i] = wetRight[i] = part * right[i];
    }
    const Settings settings = KindOf(effect).settings(effect.shape, effect.rate);
    KindOf(effect).apply(effect, settings, wetLeft, wetRight);
    effect.settings = settings;
    std::ranges::transform(effect.memory, effect.memory.begin(), Kept);
    Way mix(effect.mix, Faded(effect, effect.mix, stays ? 1.0f : 0.0f));
    for (int i = 0; i < BlockFrames; ++i) {
        const float part = mix.Next();
        left[i] += part * (wetLeft[i] - fedLeft[i]);
        right[i] += part * (wetRight[i] - fedRight[i]);
    }
    effect.feed = Faded(effect, effect.feed, 1.0f);
    effect.mix = Faded(effect, effect.mix, stays ? 1.0f : 0.0f);
    if (heard < Silence && Peak(left, right) < Silence) {
        effect.quiet = std::min(effect.quiet + BlockFrames, QuietFrames(effect));
    } else {
        effect.quiet = 0;
    }
}

} // namespace tonewright
