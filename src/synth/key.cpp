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

// Seconds that a segment stands on its level.
double PlateauTime(const PreparedOperator &voice, int segment, int scaling) {
    const int rate = voice.plateauRates[segment] + scaling;
    return FullRiseTime(voice.plateauRatesTo99 ? EnvelopeRate(std::min(99, rate))
                                               : std::min(63, rate));
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
        const int rate = std::min(63, voice.rates[i] + scaling);
        state.shape.speeds[i] = DecaySpeed(rate);
        state.shape.plateaus[i] = PlateauTime(voice, i, scaling);
    }
    if (voice.levels[0] <= 0.0) {
        state.shape.plateaus[0] *= TheSynthChoices.silentPlateau;
    }
    if (voice.fixed) {
        state.hertz = std::exp2(voice.octaves);
    } else {
        const double octaves = KeyOctaves(key);
        state.hertz = std::exp2(octaves + voice.octaves + voice.detuneOctaves +
                                DetuneOctaves(voice.detune, std::exp2(octaves)));
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
        state.follows = !voice.oscillatorSync || voice.startPhase != 0.0;
        if (voice.oscillatorSync) {
            state.phase = static_cast<std::uint32_t>(voice.startPhase * 0x1p32);
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

bool HoldsSilence(const Key &key, const PreparedVoice &voice) {
    for (int i = 0; i < voice.operatorCount; ++i) {
        const KeyOperator &state = key.operators[i];
        if (IsCarrier(voice, i) &&
            (state.gain != 0.0f || !HoldsSilence(state.envelope, state.shape))) {
            return false;
        }
    }
    return key.rendered;
}

namespace {

// The straight line of one value through a block: to `target`, but by `most` at most.
float Limited(float from, float target, float most) {
    return std::clamp(target, from - most, from + most);
}

// The steps by which LFO and controllers lower an operator.
double AmplitudeLoss(const PreparedOperator &prepared, const Modulation &modulation) {
    if (prepared.amplitudeSensitivity == 0.0) {
        return 0.0;
    }
    const double depth = std::min(255.0, prepared.amplitudeDepth * modulation.amplitudeFade +
                                             modulation.amplitudeDepth);
    const double loss = std::min(255.0, depth * modulation.lfoLoss + modulation.envelopeBias);
    return loss > 0.0 ? prepared.amplitudeSensitivity * TremoloSteps(loss) : 0.0;
}

double Ratio(double octaves) {
    return octaves == 0.0 ? 1.0 : std::exp2(octaves);
}

// What a key's glide does to the pitch of its operators, alone and with the pitch envelope.
struct KeyRatios {
    double glide = 1.0;
    double glideAndEnvelope = 1.0;
};

// The straight lines of an operator of all keys of a group through the next block. False when it is
// silent in all of them.
bool Steer(Key *const *keys, int count, const KeyRatios *ratios, const PreparedVoice &voice,
           int number, const Modulation &modulation, double rate, Lanes &lanes) {
    const PreparedOperator &prepared = voice.operators[number];
    const double loss = AmplitudeLoss(prepared, modulation) - prepared.extraSteps;
    const bool swings = !prepared.fixed && prepared.followsLfo;
    const double common = Ratio(modulation.octaves + (swings ? modulation.lfoOctaves : 0.0)) / rate;
    bool sounds[LaneCount] = {};
    float levels[LaneCount] = {};
    for (int k = 0; k < count; ++k) {
        KeyOperator &state = keys[k]->operators[number];
        AdvanceEnvelope(state.envelope, state.shape, BlockFrames / rate);
        double cycles = state.hertz * common; // a frame
        if (!prepared.fixed) {
            cycles *= prepared.followsPitchEnvelope ? ratios[k].glideAndEnvelope : ratios[k].glide;
        }
        const auto increment = static_cast<std::uint32_t>(std::min(cycles, 0.5) * 0x1p32);
        if (!keys[k]->rendered) {
            state.increment = increment;
        }
        const auto difference = static_cast<std::int32_t>(increment - state.increment);
        lanes.phase[k] = state.phase;
        lanes.increment[k] = state.increment;
        lanes.incrementStep[k] = static_cast<std::uint32_t>(difference / BlockFrames);
        lanes.glides = lanes.glides || lanes.incrementStep[k] != 0;
        lanes.last[k] = state.outputs[0];
        lanes.beforeLast[k] = state.outputs[1];
        state.increment = increment;
        sounds[k] =
            prepared.enabled && cycles < 0.5 && state.envelope.level > TheSynthChoices.silence;
        levels[k] = static_cast<float>(state.envelope.level - loss);
    }
    float gains[LaneCount];
    GainsOf(levels, gains);
    const bool carrier = IsCarrier(voice, number);
    const auto most = static_cast<float>(2.0 * BlockFrames / rate / FadeTime);
    bool heard = false;
    for (int k = 0; k < count; ++k) {
        KeyOperator &state = keys[k]->operators[number];
        float gain = sounds[k] ? gains[k] : 0.0f;
        if (!keys[k]->rendered) {
            state.gain = state.follows ? 0.0f : gain;
        }
        if (carrier) {
            gain *= keys[k]->fade;
            if (state.follows) {
                const float wanted = gain;
                gain = Limited(state.gain, gain, most);
                state.follows = gain != wanted;
            }
        }
        lanes.gain[k] = state.gain * WaveScale;
        lanes.gainStep[k] = (gain - state.gain) * (WaveScale / BlockFrames);
        heard = heard || gain != 0.0f || state.gain != 0.0f;
        state.gain = gain;
    }
    return heard;
}

// What moves in a key beside its operators.
void AdvanceKey(Key &key, const PreparedVoice &voice, const Modulation &modulation,
                double seconds) {
    AdvancePitchEnvelope(key.pitchEnvelope, voice.pitchEnvelope, seconds);
    if (key.glide != 0.0) {
        // The farther, the faster: as many times as there are quarters of an octave to go.
        const double quarters = voice.glideHurries ? std::floor(std::fabs(key.glide) * 4.0) : 0.0;
        const double speed = modulation.glideSpeed * (1.0 + quarters);
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
    KeyRatios ratios[LaneCount];
    for (int k = 0; k < count; ++k) {
        Key &key = *keys[k];
        AdvanceKey(key, voice, modulation, BlockFrames / rate);
        ratios[k].glide = Ratio(key.glide);
        ratios[k].glideAndEnvelope = ratios[k].glide * Ratio(key.pitchEnvelope.level);
    }
    Lanes lanes[MaxOperators];
    unsigned sounding = 0;
    for (int i = 0; i < voice.operatorCount; ++i) {
        if (Steer(keys, count, ratios, voice, i, modulation, rate, lanes[i])) {
            sounding |= 1u << i;
        }
    }

    RenderOperators(lanes, Heard(voice, sounding), voice, buses);

    for (int k = 0; k < count; ++k) {
        Key &key = *keys[k];
        key.rendered = true;
        bool silent = true;
        for (int i = 0; i < voice.operatorCount; ++i) {
            KeyOperator &state = key.operators[i];
            state.phase = lanes[i].phase[k];
            state.outputs = {lanes[i].last[k], lanes[i].beforeLast[k]};
            if (IsCarrier(voice, i)) {
                silent = silent && state.gain == 0.0f &&
                         (voice.operators[i].enabled ? IsSilent(state.envelope)
                                                     : HasEnded(state.envelope));
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
