// A level that is there already takes no time.
#include "synth/pitch_envelope.h"

#include <cmath>

namespace tonewright {

void StartPitchEnvelope(PitchEnvelope &envelope, const PitchEnvelopeShape &shape) {
    envelope.level = shape.levels[3];
    envelope.segment = 0;
}

void ReleasePitchEnvelope(PitchEnvelope &envelope) {
    if (envelope.segment < 3) {
        envelope.segment = 3;
    }
}

void AdvancePitchEnvelope(PitchEnvelope &envelope, const PitchEnvelopeShape &shape,
                          double seconds) {
    while (envelope.segment < 4) {
        const double target = shape.levels[envelope.segment];
        const double time = std::fabs(target - envelope.level) / shape.speeds[envelope.segment];
        if (time > seconds) {
            const double way = shape.speeds[envelope.segment] * seconds;
            envelope.level += target > envelope.level ? way : -way;
            return;
        }
        envelope.level = target;
        seconds -= time;
        if (envelope.segment == 2) {
            return; // until the key is released
        }
        ++envelope.segment;
    }
}

} // namespace tonewright
