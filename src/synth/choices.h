// Where published measurements of the instruments disagree, or are of an imitation only, what is
// built here: one row each, so that ears can change it later. Nothing else in this folder holds
// such a figure.
#pragma once

#include <array>

namespace tonewright {

// What a controller moves, and how far, 0 to 99. An envelope bias makes operators with amplitude
// sensitivity the softer, the less the controller is moved.
struct ControllerRoute {
    int range = 0;
    bool pitch = false;     // by the LFO
    bool amplitude = false; // by the LFO
    bool envelopeBias = false;
};
enum ControllerSource { Wheel, Foot, Breath, Pressure };
using ControllerRoutes = std::array<ControllerRoute, 4>; // by ControllerSource

// A speed of an LFO; between two of them frequencies are geometric.
struct SpeedPoint {
    int value;
    double hz;
};

struct SynthChoices {
    // The clock of the chip, in Hz, and the samples of it that an envelope of the lowest rate takes
    // for a step of 1/256 octave: 0.2819 dB a second. (A second instrument gave 0.278.)
    double chipRate = 49096.0;
    double samplesPerStep = 4096.0;
    // What the processor of the instrument does in a second for LFO and delay; its pitch envelope
    // moves at every second of these ticks. (Another fit is 3.3 % faster.)
    double ticksPerSecond = 372.3;
    // Above a speed of 63 on its scale of 99 the LFO quickens the more, the less this is. (4
    // elsewhere, which is half as fast at 99.)
    int lfoFastShift = 2;
    // Its delay begins anew at each key, or only at the first after silence.
    bool lfoDelayAtEachKey = false;
    // Where an attack that begins below it begins, in steps of 1/256 octave. (1,700 elsewhere.)
    double attackFloor = 1716.0;
    // Part of a full rise that a first segment of level 0 takes.
    double silentPlateau = 1.0 / 20.0;
    // The MIDI number of the middle of the three keys without level scaling is this much more than
    // the break point. (Two less or three more elsewhere.)
    int breakPointOffset = 17;
    // Exponential level scaling of the farthest keys, of 255; from the 22nd group on the way to it
    // is that much steeper or flatter. (190 elsewhere.)
    int farthestScaling = 255;
    // Detune in ratio mode: octaves a step, D/7 * detuneDepth * exp(detuneSlope * f) * f with f the
    // binary logarithm of the key's frequency in Hz. (D/32 Hz, or 1.5 cents everywhere, elsewhere.)
    double detuneDepth = 0.0209;
    double detuneSlope = -0.396;
    // And of a fixed frequency, in cents a step: both ways, or only upwards.
    double fixedDetuneCents = 0.96;
    bool fixedDetuneDownwards = true;
    // The phase, in cycles, at which a key that synchronises its operators begins: as a sine.
    // (0.25, as a cosine, elsewhere.)
    double startPhase = 0.0;
    // The cycles that a modulator at level 99 moves. (2.089 elsewhere.)
    double modulationIndex = 2.0;
    // A voice is divided by the number of its carriers.
    bool dividesByCarriers = false;
    // Feedback of algorithms 4 and 6 goes around a chain of operators, or else operator 6 feeds
    // back by itself; that of 4, 6 and 32 is divided by this. (4 elsewhere.)
    bool feedbackLoops = true;
    double feedbackDivisor = 1.0;
    // Amplitude modulation by the logarithm of what is left, or else by decibels that another
    // instrument was measured at.
    bool logarithmicTremolo = true;
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
    // Those that move the same add up, or else the one that is moved farthest counts.
    bool controllersAdd = true;
    // Portamento is the faster, the farther it has to go, at the rates of the pitch envelope; or
    // else it is even, at 2100 * 2^(-0.062 * time) semitones a second.
    bool portamentoHurries = true;
    // reface DX: the phase that full feedback moves, in cycles, as sawtooth and as square.
    double sawFeedback = 0.22;
    double squareFeedback = 0.45;
    // reface DX: cents a unit of detune, and what is left of the coarse frequency of a fixed
    // operator, in decades, when it has lost so many bits.
    double refaceDetuneCents = 0.59;
    int refaceFixedShift = 3;
    // reface DX: the break point of its level scaling, around C3 by that of the others.
    int refaceBreakPoint = 43;
    // reface DX: all operators of a key begin at the same phase.
    bool refaceOscillatorSync = true;
    // reface DX: the LFO, of which a unit of amplitude depth counts so many of 255; its delay from
    // 0 to 127 in seconds; its speeds; octaves of pitch that a controller moves at the most, which
    // is sensitivity 3 of the others.
    double refaceAmplitudeDepth = 2.0;
    double refaceShortestDelay = 0.012;
    double refaceLongestDelay = 1.2;
    std::array<SpeedPoint, 10> refaceLfoSpeeds = {{{0, 0.026},
                                                   {8, 0.34},
                                                   {16, 0.67},
                                                   {32, 1.35},
                                                   {64, 2.69},
                                                   {80, 4.37},
                                                   {96, 8.4},
                                                   {112, 17.5},
                                                   {120, 27.4},
                                                   {127, 39.7}}};
    double refaceControllerOctaves = 33.0 / 255.0;
};

constexpr SynthChoices TheSynthChoices;

} // namespace tonewright
