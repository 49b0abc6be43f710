// The laws of the six-operator instruments that turn the numbers of a voice into levels, rates and
// frequencies. Levels are counted in steps of 1/256 octave of amplitude (0.02352 dB) unless a
// function says units, which are 32 of these (0.7526 dB); pitches in octaves.
#pragma once

#include "synth/choices.h"

namespace tonewright {

constexpr double FullLevel = 3840.0; // in steps: a gain of 2

// Output level 0 to 99 in units, 0 to 127.
int OutputLevelUnits(int level);
// Envelope level 0 to 99 in units of 64 steps, 0 to 63.
int EnvelopeLevelUnits(int level);
// The steps that MIDI velocity 1 to 127 adds to an operator's output at sensitivity 0 to 7;
// negative for the soft ones.
int VelocitySteps(double sensitivity, int velocity);

enum class ScalingCurve { MinusLinear, MinusExponential, PlusExponential, PlusLinear };

// The units that level scaling adds for a key (MIDI number, 60 is C3) by the break point (0 is A-1,
// 39 is C3), depths 0 to 99 and curves of the left and right side.
int LevelScalingUnits(int key, int breakPoint, int leftDepth, int rightDepth, ScalingCurve left,
                      ScalingCurve right, const SynthChoices &choices = TheSynthChoices);
// What rate scaling 0 to 7 adds for a key to a rate of 0 to 63.
int RateScaling(int key, double sensitivity);
// Envelope rate 0 to 99 as 0 to 63.
int EnvelopeRate(int rate);

// Speed of a decay of rate 0 to 63, in steps a second.
double DecaySpeed(int rate);
// Seconds that a rise from silence to full level takes at rate 0 to 63: also how long a segment
// lasts whose level is the present one.
double FullRiseTime(int rate);

// Pitch envelope: level 0 to 99 in octaves, 50 is 0; rate 0 to 99 in octaves a second.
double PitchLevel(int level);
double PitchSpeed(int rate);

// LFO: speed 0 to 99 in Hz; delay 0 to 99 in seconds until the effect begins, and from there until
// it is whole; sensitivity of pitch 0 to 7 as part of an octave.
double LfoFrequency(int speed, const SynthChoices &choices = TheSynthChoices);
struct LfoDelay {
    double wait = 0.0; // s
    double fade = 0.0; // s
};
LfoDelay LfoDelayOf(int delay);
double PitchSensitivity(int sensitivity);
// A value 0 to 99 on a scale of 0 to 255.
int Scaled(int value);
// The steps that amplitude modulation of 0 to 255 takes at full sensitivity.
double TremoloSteps(double modulation, const SynthChoices &choices = TheSynthChoices);

// Octaves a second at the end of a portamento of time 0 to 127, which may hurry before; 0 is at
// once.
double PortamentoSpeed(int time, bool hurries);

// Octaves by which an operator whose key sounds at `hz` is detuned by `detune` (-7 to 7) steps, and
// the same for an operator of fixed frequency.
double DetuneOctaves(int detune, double hz);
double FixedDetuneOctaves(int detune, const SynthChoices &choices = TheSynthChoices);

} // namespace tonewright
