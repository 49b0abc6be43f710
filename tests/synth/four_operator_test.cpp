// Voices of a reface DX, byte by byte: what their numbers mean, the algorithms, the two kinds of
// feedback.
#include "measure.h"
#include "panel.h"
#include "synth/synth.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

struct FourVoice {
    std::uint8_t bytes[FourOperatorBytes] = {};

    // A byte of an operator, 1 to 4, by its place among the 28.
    std::uint8_t &Operator(int number, int place) { return bytes[38 + 28 * (number - 1) + place]; }
    PreparedVoice Prepared() const { return PrepareFourOperatorVoice(bytes); }
};

enum : int {
    On,
    EgRate1,
    EgLevel1 = 5,
    RateScalingByte = 9,
    LeftDepthByte,
    RightDepthByte,
    LeftCurveByte,
    RightCurveByte,
    AmplitudeDepthByte,
    PitchDepthOn,
    PitchEnvelopeOn,
    VelocityByte,
    LevelByte,
    FeedbackLevel,
    FeedbackType,
    FixedByte,
    CoarseByte,
    FineByte,
    DetuneByte
};
enum : int {
    TransposeAt = 12,
    PartModeAt,
    PortamentoAt,
    BendAt,
    AlgorithmAt,
    LfoWaveAt,
    LfoSpeedAt,
    LfoDelayAt,
    LfoPitchDepthAt,
    PitchRateAt,
    PitchLevelAt = 25
};

// All operators on, of ratio 1, at level 0; operator 1 at full level.
FourVoice InitialFour() {
    FourVoice voice;
    voice.bytes[TransposeAt] = 64;
    voice.bytes[BendAt] = 66;
    voice.bytes[AlgorithmAt] = 11;
    for (int i = 0; i < 4; ++i) {
        voice.bytes[21 + i] = 127;
        voice.bytes[PitchLevelAt + i] = 64;
    }
    for (int number = 1; number <= 4; ++number) {
        voice.Operator(number, On) = 1;
        for (int i = 0; i < 4; ++i) {
            voice.Operator(number, EgRate1 + i) = 127;
            voice.Operator(number, EgLevel1 + i) = i < 3 ? 127 : 0;
        }
        voice.Operator(number, CoarseByte) = 1;
        voice.Operator(number, DetuneByte) = 64;
    }
    voice.Operator(1, LevelByte) = 127;
    return voice;
}

Samples Heard(const PreparedVoice &voice, int key, double seconds) {
    Synth synth = MakeSynth(Rate, 1);
    SetVoice(synth, &voice, false);
    NoteOn(synth, key, 98);
    Samples samples;
    while (static_cast<double>(samples.size()) < seconds * Rate) {
        float out[BlockFrames];
        float right[BlockFrames];
        Render(synth, out, right);
        for (const float sample : out) {
            samples.push_back(8.0 * sample);
        }
    }
    return samples;
}

double Frequency(double key) {
    return 440.0 * std::exp2((key - 69.0) / 12.0);
}

double Pitch(const FourVoice &voice, int key = 60) {
    return PeakFrequency(Heard(voice.Prepared(), key, 1.0), Rate, 0.5);
}

TEST(FourOperators, SoundAsAPureSineAlone) {
    const Samples samples = Heard(InitialFour().Prepared(), 60, 1.0);
    const std::vector<double> partials = Partials(samples, Rate, Frequency(60), 0.5, 10);
    EXPECT_NEAR(partials[0], 0.0, 0.1);
    for (std::size_t k = 1; k < partials.size(); ++k) {
        EXPECT_LT(partials[k], -80.0) << k + 1;
    }
    EXPECT_NEAR(PeakFrequency(samples, Rate, 0.5), Frequency(60), 0.02);
}

TEST(FourOperators, CountTransposeBendAndDetuneFromSixtyFour) {
    FourVoice voice = InitialFour();
    voice.bytes[TransposeAt] = 52;
    EXPECT_NEAR(Pitch(voice), Frequency(48), 0.02);
    voice.bytes[TransposeAt] = 76;
    EXPECT_NEAR(Pitch(voice), Frequency(72), 0.02);
    voice.bytes[TransposeAt] = 0; // limited to two octaves
    EXPECT_NEAR(Pitch(voice), Frequency(36), 0.02);
    EXPECT_EQ(InitialFour().Prepared().bendRange, 2.0);
    voice = InitialFour();
    voice.Operator(1, DetuneByte) = 127;
    EXPECT_NEAR(Pitch(voice), Frequency(60) * std::exp2(63 * 0.59 / 1200.0), 0.02);
    voice = InitialFour();
    voice.bytes[PitchLevelAt + 2] = 76; // the level that is held, in semitones
    voice.Operator(1, 16) = 1;
    EXPECT_NEAR(Pitch(voice), Frequency(72), 0.02);
    voice.Operator(1, 16) = 0;
    EXPECT_NEAR(Pitch(voice), Frequency(60), 0.02);
}

TEST(FourOperators, SwingByTheWheelAsTheOthersAtSensitivityThree) {
    FourVoice bytes = InitialFour();
    bytes.bytes[LfoWaveAt] = 4; // square, on its upper half
    bytes.bytes[LfoSpeedAt] = 0;
    bytes.Operator(1, PitchDepthOn) = 1;
    const PreparedVoice voice = bytes.Prepared();
    Synth synth = MakeSynth(Rate, 1);
    SetVoice(synth, &voice, false);
    NoteOn(synth, 60, 98);
    Control(synth, 1, 127);
    Samples samples;
    while (static_cast<double>(samples.size()) < Rate) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        samples.insert(samples.end(), left, left + BlockFrames);
    }
    // A range of 50 is 128 of 255, and the sensitivity 33 of 255: 0.78 semitones.
    EXPECT_NEAR(PeakFrequency(samples, Rate, 0.6),
                Frequency(60) * std::exp2(128.0 / 255.0 * 33.0 / 255.0), 0.05);
}

TEST(FourOperators, AreTunedWithTheirInstrument) {
    FourVoice bytes = InitialFour();
    bytes.Operator(1, FixedByte) = 1;
    bytes.Operator(1, CoarseByte) = 16; // 100 Hz
    PreparedVoice voice = bytes.Prepared();
    voice.tune = 1.0 / 24.0;
    EXPECT_NEAR(PeakFrequency(Heard(voice, 60, 1.0), Rate, 0.5), 100.0 * std::exp2(1.0 / 24.0),
                0.02);
}

TEST(FourOperators, HaveRatiosAndFixedFrequencies) {
    FourVoice voice = InitialFour();
    voice.Operator(1, CoarseByte) = 3;
    voice.Operator(1, FineByte) = 50;
    EXPECT_NEAR(Pitch(voice), 3.5 * Frequency(60), 0.05);
    voice.Operator(1, CoarseByte) = 0;
    EXPECT_NEAR(Pitch(voice), 0.5 * Frequency(60), 0.05);
    voice.Operator(1, FixedByte) = 1;
    voice.Operator(1, CoarseByte) = 23; // >> 3 is 2
    EXPECT_NEAR(Pitch(voice), std::pow(10.0, 2.5), 0.05);
    EXPECT_NEAR(Pitch(voice, 90), std::pow(10.0, 2.5), 0.05);
}

TEST(FourOperators, LoseThreeQuartersOfADecibelAUnitOfLevel) {
    for (const int lost : {10, 40}) {
        FourVoice voice = InitialFour();
        voice.Operator(1, LevelByte) = static_cast<std::uint8_t>(127 - lost);
        const std::vector<double> partials =
            Partials(Heard(voice.Prepared(), 60, 1.0), Rate, Frequency(60), 0.5, 1);
        EXPECT_NEAR(partials[0], -0.7526 * lost, 0.15) << lost;
        voice = InitialFour();
        voice.Operator(1, EgLevel1 + 2) = static_cast<std::uint8_t>(127 - lost);
        const std::vector<double> held =
            Partials(Heard(voice.Prepared(), 60, 1.0), Rate, Frequency(60), 0.5, 1);
        EXPECT_NEAR(held[0], -0.7526 * lost, 0.15) << lost;
    }
    FourVoice voice = InitialFour();
    voice.Operator(1, LevelByte) = 0;
    const Samples silent = Heard(voice.Prepared(), 60, 0.1);
    EXPECT_EQ(*std::ranges::max_element(silent), 0.0);
}

std::vector<PitchPoint> Swings(const FourVoice &voice, int key, double seconds) {
    return PitchOverTime(Heard(voice.Prepared(), key, seconds), Rate, Frequency(key));
}

double LevelAt(const FourVoice &voice, int key, double seconds) {
    return Amplitude(Heard(voice.Prepared(), key, seconds + 0.1), Rate, Frequency(key), seconds);
}

TEST(FourOperators, FallByTheLawOfTheOthersAtHalfTheirRate) {
    // 0.2819 dB a second, twice as fast with every eighth of the rate, on straight lines between.
    const std::vector<std::pair<int, double>> rates = {
        {40, 9.021}, {41, 9.021}, {64, 72.17}, {74, 180.4}, {90, 721.7}};
    for (const auto &[rate, speed] : rates) {
        FourVoice voice = InitialFour();
        voice.Operator(1, EgRate1 + 1) = static_cast<std::uint8_t>(rate);
        voice.Operator(1, EgLevel1 + 1) = 0;
        voice.Operator(1, EgLevel1 + 2) = 0;
        const double begin = 6.0 / speed, end = 36.0 / speed;
        EXPECT_NEAR((LevelAt(voice, 96, begin) - LevelAt(voice, 96, end)) / (end - begin) / speed,
                    1.0, 0.01)
            << rate;
        // Full rate scaling adds 21 to half the rate at key 96.
        voice.Operator(1, RateScalingByte) = 127;
        voice.Operator(1, EgRate1 + 1) = static_cast<std::uint8_t>(rate - 40);
        const double scaled =
            0.2819 * std::exp2((rate / 2 + 1) / 4) * (1.0 + (rate / 2 + 1) % 4 / 4.0);
        const double late = 36.0 / scaled, early = 6.0 / scaled;
        EXPECT_NEAR((LevelAt(voice, 96, early) - LevelAt(voice, 96, late)) / (late - early) /
                        scaled,
                    1.0, 0.02)
            << rate;
    }
}

TEST(FourOperators, FollowTheTouchAndTheKeyByTheLawsOfTheOthers) {
    FourVoice voice = InitialFour();
    voice.Operator(1, LevelByte) = 100;
    const auto played = [&](int velocity) {
        return Amplitude(RenderedKey(voice.Prepared(), 84, velocity, 1.0, 0.5), Rate, Frequency(84),
                         0.4);
    };
    const double rest = played(98);
    EXPECT_EQ(played(20), rest);
    voice.Operator(1, VelocityByte) = 127; // as 7 there
    EXPECT_NEAR(played(127) - rest, 5.3, 0.2);
    EXPECT_NEAR(played(64) - rest, -10.5, 0.2);
    voice.Operator(1, VelocityByte) = 0;
    // Eight groups of three keys above C3, and below, where more than full level is cut.
    voice.Operator(1, RightDepthByte) = 127; // as 99 there
    voice.Operator(1, RightCurveByte) = 0;
    voice.Operator(1, LeftDepthByte) = 64; // as 50 there
    voice.Operator(1, LeftCurveByte) = 3;
    EXPECT_NEAR(LevelAt(voice, 60, 0.4), rest, 0.05);
    EXPECT_NEAR(LevelAt(voice, 84, 0.4) - rest, -63 * 0.7526, 0.1);
    EXPECT_NEAR(LevelAt(voice, 36, 0.4) - rest, 27 * 0.7526, 0.1);
}

TEST(FourOperators, SwingAtTheirOwnFrequencies) {
    const std::vector<std::pair<int, double>> speeds = {
        {32, 1.35},  {64, 2.69}, {72, std::sqrt(2.69 * 4.37)}, {80, 4.37}, {96, 8.4}, {112, 17.5},
        {120, 27.4}, {127, 39.7}};
    for (const auto &[speed, hz] : speeds) {
        FourVoice voice = InitialFour();
        voice.bytes[LfoSpeedAt] = static_cast<std::uint8_t>(speed);
        voice.bytes[LfoPitchDepthAt] = 40;
        voice.Operator(1, PitchDepthOn) = 1;
        EXPECT_NEAR(SwingFrequency(Swings(voice, 96, 4.0)) / hz, 1.0, 0.01) << speed;
    }
}

TEST(FourOperators, SwingAsFarAsTheirDepthsAndAfterTheirDelay) {
    FourVoice voice = InitialFour();
    voice.bytes[LfoSpeedAt] = 96;
    for (const int depth : {127, 32}) {
        for (const int delay : {0, 64, 127}) {
            voice.bytes[LfoPitchDepthAt] = static_cast<std::uint8_t>(depth);
            voice.bytes[LfoDelayAt] = static_cast<std::uint8_t>(delay);
            voice.Operator(1, PitchDepthOn) = 1;
            const double wait = 0.012 + 1.188 * delay / 127.0;
            double before = 0.0, after = 0.0;
            for (const auto &[seconds, octaves] : Swings(voice, 96, 2.5)) {
                (seconds < wait - 0.002 ? before : after) =
                    std::max(seconds < wait - 0.002 ? before : after, std::fabs(octaves));
            }
            EXPECT_LT(before, 0.001) << depth << ", " << delay;
            EXPECT_NEAR(after, depth / 127.0, 0.02 * depth / 127.0) << depth << ", " << delay;
            voice.Operator(1, PitchDepthOn) = 0;
            EXPECT_NEAR(Swings(voice, 96, 1.5).back().octaves, 0.0, 0.001);
        }
    }
    voice.bytes[LfoPitchDepthAt] = voice.bytes[LfoDelayAt] = 0;
    voice.bytes[LfoWaveAt] = 4; // square
    voice.bytes[LfoSpeedAt] = 64;
    for (const int depth : {32, 64, 96}) {
        voice.Operator(1, AmplitudeDepthByte) = static_cast<std::uint8_t>(depth);
        const Samples samples = Heard(voice.Prepared(), 96, 1.0);
        double quietest = 0.0;
        for (double time = 0.1; time < 0.9; time += 0.01) {
            quietest = std::min(quietest, Amplitude(samples, Rate, Frequency(96), time));
        }
        EXPECT_NEAR(quietest, 20.0 * std::log10(1.0 - 2.0 * depth / 256.0), 0.1) << depth;
    }
}

TEST(FourOperators, MoveTheirPitchBetweenGeometricRates) {
    FourVoice voice = InitialFour();
    voice.Operator(1, PitchEnvelopeOn) = 1;
    for (int i = 0; i < 3; ++i) {
        voice.bytes[PitchLevelAt + i] = 76; // an octave up
    }
    for (const int rate : {60, 90, 127}) {
        voice.bytes[PitchRateAt] = static_cast<std::uint8_t>(rate);
        const double speed = std::pow(255.0, rate / 127.0) * 0.0454;
        for (const auto &[seconds, octaves] : Swings(voice, 96, 1.0 / speed + 0.2)) {
            ASSERT_NEAR(octaves, std::min(1.0, speed * seconds), 0.01 + 0.004 * speed)
                << rate << " at " << seconds;
        }
    }
}

TEST(FourOperators, PlayOneKeyInTheMonoModesOfTheirVoice) {
    for (const int mode : {1, 2}) {
        FourVoice bytes = InitialFour();
        bytes.bytes[PartModeAt] = static_cast<std::uint8_t>(mode);
        bytes.bytes[PortamentoAt] = 100;
        const PreparedVoice voice = bytes.Prepared();
        Synth synth = MakeSynth(Rate, 8);
        SetVoice(synth, &voice, false);
        const auto glide = [&](int number) {
            NoteOn(synth, number, 98);
            double glides = 0.0;
            for (const Key &key : synth.keys) {
                glides += key.sounds && key.held ? key.glide : 0.0;
            }
            return glides;
        };
        float left[BlockFrames];
        float right[BlockFrames];
        EXPECT_EQ(glide(48), 0.0) << mode; // from nowhere
        Render(synth, left, right);
        EXPECT_NEAR(glide(60), -1.0, 1e-9) << mode;
        Render(synth, left, right);
        EXPECT_EQ(SoundingKeys(synth), 1) << mode;
        NoteOff(synth, 48);
        NoteOff(synth, 60);
        for (int block = 0; block < 200; ++block) {
            Render(synth, left, right);
        }
        EXPECT_NEAR(glide(48), mode == 1 ? 1.0 : 0.0, 1e-9) << mode; // legato: not after a pause
    }
}

TEST(FourOperators, AreHeardThroughTheEffectsOfTheirVoice) {
    FourVoice bytes = InitialFour();
    bytes.bytes[29] = 3; // chorus
    bytes.bytes[30] = bytes.bytes[31] = 100;
    const PreparedVoice voice = bytes.Prepared();
    Synth synth = MakeSynth(Rate, 8);
    SetVoice(synth, &voice, false);
    NoteOn(synth, 60, 98);
    double apart = 0.0;
    for (int block = 0; block < 750; ++block) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        for (int i = 0; i < BlockFrames; ++i) {
            apart = std::max(apart, std::fabs(8.0 * (left[i] - right[i])));
        }
    }
    EXPECT_GT(apart, 0.3);
}

// The partials 1 to 9 of one operator that feeds back, in dB above the first.
std::vector<double> FedBack(int amount, bool square) {
    FourVoice voice = InitialFour();
    voice.Operator(1, FeedbackLevel) = static_cast<std::uint8_t>(amount);
    voice.Operator(1, FeedbackType) = square ? 1 : 0;
    std::vector<double> partials =
        Partials(Heard(voice.Prepared(), 48, 1.0), Rate, Frequency(48), 0.5, 9);
    const double first = partials[0];
    for (double &partial : partials) {
        partial -= first;
    }
    return partials;
}

TEST(FourOperators, FeedBackTowardsASawtooth) {
    const std::vector<double> full = FedBack(127, false);
    const double ideal[] = {0.0, -6.0, -9.5, -12.0, -14.0};
    for (int k = 1; k < 5; ++k) {
        EXPECT_NEAR(full[k], ideal[k], 3.0) << k + 1;
    }
    const std::vector<double> half = FedBack(58, false); // a tenth of a cycle
    const double published[] = {0.0, -11.0, -18.0, -24.0, -29.0};
    for (int k = 1; k < 5; ++k) {
        EXPECT_NEAR(half[k], published[k], 1.5) << k + 1;
    }
    const std::vector<double> most = FedBack(115, false); // a fifth of a cycle
    const double louder[] = {0.0, -7.0, -12.0, -15.0, -17.0};
    for (int k = 1; k < 5; ++k) {
        EXPECT_NEAR(most[k], louder[k], 1.5) << k + 1;
    }
}

TEST(FourOperators, FeedBackTowardsASquareWithoutEvenPartials) {
    const std::vector<double> half = FedBack(56, true); // a fifth of a cycle
    EXPECT_NEAR(half[2], -13.5, 0.5);
    EXPECT_NEAR(half[4], -20.0, 0.7);
    EXPECT_NEAR(half[6], -24.0, 0.7);
    for (int k = 1; k < 9; k += 2) {
        EXPECT_LT(half[k], -90.0) << k + 1;
    }
    const std::vector<double> little = FedBack(28, true); // a tenth
    EXPECT_NEAR(little[2], -17.0, 0.7);
    EXPECT_NEAR(little[4], -26.0, 0.7);
    EXPECT_NEAR(little[6], -33.0, 1.0);
    const std::vector<double> full = FedBack(113, true); // two fifths
    EXPECT_NEAR(full[2], -9.0, 0.5);
    EXPECT_NEAR(full[4], -15.0, 1.0);
    EXPECT_NEAR(full[6], -20.0, 0.5);
}

TEST(FourOperators, KeepTheWaveOfTheirFeedbackWhileTheyFade) {
    FourVoice voice = InitialFour();
    voice.Operator(1, FeedbackLevel) = 100;
    const auto second = [&] {
        const std::vector<double> partials =
            Partials(Heard(voice.Prepared(), 48, 1.0), Rate, Frequency(48), 0.5, 2);
        return partials[1] - partials[0];
    };
    const double loud = second();
    voice.Operator(1, LevelByte) = 80;
    EXPECT_NEAR(second(), loud, 0.2);
}

// As printed on the panel: who modulates whom, and who is heard.
const std::vector<PrintedAlgorithm> Panel = {
    {"1", "43 32 21", ""},    {"1", "42 32 21", ""}, {"1", "32 21 41", ""},
    {"1", "43 42 31 21", ""}, {"1", "41 31 21", ""}, {"12", "43 32", ""},
    {"12", "43 32 31", ""},   {"13", "21 43", ""},   {"123", "41 42 43", ""},
    {"123", "42 43", ""},     {"123", "43", ""},     {"1234", "", ""}};

TEST(FourOperators, AreConnectedAsThePanelShows) {
    for (int algorithm = 0; algorithm < 12; ++algorithm) {
        FourVoice voice = InitialFour();
        voice.bytes[AlgorithmAt] = static_cast<std::uint8_t>(algorithm);
        for (int number = 1; number <= 4; ++number) {
            voice.Operator(number, LevelByte) = 110;
            voice.Operator(number, CoarseByte) = static_cast<std::uint8_t>(number);
        }
        const auto heard = [&](unsigned enabled) {
            for (int number = 1; number <= 4; ++number) {
                voice.Operator(number, On) = enabled >> (number - 1) & 1;
            }
            return Heard(voice.Prepared(), 60, 0.005);
        };
        for (unsigned enabled = 1; enabled < 16; ++enabled) {
            const Samples with = heard(enabled);
            for (char number = '1'; number <= '4'; ++number) {
                if ((enabled & OperatorBit(number)) == 0) {
                    continue;
                }
                EXPECT_EQ(heard(enabled & ~OperatorBit(number)) != with,
                          IsHeard(Panel[algorithm], number, enabled))
                    << "algorithm " << algorithm + 1 << ", operator " << number << " of "
                    << enabled;
            }
        }
    }
}

TEST(FourOperators, TakeAnyByte) {
    for (const int filling : {0, 1, 63, 64, 65, 127, 128, 200, 255}) {
        FourVoice voice;
        std::ranges::fill(voice.bytes, static_cast<std::uint8_t>(filling));
        for (const int key : {0, 60, 127}) {
            for (const double sample : Heard(voice.Prepared(), key, 0.05)) {
                ASSERT_TRUE(std::isfinite(sample)) << filling;
            }
        }
    }
}

} // namespace
} // namespace tonewright
