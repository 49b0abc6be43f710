// Where published measurements of the instruments disagree, what is built here: one row each, so
// that ears can change it later. Nothing else in this folder holds such a figure.
#pragma once

#include <array>

namespace tonewright {

// What a controller moves, and how far, 0 to 99; several that move the same add up. An envelope
// bias makes operators with amplitude sensitivity the softer, the less the controller is moved.
struct ControllerRoute {
    int range = 0;
    bool pitch = false;     // by the LFO
    bool amplitude = false; // by the LFO
    bool envelopeBias = false;
};
enum ControllerSource { Wheel, Foot, Breath, Pressure };
using ControllerRoutes = std::array<ControllerRoute, 4>; // by ControllerSource

struct SynthChoices {
    // The clock of the chip, in Hz, and the samples of it that an envelope of the lowest rate takes
    // for a step of 1/256 octave: 0.2819 dB a second. (A second instrument gave 0.278.)
    double chipRate = 49096.0;
    double samplesPerStep = 4096.0;
    // What the processor of the instrument does in a second for LFO and delay; its pitch envelope
    // moves at every second of these ticks. (Another fit is 3.3 % faster.)
    double ticksPerSecond = 372.3;
    // Where an attack that begins below it begins, in steps of 1/256 octave. (1,700 elsewhere.)
    double attackFloor = 1716.0;
    // Part of a full rise that a first segment of level 0 takes.
    double silentPlateau = 1.0 / 20.0;
    // The MIDI number of the middle of the three keys without level scaling is this much more than
    // the break point. (Two less or three more elsewhere.)
    int breakPointOffset = 17;
    // Detune in ratio mode: octaves a step, D/7 * detuneDepth * exp(detuneSlope * f) * f with f the
    // binary logarithm of the key's frequency in Hz. (D/32 Hz, or 1.5 cents everywhere, elsewhere.)
    double detuneDepth = 0.0209;
    double detuneSlope = -0.396;
    double fixedDetuneCents = 0.96; // both ways
    // Parts of the full amplitude modulation at sensitivity 0 to 3, in dB. (0.46 and 0.24
    // elsewhere.)
    double amplitudeSensitivity[4] = {0.0, 0.25, 0.43, 1.0};
    // A fresh voice's envelopes start at the level of L4. (From silence elsewhere.)
    bool startsAtLastLevel = true;
    // The silence below which an operator costs nothing, in steps: a gain of 6.7e-5, 89.5 dB below
    // a carrier at full level. No velocity lifts an envelope level of 0 above it.
    double silence = 34.4;
    // Wheel, foot, breath and pressure, which the instruments keep beside their voices.
    ControllerRoutes controllers = {{{.range = 50, .pitch = true}, {}, {}, {}}};
    // reface DX: the phase that full feedback moves, in cycles, as sawtooth and as square.
    double sawFeedback = 0.22;
    double squareFeedback = 0.45;
    // reface DX: cents a unit of detune.
    double refaceDetuneCents = 0.59;
};

constexpr SynthChoices TheSynthChoices;

} // namespace tonewright
