// Voices of a DX7 for the tests of the engine, byte by byte.
#pragma once

#include "synth/prepared_voice.h"

#include <cstdint>
#include <vector>

namespace tonewright {

struct SixVoice {
    std::uint8_t bytes[SixOperatorBytes];

    // A byte of an operator, 1 to 6, by its place among the 21.
    std::uint8_t &Operator(int number, int place) { return bytes[21 * (6 - number) + place]; }
    PreparedVoice Prepared() const { return PrepareSixOperatorVoice(bytes); }
};

// Places among the 21 bytes of an operator.
enum : int {
    Rate1,
    Level1 = 4,
    BreakPoint = 8,
    LeftDepth,
    RightDepth,
    LeftCurve,
    RightCurve,
    KeyRateScaling,
    AmplitudeSensitivity,
    VelocitySensitivity,
    OutputLevel,
    FixedFrequency,
    Coarse,
    Fine,
    Detune
};
// And of the voice's own bytes.
enum : int {
    PitchRate1 = 126,
    PitchLevel1 = 130,
    AlgorithmByte = 134,
    FeedbackByte,
    OscillatorSync,
    LfoSpeed,
    LfoDelayByte,
    LfoPitchDepth,
    LfoAmplitudeDepth,
    LfoKeySync,
    LfoWaveByte,
    PitchSensitivityByte,
    TransposeByte
};

// Operator 1 alone at full level, without an envelope: a sine.
SixVoice InitialVoice();
// Of a packed voice of 128 bytes, with all four bits of each detune.
SixVoice Unpacked(const std::uint8_t *packed);
// Voice 1 to 32 of the example bank.
SixVoice ExampleVoice(int place);

// A key of the voice alone: `held` seconds down and then up, `seconds` in all.
std::vector<double> RenderedKey(const PreparedVoice &voice, int key, int velocity, double held,
                                double seconds, double rate = 48000.0);

} // namespace tonewright
