// The tables and formulas of the six-operator instruments, as measured and published.
#include "synth/laws.h"

#include "synth/points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tonewright {

namespace {

constexpr std::array<int, 20> LowLevels = {0,  5,  9,  13, 17, 20, 23, 25, 27, 29,
                                           31, 33, 35, 37, 39, 41, 42, 43, 45, 46};

// Exponential level scaling by groups of three keys: a factor of 2^(1/4) a group.
constexpr std::array<int, 29> ExponentialGroups = {0,  1,  2,  3,   4,   5,   6,   7,   8,  9,
                                                   11, 14, 16, 19,  23,  28,  33,  39,  47, 57,
                                                   67, 80, 95, 113, 134, 160, 190, 224, 255};

struct VelocityPoint {
    int velocity;
    int value;
};
constexpr std::array VelocityPoints = {
    VelocityPoint{0, 0},     VelocityPoint{2, 70},    VelocityPoint{4, 86},
    VelocityPoint{6, 97},    VelocityPoint{10, 114},  VelocityPoint{12, 121},
    VelocityPoint{14, 126},  VelocityPoint{18, 138},  VelocityPoint{20, 142},
    VelocityPoint{22, 148},  VelocityPoint{28, 160},  VelocityPoint{32, 166},
    VelocityPoint{36, 173},  VelocityPoint{38, 174},  VelocityPoint{42, 181},
    VelocityPoint{48, 189},  VelocityPoint{50, 190},  VelocityPoint{52, 194},
    VelocityPoint{60, 202},  VelocityPoint{62, 205},  VelocityPoint{64, 206},
    VelocityPoint{72, 216},  VelocityPoint{80, 224},  VelocityPoint{82, 225},
    VelocityPoint{90, 232},  VelocityPoint{92, 233},  VelocityPoint{100, 240},
    VelocityPoint{108, 244}, VelocityPoint{110, 246}, VelocityPoint{112, 246},
    VelocityPoint{116, 249}, VelocityPoint{126, 254}};

// Amplitude modulation as another instrument was measured.
struct TremoloPoint {
    double modulation; // of 255
    double decibels;
};
constexpr std::array TremoloPoints = {
    TremoloPoint{0, 0.0},   TremoloPoint{25, 0.9},   TremoloPoint{64, 1.7},  TremoloPoint{87, 2.4},
    TremoloPoint{128, 4.8}, TremoloPoint{193, 14.0}, TremoloPoint{255, 40.0}};
constexpr double StepDecibels = 20.0 * 0.30102999566 / 256.0;

// Levels of the pitch envelope, in 1/32 octave: the ends of the range; between them it is v - 50.
constexpr std::array<int, 17> LowPitchLevels = {-128, -116, -104, -95, -85, -76, -68, -61, -56,
                                                -52,  -49,  -46,  -43, -41, -39, -37, -35};
constexpr std::array<int, 14> HighPitchLevels = {38, 40, 43, 46, 49,  53,  58,
                                                 65, 73, 82, 92, 103, 115, 127};

// Rates of the pitch envelope at every fifth value up to 95, then each.
constexpr std::array<int, 20> PitchRates = {1,  4,  7,  9,  12, 14, 18,  22,  27,  34,
                                            41, 49, 58, 68, 79, 94, 115, 141, 171, 211};
constexpr std::array<int, 4> HighPitchRates = {232, 243, 254, 255};

constexpr std::array<int, 8> PitchSensitivities = {0, 10, 20, 33, 55, 92, 153, 255};

// The place of a velocity on the instrument's own scale, on which 239 changes nothing.
int VelocityValue(int velocity) {
    const int even = velocity & ~1; // 0 to 126, the first point and the last one
    const std::size_t upper = UpperPoint(VelocityPoints, &VelocityPoint::velocity, even);
    const VelocityPoint &below = VelocityPoints[upper - 1];
    const VelocityPoint &above = VelocityPoints[upper];
    const double part =
        static_cast<double>(even - below.velocity) / (above.velocity - below.velocity);
    return static_cast<int>(std::lround(below.value + part * (above.value - below.value)));
}

// The rate 1 to 255 of the instrument behind a pitch envelope rate of 0 to 99.
int PitchRateValue(int rate) {
    if (rate >= 96) {
        return HighPitchRates[rate - 96];
    }
    const int below = rate / 5;
    const int begin = PitchRates[below];
    const int end = rate % 5 == 0 ? begin : PitchRates[below + 1];
    return static_cast<int>(std::lround(begin + (end - begin) * (rate % 5) / 5.0));
}

// What the groups of keys from the 22nd on, 95 and more, are when the last one is not 255.
int ExponentialScaling(int groups, int farthest) {
    constexpr int Far = 22;
    const int last = static_cast<int>(ExponentialGroups.size()) - 1;
    const int value = ExponentialGroups[std::min(groups, last)];
    const int begin = ExponentialGroups[Far];
    return groups <= Far
               ? value
               : begin + (value - begin) * (farthest - begin) / (ExponentialGroups[last] - begin);
}

int ScalingOf(int groups, int depth, ScalingCurve curve, const SynthChoices &choices) {
    const bool linear = curve == ScalingCurve::MinusLinear || curve == ScalingCurve::PlusLinear;
    const bool plus = curve == ScalingCurve::PlusLinear || curve == ScalingCurve::PlusExponential;
    const int units = linear
                          ? groups * depth * 329 >> 12
                          : ExponentialScaling(groups, choices.farthestScaling) * depth * 329 >> 15;
    return plus ? units : -units;
}

} // namespace

int OutputLevelUnits(int level) {
    return level < static_cast<int>(LowLevels.size()) ? LowLevels[level] : 28 + level;
}

int EnvelopeLevelUnits(int level) {
    return OutputLevelUnits(level) >> 1;
}

int VelocitySteps(double sensitivity, int velocity) {
    return static_cast<int>(std::floor((sensitivity * (VelocityValue(velocity) - 239) + 7) / 8)) *
           16;
}

int LevelScalingUnits(int key, int breakPoint, int leftDepth, int rightDepth, ScalingCurve left,
                      ScalingCurve right, const SynthChoices &choices) {
    const int distance = key - breakPoint - choices.breakPointOffset;
    return distance >= 0 ? ScalingOf((distance + 1) / 3, rightDepth, right, choices)
                         : ScalingOf((1 - distance) / 3, leftDepth, left, choices);
}

int RateScaling(int key, double sensitivity) {
    return static_cast<int>(sensitivity * std::clamp(key / 3 - 7, 0, 31) / 8);
}

int EnvelopeRate(int rate) {
    return rate * 41 >> 6;
}

double DecaySpeed(int rate) {
    const double slowest = TheSynthChoices.chipRate / TheSynthChoices.samplesPerStep;
    return slowest * (1 << (rate >> 2)) * (1.0 + (rate & 3) / 4.0);
}

double FullRiseTime(int rate) {
    // An octave at a time: from the floor of an attack to full level, twice to ten times as fast as
    // a decay.
    double steps = 0.0;
    double level = TheSynthChoices.attackFloor;
    for (int octave = static_cast<int>((FullLevel - level) / 256.0); octave >= 0; --octave) {
        const double end = FullLevel - 256.0 * octave;
        steps += (end - level) / (2 + octave);
        level = end;
    }
    return steps / DecaySpeed(rate);
}

double PitchLevel(int level) {
    const int low = static_cast<int>(LowPitchLevels.size());
    const int high = 100 - static_cast<int>(HighPitchLevels.size());
    const int value = level < low     ? LowPitchLevels[level]
                      : level >= high ? HighPitchLevels[level - high]
                                      : level - 50;
    return value / 32.0;
}

double PitchSpeed(int rate) {
    return PitchRateValue(rate) * TheSynthChoices.ticksPerSecond / 2.0 / 4096.0;
}

int Scaled(int value) {
    return value * 165 >> 6;
}

double LfoFrequency(int speed, const SynthChoices &choices) {
    const int value = std::max(1, Scaled(speed));
    const int factor = value < 160 ? 11 : 11 + ((value - 160) >> choices.lfoFastShift);
    return value * factor * choices.ticksPerSecond / 65536.0;
}

LfoDelay LfoDelayOf(int delay) {
    if (delay == 0) {
        return {};
    }
    const int rest = 99 - delay;
    const int increment = ((16 + (rest & 15)) << 9) >> (7 - (rest >> 4));
    const double tick = 1.0 / TheSynthChoices.ticksPerSecond;
    return {.wait = 65536.0 / increment * tick, .fade = 255.0 / std::max(1, increment >> 8) * tick};
}

double PitchSensitivity(int sensitivity) {
    return PitchSensitivities[sensitivity] / 255.0;
}

double TremoloSteps(double modulation, const SynthChoices &choices) {
    if (choices.logarithmicTremolo) {
        return -256.0 * std::log2(1.0 - modulation / 256.0);
    }
    const std::size_t upper = UpperPoint(TremoloPoints, &TremoloPoint::modulation, modulation);
    const TremoloPoint &below = TremoloPoints[upper - 1];
    const TremoloPoint &above = TremoloPoints[upper];
    const double part = (modulation - below.modulation) / (above.modulation - below.modulation);
    return (below.decibels + part * (above.decibels - below.decibels)) / StepDecibels;
}

double PortamentoSpeed(int time, bool hurries) {
    const int value = time * 100 / 128;
    if (value == 0) {
        return 0.0;
    }
    return hurries ? PitchSpeed(99 - value) : 2100.0 * std::exp2(-0.062 * time) / 12.0;
}

double DetuneOctaves(int detune, double hz) {
    const double octave = std::log2(hz);
    return detune / 7.0 * TheSynthChoices.detuneDepth *
           std::exp(TheSynthChoices.detuneSlope * octave) * octave;
}

double FixedDetuneOctaves(int detune, const SynthChoices &choices) {
    const int steps = choices.fixedDetuneDownwards ? detune : std::max(0, detune);
    return steps * choices.fixedDetuneCents / 1200.0;
}

} // namespace tonewright
