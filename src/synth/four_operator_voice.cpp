// The edit buffer of a reface DX, byte by byte: name 0 to 9, transpose 12, part mode, portamento
// time, bend range, 16 algorithm, LFO 17 to 20 (wave, speed, delay, pitch depth), pitch envelope 21
// to 28 (rates, levels), effects 29 to 34 (type and two parameters each). Then for each operator:
// on 0, rates 1 to 4, levels 5 to 8, rate scaling 9, depths 10 and 11, curves 12 and 13, amplitude
// depth 14, pitch depth on 15, pitch envelope on 16, velocity 17, level 18, feedback 19, its kind
// 20, mode 21, coarse 22, fine 23, detune
// 24. What the six-operator instruments count to 99 goes to 127 here; nothing of it is published,
// so the same laws hold over the other range.
#include "synth/choices.h"
#include "synth/points.h"
#include "synth/prepared_voice.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tonewright {

namespace {

constexpr int CommonBytes = 38;
constexpr int OperatorBytes = 28;
constexpr int Operators = 4;
constexpr int Most = 127;
// Transpose, bend range, detune and levels of the pitch envelope count from here.
constexpr int Zero = 64;

int Limited(std::uint8_t byte, int most) {
    return std::min<int>(byte, most);
}

double Part(std::uint8_t byte) {
    return Limited(byte, Most) / static_cast<double>(Most);
}

double FourOperatorLfoFrequency(int speed, const SynthChoices &choices) {
    const std::size_t upper = UpperPoint(choices.refaceLfoSpeeds, &SpeedPoint::value, speed);
    const SpeedPoint &below = choices.refaceLfoSpeeds[upper - 1];
    const SpeedPoint &above = choices.refaceLfoSpeeds[upper];
    const double part = static_cast<double>(speed - below.value) / (above.value - below.value);
    return below.hz * std::pow(above.hz / below.hz, part);
}

// Octaves a second of a rate 0 to 127: geometric over the range of the six-operator instruments.
double Speed(std::uint8_t rate) {
    return std::pow(255.0, Part(rate)) * TheSynthChoices.ticksPerSecond / 2.0 / 4096.0;
}

PreparedOperator PrepareOperator(const std::uint8_t *bytes, const SynthChoices &choices) {
    PreparedOperator prepared;
    prepared.enabled = bytes[0] != 0;
    for (int i = 0; i < 4; ++i) {
        prepared.rates[i] = prepared.plateauRates[i] = Limited(bytes[1 + i], Most) >> 1;
        prepared.levels[i] = 32.0 * Limited(bytes[5 + i], Most) - 32.0;
    }
    prepared.rateScaling = 7.0 * Part(bytes[9]);
    prepared.breakPoint = choices.refaceBreakPoint;
    prepared.leftDepth = static_cast<int>(std::lround(99.0 * Part(bytes[10])));
    prepared.rightDepth = static_cast<int>(std::lround(99.0 * Part(bytes[11])));
    prepared.leftCurve = static_cast<ScalingCurve>(bytes[12] & 3);
    prepared.rightCurve = static_cast<ScalingCurve>(bytes[13] & 3);
    prepared.amplitudeDepth = choices.refaceAmplitudeDepth * Limited(bytes[14], Most);
    // Without a depth of its own it is not sensitive to controllers either.
    prepared.amplitudeSensitivity = bytes[14] == 0 ? 0.0 : 1.0;
    prepared.followsLfo = bytes[15] != 0;
    prepared.followsPitchEnvelope = bytes[16] != 0;
    prepared.velocitySensitivity = 7.0 * Part(bytes[17]);
    prepared.output = Limited(bytes[18], Most);
    const bool square = bytes[20] != 0;
    prepared.feedbackKind = square ? FeedbackKind::Square : FeedbackKind::Sawtooth;
    prepared.feedback = (square ? choices.squareFeedback : choices.sawFeedback) * Part(bytes[19]);
    prepared.fixed = bytes[21] != 0;
    const int coarse = bytes[22] & 31;
    const int fine = Limited(bytes[23], 99);
    const double detune = (Limited(bytes[24], Most) - Zero) * choices.refaceDetuneCents / 1200.0;
    if (prepared.fixed) {
        prepared.octaves =
            ((coarse >> choices.refaceFixedShift) + fine / 100.0) * std::log2(10.0) + detune;
    } else {
        prepared.octaves = std::log2(std::max(0.01, coarse + fine / 100.0));
        prepared.detuneOctaves = detune;
    }
    return prepared;
}

EffectShape PrepareEffect(const std::uint8_t *bytes) {
    return {.kind = static_cast<EffectKind>(bytes[0] & 7),
            .first = Part(bytes[1]),
            .second = Part(bytes[2])};
}

} // namespace

PreparedVoice PrepareFourOperatorVoice(const std::uint8_t (&bytes)[FourOperatorBytes],
                                       const SynthChoices &choices) {
    PreparedVoice voice;
    voice.operatorCount = Operators;
    for (int i = 0; i < Operators; ++i) {
        voice.operators[i] = PrepareOperator(bytes + CommonBytes + OperatorBytes * i, choices);
    }
    voice.algorithm = FourOperatorAlgorithm(Limited(bytes[16], FourOperatorAlgorithms - 1));
    voice.oscillatorSync = choices.refaceOscillatorSync;
    voice.startPhase = choices.startPhase;
    voice.transpose = std::clamp(bytes[12] - Zero, -24, 24);
    voice.partMode = static_cast<PartMode>(Limited(bytes[13], 2));
    const int time = Limited(bytes[14], Most);
    voice.glideSpeed = time == 0 ? 0.0 : Speed(static_cast<std::uint8_t>(Most - time));
    voice.bendRange = std::clamp(bytes[15] - Zero, -24, 24);
    constexpr LfoWave Waves[] = {LfoWave::Sine,         LfoWave::Triangle, LfoWave::SawUp,
                                 LfoWave::SawDown,      LfoWave::Square,   LfoWave::SampleAndHold8,
                                 LfoWave::SampleAndHold};
    voice.lfo = {.wave = Waves[Limited(bytes[17], 6)],
                 .frequency = FourOperatorLfoFrequency(Limited(bytes[18], Most), choices),
                 .delay = {.wait = choices.refaceShortestDelay +
                                   (choices.refaceLongestDelay - choices.refaceShortestDelay) *
                                       Part(bytes[19]),
                           .fade = 0.0},
                 .delayAtEachKey = choices.lfoDelayAtEachKey,
                 .keySync = false};
    voice.pitchDepth = 255.0 * Part(bytes[20]);
    voice.pitchSensitivity = 1.0;
    voice.controllerOctaves = choices.refaceControllerOctaves;
    voice.glideHurries = choices.portamentoHurries;
    for (int i = 0; i < 4; ++i) {
        voice.pitchEnvelope.speeds[i] = Speed(bytes[21 + i]);
        voice.pitchEnvelope.levels[i] = std::clamp(bytes[25 + i] - Zero, -48, 48) / 12.0;
    }
    for (int i = 0; i < 2; ++i) {
        voice.effects[i] = PrepareEffect(bytes + 29 + 3 * i);
    }
    return voice;
}

} // namespace tonewright
