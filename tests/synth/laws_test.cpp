// Levels, rates and frequencies against the published figures of the instrument.
#include "synth/laws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tonewright {
namespace {

constexpr double StepDecibels = 20.0 * 0.30102999566 / 256.0;

TEST(Laws, LowerTheOutputByThePublishedDecibels) {
    const std::vector<std::pair<int, double>> published = {{95, -3.0},  {90, -6.8},  {80, -14.3},
                                                           {70, -21.8}, {50, -36.9}, {30, -51.9},
                                                           {20, -59.5}, {10, -72.3}, {5, -80.5}};
    for (const auto &[level, decibels] : published) {
        EXPECT_NEAR((OutputLevelUnits(level) - 127) * 32 * StepDecibels, decibels, 0.06) << level;
    }
    EXPECT_EQ(OutputLevelUnits(0), 0);
    EXPECT_EQ(OutputLevelUnits(19), 46);
    EXPECT_EQ(OutputLevelUnits(20), 48);
    EXPECT_EQ(OutputLevelUnits(99), 127);
}

TEST(Laws, CountEnvelopeLevelsTwiceAsCoarsely) {
    EXPECT_EQ(EnvelopeLevelUnits(99), 63);
    EXPECT_EQ(EnvelopeLevelUnits(98), 63);
    EXPECT_EQ(EnvelopeLevelUnits(97), 62);
    EXPECT_EQ(EnvelopeLevelUnits(1), 2);
    EXPECT_EQ(EnvelopeLevelUnits(0), 0);
}

TEST(Laws, MakeSoftKeysSoftByTheSensitivity) {
    EXPECT_NEAR(VelocitySteps(7, 127) * StepDecibels, 5.3, 0.2);
    EXPECT_NEAR(VelocitySteps(7, 64) * StepDecibels, -10.5, 0.4);
    EXPECT_NEAR(VelocitySteps(7, 1) * StepDecibels, -79.0, 0.5);
    EXPECT_NEAR(VelocitySteps(7, 98) * StepDecibels, 0.0, 0.4);
    EXPECT_EQ(VelocitySteps(0, 1), 0);
    EXPECT_EQ(VelocitySteps(0, 127), 0);
    // By hand: value 206 at 64, (7 * (206 - 239) + 7) >> 3 = -28, times 16.
    EXPECT_EQ(VelocitySteps(7, 64), -448);
    EXPECT_EQ(VelocitySteps(7, 65), -448); // odd ones count as the even one below
    // (1 * (0 - 239) + 7) >> 3 = -29.
    EXPECT_EQ(VelocitySteps(1, 1), -464);
}

// The place of a velocity on the instrument's own scale, which the sensitivity 8 would count whole.
int VelocityValue(int velocity) {
    return 239 + VelocitySteps(8, velocity) / 16;
}

// The number 1 to 255 that the instrument counts a pitch envelope rate as.
int PitchRateValue(int rate) {
    return static_cast<int>(std::lround(PitchSpeed(rate) * 2.0 * 4096.0 / 372.3));
}

TEST(Laws, DrawVelocitiesBetweenTheMeasuredOnesOnStraightLines) {
    EXPECT_EQ(VelocityValue(2), 70);
    EXPECT_EQ(VelocityValue(8), 106);   // half way from 97 to 114, rounded up
    EXPECT_EQ(VelocityValue(24), 152);  // 148 and 12 in three
    EXPECT_EQ(VelocityValue(120), 251); // 249 and 5 in five
    EXPECT_EQ(VelocityValue(127), 254);
    for (int velocity = 1; velocity < 127; ++velocity) {
        EXPECT_LE(VelocityValue(velocity), VelocityValue(velocity + 1)) << velocity;
    }
}

TEST(Laws, SpeedUpHighKeysByRateScaling) {
    EXPECT_EQ(RateScaling(60, 0), 0);
    EXPECT_EQ(RateScaling(21, 7), 0);  // 21/3 - 7 = 0
    EXPECT_EQ(RateScaling(12, 7), 0);  // not below 0
    EXPECT_EQ(RateScaling(60, 7), 11); // 7 * 13 >> 3
    EXPECT_EQ(RateScaling(62, 7), 11); // groups of three keys
    EXPECT_EQ(RateScaling(63, 7), 12);
    EXPECT_EQ(RateScaling(127, 7), 27); // 31 at most
    EXPECT_EQ(RateScaling(127, 3), 11);
}

TEST(Laws, ScaleLevelsInGroupsOfThreeKeysFromTheBreakPoint) {
    // Break point C3 is 39: the group without scaling is 55 to 57.
    const auto scaling = [](int key, ScalingCurve curve, int depth = 99) {
        return LevelScalingUnits(key, 39, depth, depth, curve, curve);
    };
    for (const int key : {55, 56, 57}) {
        EXPECT_EQ(scaling(key, ScalingCurve::PlusLinear), 0) << key;
    }
    EXPECT_EQ(scaling(58, ScalingCurve::PlusLinear), 7); // 99 * 329 >> 12: six dB in three keys
    EXPECT_EQ(scaling(60, ScalingCurve::PlusLinear), 7);
    EXPECT_EQ(scaling(61, ScalingCurve::PlusLinear), 15);
    EXPECT_EQ(scaling(54, ScalingCurve::PlusLinear), 7);
    EXPECT_EQ(scaling(52, ScalingCurve::PlusLinear), 7);
    EXPECT_EQ(scaling(51, ScalingCurve::PlusLinear), 15);
    EXPECT_EQ(scaling(58, ScalingCurve::MinusLinear), -7);
    EXPECT_EQ(scaling(58, ScalingCurve::PlusLinear, 50), 4);  // 50 * 329 >> 12
    EXPECT_EQ(scaling(58, ScalingCurve::PlusExponential), 0); // 99 * 329 >> 15
    // 10 groups up: 11 * 99 * 329 >> 15 = 10; 20 groups: 67 * ... = 66; 28: 255 * ... = 253.
    EXPECT_EQ(scaling(57 + 30, ScalingCurve::PlusExponential), 10);
    EXPECT_EQ(scaling(57 + 60, ScalingCurve::PlusExponential), 66);
    EXPECT_EQ(LevelScalingUnits(57 + 84, 39, 0, 99, ScalingCurve::PlusLinear,
                                ScalingCurve::MinusExponential),
              -253);
    EXPECT_EQ(LevelScalingUnits(57 + 120, 39, 0, 99, ScalingCurve::PlusLinear,
                                ScalingCurve::MinusExponential),
              -253); // no further
}

TEST(Laws, KeepTheSidesOfTheBreakPointApart) {
    EXPECT_EQ(LevelScalingUnits(40, 39, 99, 0, ScalingCurve::MinusLinear, ScalingCurve::PlusLinear),
              -39); // five groups: 5 * 99 * 329 >> 12
    EXPECT_EQ(LevelScalingUnits(80, 39, 99, 0, ScalingCurve::MinusLinear, ScalingCurve::PlusLinear),
              0);
    EXPECT_EQ(LevelScalingUnits(80, 39, 0, 99, ScalingCurve::MinusLinear, ScalingCurve::PlusLinear),
              63); // eight groups
}

TEST(Laws, FallByThePublishedDecibelsASecond) {
    const std::vector<std::pair<int, double>> published = {
        {10, 0.846}, {20, 2.26}, {30, 7.89}, {40, 22.6}, {50, 72.2},
        {60, 216},   {70, 577},  {80, 2021}, {90, 5773}, {99, 16165}};
    for (const auto &[rate, decibels] : published) {
        EXPECT_NEAR(DecaySpeed(EnvelopeRate(rate)) * StepDecibels / decibels, 1.0, 0.003) << rate;
    }
}

TEST(Laws, RiseInTheMeasuredTimes) {
    const std::vector<std::pair<int, double>> measured = {{10, 13.2},  {20, 4.96},  {30, 1.42},
                                                          {40, 0.495}, {50, 0.154}, {60, 0.051},
                                                          {70, 0.018}, {80, 0.0052}};
    for (const auto &[rate, seconds] : measured) {
        EXPECT_NEAR(FullRiseTime(EnvelopeRate(rate)) / seconds, 1.0, 0.08) << rate;
    }
}

TEST(Laws, MovePitchByTheTablesOfTheInstrument) {
    EXPECT_DOUBLE_EQ(PitchLevel(50), 0.0);
    EXPECT_DOUBLE_EQ(PitchLevel(0), -4.0);
    EXPECT_DOUBLE_EQ(PitchLevel(16), -35.0 / 32.0);
    EXPECT_DOUBLE_EQ(PitchLevel(17), -33.0 / 32.0);
    EXPECT_DOUBLE_EQ(PitchLevel(85), 35.0 / 32.0);
    EXPECT_DOUBLE_EQ(PitchLevel(86), 38.0 / 32.0);
    EXPECT_DOUBLE_EQ(PitchLevel(99), 127.0 / 32.0);
    EXPECT_EQ(PitchRateValue(0), 1);
    EXPECT_EQ(PitchRateValue(50), 41);
    EXPECT_EQ(PitchRateValue(52), 44); // 41 and two fifths of 8
    EXPECT_EQ(PitchRateValue(95), 211);
    EXPECT_EQ(PitchRateValue(96), 232);
    EXPECT_EQ(PitchRateValue(99), 255);
    EXPECT_NEAR(PitchSpeed(99), 255 * 0.04545, 0.01);
    for (int rate = 1; rate < 100; ++rate) {
        EXPECT_GE(PitchRateValue(rate), PitchRateValue(rate - 1)) << rate;
    }
}

TEST(Laws, SwingAtThePublishedFrequencies) {
    const std::vector<std::pair<int, double>> published = {
        {0, 0.0625}, {10, 1.56}, {20, 3.19}, {35, 5.62}, {50, 8.0},
        {64, 11.25}, {70, 16.4}, {80, 25.8}, {90, 38.2}, {99, 49.3}};
    for (const auto &[speed, hz] : published) {
        EXPECT_NEAR(LfoFrequency(speed) / hz, 1.0, 0.006) << speed;
    }
}

TEST(Laws, DelayTheLfoByThePublishedSeconds) {
    EXPECT_NEAR(LfoDelayOf(99).wait, 2.75, 0.01);
    EXPECT_NEAR(LfoDelayOf(99).fade, 0.685, 0.005);
    EXPECT_EQ(LfoDelayOf(0).wait, 0.0);
    EXPECT_EQ(LfoDelayOf(0).fade, 0.0);
    // By hand for 50: a = 49, (16 + 1) << 9 >> 4 = 544 a tick.
    EXPECT_NEAR(LfoDelayOf(50).wait, 65536.0 / 544.0 / 372.3, 1e-9);
    EXPECT_NEAR(LfoDelayOf(50).fade, 255.0 / 2.0 / 372.3, 1e-9);
}

TEST(Laws, BendByTheSensitivityOfPitch) {
    // Semitones at the greatest depth, as measured.
    const std::vector<double> measured = {0.0, 0.45, 0.90, 1.47, 2.59, 4.23, 6.98, 11.7};
    for (int sensitivity = 0; sensitivity < 8; ++sensitivity) {
        EXPECT_NEAR(PitchSensitivity(sensitivity) * 12.0, measured[sensitivity], 0.31)
            << sensitivity;
    }
}

TEST(Laws, DetuneByTheMeasuredCents) {
    const std::vector<std::pair<int, double>> measured = {
        {24, 2.46}, {36, 1.98}, {48, 1.56}, {60, 1.20}, {72, 0.91}, {84, 0.68}, {96, 0.50}};
    for (const auto &[key, cents] : measured) {
        const double hz = 440.0 * std::exp2((key - 69) / 12.0);
        EXPECT_NEAR(DetuneOctaves(1, hz) * 1200.0, cents, 0.011) << key;
        EXPECT_DOUBLE_EQ(DetuneOctaves(-7, hz), -7.0 * DetuneOctaves(1, hz));
    }
    EXPECT_DOUBLE_EQ(FixedDetuneOctaves(2) * 1200.0, 1.92);
    EXPECT_DOUBLE_EQ(FixedDetuneOctaves(-7) * 1200.0, -6.72);
}

} // namespace
} // namespace tonewright
