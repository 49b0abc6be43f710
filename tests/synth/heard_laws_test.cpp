// The published laws of the six-operator instruments by what is heard of them, from the bytes of a
// voice on: one operator, a sine, or as many as a law needs.
#include "measure.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr int Neutral = 98; // a velocity that changes nothing
constexpr double StepDecibels = 6.0206 / 256.0;
constexpr double UnitDecibels = 32.0 * StepDecibels;

// Output levels below 20 in units; above, the level and 28.
constexpr std::array<int, 20> LowLevels = {0,  5,  9,  13, 17, 20, 23, 25, 27, 29,
                                           31, 33, 35, 37, 39, 41, 42, 43, 45, 46};
int UnitsOf(int level) {
    return level < 20 ? LowLevels[static_cast<std::size_t>(level)] : 28 + level;
}

double Frequency(int key) {
    return 440.0 * std::exp2((key - 69) / 12.0);
}

Samples Held(const SixVoice &voice, int key, double seconds, int velocity = Neutral) {
    return RenderedKey(voice.Prepared(), key, velocity, seconds + 1.0, seconds);
}

double LevelOf(const SixVoice &voice, int key, int velocity = Neutral) {
    return Amplitude(Held(voice, key, 0.5, velocity), Rate, Frequency(key), 0.4);
}

// Of the chip, in dB a second, for the rate 0 to 63.
double Decay(int rate) {
    return 0.2819 * std::exp2(rate / 4) * (1.0 + rate % 4 / 4.0);
}

// How fast the voice falls behind a first level of 99, in dB a second, between 6 and 40 dB.
double FallOf(const SixVoice &voice, int key, double expected) {
    const double begin = 6.0 / expected, end = std::min(40.0 / expected, begin + 2.0);
    const Samples samples = Held(voice, key, end + 0.1);
    const double hz = Frequency(key);
    return (Amplitude(samples, Rate, hz, begin) - Amplitude(samples, Rate, hz, end)) /
           (end - begin);
}

SixVoice FallingVoice(int rate) {
    SixVoice voice = InitialVoice();
    voice.Operator(1, Rate1 + 1) = static_cast<std::uint8_t>(rate);
    voice.Operator(1, Level1 + 1) = 0;
    voice.Operator(1, Level1 + 2) = 0;
    return voice;
}

TEST(HeardLevel, OfEveryOutputLevelIsThePublishedOne) {
    SixVoice voice = InitialVoice();
    for (int level = 99; level >= 8; --level) {
        voice.Operator(1, OutputLevel) = static_cast<std::uint8_t>(level);
        EXPECT_NEAR(LevelOf(voice, 84), (UnitsOf(level) - 127) * UnitDecibels, 0.03) << level;
    }
    voice.Operator(1, OutputLevel) = 0;
    EXPECT_LT(LevelOf(voice, 84), -89.0);
}

TEST(HeardLevel, OfEveryEnvelopeLevelHasHalfTheSteps) {
    SixVoice voice = InitialVoice();
    for (int level = 99; level >= 8; --level) {
        for (int i = 0; i < 3; ++i) {
            voice.Operator(1, Level1 + i) = static_cast<std::uint8_t>(level);
        }
        EXPECT_NEAR(LevelOf(voice, 84), (UnitsOf(level) / 2 - 63) * 2.0 * UnitDecibels, 0.03)
            << level;
    }
}

TEST(HeardLevel, FollowsTheTouchByTheSensitivity) {
    // Places of the velocities on the instrument's scale, of which 239 changes nothing.
    const std::vector<std::pair<int, int>> places = {{8, 106},   {32, 166},  {64, 206}, {80, 224},
                                                     {100, 240}, {116, 249}, {127, 254}};
    SixVoice voice = InitialVoice();
    voice.Operator(1, OutputLevel) = 90; // from which it may rise
    const double rest = LevelOf(voice, 84);
    for (int sensitivity = 0; sensitivity <= 7; ++sensitivity) {
        voice.Operator(1, VelocitySensitivity) = static_cast<std::uint8_t>(sensitivity);
        for (const auto &[velocity, place] : places) {
            const double steps = 16.0 * std::floor((sensitivity * (place - 239) + 7) / 8.0);
            EXPECT_NEAR(LevelOf(voice, 84, velocity) - rest, steps * StepDecibels, 0.03)
                << sensitivity << ", " << velocity;
        }
    }
}

TEST(HeardLevel, IsScaledFromTheBreakPointOn) {
    struct Row {
        int key;
        ScalingCurve curve;
        int depth;
        int units;
    };
    // Groups of three keys: depth * group * 329 >> 12 units, or the list of the exponential
    // curves at the group, times depth * 329 >> 15.
    const std::vector<Row> rows = {
        {36, ScalingCurve::MinusLinear, 50, -28},      // group 7
        {36, ScalingCurve::PlusLinear, 20, 11},        // group 7
        {36, ScalingCurve::MinusExponential, 99, -6},  // group 7, which is 7
        {24, ScalingCurve::MinusExponential, 99, -13}, // group 11: 14
        {53, ScalingCurve::MinusLinear, 99, -7},       // group 1, four keys below the break point
        {56, ScalingCurve::MinusLinear, 99, 0},        // the group around it
        {84, ScalingCurve::MinusLinear, 60, -43},      // group 9
        {84, ScalingCurve::PlusExponential, 99, 8},    // group 9, which is 9
        {108, ScalingCurve::MinusExponential, 99, -38} // group 17: 39
    };
    for (const Row &row : rows) {
        SixVoice voice = InitialVoice();
        voice.Operator(1, OutputLevel) = 85;
        const double rest = LevelOf(voice, row.key);
        const int side = row.key < 60 ? 0 : 1;
        voice.Operator(1, LeftDepth + side) = static_cast<std::uint8_t>(row.depth);
        voice.Operator(1, LeftCurve + side) = static_cast<std::uint8_t>(row.curve);
        EXPECT_NEAR(LevelOf(voice, row.key) - rest, row.units * UnitDecibels, 0.05) << row.key;
        // The other side has another depth.
        voice.Operator(1, LeftDepth + side) = 0;
        voice.Operator(1, LeftDepth + 1 - side) = 99;
        EXPECT_NEAR(LevelOf(voice, row.key), rest, 0.05) << row.key;
    }
}

TEST(HeardEnvelope, FallsAsFastAsItsRateSays) {
    for (const int rate : {5, 10, 20, 30, 40, 45, 50, 55, 60, 65, 70, 75}) {
        const double expected = Decay(rate * 41 / 64);
        EXPECT_NEAR(FallOf(FallingVoice(rate), 96, expected) / expected, 1.0, 0.01) << rate;
    }
}

TEST(HeardEnvelope, FallsFasterOnHighKeysByRateScaling) {
    // What a key adds to the rate of 25 that 40 is: a third of the key without 7, 0 to 31.
    for (const int key : {60, 72, 84, 96, 108}) {
        for (const int scaling : {1, 4, 7}) {
            SixVoice voice = FallingVoice(40);
            voice.Operator(1, KeyRateScaling) = static_cast<std::uint8_t>(scaling);
            const double expected = Decay(25 + scaling * std::min(key / 3 - 7, 31) / 8);
            EXPECT_NEAR(FallOf(voice, key, expected) / expected, 1.0, 0.02) << key << scaling;
        }
    }
}

TEST(HeardEnvelope, RisesInTheMeasuredTimes) {
    const std::vector<std::pair<int, double>> measured = {{20, 4.96},  {30, 1.42},  {40, 0.495},
                                                          {50, 0.154}, {60, 0.051}, {70, 0.018}};
    for (const auto &[rate, seconds] : measured) {
        SixVoice voice = InitialVoice();
        voice.Operator(1, Rate1) = static_cast<std::uint8_t>(rate);
        const Samples samples = Held(voice, 108, 1.2 * seconds + 0.05);
        const double hz = Frequency(108);
        double time = 0.0;
        while (time < 1.2 * seconds && Amplitude(samples, Rate, hz, time) < -0.05) {
            time += 0.0005;
        }
        EXPECT_NEAR(time, seconds, 0.08 * seconds + 0.002) << rate;
    }
}

TEST(HeardEnvelope, StandsOnALevelAsLongAsAFullRise) {
    const std::vector<std::pair<int, double>> measured = {
        {20, 5.0}, {30, 1.4}, {40, 0.5}, {50, 0.15}, {60, 0.051}};
    for (const auto &[rate, seconds] : measured) {
        SixVoice voice = InitialVoice();
        voice.Operator(1, Rate1 + 1) = static_cast<std::uint8_t>(rate);
        voice.Operator(1, Level1 + 2) = 0;
        const Samples samples = Held(voice, 108, 1.2 * seconds + 0.05);
        double end = 0.01;
        while (end < 1.2 * seconds && Amplitude(samples, Rate, Frequency(108), end) > -6.0) {
            end += 0.0005;
        }
        EXPECT_NEAR(end, seconds, 0.05 * seconds + 0.004) << rate;
        // A first segment of silence is a delay, of a twentieth of it.
        voice = InitialVoice();
        voice.Operator(1, Rate1) = static_cast<std::uint8_t>(rate);
        voice.Operator(1, Level1) = 0;
        const Samples delayed = Held(voice, 108, 0.1 * seconds + 0.05);
        double begin = 0.0;
        while (begin < 0.1 * seconds + 0.04 &&
               Amplitude(delayed, Rate, Frequency(108), begin) < -20.0) {
            begin += 0.0005;
        }
        EXPECT_NEAR(begin, 0.05 * seconds, 0.004 + 0.004 * seconds) << rate;
    }
}

// How far it is from its key.
using Swings = std::vector<PitchPoint>;
Swings SwingsOf(const Samples &samples, int key) {
    return PitchOverTime(samples, Rate, Frequency(key));
}

TEST(HeardPitch, IsDetunedByTheMeasuredCents) {
    const std::vector<std::pair<int, double>> measured = {
        {24, 2.46}, {36, 1.98}, {48, 1.56}, {60, 1.20}, {72, 0.91}, {84, 0.68}, {96, 0.50}};
    for (const auto &[key, cents] : measured) {
        for (const int steps : {-7, -3, 3, 7}) {
            SixVoice voice = InitialVoice();
            voice.Operator(1, Detune) = static_cast<std::uint8_t>(7 + steps);
            const double heard = 1200.0 * SwingsOf(Held(voice, key, 1.0), key).back().octaves;
            EXPECT_NEAR(heard, steps * cents, 0.006 * std::abs(steps) + 0.03) << key;
        }
    }
}

TEST(HeardPitch, IsTheRatioTimesThatOfTheKey) {
    SixVoice voice = InitialVoice();
    const std::vector<std::array<int, 2>> ratios = {{0, 0}, {0, 50}, {1, 1}, {3, 33}, {7, 99}};
    for (const auto &[coarse, fine] : ratios) {
        voice.Operator(1, Coarse) = static_cast<std::uint8_t>(coarse);
        voice.Operator(1, Fine) = static_cast<std::uint8_t>(fine);
        const double ratio = (coarse == 0 ? 0.5 : coarse) * (1.0 + fine / 100.0);
        EXPECT_NEAR(1200.0 * (SwingsOf(Held(voice, 60, 1.0), 60).back().octaves - std::log2(ratio)),
                    0.0, 1.0)
            << coarse << ", " << fine;
    }
}

TEST(HeardPitch, OfAFixedFrequencyIsAPowerOfTen) {
    SixVoice voice = InitialVoice();
    voice.Operator(1, FixedFrequency) = 1;
    for (const int coarse : {1, 2, 3, 5, 30}) {
        for (const int fine : {0, 33, 50, 99}) {
            voice.Operator(1, Coarse) = static_cast<std::uint8_t>(coarse);
            voice.Operator(1, Fine) = static_cast<std::uint8_t>(fine);
            const double hz = std::pow(10.0, coarse % 4 + fine / 100.0);
            const auto heard = [&] {
                return 1200.0 * PitchOverTime(Held(voice, 72, 1.0), Rate, hz).back().octaves;
            };
            EXPECT_NEAR(heard(), 0.0, 0.9) << coarse << ", " << fine;
            voice.Operator(1, Detune) = 14; // seven times 0.96 cents
            EXPECT_NEAR(heard(), 6.72, 0.9) << coarse << ", " << fine;
            voice.Operator(1, Detune) = 7;
        }
    }
}

// An operator of amplitude 2 whose mean of the last two outputs moves its own phase.
Samples FedBack(double amplitude, double cycles, double hz, double seconds) {
    Samples samples;
    double last = 0.0, before = 0.0;
    for (int i = 0; i < static_cast<int>(seconds * Rate); ++i) {
        const double phase = hz * i / Rate + cycles * (last + before) / 2.0;
        before = last;
        last = 2.0 * amplitude * std::sin(2.0 * std::numbers::pi * phase);
        samples.push_back(last / 2.0);
    }
    return HighPassed(samples, Rate);
}

TEST(HeardFeedback, HalvesWithEveryStepAndFallsWithTheLevel) {
    SixVoice voice = InitialVoice();
    voice.bytes[AlgorithmByte] = 31;
    voice.Operator(1, OutputLevel) = 0;
    const double hz = Frequency(48);
    for (const int level : {99, 91, 83}) {
        voice.Operator(6, OutputLevel) = static_cast<std::uint8_t>(level);
        for (int feedback = 0; feedback <= 6; ++feedback) {
            voice.bytes[FeedbackByte] = static_cast<std::uint8_t>(feedback);
            const double amplitude = std::exp2((level - 99) / 8.0);
            const double cycles = feedback == 0 ? 0.0 : std::exp2(feedback - 8);
            const auto heard = Partials(Held(voice, 48, 1.0), Rate, hz, 0.5, 8);
            const auto expected = Partials(FedBack(amplitude, cycles, hz, 1.0), Rate, hz, 0.5, 8);
            for (std::size_t k = 0; k < heard.size(); ++k) {
                if (expected[k] > -70.0) {
                    EXPECT_NEAR(heard[k], expected[k], 0.3)
                        << "level " << level << ", feedback " << feedback << ", partial " << k + 1;
                } else {
                    EXPECT_LT(heard[k], -69.0) << "level " << level << ", feedback " << feedback;
                }
            }
        }
    }
}

double WidestOf(const Swings &swings, double begin, double end) {
    double widest = 0.0;
    for (const auto &[seconds, octaves] : swings) {
        if (seconds >= begin && seconds < end) {
            widest = std::max(widest, std::fabs(octaves));
        }
    }
    return widest;
}

SixVoice VibratoVoice(int speed, int depth, int sensitivity) {
    SixVoice voice = InitialVoice();
    voice.bytes[LfoSpeed] = static_cast<std::uint8_t>(speed);
    voice.bytes[LfoPitchDepth] = static_cast<std::uint8_t>(depth);
    voice.bytes[PitchSensitivityByte] = static_cast<std::uint8_t>(sensitivity);
    voice.bytes[LfoWaveByte] = 4; // a sine
    return voice;
}

TEST(HeardVibrato, IsAsWideAsDepthAndSensitivitySay) {
    constexpr std::array<int, 8> Sensitivities = {0, 10, 20, 33, 55, 92, 153, 255};
    for (std::size_t sensitivity = 0; sensitivity < 8; ++sensitivity) {
        for (const int depth : {20, 50, 99}) {
            const SixVoice voice = VibratoVoice(30, depth, static_cast<int>(sensitivity));
            const double expected = depth * 165 / 64 / 255.0 * Sensitivities[sensitivity] / 255.0;
            EXPECT_NEAR(WidestOf(SwingsOf(Held(voice, 96, 1.0), 96), 0.0, 1.0), expected,
                        0.01 * expected + 0.002)
                << sensitivity << ", " << depth;
        }
    }
}

TEST(HeardVibrato, SwingsAtThePublishedFrequencies) {
    const std::vector<std::pair<int, double>> published = {
        {0, 0.0625}, {10, 1.56}, {20, 3.19}, {35, 5.62}, {50, 8.0},
        {64, 11.25}, {70, 16.4}, {80, 25.8}, {90, 38.2}, {99, 49.3}};
    for (const auto &[speed, hz] : published) {
        const auto swings =
            SwingsOf(Held(VibratoVoice(speed, 99, 5), 96, std::max(3.0, 2.5 / hz)), 96);
        EXPECT_NEAR(SwingFrequency(swings) / hz, 1.0, 0.01) << speed;
    }
}

TEST(HeardVibrato, BeginsAfterItsDelayAndFadesIn) {
    struct Row {
        int delay;
        double wait, fade;
    };
    for (const auto &[delay, wait, fade] : {Row{99, 2.75, 0.69}, Row{70, 0.759, 0.685}}) {
        SixVoice voice = VibratoVoice(70, 99, 5);
        voice.bytes[LfoDelayByte] = static_cast<std::uint8_t>(delay);
        const auto swings = SwingsOf(Held(voice, 96, wait + fade + 1.0), 96);
        const double whole = 92.0 / 255.0;
        EXPECT_LT(WidestOf(swings, 0.0, wait - 0.03), 0.003) << delay;
        EXPECT_NEAR(WidestOf(swings, wait + 0.4 * fade, wait + 0.5 * fade), 0.47 * whole,
                    0.06 * whole)
            << delay;
        EXPECT_NEAR(WidestOf(swings, wait + fade + 0.05, wait + fade + 0.9), whole, 0.02 * whole)
            << delay;
    }
}

TEST(HeardTremolo, IsAPartOfItsDecibelsByTheSensitivity) {
    constexpr std::array<double, 4> Parts = {0.0, 0.25, 0.43, 1.0};
    for (std::size_t sensitivity = 0; sensitivity < Parts.size(); ++sensitivity) {
        SixVoice voice = InitialVoice();
        voice.bytes[LfoAmplitudeDepth] = 75;
        voice.bytes[LfoSpeed] = 20;
        voice.Operator(1, AmplitudeSensitivity) = static_cast<std::uint8_t>(sensitivity);
        const Samples samples = Held(voice, 96, 1.0);
        double quietest = 0.0;
        for (double time = 0.1; time < 0.9; time += 0.002) {
            quietest = std::min(quietest, Amplitude(samples, Rate, Frequency(96), time));
        }
        // 75 is 193 of 256.
        const double whole = 20.0 * std::log10(1.0 - 193.0 / 256.0);
        EXPECT_NEAR(quietest, Parts[sensitivity] * whole, 0.15) << sensitivity;
    }
}

TEST(HeardPitchEnvelope, MovesAsFastAsItsRateAndAsFarAsItsLevelSays) {
    struct Row {
        int rate, level;
        double speed, octaves;
    };
    const std::vector<Row> rows = {
        {20, 75, 12 * 0.04545, 25 / 32.0},  {50, 75, 41 * 0.04545, 25 / 32.0},
        {50, 25, 41 * 0.04545, -25 / 32.0}, {80, 0, 115 * 0.04545, -4.0},
        {70, 90, 79 * 0.04545, 49 / 32.0},  {30, 50, 18 * 0.04545, 0.0}};
    for (const Row &row : rows) {
        SixVoice voice = InitialVoice();
        voice.bytes[PitchRate1] = static_cast<std::uint8_t>(row.rate);
        for (int i = 0; i < 3; ++i) {
            voice.bytes[PitchLevel1 + i] = static_cast<std::uint8_t>(row.level);
        }
        const double time = std::fabs(row.octaves) / row.speed;
        const auto swings = SwingsOf(Held(voice, 96, time + 0.5), 96);
        for (const auto &[seconds, octaves] : swings) {
            const double moved = std::min(row.speed * seconds, std::fabs(row.octaves));
            ASSERT_NEAR(std::fabs(octaves), moved, 0.02 + 0.004 * row.speed)
                << row.rate << ", " << row.level << " at " << seconds;
        }
        EXPECT_NEAR(swings.back().octaves, row.octaves, 0.001) << row.rate << ", " << row.level;
    }
}

TEST(HeardPitchEnvelope, ReturnsWhenTheKeyIsReleased) {
    SixVoice voice = InitialVoice();
    voice.Operator(1, Level1 + 3) = 99; // to be heard
    voice.bytes[PitchRate1 + 3] = 50;
    voice.bytes[PitchLevel1] = voice.bytes[PitchLevel1 + 1] = voice.bytes[PitchLevel1 + 2] = 75;
    const Samples samples = RenderedKey(voice.Prepared(), 84, Neutral, 0.5, 1.5);
    for (const auto &[seconds, octaves] : SwingsOf(samples, 84)) {
        const double since = std::max(0.0, seconds - 0.5);
        if (seconds > 0.1) {
            ASSERT_NEAR(octaves, std::max(0.0, 25 / 32.0 - 41 * 0.04545 * since), 0.01) << seconds;
        }
    }
}

} // namespace
} // namespace tonewright
