// The envelope of an operator: four segments of a rate and a level each, moved on by a block of
// time at once. Levels are steps of 1/256 octave: 3840 is gain 2, 16 is silence.
#pragma once

#include <array>

namespace tonewright {

constexpr double FullLevel = 3840.0;

// What a key's envelope works towards: targets in steps, and the speeds of decays in
// steps a second.
struct EnvelopeShape {
    std::array<double, 4> targets = {16.0, 16.0, 16.0, 16.0};
    std::array<double, 4> speeds = {1.0, 1.0, 1.0, 1.0};
    // The time that a segment takes whose target is the present level, in seconds.
    std::array<double, 4> plateaus = {};
};

struct Envelope {
    double level = 16.0;
    int segment = 4;       // 0 to 3; 4 when the last one has ended
    double waiting = -1.0; // seconds left of a segment that stands on its level; negative for none
};

// Key down: from the last level.
void StartEnvelope(Envelope &envelope, const EnvelopeShape &shape);
// Key up: to the last level, from any segment.
void ReleaseEnvelope(Envelope &envelope);
// Moves it on by `seconds`. The third level is held until the key is released.
void AdvanceEnvelope(Envelope &envelope, const EnvelopeShape &shape, double seconds);
// Has ended after its release, at a level that is silence.
bool IsSilent(const Envelope &envelope);

} // namespace tonewright
