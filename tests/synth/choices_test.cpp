// Each row of the choices does what it says when another figure is chosen.
#include "synth/choices.h"

#include "measure.h"
#include "synth/synth.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

// The figures that are built, but for what `change` does to them.
template <typename Change> SynthChoices Chosen(Change change) {
    SynthChoices choices;
    change(choices);
    return choices;
}

double Frequency(int key) {
    return 440.0 * std::exp2((key - 69) / 12.0);
}

Samples Played(Synth &synth, double seconds) {
    Samples samples;
    while (static_cast<double>(samples.size()) < seconds * Rate) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        for (const float sample : left) {
            samples.push_back(8.0 * sample);
        }
    }
    return samples;
}

TEST(Choices, OfAnLfoAboveItsMiddleSpeed) {
    const SynthChoices choices = Chosen([](SynthChoices &c) { c.lfoFastShift = 4; });
    // 99 is 255 of 255: 255 * (11 + (95 >> 4)) ticks.
    EXPECT_NEAR(LfoFrequency(99, choices), 255.0 * 16.0 * 372.3 / 65536.0, 1e-9);
    EXPECT_EQ(LfoFrequency(50, choices), LfoFrequency(50));
    SixVoice voice = InitialVoice();
    voice.bytes[LfoSpeed] = 99;
    EXPECT_EQ(PrepareSixOperatorVoice(voice.bytes, 0x3F, choices).lfo.frequency,
              LfoFrequency(99, choices));
}

TEST(Choices, OfTheDelayOfAnLfo) {
    const SynthChoices choices = Chosen([](SynthChoices &c) { c.lfoDelayAtEachKey = true; });
    SixVoice voice = InitialVoice();
    voice.bytes[LfoDelayByte] = 50;
    const LfoShape shape = PrepareSixOperatorVoice(voice.bytes, 0x3F, choices).lfo;
    Lfo lfo;
    AdvanceLfo(lfo, shape, 10.0);
    EXPECT_EQ(LfoFade(lfo, shape), 1.0);
    LfoKeyDown(lfo, shape, false);
    EXPECT_EQ(LfoFade(lfo, shape), 0.0);
}

TEST(Choices, OfAmplitudeModulation) {
    const SynthChoices measured = Chosen([](SynthChoices &c) { c.logarithmicTremolo = false; });
    constexpr double StepDecibels = 20.0 * 0.30102999566 / 256.0;
    EXPECT_NEAR(TremoloSteps(128.0) * StepDecibels, 6.02, 0.01);
    EXPECT_NEAR(TremoloSteps(128.0, measured) * StepDecibels, 4.8, 1e-9);
    EXPECT_NEAR(TremoloSteps(96.0, measured) * StepDecibels, 2.4 + 2.4 * 9.0 / 41.0, 1e-9);
    EXPECT_NEAR(TremoloSteps(255.0, measured) * StepDecibels, 40.0, 1e-9);
    EXPECT_EQ(TremoloSteps(0.0, measured), 0.0);
}

TEST(Choices, OfExponentialScalingOfFarKeys) {
    const SynthChoices flat = Chosen([](SynthChoices &c) { c.farthestScaling = 190; });
    const auto scaling = [](int groups, const SynthChoices &choices) {
        return LevelScalingUnits(57 + 3 * groups, 39, 0, 99, ScalingCurve::PlusLinear,
                                 ScalingCurve::PlusExponential, choices);
    };
    EXPECT_EQ(scaling(22, flat), scaling(22, TheSynthChoices));
    EXPECT_EQ(scaling(28, flat), 190 * 99 * 329 >> 15);
    EXPECT_EQ(scaling(28, TheSynthChoices), 255 * 99 * 329 >> 15);
    EXPECT_LT(scaling(25, flat), scaling(25, TheSynthChoices));
}

TEST(Choices, OfFixedDetune) {
    const SynthChoices up = Chosen([](SynthChoices &c) { c.fixedDetuneDownwards = false; });
    EXPECT_EQ(FixedDetuneOctaves(-3, up), 0.0);
    EXPECT_EQ(FixedDetuneOctaves(3, up), FixedDetuneOctaves(3));
}

TEST(Choices, OfTheIndexOfModulators) {
    const SynthChoices choices = Chosen([](SynthChoices &c) { c.modulationIndex = 2.5; });
    SixVoice voice = InitialVoice();
    voice.Operator(2, OutputLevel) = 80;
    const Samples samples =
        RenderedKey(PrepareSixOperatorVoice(voice.bytes, 0x3F, choices), 60, 98, 1.0, 1.0);
    const std::vector<double> partials = Partials(samples, Rate, Frequency(60), 0.5, 3);
    const double index = 2.5 * 2.0 * std::numbers::pi * std::exp2(-19.0 * 32.0 / 256.0);
    // sin(x + I sin(x)) is the sum of J(n) sin((n + 1) x); those below -1 are mirrored.
    const auto bessel = [&](double n) { return std::cyl_bessel_j(n, index); };
    EXPECT_NEAR(partials[0], 20.0 * std::log10(std::fabs(bessel(0.0) - bessel(2.0))), 0.1);
    EXPECT_NEAR(partials[1], 20.0 * std::log10(std::fabs(bessel(1.0) + bessel(3.0))), 0.1);
}

TEST(Choices, OfWhatFeedbackMovesStayWithTheIndex) {
    SixVoice voice = InitialVoice();
    voice.bytes[FeedbackByte] = 7;
    const PreparedVoice prepared = PrepareSixOperatorVoice(
        voice.bytes, 0x3F, Chosen([](SynthChoices &c) { c.modulationIndex = 4.0; }));
    EXPECT_DOUBLE_EQ(prepared.operators[5].extraSteps, 256.0);
    EXPECT_DOUBLE_EQ(prepared.operators[5].feedback, 0.25); // of an output twice as loud
}

TEST(Choices, OfTheNumberOfCarriers) {
    SixVoice voice = InitialVoice();
    voice.bytes[AlgorithmByte] = 31; // all six
    const SynthChoices choices = Chosen([](SynthChoices &c) { c.dividesByCarriers = true; });
    const Samples samples =
        RenderedKey(PrepareSixOperatorVoice(voice.bytes, 0x3F, choices), 84, 98, 0.5, 0.5);
    EXPECT_NEAR(Amplitude(samples, Rate, Frequency(84), 0.3), -20.0 * std::log10(6.0), 0.05);
}

TEST(Choices, OfFeedbackAroundAChain) {
    SixVoice voice = InitialVoice();
    voice.bytes[FeedbackByte] = 7;
    const SynthChoices choices = Chosen([](SynthChoices &c) {
        c.feedbackLoops = false;
        c.feedbackDivisor = 4.0;
    });
    for (int number = 0; number < 32; ++number) {
        voice.bytes[AlgorithmByte] = static_cast<std::uint8_t>(number);
        const PreparedVoice built = voice.Prepared();
        const PreparedVoice other = PrepareSixOperatorVoice(voice.bytes, 0x3F, choices);
        const bool loops = number == 3 || number == 5;
        const int to = built.algorithm.feedbackTo;
        EXPECT_EQ(built.algorithm.feedbackFrom != to, loops) << number;
        EXPECT_EQ(other.algorithm.feedbackFrom, to) << number;
        EXPECT_EQ(built.operators[to].feedback, 0.5) << number;
        EXPECT_EQ(other.operators[to].feedback, loops || number == 31 ? 0.125 : 0.5) << number;
    }
}

TEST(Choices, OfThePhaseAtWhichAKeyBegins) {
    SixVoice voice = InitialVoice();
    voice.bytes[OscillatorSync] = 1;
    const SynthChoices cosine = Chosen([](SynthChoices &c) { c.startPhase = 0.25; });
    const int frame = 11 * 48000 / 440; // 11 cycles of key 69
    EXPECT_LT(std::fabs(RenderedKey(voice.Prepared(), 69, 98, 1.0, 0.1)[frame]), 0.2);
    EXPECT_GT(std::fabs(RenderedKey(PrepareSixOperatorVoice(voice.bytes, 0x3F, cosine), 69, 98, 1.0,
                                    0.1)[frame]),
              0.8);
}

TEST(Choices, OfControllersThatMoveTheSame) {
    SixVoice bytes = InitialVoice();
    bytes.bytes[PitchSensitivityByte] = 7;
    bytes.bytes[LfoWaveByte] = 3; // square, on its upper half
    bytes.bytes[LfoSpeed] = 0;
    bytes.bytes[LfoKeySync] = 0;
    const PreparedVoice voice = bytes.Prepared();
    Synth synth = MakeSynth(Rate, 4);
    SetVoice(synth, &voice, false);
    synth.routes = {};
    synth.routes[Foot] = {.range = 30, .pitch = true}; // 77 of 255
    synth.routes[Wheel] = {.range = 10, .pitch = true};
    synth.routesAdd = false;
    NoteOn(synth, 60, 98);
    Control(synth, 1, 127);
    Control(synth, 4, 127);
    Played(synth, 0.1);
    EXPECT_NEAR(PeakFrequency(Played(synth, 0.5), Rate, 0.25),
                Frequency(60) * std::exp2(77.0 / 255.0), 0.1);
}

TEST(Choices, OfPortamento) {
    const PreparedVoice voice = PrepareSixOperatorVoice(
        InitialVoice().bytes, 0x3F, Chosen([](SynthChoices &c) { c.portamentoHurries = false; }));
    Synth synth = MakeSynth(Rate, 4);
    SetVoice(synth, &voice, false);
    Control(synth, 5, 100); // 28.5 semitones a second
    Control(synth, 65, 127);
    NoteOn(synth, 36, 98);
    Played(synth, 0.1);
    NoteOn(synth, 84, 98);
    const auto key = std::ranges::max_element(synth.keys, {}, &Key::order);
    for (const double seconds : {0.5, 1.0, 1.5}) {
        const std::size_t blocks = Played(synth, 0.5).size() / BlockFrames;
        EXPECT_NEAR(12.0 * key->glide, -48.0 + 2100.0 * std::exp2(-6.2) * seconds, 0.1) << blocks;
    }
}

TEST(Choices, OfARefaceDx) {
    std::uint8_t bytes[FourOperatorBytes] = {};
    bytes[17] = 4;        // square
    bytes[18] = 64;       // 2.69 Hz
    bytes[38 + 14] = 100; // amplitude depth
    bytes[38 + 21] = 1;   // fixed
    bytes[38 + 22] = 8;   // 10 Hz
    bytes[38 + 24] = 64;  // no detune
    const PreparedVoice built = PrepareFourOperatorVoice(bytes);
    EXPECT_EQ(built.operators[0].breakPoint, 43);
    EXPECT_TRUE(built.oscillatorSync);
    EXPECT_NEAR(built.operators[0].octaves, std::log2(10.0), 1e-12);
    EXPECT_EQ(built.operators[0].amplitudeDepth, 200.0);
    EXPECT_NEAR(built.controllerOctaves, 33.0 / 255.0, 1e-12);
    const PreparedVoice other = PrepareFourOperatorVoice(bytes, Chosen([](SynthChoices &c) {
                                                             c.refaceBreakPoint = 39;
                                                             c.refaceOscillatorSync = false;
                                                             c.refaceFixedShift = 2;
                                                             c.refaceAmplitudeDepth = 1.5;
                                                             c.refaceShortestDelay = 0.1;
                                                             c.refaceLfoSpeeds[4].hz = 3.0;
                                                             c.refaceControllerOctaves = 0.5;
                                                         }));
    EXPECT_EQ(other.operators[0].breakPoint, 39);
    EXPECT_FALSE(other.oscillatorSync);
    EXPECT_NEAR(other.operators[0].octaves, 2.0 * std::log2(10.0), 1e-12);
    EXPECT_EQ(other.operators[0].amplitudeDepth, 150.0);
    EXPECT_NEAR(other.lfo.delay.wait, 0.1, 1e-12);
    EXPECT_NEAR(other.lfo.frequency, 3.0, 1e-12);
    EXPECT_EQ(other.controllerOctaves, 0.5);
}

} // namespace
} // namespace tonewright
