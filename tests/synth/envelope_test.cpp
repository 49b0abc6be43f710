// Envelopes by their times and levels, in steps of 1/256 octave and in seconds.
#include "synth/envelope.h"
#include "synth/laws.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

constexpr double Silence = TheSynthChoices.silence;

EnvelopeShape Shape(std::array<double, 4> targets, int rate) {
    EnvelopeShape shape;
    shape.targets = targets;
    shape.speeds.fill(DecaySpeed(rate));
    shape.plateaus.fill(FullRiseTime(rate));
    return shape;
}

double TimeUntil(Envelope &envelope, const EnvelopeShape &shape, double level, double step) {
    double seconds = 0.0;
    while (envelope.level != level && seconds < 1e6) {
        AdvanceEnvelope(envelope, shape, step);
        seconds += step;
    }
    return seconds;
}

TEST(OperatorEnvelope, FallsAtEveryRateByTheStepsOfTheChip) {
    for (int rate = 0; rate < 100; ++rate) {
        // 4096 samples of a clock of 49,096 Hz for a step, and twice as fast with every fourth
        // of 63.
        const int q = rate * 41 / 64;
        const double speed = 49096.0 / 4096.0 * (1 << q / 4) * (1.0 + q % 4 / 4.0);
        const EnvelopeShape shape = Shape({3840.0, 1000.0, 1000.0, Silence}, EnvelopeRate(rate));
        Envelope envelope;
        envelope.level = 3840.0;
        envelope.segment = 1;
        AdvanceEnvelope(envelope, shape, 1000.0 / speed);
        EXPECT_NEAR(envelope.level, 2840.0, 1e-6) << rate;
    }
}

TEST(OperatorEnvelope, RisesTheFasterTheFartherItIsFromFullLevel) {
    const EnvelopeShape shape = Shape({3840.0, 3840.0, 3840.0, Silence}, 24);
    const double speed = DecaySpeed(24);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    EXPECT_EQ(envelope.level, Silence);
    AdvanceEnvelope(envelope, shape, 1e-9);
    EXPECT_NEAR(envelope.level, 1716.0, 0.01); // at once
    AdvanceEnvelope(envelope, shape, 76.0 / (10.0 * speed));
    EXPECT_NEAR(envelope.level, 1792.0, 0.01);
    AdvanceEnvelope(envelope, shape, 100.0 / (9.0 * speed));
    EXPECT_NEAR(envelope.level, 1892.0, 0.01);
    AdvanceEnvelope(envelope, shape, (156.0 / 9.0 + 10.0 / 8.0) / speed); // over a border
    EXPECT_NEAR(envelope.level, 2058.0, 0.01);
}

TEST(OperatorEnvelope, ReachesFullLevelInTheTimeOfAFullRise) {
    for (int rate = 0; rate < 64; ++rate) {
        const EnvelopeShape shape = Shape({3840.0, Silence, Silence, Silence}, rate);
        const double whole = FullRiseTime(rate);
        Envelope envelope;
        StartEnvelope(envelope, shape);
        AdvanceEnvelope(envelope, shape, whole * 0.999);
        EXPECT_EQ(envelope.segment, 0) << rate;
        AdvanceEnvelope(envelope, shape, whole * 0.002);
        EXPECT_EQ(envelope.segment, 1) << rate;
    }
}

TEST(OperatorEnvelope, IsTheSameInSmallBlocksAndInLargeOnes) {
    const EnvelopeShape shape = Shape({3840.0, 2000.0, 3000.0, Silence}, 40);
    Envelope coarse;
    Envelope fine;
    StartEnvelope(coarse, shape);
    StartEnvelope(fine, shape);
    for (int block = 0; block < 40; ++block) {
        AdvanceEnvelope(coarse, shape, 0.004);
        for (int part = 0; part < 8; ++part) {
            AdvanceEnvelope(fine, shape, 0.0005);
        }
        EXPECT_NEAR(coarse.level, fine.level, 1e-6) << block;
        EXPECT_EQ(coarse.segment, fine.segment) << block;
    }
}

TEST(OperatorEnvelope, StandsOnALevelForTheTimeOfAFullRise) {
    EnvelopeShape shape = Shape({3840.0, 3840.0, Silence, Silence}, 20);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    AdvanceEnvelope(envelope, shape, FullRiseTime(20) * 1.999);
    EXPECT_EQ(envelope.segment, 1);
    EXPECT_EQ(envelope.level, 3840.0);
    AdvanceEnvelope(envelope, shape, FullRiseTime(20) * 0.01);
    EXPECT_EQ(envelope.segment, 2);
}

TEST(OperatorEnvelope, MovesAtItsSpeedFromALevelThatIsNoLongerItsTarget) {
    EnvelopeShape shape = Shape({3840.0, 3840.0, Silence, Silence}, 20);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    AdvanceEnvelope(envelope, shape, FullRiseTime(20) * 1.5);
    shape.targets[1] = 3000.0;
    AdvanceEnvelope(envelope, shape, FullRiseTime(20) * 0.5 + 0.001);
    EXPECT_NEAR(envelope.level, 3840.0 - 0.001 * DecaySpeed(20), 0.01);
    EXPECT_EQ(envelope.segment, 1);
    AdvanceEnvelope(envelope, shape, 1.0);
    EXPECT_NEAR(envelope.level, 3840.0 - 1.001 * DecaySpeed(20), 0.01);
}

TEST(OperatorEnvelope, StartsAtItsLastLevel) {
    const EnvelopeShape shape = Shape({3840.0, 3840.0, 3840.0, 2500.0}, 20);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    EXPECT_EQ(envelope.level, 2500.0);
}

TEST(OperatorEnvelope, HoldsTheThirdLevelUntilTheKeyIsReleased) {
    const EnvelopeShape shape = Shape({3840.0, 3500.0, 3000.0, Silence}, 63);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    AdvanceEnvelope(envelope, shape, 1000.0);
    EXPECT_EQ(envelope.level, 3000.0);
    EXPECT_EQ(envelope.segment, 2);
    EXPECT_FALSE(IsSilent(envelope));
    ReleaseEnvelope(envelope);
    EXPECT_NEAR(TimeUntil(envelope, shape, Silence, 1e-5), (3000.0 - Silence) / DecaySpeed(63),
                2e-5);
    EXPECT_TRUE(IsSilent(envelope));
}

TEST(OperatorEnvelope, IsReleasedFromAnySegment) {
    const EnvelopeShape shape = Shape({3840.0, 3500.0, 3000.0, 2000.0}, 30);
    Envelope envelope;
    StartEnvelope(envelope, shape);
    AdvanceEnvelope(envelope, shape, 0.001);
    EXPECT_EQ(envelope.segment, 0);
    ReleaseEnvelope(envelope);
    AdvanceEnvelope(envelope, shape, 100.0);
    EXPECT_EQ(envelope.level, 2000.0);
    EXPECT_FALSE(IsSilent(envelope)); // a last level that sounds does so for ever
}

} // namespace
} // namespace tonewright
