// The pitch envelope: four segments that move the pitch of a key at an even speed.
#pragma once

#include <array>

namespace tonewright {

struct PitchEnvelopeShape {
    std::array<double, 4> levels = {};                   // octaves
    std::array<double, 4> speeds = {1.0, 1.0, 1.0, 1.0}; // octaves a second
};

struct PitchEnvelope {
    double level = 0.0; // octaves
    int segment = 0;    // 0 to 3; 4 when the last one has ended
};

// Key down: from the last level.
void StartPitchEnvelope(PitchEnvelope &envelope, const PitchEnvelopeShape &shape);
void ReleasePitchEnvelope(PitchEnvelope &envelope);
// Moves it on by `seconds`. The third level is held until the key is released.
void AdvancePitchEnvelope(PitchEnvelope &envelope, const PitchEnvelopeShape &shape, double seconds);

} // namespace tonewright
