// Up to eight keys are rendered side by side, a lane each, so that the compiler can use vectors
// also where a sample needs the one before it, in feedback.
#include "synth/key.h"

#include "synth/choices.h"

#include <algorithm>
#include <cmath>

namespace tonewright {

namespace {

using Row = float[LaneCount];

struct alignas(64) Buffer {
    Row rows[BlockFrames];
};

// One operator of the keys of a group, in straight lines through a block.
struct alignas(64) Lanes {
    std::uint32_t phase[LaneCount] = {};
    std::uint32_t increment[LaneCount] = {};
    std::uint32_t incrementStep[LaneCount] = {};
    float gain[LaneCount] = {};
    float gainStep[LaneCount] = {};
    float last[LaneCount] = {};
    float beforeLast[LaneCount] = {};
    bool sounds = false;
};

// The sine of a phase in cycles, within 104 dB, for phases up to some thousand: its zeros at 0 and
// at half a cycle are factors, so they are exact.
inline float Sine(float cycles) {
    constexpr float Nearest = 12582912.0f; // 1.5 * 2^23: adding it rounds to whole numbers
    const float part = cycles - ((cycles + Nearest) - Nearest);
    const float square = part * part;
    const float low = 25.13216911f - 64.79273861f * square;
    const float high = 66.23887646f - 32.60916915f * square;
    return part * (0.25f - square) * (low + high * (square * square));
}

inline float Cycles(std::uint32_t phase) {
    return static_cast<float>(static_cast<std::int32_t>(phase)) * 0x1p-32f;
}

void Advance(Lanes &lanes, int lane) {
    lanes.increment[lane] += lanes.incrementStep[lane];
    lanes.phase[lane] += lanes.increment[lane];
    lanes.gain[lane] += lanes.gainStep[lane];
}

// An operator without feedback; `modulation` may be null.
template <bool Modulated> void RenderPlain(Lanes &lanes, const Buffer *modulation, Buffer &out) {
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            float cycles = Cycles(lanes.phase[lane]);
            if (Modulated) {
                cycles += modulation->rows[frame][lane];
            }
            out.rows[frame][lane] = Sine(cycles) * lanes.gain[lane];
            Advance(lanes, lane);
        }
    }
}

// An operator that feeds back into itself.
template <FeedbackKind Kind, bool Modulated>
void RenderFeedback(Lanes &lanes, float feedback, const Buffer *modulation, Buffer &out) {
    const float half = feedback * 0.5f;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            float cycles = Cycles(lanes.phase[lane]);
            if (Modulated) {
                cycles += modulation->rows[frame][lane];
            }
            const float sum = lanes.last[lane] + lanes.beforeLast[lane];
            cycles += Kind == FeedbackKind::Square ? sum * sum * (0.5f * half) : sum * half;
            const float wave = Sine(cycles);
            const float output = wave * lanes.gain[lane];
            out.rows[frame][lane] = output;
            lanes.beforeLast[lane] = lanes.last[lane];
            lanes.last[lane] = Kind == FeedbackKind::Output ? output : wave;
            Advance(lanes, lane);
        }
    }
}

// A chain of operators, each modulated by the one above it, whose end feeds back to its begin.
void RenderLoop(Lanes *operators, int from, int to, float feedback, Buffer *out) {
    const float half = feedback * 0.5f;
    Lanes &end = operators[from];
    for (int frame = 0; frame < BlockFrames; ++frame) {
        Row carried;
        for (int lane = 0; lane < LaneCount; ++lane) {
            carried[lane] = (end.last[lane] + end.beforeLast[lane]) * half;
        }
        for (int i = to; i >= from; --i) {
            Lanes &lanes = operators[i];
            for (int lane = 0; lane < LaneCount; ++lane) {
                carried[lane] = Sine(Cycles(lanes.phase[lane]) + carried[lane]) * lanes.gain[lane];
                out[i].rows[frame][lane] = carried[lane];
                Advance(lanes, lane);
            }
        }
        for (int lane = 0; lane < LaneCount; ++lane) {
            end.beforeLast[lane] = end.last[lane];
            end.last[lane] = carried[lane];
        }
    }
}

void Pass(Lanes &lanes) {
    for (int lane = 0; lane < LaneCount; ++lane) {
        // The increments of a block form a straight line: BlockFrames of them, and their sum.
        lanes.phase[lane] += BlockFrames * lanes.increment[lane] +
                             BlockFrames * (BlockFrames + 1) / 2 * lanes.incrementStep[lane];
        lanes.increment[lane] += BlockFrames * lanes.incrementStep[lane];
        lanes.last[lane] = lanes.beforeLast[lane] = 0.0f;
    }
}

template <FeedbackKind Kind>
void RenderFeedback(Lanes &lanes, float feedback, const Buffer *modulation, Buffer &out) {
    modulation ? RenderFeedback<Kind, true>(lanes, feedback, modulation, out)
               : RenderFeedback<Kind, false>(lanes, feedback, nullptr, out);
}

void RenderOperator(Lanes &lanes, const PreparedOperator &voice, const Buffer *modulation,
                    Buffer &out) {
    const auto feedback = static_cast<float>(voice.feedback);
    if (feedback == 0.0f) {
        modulation ? RenderPlain<true>(lanes, modulation, out)
                   : RenderPlain<false>(lanes, nullptr, out);
    } else if (voice.feedbackKind == FeedbackKind::Output) {
        RenderFeedback<FeedbackKind::Output>(lanes, feedback, modulation, out);
    } else if (voice.feedbackKind == FeedbackKind::Sawtooth) {
        RenderFeedback<FeedbackKind::Sawtooth>(lanes, feedback, modulation, out);
    } else {
        RenderFeedback<FeedbackKind::Square>(lanes, feedback, modulation, out);
    }
}

void Add(Buffer &sum, const Buffer &more) {
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            sum.rows[frame][lane] += more.rows[frame][lane];
        }
    }
}

// The sum of the buffers of a set of operators that sound: one of them where there is only one.
const Buffer *Sum(unsigned set, const Lanes *lanes, const Buffer *buffers, Buffer &sum) {
    const Buffer *found = nullptr;
    for (int i = 0; i < MaxOperators; ++i) {
        if ((set >> i & 1) == 0 || !lanes[i].sounds) {
            continue;
        }
        if (!found) {
            found = &buffers[i];
        } else {
            if (found != &sum) {
                sum = *found;
                found = &sum;
            }
            Add(sum, buffers[i]);
        }
    }
    return found;
}

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

// The straight lines of a key's operator through the next block.
void Steer(const Key &key, KeyOperator &state, const PreparedVoice &voice, int number,
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
    lanes.gain[lane] = state.gain;
    lanes.gainStep[lane] = (gain - state.gain) / BlockFrames;
    lanes.last[lane] = state.outputs[0];
    lanes.beforeLast[lane] = state.outputs[1];
    lanes.sounds = lanes.sounds || gain != 0.0f || state.gain != 0.0f;
    state.increment = increment;
    state.gain = gain;
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

} // namespace

void RenderKeys(Key *const *keys, int count, const PreparedVoice &voice,
                const Modulation &modulation, double rate, float (&out)[BlockFrames]) {
    Lanes lanes[MaxOperators];
    for (int k = 0; k < count; ++k) {
        Key &key = *keys[k];
        AdvanceKey(key, voice, modulation, BlockFrames / rate);
        for (int i = 0; i < voice.operatorCount; ++i) {
            Steer(key, key.operators[i], voice, i, modulation, rate, lanes[i], k);
        }
        key.rendered = true;
    }

    Buffer buffers[MaxOperators];
    Buffer sum;
    const Algorithm &algorithm = voice.algorithm;
    const bool loop = algorithm.feedbackFrom != algorithm.feedbackTo &&
                      voice.operators[algorithm.feedbackTo].feedback != 0.0;
    for (int i = voice.operatorCount - 1; i >= 0; --i) {
        if (loop && i >= algorithm.feedbackFrom && i <= algorithm.feedbackTo) {
            if (i == algorithm.feedbackFrom) {
                RenderLoop(lanes, i, algorithm.feedbackTo,
                           static_cast<float>(voice.operators[algorithm.feedbackTo].feedback),
                           buffers);
                for (int j = i; j <= algorithm.feedbackTo; ++j) {
                    lanes[j].sounds = true;
                }
            }
        } else if (lanes[i].sounds) {
            const Buffer *from = Sum(algorithm.modulators[i], lanes, buffers, sum);
            RenderOperator(lanes[i], voice.operators[i], from, buffers[i]);
        } else {
            Pass(lanes[i]);
        }
    }
    if (const Buffer *carriers = Sum(algorithm.carriers, lanes, buffers, sum)) {
        for (int frame = 0; frame < BlockFrames; ++frame) {
            float total = 0.0f;
            for (int lane = 0; lane < LaneCount; ++lane) {
                total += carriers->rows[frame][lane];
            }
            out[frame] += 0.5f * total;
        }
    }

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

} // namespace tonewright
