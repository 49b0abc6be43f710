// A voice as the engine plays it: everything that can be worked out before a key goes down. Made
// from the bytes of an edit buffer, of which any are legal: what is out of range is limited as the
// instrument limits it.
#pragma once

#include "synth/algorithms.h"
#include "synth/choices.h"
#include "synth/effects.h"
#include "synth/laws.h"
#include "synth/lfo.h"
#include "synth/pitch_envelope.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tonewright {

enum class FeedbackKind {
    Output,   // the output, so that it falls with the envelope
    Sawtooth, // the wave before the envelope
    Square    // the square of that, which leaves the even partials out
};

struct PreparedOperator {
    bool enabled = true;
    // Pitch: of fixed frequency, in octaves above 1 Hz; or above the key, with a detune that
    // depends on the key (steps -7 to 7) or not (octaves).
    bool fixed = false;
    double octaves = 0.0;
    int detune = 0;
    double detuneOctaves = 0.0;
    bool followsPitchEnvelope = true;
    bool followsLfo = true;
    // Level: output in units, envelope levels in steps, rates 0 to 63. Rate scaling is added to the
    // rates, and for the time that a segment stands on its level to the others: 0 to 99, or 0 to 63
    // as well.
    int output = 0;
    std::array<double, 4> levels = {};
    std::array<int, 4> rates = {};
    std::array<int, 4> plateauRates = {};
    bool plateauRatesTo99 = false;
    int breakPoint = 0;
    int leftDepth = 0; // 0 to 99, as the next one
    int rightDepth = 0;
    ScalingCurve leftCurve = ScalingCurve::MinusLinear;
    ScalingCurve rightCurve = ScalingCurve::MinusLinear;
    double rateScaling = 0.0;          // 0 to 7
    double velocitySensitivity = 0.0;  // 0 to 7
    double amplitudeDepth = 0.0;       // 0 to 255: of the LFO, at full fade
    double amplitudeSensitivity = 0.0; // part of that attenuation in dB, 0 to 1
    // Steps by which it is louder than its envelope.
    double extraSteps = 0.0;
    // Feedback: cycles for an output of amplitude 1, and of what.
    double feedback = 0.0;
    FeedbackKind feedbackKind = FeedbackKind::Output;
};

// How keys follow each other. The two mono ones glide: always, or only while a key is held.
enum class PartMode { Poly, MonoFull, MonoLegato };

struct PreparedVoice {
    int operatorCount = MaxOperators;
    Algorithm algorithm;
    std::array<PreparedOperator, MaxOperators> operators; // operator 1 is the first
    bool oscillatorSync = false;
    double startPhase = 0.0; // cycles, of a key that synchronises
    int transpose = 0;       // keys
    double tune = 0.0;       // octaves, of fixed frequencies as well
    PitchEnvelopeShape pitchEnvelope;
    LfoShape lfo;
    double pitchDepth = 0.0;        // 0 to 255: of the LFO, at full fade
    double pitchSensitivity = 0.0;  // octaves to each side that 255 of it makes
    double controllerOctaves = 0.0; // and that 255 of what controllers add to it make
    // What a reface DX keeps in the voice, and a DX7 beside it.
    PartMode partMode = PartMode::Poly;
    double bendRange = 2.0;   // semitones
    double glideSpeed = 0.0;  // octaves a second at the end of a glide; 0 is at once
    bool glideHurries = true; // and before, the more the farther it has to go
    std::array<EffectShape, 2> effects;
};

constexpr std::size_t SixOperatorBytes = 155;

constexpr std::size_t FourOperatorBytes = 38 + 4 * 28;

// From the edit buffer of a DX7: operator 6 first, 21 bytes each, then the common ones. Bit 0 of
// `enabledOperators` is operator 1.
PreparedVoice PrepareSixOperatorVoice(const std::uint8_t (&bytes)[SixOperatorBytes],
                                      unsigned enabledOperators = 0x3F,
                                      const SynthChoices &choices = TheSynthChoices);
// From the edit buffer of a reface DX: the common bytes, then operators 1 to 4.
PreparedVoice PrepareFourOperatorVoice(const std::uint8_t (&bytes)[FourOperatorBytes],
                                       const SynthChoices &choices = TheSynthChoices);

} // namespace tonewright
