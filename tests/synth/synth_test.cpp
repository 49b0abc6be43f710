// Keys, pedals and wheels: what sounds, and that nothing of it clicks.
#include "synth/synth.h"

#include "measure.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;
constexpr double CarrierScale = 8.0; // amplitude 1 is an eighth of full scale

Samples Played(Synth &synth, double seconds) {
    Samples samples;
    while (static_cast<double>(samples.size()) < seconds * synth.rate) {
        float out[BlockFrames];
        float right[BlockFrames];
        Render(synth, out, right);
        for (const float sample : out) {
            samples.push_back(sample * CarrierScale);
        }
    }
    return samples;
}

double Frequency(int key) {
    return 440.0 * std::exp2((key - 69) / 12.0);
}

double Loudest(const Samples &samples) {
    double loudest = 0.0;
    for (const double sample : samples) {
        loudest = std::max(loudest, std::fabs(sample));
    }
    return loudest;
}

bool IsExactlySilent(const Samples &samples) {
    return std::ranges::all_of(samples, [](double sample) { return sample == 0.0; });
}

class Sound : public testing::Test {
protected:
    SixVoice bytes_ = InitialVoice();
    PreparedVoice voice_;
    Synth synth_ = MakeSynth(Rate, 16);

    void Use() {
        voice_ = bytes_.Prepared();
        synth_.voice = nullptr;
        SetVoice(synth_, &voice_, false);
    }
};

TEST_F(Sound, IsNoneWithoutAVoice) {
    NoteOn(synth_, 60, 100);
    EXPECT_TRUE(IsExactlySilent(Played(synth_, 0.1)));
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, OfTheInitialVoiceIsAPureSine) {
    Use();
    for (const int key : {36, 60, 84, 96}) {
        NoteOn(synth_, key, 98);
        const Samples samples = Played(synth_, 1.0);
        EXPECT_NEAR(PeakFrequency(samples, Rate, 0.5), Frequency(key), 0.02) << key;
        const std::vector<double> partials = Partials(samples, Rate, Frequency(key), 0.5, 20);
        EXPECT_NEAR(partials[0], 0.0, 0.05) << key;
        for (std::size_t k = 1; k < partials.size(); ++k) {
            EXPECT_LT(partials[k], -80.0) << key << ", partial " << k + 1;
        }
        Panic(synth_);
        Played(synth_, 0.1);
    }
}

TEST_F(Sound, OfTwoEqualOperatorsHasThePartialsOfItsIndex) {
    bytes_.Operator(2, OutputLevel) = 80;
    Use();
    // Level 80 is 19 units of 32 steps below full, at which a modulator moves 2 cycles.
    const double index = 4.0 * std::numbers::pi * std::exp2(-19.0 * 32.0 / 256.0);
    NoteOn(synth_, 60, 98);
    const std::vector<double> partials = Partials(Played(synth_, 1.0), Rate, Frequency(60), 0.5, 6);
    for (int k = 1; k <= 6; ++k) {
        // sin(x + I sin(x)) is the sum of J(n) sin((n + 1) x): those of n below -1 are mirrored.
        const double mirrored = std::cyl_bessel_j(k + 1.0, index);
        const double amplitude =
            std::cyl_bessel_j(k - 1.0, index) + (k % 2 == 0 ? mirrored : -mirrored);
        EXPECT_NEAR(partials[k - 1], 20.0 * std::log10(std::fabs(amplitude)), 0.1) << k;
    }
}

TEST_F(Sound, EndsInExactSilenceAfterTheRelease) {
    bytes_.Operator(1, Rate1 + 3) = 60;
    Use();
    NoteOn(synth_, 60, 100);
    Played(synth_, 0.2);
    NoteOff(synth_, 60);
    Played(synth_, 3.0);
    EXPECT_EQ(SoundingKeys(synth_), 0);
    EXPECT_TRUE(IsExactlySilent(Played(synth_, 0.1)));
}

TEST_F(Sound, GoesOnForEverWithALastLevelAndEndsWithPanic) {
    bytes_.Operator(1, Level1 + 3) = 99;
    Use();
    NoteOn(synth_, 60, 100);
    NoteOff(synth_, 60);
    EXPECT_GT(Loudest(Played(synth_, 5.0)), 0.9);
    Panic(synth_);
    Played(synth_, FadeTime + BlockFrames / Rate);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, HasNoOffset) {
    // A sine that feeds back strongly has one of its own.
    bytes_.bytes[AlgorithmByte] = 31;
    bytes_.bytes[FeedbackByte] = 7;
    bytes_.Operator(1, OutputLevel) = 0;
    bytes_.Operator(6, OutputLevel) = 90;
    Use();
    NoteOn(synth_, 48, 100);
    Played(synth_, 1.0);
    const Samples samples = Played(synth_, 2.0);
    double sum = 0.0;
    for (const double sample : samples) {
        sum += sample;
    }
    EXPECT_LT(std::fabs(sum / static_cast<double>(samples.size())), 0.001);
    EXPECT_GT(Loudest(samples), 0.1);
}

TEST_F(Sound, IsHeldByThePedal) {
    Use();
    NoteOn(synth_, 60, 100);
    Control(synth_, 64, 127);
    NoteOff(synth_, 60);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 1);
    Control(synth_, 64, 63);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, OfKeysThatGoUpWhileThePedalIsUpEnds) {
    Use();
    Control(synth_, 64, 127);
    Control(synth_, 64, 0);
    NoteOn(synth_, 60, 100);
    NoteOff(synth_, 60);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, OfTheKeyThatIsReleasedAloneEnds) {
    Use();
    NoteOn(synth_, 60, 100);
    NoteOn(synth_, 67, 100);
    NoteOff(synth_, 60);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(67), 0.1);
}

TEST_F(Sound, IsBentByTheWholeRange) {
    Use();
    NoteOn(synth_, 60, 100);
    const std::vector<std::pair<int, double>> bends = {
        {16383, 2.0}, {0, -2.0}, {8192, 0.0}, {12288, 1.0}};
    for (const auto &[value, semitones] : bends) {
        Bend(synth_, value);
        Played(synth_, 0.05);
        EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25),
                    Frequency(60) * std::exp2(semitones / 12.0), 0.05)
            << value;
    }
}

TEST_F(Sound, IsTransposedWithItsVoice) {
    bytes_.bytes[TransposeByte] = 36;
    Use();
    NoteOn(synth_, 60, 100);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 1.0), Rate, 0.5), Frequency(72), 0.05);
}

TEST_F(Sound, OfAFixedFrequencyFollowsNoKeyButTheBend) {
    bytes_.Operator(1, FixedFrequency) = 1;
    bytes_.Operator(1, Coarse) = 2; // 100 Hz
    bytes_.Operator(1, Fine) = 50;  // 10^2.5
    bytes_.bytes[PitchLevel1 + 2] = 99;
    Use();
    for (const int key : {30, 90}) {
        NoteOn(synth_, key, 100);
        EXPECT_NEAR(PeakFrequency(Played(synth_, 1.0), Rate, 0.5), std::pow(10.0, 2.5), 0.02);
        Panic(synth_);
        Played(synth_, 0.1);
    }
    NoteOn(synth_, 60, 100);
    Bend(synth_, 16383);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 1.0), Rate, 0.5),
                std::pow(10.0, 2.5) * std::exp2(2.0 / 12.0), 0.02);
}

TEST_F(Sound, AboveHalfTheRateIsSilence) {
    bytes_.Operator(1, Coarse) = 31;
    Use();
    NoteOn(synth_, 127, 100);
    EXPECT_LT(Loudest(Played(synth_, 0.2)), 1e-6);
}

TEST_F(Sound, GlidesWithPortamentoTheFasterTheFarther) {
    Use();
    Control(synth_, 5, 64);
    Control(synth_, 65, 127);
    NoteOn(synth_, 48, 100);
    Played(synth_, 0.1);
    NoteOff(synth_, 48);
    Played(synth_, 0.1);
    NoteOn(synth_, 60, 100);
    // Rate 99 - 50: r = 41 - 7/5 = 40 about; the last quarter of an octave at r * 0.04545 octave/s.
    const double speed = PitchSpeed(49);
    const double begin = PeakFrequency(Played(synth_, 0.2), Rate, 0.05);
    EXPECT_LT(begin, Frequency(57));
    EXPECT_GT(begin, Frequency(48));
    const double rest = 0.25 / (speed * 5) + 0.25 / (speed * 4) + 0.25 / (speed * 3) +
                        0.25 / (speed * 2) + 0.25 / speed;
    Played(synth_, rest);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.4), Rate, 0.2), Frequency(60), 0.05);
}

TEST_F(Sound, OfAMonoModeIsThatOfTheLastKey) {
    Use();
    Control(synth_, 126, 1);
    NoteOn(synth_, 60, 100);
    Played(synth_, 0.1);
    NoteOn(synth_, 67, 100);
    Played(synth_, 0.1);
    EXPECT_EQ(SoundingKeys(synth_), 1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(67), 0.1);
    Control(synth_, 127, 0);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 0); // a change of mode releases
    NoteOn(synth_, 60, 100);
    NoteOn(synth_, 67, 100);
    Played(synth_, 0.1);
    EXPECT_EQ(SoundingKeys(synth_), 2);
}

TEST_F(Sound, OfAMonoModeReturnsToTheKeyThatIsStillDown) {
    Use();
    Control(synth_, 126, 1);
    for (const int key : {60, 64, 67}) {
        NoteOn(synth_, key, 100);
        Played(synth_, 0.05);
    }
    NoteOff(synth_, 64); // not the one that sounds
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(67), 0.1);
    NoteOff(synth_, 67);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(60), 0.1);
    NoteOff(synth_, 60);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, HasAsManyKeysAsItsPolyphony) {
    synth_ = MakeSynth(Rate, 3);
    Use();
    for (int key = 60; key < 70; ++key) {
        NoteOn(synth_, key, 100);
        Played(synth_, 0.05);
    }
    EXPECT_EQ(SoundingKeys(synth_), 3);
    NoteOff(synth_, 66); // gave way long ago
    Played(synth_, 0.1);
    EXPECT_EQ(SoundingKeys(synth_), 3);
    NoteOff(synth_, 69);
    Played(synth_, 0.1);
    EXPECT_EQ(SoundingKeys(synth_), 2);
}

TEST_F(Sound, IsTakenFromReleasedKeysFirst) {
    bytes_.Operator(1, Rate1 + 3) = 20; // a long release
    synth_ = MakeSynth(Rate, 3);
    Use();
    NoteOn(synth_, 40, 100);
    NoteOn(synth_, 50, 100);
    NoteOn(synth_, 60, 100);
    Played(synth_, 0.1);
    NoteOff(synth_, 50);
    Played(synth_, 0.1);
    NoteOn(synth_, 70, 100);
    Played(synth_, 0.1);
    NoteOff(synth_, 40); // is still there to be released
    NoteOff(synth_, 60);
    NoteOff(synth_, 70);
    std::vector<int> numbers;
    for (const Key &key : synth_.keys) {
        if (key.sounds) {
            numbers.push_back(key.number);
        }
    }
    std::ranges::sort(numbers);
    EXPECT_EQ(numbers, (std::vector<int>{40, 60, 70}));
}

TEST_F(Sound, FollowsVolumeAndExpression) {
    Use();
    NoteOn(synth_, 60, 98);
    Control(synth_, 7, 64);
    Played(synth_, 0.1);
    EXPECT_NEAR(Loudest(Played(synth_, 0.1)), std::pow(64.0 / 127.0, 2.0), 0.01);
    Control(synth_, 11, 0);
    Played(synth_, 0.1);
    EXPECT_EQ(Loudest(Played(synth_, 0.1)), 0.0);
    Control(synth_, 121, 0);
    Played(synth_, 0.1);
    EXPECT_NEAR(Loudest(Played(synth_, 0.1)), std::pow(64.0 / 127.0, 2.0), 0.01);
}

TEST_F(Sound, SwingsByTheWheel) {
    bytes_.bytes[PitchSensitivityByte] = 7;
    bytes_.bytes[LfoWaveByte] = 3; // square: two pitches
    bytes_.bytes[LfoSpeed] = 0;    // 16 s a cycle
    bytes_.bytes[LfoKeySync] = 0;
    Use();
    NoteOn(synth_, 60, 100);
    Control(synth_, 1, 127);
    Played(synth_, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25),
                Frequency(60) * std::exp2(128.0 / 255.0), 0.1);
    Control(synth_, 1, 0);
    Played(synth_, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(60), 0.1);
}

// The wheel alone moves anything from the start; each of the four can move each of the three.
struct Source {
    ControllerSource source;
    int controller; // 0 is pressure
};
constexpr Source Sources[] = {{Wheel, 1}, {Foot, 4}, {Breath, 2}, {Pressure, 0}};

void Move(Synth &synth, const Source &source, int value) {
    source.controller == 0 ? Press(synth, value) : Control(synth, source.controller, value);
}

TEST_F(Sound, SwingsByNoControllerButTheWheel) {
    bytes_.bytes[PitchSensitivityByte] = 7;
    bytes_.bytes[LfoWaveByte] = 3;
    bytes_.bytes[LfoSpeed] = 0;
    bytes_.bytes[LfoKeySync] = 0;
    bytes_.Operator(1, AmplitudeSensitivity) = 3;
    Use();
    NoteOn(synth_, 60, 98);
    for (const Source &source : Sources) {
        Move(synth_, source, source.source == Wheel ? 0 : 127);
    }
    Played(synth_, 0.1);
    const Samples samples = Played(synth_, 0.5);
    EXPECT_NEAR(PeakFrequency(samples, Rate, 0.25), Frequency(60), 0.1);
    EXPECT_NEAR(Loudest(samples), 1.0, 0.01);
}

TEST_F(Sound, SwingsByEachControllerWhosePitchIsSwitchedOn) {
    bytes_.bytes[PitchSensitivityByte] = 7;
    bytes_.bytes[LfoWaveByte] = 3; // square, on its upper half
    bytes_.bytes[LfoSpeed] = 0;
    bytes_.bytes[LfoKeySync] = 0;
    Use();
    synth_.routes = {};
    NoteOn(synth_, 60, 100);
    for (const Source &source : Sources) {
        // 30 of 99 is 77 of 255.
        synth_.routes[source.source] = {.range = 30, .pitch = true};
        Move(synth_, source, 127);
        Played(synth_, 0.1);
        EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25),
                    Frequency(60) * std::exp2(77.0 / 255.0), 0.1)
            << source.source;
        Move(synth_, source, 0);
    }
    // Together they add up, to the whole at most.
    Move(synth_, Sources[0], 127);
    Move(synth_, Sources[3], 127);
    Played(synth_, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25),
                Frequency(60) * std::exp2(154.0 / 255.0), 0.1);
    Move(synth_, Sources[1], 127);
    Move(synth_, Sources[2], 127);
    Played(synth_, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(60) * 2.0, 0.1);
    Control(synth_, 121, 0);
    Played(synth_, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), Frequency(60), 0.1);
}

TEST_F(Sound, LosesByEachControllerWhoseAmplitudeIsSwitchedOn) {
    bytes_.bytes[LfoWaveByte] = 3;
    bytes_.bytes[LfoSpeed] = 0;
    bytes_.bytes[LfoKeySync] = 1; // its lower half, where everything is lost
    bytes_.Operator(1, AmplitudeSensitivity) = 3;
    Use();
    synth_.routes = {};
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.1);
    for (const Source &source : Sources) {
        EXPECT_NEAR(Loudest(Played(synth_, 0.1)), 1.0, 0.02);
        // 50 of 99 is 128 of 255, half of the amplitude.
        synth_.routes[source.source] = {.range = 50, .amplitude = true};
        Move(synth_, source, 127);
        Played(synth_, 0.1);
        EXPECT_NEAR(Loudest(Played(synth_, 0.1)), 0.5, 0.01) << source.source;
        Move(synth_, source, 0);
        Played(synth_, 0.1);
    }
    for (const Source &source : Sources) {
        Move(synth_, source, 127);
    }
    Played(synth_, 0.1);
    EXPECT_NEAR(Loudest(Played(synth_, 0.1)), 1.0 / 256.0, 0.001);
}

TEST_F(Sound, IsTheSofterTheLessABiasIsMoved) {
    bytes_.bytes[LfoWaveByte] = 3;
    bytes_.bytes[LfoSpeed] = 0;
    bytes_.bytes[LfoKeySync] = 0; // its upper half: the LFO takes nothing
    bytes_.Operator(1, AmplitudeSensitivity) = 3;
    Use();
    NoteOn(synth_, 60, 98);
    for (const Source &source : Sources) {
        synth_.routes = {};
        synth_.routes[source.source] = {.range = 50, .envelopeBias = true};
        for (const auto &[value, loudness] :
             std::vector<std::pair<int, double>>{{0, 0.5}, {64, 0.752}, {127, 1.0}}) {
            Move(synth_, source, value);
            Played(synth_, 0.1);
            EXPECT_NEAR(Loudest(Played(synth_, 0.1)), loudness, 0.01) << source.source;
        }
    }
    // Only where an operator is sensitive.
    Panic(synth_);
    Played(synth_, 0.1);
    bytes_.Operator(1, AmplitudeSensitivity) = 0;
    Use();
    Move(synth_, Sources[3], 0);
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.1);
    EXPECT_NEAR(Loudest(Played(synth_, 0.1)), 1.0, 0.01);
}

TEST_F(Sound, OfTremoloLosesThePublishedDecibels) {
    // Decibels at the greatest attenuation, at amplitude sensitivity 3.
    const std::vector<std::pair<int, double>> published = {{10, 0.9}, {25, 2.5},  {34, 3.6},
                                                           {50, 6.0}, {75, 12.2}, {99, 48.0}};
    for (const auto &[depth, decibels] : published) {
        bytes_.bytes[LfoAmplitudeDepth] = static_cast<std::uint8_t>(depth);
        bytes_.bytes[LfoWaveByte] = 3; // square: nothing lost, and everything
        bytes_.bytes[LfoSpeed] = 20;   // 3.2 Hz
        bytes_.bytes[LfoKeySync] = 0;
        bytes_.Operator(1, AmplitudeSensitivity) = 3;
        Use();
        NoteOn(synth_, 96, 98);
        const Samples samples = Played(synth_, 2.0);
        double quietest = 1.0;
        for (std::size_t i = 4800; i + 48 < samples.size(); i += 48) {
            quietest =
                std::min(quietest, Loudest(Samples(samples.begin() + i, samples.begin() + i + 48)));
        }
        EXPECT_NEAR(20.0 * std::log10(quietest), -decibels, 0.1 + decibels / 25.0) << depth;
        Panic(synth_);
        Played(synth_, 0.1);
    }
}

// The widest step between two samples in the time around something that happens to a sine at full
// level, in parts of the widest of the steady sounds before and after.
class Step : public testing::TestWithParam<bool> {
protected:
    static constexpr int LowKey = 30; // 46 Hz

    static double Widest(const Samples &samples) {
        double widest = 0.0;
        for (std::size_t i = 1; i < samples.size(); ++i) {
            widest = std::max(widest, std::fabs(samples[i] - samples[i - 1]));
        }
        return widest;
    }

    // At 24 places of the sine; `louder` is how much wider the steps are afterwards.
    static double At(const SixVoice &bytes, int polyphony, double louder,
                     const std::function<void(Synth &)> &happen) {
        const PreparedVoice voice = bytes.Prepared();
        const double steady = 2.0 * std::numbers::pi * Frequency(LowKey) / Rate;
        double worst = 0.0;
        for (int place = 0; place < 24; ++place) {
            Synth synth = MakeSynth(Rate, polyphony);
            SetVoice(synth, &voice, false);
            NoteOn(synth, LowKey, 98);
            Samples samples = Played(synth, 0.3 + place * BlockFrames / Rate);
            samples.erase(samples.begin(), samples.end() - BlockFrames);
            happen(synth);
            const Samples after = Played(synth, 0.2);
            samples.insert(samples.end(), after.begin(), after.end());
            worst = std::max(worst, Widest(samples) / (steady * std::max(1.0, louder)));
        }
        return worst;
    }

    static SixVoice Voice() {
        SixVoice voice = InitialVoice();
        voice.bytes[OscillatorSync] = GetParam() ? 1 : 0;
        return voice;
    }
};

constexpr double NoClick = 1.5;

TEST_P(Step, IsSmallAtKeyOn) {
    const PreparedVoice voice = Voice().Prepared();
    for (int before = 0; before < 24; ++before) {
        Synth synth = MakeSynth(Rate, 1);
        SetVoice(synth, &voice, false);
        NoteOn(synth, LowKey, 98);
        Played(synth, 0.01 + 0.003 * before); // leaves the phase wherever it is
        NoteOff(synth, LowKey);
        Played(synth, 0.3);
        NoteOn(synth, LowKey, 98);
        EXPECT_LT(Widest(Played(synth, 0.2)),
                  NoClick * 2.0 * std::numbers::pi * Frequency(LowKey) / Rate)
            << before;
    }
}

TEST_P(Step, IsSmallAtKeyOff) {
    EXPECT_LT(At(Voice(), 16, 1.0, [](Synth &synth) { NoteOff(synth, LowKey); }), NoClick);
}

TEST_P(Step, IsSmallWhenAKeyGivesWay) {
    EXPECT_LT(At(Voice(), 1, 1.0, [](Synth &synth) { NoteOn(synth, LowKey, 98); }), NoClick);
}

TEST_P(Step, IsSmallAtAnotherVoice) {
    const PreparedVoice other = ExampleVoice(1).Prepared();
    EXPECT_LT(At(Voice(), 16, 1.0, [&](Synth &synth) { SetVoice(synth, &other, false); }), NoClick);
}

TEST_P(Step, IsSmallAtAParameterChange) {
    SixVoice quiet = Voice();
    quiet.Operator(1, OutputLevel) = 70;
    const PreparedVoice quieter = quiet.Prepared();
    EXPECT_LT(At(Voice(), 16, 1.0, [&](Synth &synth) { SetVoice(synth, &quieter, true); }),
              NoClick);
    SixVoice high = Voice();
    high.bytes[AlgorithmByte] = 31;
    high.Operator(1, Coarse) = 2;
    const PreparedVoice higher = high.Prepared();
    EXPECT_LT(At(Voice(), 16, 2.0, [&](Synth &synth) { SetVoice(synth, &higher, true); }), NoClick);
}

TEST_P(Step, IsSmallAtPanic) {
    EXPECT_LT(At(Voice(), 16, 1.0, [](Synth &synth) { Panic(synth); }), NoClick);
}

TEST_P(Step, IsSmallAtABend) {
    EXPECT_LT(At(Voice(), 16, std::exp2(2.0 / 12.0), [](Synth &synth) { Bend(synth, 16383); }),
              NoClick);
}

TEST_P(Step, IsSmallAtAChangeOfVolume) {
    EXPECT_LT(At(Voice(), 16, 1.0, [](Synth &synth) { Control(synth, 7, 0); }), NoClick);
}

INSTANTIATE_TEST_SUITE_P(Phases, Step, testing::Bool(), [](const auto &information) {
    return std::string(information.param ? "Synchronised" : "RunningOn");
});

TEST_F(Sound, GoesOnInTheChangedVoice) {
    Use();
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.3);
    SixVoice changed = bytes_;
    changed.Operator(1, Coarse) = 3;
    const PreparedVoice other = changed.Prepared();
    SetVoice(synth_, &other, true);
    EXPECT_TRUE(IsFading(synth_));
    Played(synth_, 2.0 * FadeTime);
    EXPECT_FALSE(IsFading(synth_));
    EXPECT_EQ(SoundingKeys(synth_), 1);
    EXPECT_NEAR(PeakFrequency(Played(synth_, 0.5), Rate, 0.25), 3.0 * Frequency(60), 0.1);
    NoteOff(synth_, 60);
    Played(synth_, 0.5);
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

TEST_F(Sound, EndsWithItsVoice) {
    Use();
    NoteOn(synth_, 60, 98);
    Played(synth_, 0.3);
    const PreparedVoice other = ExampleVoice(2).Prepared();
    SetVoice(synth_, &other, false);
    Played(synth_, 2.0 * FadeTime);
    EXPECT_FALSE(IsFading(synth_));
    EXPECT_EQ(SoundingKeys(synth_), 0);
}

} // namespace
} // namespace tonewright
