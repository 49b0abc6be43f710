// Keys are rendered in groups, each operator of all keys of a group at once.
#include "synth/key.h"

#include "synth/choices.h"
#include "synth/lanes.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace tonewright {

namespace {

double KeyOctaves(double number) {
    return std::log2(440.0) + (number - 69.0) / 12.0;
}

void ShapeOperator(KeyOperator &state, const PreparedOperator &voice, int key, int velocity) {
    const int units = std::clamp(
        voice.output + LevelScalingUnits(key, voice.breakPoint, voice.leftDepth, voice.rightDepth,
                                         voice.leftCurve, voice.rightCurve),
        0, 127);
    const double output =
        std::max(0.0, 32.0 * units + VelocitySteps(voice.velocitySensitivity, velocity));
    const int scaling = RateScaling(key, voice.rateScaling);
    for (int i = 0; i < 4; ++i) {
        state.shape.targets[i] =
            std::max(TheSynthChoices.silence, voice.levels[i] + output - 4256.0);
        state.shape.rates[i] = std::min(63, voice.rates[i] + scaling);
        state.shape.plateaus[i] = FullRiseTime(state.shape.rates[i]);
    }
    if (voice.fixed) {
        state.octaves = voice.octaves;
    } else {
        const double octaves = KeyOctaves(key);
        state.octaves = octaves + voice.octaves + voice.detuneOctaves +
                        DetuneOctaves(voice.detune, std::exp2(octaves));
    }
}

bool IsCarrier(const PreparedVoice &voice, int number) {
    return (voice.algorithm.carriers >> number & 1) != 0;
}

void ShapeKey(Key &key, const PreparedVoice &voice) {
    for (int i = 0; i < voice.operatorCount; ++i) {
        ShapeOperator(key.operators[i], voice.operators[i], key.number + voice.transpose,
                      key.velocity);
    }
}

} // namespace

void AdaptKey(Key &key, const PreparedVoice &voice) {
    ShapeKey(key, voice);
    if (!key.rendered) {
        return;
    }
    key.fade = 0.0f;
    for (int i = 0; i < voice.operatorCount; ++i) {
        if (IsCarrier(voice, i)) {
            key.operators[i].gain = 0.0f;
        }
    }
}

void StartKey(Key &key, const PreparedVoice &voice, int number, int velocity, double glide) {
    key.number = number;
    key.velocity = velocity;
    key.held = key.sounds = true;
    key.sustained = key.rendered = false;
    key.fade = key.fadeTarget = 1.0f;
    key.wait = 0.0;
    key.glide = glide;
    ShapeKey(key, voice);
    for (int i = 0; i < voice.operatorCount; ++i) {
        KeyOperator &state = key.operators[i];
        StartEnvelope(state.envelope, state.shape);
        state.gain = 0.0f;
        state.outputs = {};
        // With all phases at 0 a sound may begin at once: it grows out of the zero of its waves.
        state.follows = !voice.oscillatorSync;
        if (voice.oscillatorSync) {
            state.phase = 0;
        }
    }
    StartPitchEnvelope(key.pitchEnvelope, voice.pitchEnvelope);
}

void MoveKey(Key &key, const PreparedVoice &voice, int number, double glide) {
    key.number = number;
    key.glide = glide;
    ShapeKey(key, voice);
}

void ReleaseKey(Key &key, const PreparedVoice &voice) {
    key.held = false;
    for (int i = 0; i < voice.operatorCount; ++i) {
        ReleaseEnvelope(key.operators[i].envelope);
        key.operators[i].follows = true;
    }
    ReleasePitchEnvelope(key.pitchEnvelope);
}

namespace {

// The straight line of one value through a block: to `target`, but by `most` at most.
float Limited(float from, float target, float most) {
    return std::clamp(target, from - most, from + most);
}

// The steps by which LFO and controllers lower an operator of full sensitivity.
double AmplitudeLoss(const PreparedOperator &prepared, const Modulation &modulation) {
    const double depth = std::min(255.0, prepared.amplitudeDepth * modulation.amplitudeFade +
                                             modulation.amplitudeDepth);
    const double loss = std::min(255.0, depth * modulation.lfoLoss + modulation.envelopeBias);
    return loss > 0.0 ? -256.0 * std::log2(1.0 - loss / 256.0) : 0.0;
}

// The straight lines of a key's operator through the next block. False when it is silent.
bool Steer(const Key &key, KeyOperator &state, const PreparedVoice &voice, int number,
           const Modulation &modulation, double rate, Lanes &lanes, int lane) {
    const PreparedOperator &prepared = voice.operators[number];
    double octaves = state.octaves + modulation.octaves;
    if (!prepared.fixed) {
        octaves += key.glide;
        octaves += prepared.followsPitchEnvelope ? key.pitchEnvelope.level : 0.0;
        octaves += prepared.followsLfo ? modulation.lfoOctaves : 0.0;
    }
    AdvanceEnvelope(state.envelope, state.shape, BlockFrames / rate);
    double level = state.envelope.level;
    if (prepared.amplitudeSensitivity > 0.0) {
        level -= prepared.amplitudeSensitivity * AmplitudeLoss(prepared, modulation);
    }
    const double cycles = std::exp2(octaves) / rate; // a frame
    float gain = 0.0f;
    if (prepared.enabled && state.envelope.level > TheSynthChoices.silence && cycles < 0.5) {
        gain = static_cast<float>(std::exp2(level / 256.0 - 14.0));
    }
    const auto increment = static_cast<std::uint32_t>(std::min(cycles, 0.5) * 0x1p32);
    if (!key.rendered) {
        state.increment = increment;
        state.gain = state.follows ? 0.0f : gain;
    }
    if (IsCarrier(voice, number)) {
        gain *= key.fade;
        if (state.follows) {
            const float wanted = gain;
            gain =
                Limited(state.gain, gain, static_cast<float>(2.0 * BlockFrames / rate / FadeTime));
            state.follows = gain != wanted;
        }
    }
    const auto difference = static_cast<std::int32_t>(increment - state.increment);
    lanes.phase[lane] = state.phase;
    lanes.increment[lane] = state.increment;
    lanes.incrementStep[lane] = static_cast<std::uint32_t>(difference / BlockFrames);
    lanes.gain[lane] = state.gain * WaveScale;
    lanes.gainStep[lane] = (gain - state.gain) * (WaveScale / BlockFrames);
    lanes.last[lane] = state.outputs[0];
    lanes.beforeLast[lane] = state.outputs[1];
    const bool sounds = gain != 0.0f || state.gain != 0.0f;
    state.increment = increment;
    state.gain = gain;
    return sounds;
}

// What moves in a key beside its operators.
void AdvanceKey(Key &key, const PreparedVoice &voice, const Modulation &modulation,
                double seconds) {
    AdvancePitchEnvelope(key.pitchEnvelope, voice.pitchEnvelope, seconds);
    if (key.glide != 0.0) {
        // The farther, the faster: as many times as there are quarters of an octave to go.
        const double speed = modulation.glideSpeed * (1.0 + std::floor(std::fabs(key.glide) * 4.0));
        const double way = speed > 0.0 ? speed * seconds : std::fabs(key.glide);
        key.glide =
            key.glide > 0.0 ? std::max(0.0, key.glide - way) : std::min(0.0, key.glide + way);
    }
    key.fade = Limited(key.fade, key.fadeTarget, static_cast<float>(seconds / FadeTime));
}

// Of the operators that sound, those that are heard: carriers, and what modulates one of these.
unsigned Heard(const PreparedVoice &voice, unsigned sounding) {
    unsigned heard = sounding & voice.algorithm.carriers;
    for (int i = 0; i < voice.operatorCount; ++i) {
        if ((heard >> i & 1) != 0) {
            heard |= sounding & voice.algorithm.modulators[i];
        }
    }
    return heard;
}

void RenderOperators(Lanes *lanes, unsigned heard, const PreparedVoice &voice, Bus *buses) {
    const Algorithm &algorithm = voice.algorithm;
    const int from = algorithm.feedbackFrom;
    const int to = algorithm.feedbackTo;
    const bool loop = from != to && voice.operators[to].feedback != 0.0 && (heard >> from & 1) != 0;
    for (int i = voice.operatorCount - 1; i >= 0; --i) {
        const auto feedback = static_cast<float>(voice.operators[i].feedback);
        const Bus &in = buses[algorithm.inputBus[i]];
        Bus &out = buses[algorithm.outputBus[i]];
        if (loop && i > from && i <= to) {
            continue; // with the end of its chain
        }
        if (loop && i == from) {
            RenderLoop(lanes + from, to - from + 1,
                       static_cast<float>(voice.operators[to].feedback), out);
        } else if ((heard >> i & 1) == 0) {
            PassBlock(lanes[i]);
        } else {
            RenderOperator(lanes[i], feedback, voice.operators[i].feedbackKind, in, out);
        }
    }
}

// Adds up to LaneCount keys to the bus that is heard.
void RenderGroup(Key *const *keys, int count, const PreparedVoice &voice,
                 const Modulation &modulation, double rate, Bus *buses) {
    Lanes lanes[MaxOperators];
    unsigned sounding = 0;
    for (int k = 0; k < count; ++k) {
        Key &key = *keys[k];
        AdvanceKey(key, voice, modulation, BlockFrames / rate);
        for (int i = 0; i < voice.operatorCount; ++i) {
            if (Steer(key, key.operators[i], voice, i, modulation, rate, lanes[i], k)) {
                sounding |= 1u << i;
            }
        }
        key.rendered = true;
    }

    RenderOperators(lanes, Heard(voice, sounding), voice, buses);

    for (int k = 0; k < count; ++k) {
        Key &key = *keys[k];
        bool silent = true;
        for (int i = 0; i < voice.operatorCount; ++i) {
            KeyOperator &state = key.operators[i];
            state.phase = lanes[i].phase[k];
            state.outputs = {lanes[i].last[k], lanes[i].beforeLast[k]};
            if (IsCarrier(voice, i)) {
                silent = silent && state.gain == 0.0f &&
                         (!voice.operators[i].enabled || IsSilent(state.envelope));
            }
        }
        if (silent || (key.fade == 0.0f && key.fadeTarget == 0.0f)) {
            key.sounds = false;
        }
    }
}

} // namespace

void RenderKeys(Key *const *keys, int count, const PreparedVoice &voice,
                const Modulation &modulation, double rate, float (&out)[BlockFrames]) {
    Bus buses[BusCount];
    for (int first = 0; first < count; first += LaneCount) {
        for (Bus &between : std::span(buses).subspan(HeardBus + 1)) {
            between.filled = false;
        }
        RenderGroup(keys + first, std::min(LaneCount, count - first), voice, modulation, rate,
                    buses);
    }
    if (buses[HeardBus].filled) {
        AddLanes(buses[HeardBus], out);
    }
}

} // namespace tonewright
