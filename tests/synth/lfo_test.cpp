// The low-frequency oscillator and the pitch envelope, by their values in time.
#include "synth/lfo.h"
#include "synth/pitch_envelope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <vector>

namespace tonewright {
namespace {

// The value at each part of a cycle that begins at phase 0.
double ValueAt(LfoWave wave, double phase) {
    const LfoShape shape = {.wave = wave, .frequency = 1.0, .delay = {}, .keySync = false};
    Lfo lfo;
    AdvanceLfo(lfo, shape, phase);
    return LfoValue(lfo, shape);
}

TEST(LfoWaves, HaveTheirShapes) {
    EXPECT_NEAR(ValueAt(LfoWave::Triangle, 0.0), -1.0, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::Triangle, 0.25), 0.0, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::Triangle, 0.5), 1.0, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::Triangle, 0.75), 0.0, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::SawUp, 0.25), 0.5, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::SawUp, 0.49), 0.98, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::SawUp, 0.51), -0.98, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::SawDown, 0.49), -0.98, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::SawDown, 0.51), 0.98, 1e-9);
    EXPECT_EQ(ValueAt(LfoWave::Square, 0.49), 1.0);
    EXPECT_EQ(ValueAt(LfoWave::Square, 0.51), -1.0);
    EXPECT_NEAR(ValueAt(LfoWave::Sine, 0.25), 1.0, 1e-9);
    EXPECT_NEAR(ValueAt(LfoWave::Sine, 0.75), -1.0, 1e-9);
}

TEST(LfoWaves, BeginJustBeforeHalfACycleWithAKeyThatSynchronises) {
    LfoShape shape = {.wave = LfoWave::Triangle, .frequency = 1.0, .delay = {}, .keySync = true};
    Lfo lfo;
    AdvanceLfo(lfo, shape, 0.1);
    LfoKeyDown(lfo, shape, false);
    EXPECT_NEAR(LfoValue(lfo, shape), 1.0, 1e-4);
    shape.wave = LfoWave::Sine;
    EXPECT_NEAR(LfoValue(lfo, shape), 0.0, 1e-4);
    AdvanceLfo(lfo, shape, 0.1);
    EXPECT_LT(LfoValue(lfo, shape), -0.5); // falling
    shape.keySync = false;
    const double before = LfoValue(lfo, shape);
    LfoKeyDown(lfo, shape, true);
    EXPECT_EQ(LfoValue(lfo, shape), before);
}

// How many values are held in ten cycles, looked at a thousand times.
std::size_t HeldValues(LfoWave wave) {
    const LfoShape shape = {.wave = wave, .frequency = 10.0, .delay = {}, .keySync = false};
    Lfo lfo;
    std::set<double> values;
    for (int i = 0; i < 1000; ++i) {
        AdvanceLfo(lfo, shape, 0.001);
        const double value = LfoValue(lfo, shape);
        EXPECT_LE(std::fabs(value), 1.0);
        values.insert(value);
    }
    return values.size();
}

TEST(LfoWaves, HoldARandomValueForACycleOrAnEighthOfIt) {
    EXPECT_NEAR(static_cast<double>(HeldValues(LfoWave::SampleAndHold)), 11.0, 1.0);
    EXPECT_NEAR(static_cast<double>(HeldValues(LfoWave::SampleAndHold8)), 81.0, 2.0);
}

TEST(LfoFade, BeginsWithTheFirstKeyAfterSilence) {
    const LfoShape shape = {.wave = LfoWave::Sine,
                            .frequency = 5.0,
                            .delay = {.wait = 1.0, .fade = 0.5},
                            .keySync = false};
    Lfo lfo;
    LfoKeyDown(lfo, shape, true);
    AdvanceLfo(lfo, shape, 0.99);
    EXPECT_EQ(LfoFade(lfo, shape), 0.0);
    AdvanceLfo(lfo, shape, 0.26);
    EXPECT_NEAR(LfoFade(lfo, shape), 0.5, 1e-9);
    LfoKeyDown(lfo, shape, false); // a further key changes nothing
    EXPECT_NEAR(LfoFade(lfo, shape), 0.5, 1e-9);
    AdvanceLfo(lfo, shape, 1.0);
    EXPECT_EQ(LfoFade(lfo, shape), 1.0);
    LfoKeyDown(lfo, shape, true);
    EXPECT_EQ(LfoFade(lfo, shape), 0.0);
}

TEST(LfoFade, IsWholeAtOnceWithoutADelay) {
    Lfo lfo;
    LfoKeyDown(lfo, LfoShape{}, true);
    EXPECT_EQ(LfoFade(lfo, LfoShape{}), 1.0);
}

TEST(PitchEnvelope, MovesAtAnEvenSpeedHoldsTheThirdLevelAndReturns) {
    const PitchEnvelopeShape shape = {.levels = {1.0, -1.0, 0.5, 0.25},
                                      .speeds = {1.0, 2.0, 4.0, 0.5}};
    PitchEnvelope envelope;
    StartPitchEnvelope(envelope, shape);
    EXPECT_EQ(envelope.level, 0.25); // from the last level
    AdvancePitchEnvelope(envelope, shape, 0.5);
    EXPECT_NEAR(envelope.level, 0.75, 1e-9);
    AdvancePitchEnvelope(envelope, shape, 0.75); // past the first level
    EXPECT_NEAR(envelope.level, 0.0, 1e-9);
    AdvancePitchEnvelope(envelope, shape, 0.5 + 0.25);
    EXPECT_NEAR(envelope.level, 0.0, 1e-9);
    AdvancePitchEnvelope(envelope, shape, 100.0);
    EXPECT_EQ(envelope.level, 0.5);
    ReleasePitchEnvelope(envelope);
    AdvancePitchEnvelope(envelope, shape, 0.25);
    EXPECT_NEAR(envelope.level, 0.375, 1e-9);
    AdvancePitchEnvelope(envelope, shape, 100.0);
    EXPECT_EQ(envelope.level, 0.25);
    EXPECT_EQ(envelope.segment, 4);
}

TEST(PitchEnvelope, OfEqualLevelsTakesNoTime) {
    const PitchEnvelopeShape shape = {.levels = {0.0, 0.0, 1.0, 0.0},
                                      .speeds = {0.05, 0.05, 1.0, 1.0}};
    PitchEnvelope envelope;
    StartPitchEnvelope(envelope, shape);
    AdvancePitchEnvelope(envelope, shape, 0.5);
    EXPECT_NEAR(envelope.level, 0.5, 1e-9);
}

} // namespace
} // namespace tonewright
