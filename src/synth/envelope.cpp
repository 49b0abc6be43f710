// Decays fall by the same steps in the same time, linear in dB; attacks rise the faster the farther
// they are from full level, which is nearly linear in amplitude.
#include "synth/envelope.h"

#include "synth/laws.h"

#include <algorithm>
#include <cmath>

namespace tonewright {

namespace {

constexpr int Held = 2; // the segment at whose end the level is held
constexpr int Release = 3;
constexpr int Ended = 4;

void EnterSegment(Envelope &envelope, const EnvelopeShape &shape, int segment) {
    envelope.segment = segment;
    envelope.waiting = -1.0;
    if (segment < Ended && shape.targets[segment] == envelope.level) {
        envelope.waiting = shape.plateaus[segment];
    }
}

// Rises for `seconds` at most, and returns those that are left when the target has been reached.
// The speed is the same within an octave of the level; the loudest one has that below full level,
// too.
double Rise(double &level, double target, double speed, double seconds) {
    level = std::max(level, std::min(target, TheSynthChoices.attackFloor));
    while (level < target) {
        const int octave =
            std::max(0, static_cast<int>(std::ceil((FullLevel - level) / 256.0)) - 1);
        const double end = octave == 0 ? target : std::min(target, FullLevel - 256.0 * octave);
        const double octaveSpeed = speed * (2 + octave);
        const double time = (end - level) / octaveSpeed;
        if (time > seconds) {
            level += octaveSpeed * seconds;
            return 0.0;
        }
        level = end;
        seconds -= time;
    }
    return seconds;
}

double Fall(double &level, double target, double speed, double seconds) {
    const double lowest = level - speed * seconds;
    if (lowest > target) {
        level = lowest;
        return 0.0;
    }
    const double time = (level - target) / speed;
    level = target;
    return std::max(0.0, seconds - time);
}

} // namespace

void StartEnvelope(Envelope &envelope, const EnvelopeShape &shape) {
    envelope.level =
        TheSynthChoices.startsAtLastLevel ? shape.targets[Release] : TheSynthChoices.silence;
    EnterSegment(envelope, shape, 0);
}

void ReleaseEnvelope(Envelope &envelope) {
    if (envelope.segment < Release) {
        envelope.segment = Release;
        envelope.waiting = -1.0;
    }
}

void AdvanceEnvelope(Envelope &envelope, const EnvelopeShape &shape, double seconds) {
    while (seconds > 0.0 && envelope.segment < Ended) {
        const int segment = envelope.segment;
        const double target = shape.targets[segment];
        if (envelope.waiting >= 0.0) {
            if (envelope.waiting > seconds) {
                envelope.waiting -= seconds;
                return;
            }
            seconds -= envelope.waiting;
            envelope.waiting = -1.0;
        }
        // It is there already, unless the shape has changed while it stood.
        const double speed = shape.speeds[segment];
        seconds = target > envelope.level ? Rise(envelope.level, target, speed, seconds)
                                          : Fall(envelope.level, target, speed, seconds);
        if (envelope.level != target) {
            return;
        }
        if (segment == Held) {
            return; // until the key is released
        }
        EnterSegment(envelope, shape, segment + 1);
    }
}

bool HasEnded(const Envelope &envelope) {
    return envelope.segment == Ended;
}

bool IsSilent(const Envelope &envelope) {
    return HasEnded(envelope) && envelope.level <= TheSynthChoices.silence;
}

bool HoldsSilence(const Envelope &envelope, const EnvelopeShape &shape) {
    return envelope.segment == Held && envelope.waiting < 0.0 &&
           envelope.level <= TheSynthChoices.silence && envelope.level == shape.targets[Held];
}

} // namespace tonewright
