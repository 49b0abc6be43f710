// The edit buffer of a DX7, byte by byte: for each operator, the sixth first, rates 0 to 3, levels
// 4 to 7, break point 8, depths 9 and 10, curves 11 and 12, rate scaling 13, amplitude sensitivity
// 14, velocity sensitivity 15, output level 16, mode 17, coarse 18, fine 19, detune 20; from 126
// the pitch envelope (rates, levels), 134 algorithm, 135 feedback, 136 oscillator key sync, 137 to
// 142 LFO (speed, delay, pitch depth, amplitude depth, key sync, wave), 143 pitch sensitivity, 144
// transpose, the name.
#include "synth/choices.h"
#include "synth/prepared_voice.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tonewright {

namespace {

constexpr int OperatorBytes = 21;

int Limited(std::uint8_t byte, int most) {
    return std::min<int>(byte, most);
}

PreparedOperator PrepareOperator(const std::uint8_t *bytes, const SynthChoices &choices) {
    PreparedOperator prepared;
    for (int i = 0; i < 4; ++i) {
        prepared.plateauRates[i] = Limited(bytes[i], 99);
        prepared.rates[i] = EnvelopeRate(prepared.plateauRates[i]);
        prepared.levels[i] = 64.0 * EnvelopeLevelUnits(Limited(bytes[4 + i], 99));
    }
    prepared.plateauRatesTo99 = true;
    prepared.breakPoint = Limited(bytes[8], 99);
    prepared.leftDepth = Limited(bytes[9], 99);
    prepared.rightDepth = Limited(bytes[10], 99);
    prepared.leftCurve = static_cast<ScalingCurve>(bytes[11] & 3);
    prepared.rightCurve = static_cast<ScalingCurve>(bytes[12] & 3);
    prepared.rateScaling = bytes[13] & 7;
    prepared.amplitudeSensitivity = choices.amplitudeSensitivity[bytes[14] & 3];
    prepared.velocitySensitivity = bytes[15] & 7;
    prepared.output = OutputLevelUnits(Limited(bytes[16], 99));
    prepared.fixed = (bytes[17] & 1) != 0;
    const int coarse = bytes[18] & 31;
    const int fine = Limited(bytes[19], 99);
    const int detune = Limited(bytes[20], 14) - 7;
    if (prepared.fixed) {
        prepared.octaves =
            ((coarse & 3) + fine / 100.0) * std::log2(10.0) + FixedDetuneOctaves(detune, choices);
    } else {
        prepared.octaves = std::log2((coarse == 0 ? 0.5 : coarse) * (1.0 + fine / 100.0));
        prepared.detune = detune;
    }
    return prepared;
}

// Louder modulators and softer carriers than envelopes make them, where they are chosen so.
// Feedback stays.
void ChooseLoudness(PreparedVoice &voice, const SynthChoices &choices) {
    const int carriers = std::popcount(voice.algorithm.carriers);
    for (int i = 0; i < MaxOperators; ++i) {
        const bool carrier = (voice.algorithm.carriers >> i & 1) != 0;
        const double factor = !carrier                    ? choices.modulationIndex / 2.0
                              : choices.dividesByCarriers ? 1.0 / carriers
                                                          : 1.0;
        voice.operators[i].extraSteps = 256.0 * std::log2(factor);
    }
    voice.operators[voice.algorithm.feedbackTo].feedback /=
        std::exp2(voice.operators[voice.algorithm.feedbackFrom].extraSteps / 256.0);
}

void PrepareFeedback(PreparedVoice &voice, int feedback, const SynthChoices &choices) {
    Algorithm &algorithm = voice.algorithm;
    const bool loops = algorithm.feedbackFrom != algorithm.feedbackTo;
    const bool all = algorithm.carriers == 0x3F;
    if (!choices.feedbackLoops) {
        algorithm.feedbackFrom = algorithm.feedbackTo;
    }
    if (feedback > 0) {
        voice.operators[algorithm.feedbackTo].feedback =
            std::exp2(feedback - 8.0) / (loops || all ? choices.feedbackDivisor : 1.0);
    }
}

} // namespace

PreparedVoice PrepareSixOperatorVoice(const std::uint8_t (&bytes)[SixOperatorBytes],
                                      unsigned enabledOperators, const SynthChoices &choices) {
    PreparedVoice voice;
    for (int i = 0; i < MaxOperators; ++i) {
        voice.operators[i] =
            PrepareOperator(bytes + OperatorBytes * (MaxOperators - 1 - i), choices);
        voice.operators[i].enabled = (enabledOperators >> i & 1) != 0;
    }
    const std::uint8_t *common = bytes + OperatorBytes * MaxOperators;
    for (int i = 0; i < 4; ++i) {
        voice.pitchEnvelope.speeds[i] = PitchSpeed(Limited(common[i], 99));
        voice.pitchEnvelope.levels[i] = PitchLevel(Limited(common[4 + i], 99));
    }
    voice.algorithm = SixOperatorAlgorithm(common[8] & 31);
    PrepareFeedback(voice, common[9] & 7, choices);
    ChooseLoudness(voice, choices);
    voice.oscillatorSync = (common[10] & 1) != 0;
    voice.startPhase = choices.startPhase;
    constexpr LfoWave Waves[] = {LfoWave::Triangle, LfoWave::SawDown, LfoWave::SawUp,
                                 LfoWave::Square,   LfoWave::Sine,    LfoWave::SampleAndHold};
    voice.lfo = {.wave = Waves[Limited(common[16] & 7, 5)],
                 .frequency = LfoFrequency(Limited(common[11], 99), choices),
                 .delay = LfoDelayOf(Limited(common[12], 99)),
                 .delayAtEachKey = choices.lfoDelayAtEachKey,
                 .keySync = (common[15] & 1) != 0};
    voice.pitchDepth = Scaled(Limited(common[13], 99));
    voice.pitchSensitivity = voice.controllerOctaves = PitchSensitivity(common[17] & 7);
    voice.glideHurries = choices.portamentoHurries;
    for (PreparedOperator &prepared : voice.operators) {
        prepared.amplitudeDepth = Scaled(Limited(common[14], 99));
    }
    voice.transpose = Limited(common[18], 48) - 24;
    return voice;
}

} // namespace tonewright
