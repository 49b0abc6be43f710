// The envelope of an operator: four segments of a rate and a level each, moved on by a block of
// time at once. Levels are steps of 1/256 octave, from silence to FullLevel.
#pragma once

#include "synth/choices.h"

#include <array>

namespace tonewright {

// What a key's envelope works towards: targets in steps, and the speeds of decays in
// steps a second.
struct EnvelopeShape {
    std::array<double, 4> targets = {TheSynthChoices.silence, TheSynthChoices.silence,
                                     TheSynthChoices.silence, TheSynthChoices.silence};
    std::array<double, 4> speeds = {1.0, 1.0, 1.0, 1.0};
    // The time that a segment takes whose target is the present level, in seconds.
    std::array<double, 4> plateaus = {};
};

struct Envelope {
    double level = TheSynthChoices.silence;
    int segment = 4;       // 0 to 3; 4 when the last one has ended
    double waiting = -1.0; // seconds left of a segment that stands on its level; negative for none
};

// Key down: from the last level.
void StartEnvelope(Envelope &envelope, const EnvelopeShape &shape);
// Key up: to the last level, from any segment.
void ReleaseEnvelope(Envelope &envelope);
// Moves it on by `seconds`. The third level is held until the key is released.
void AdvanceEnvelope(Envelope &envelope, const EnvelopeShape &shape, double seconds);
// Has reached the last level after its release.
bool HasEnded(const Envelope &envelope);
// And that is silence.
bool IsSilent(const Envelope &envelope);
// Holds a third level that is silence: nothing is heard before another key.
bool HoldsSilence(const Envelope &envelope, const EnvelopeShape &shape);

} // namespace tonewright
