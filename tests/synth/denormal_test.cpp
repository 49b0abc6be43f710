// Nothing in the engine goes on for ever and ever smaller: a processor takes many times as long for
// numbers of the smallest kind, and a sound that fades would cost more than one that is heard.
#include "synth/synth.h"

#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

template <typename Number> bool HasDenormal(std::span<const Number> numbers) {
    return std::ranges::any_of(numbers,
                               [](Number n) { return std::fpclassify(n) == FP_SUBNORMAL; });
}

std::string DenormalIn(const Synth &synth) {
    const double numbers[] = {synth.filtered, synth.unfiltered, synth.gain, synth.lfo.phase,
                              synth.lfo.sinceFirstKey};
    if (HasDenormal<double>(numbers)) {
        return "synthesizer";
    }
    for (const Effect &effect : synth.effects) {
        const double shape[] = {effect.shape.first, effect.shape.second, effect.phase, effect.mix,
                                effect.feed};
        if (HasDenormal<double>(shape) || HasDenormal<float>(effect.memory) ||
            HasDenormal<float>(effect.settings)) {
            return "effect";
        }
        if (effect.shape.kind == EffectKind::Through) {
            continue;
        }
        if (HasDenormal<float>(effect.left) || HasDenormal<float>(effect.right)) {
            return "line";
        }
    }
    for (const Key &key : synth.keys) {
        const double own[] = {key.fade, key.glide, key.wait, key.pitchEnvelope.level};
        if (HasDenormal<double>(own)) {
            return "key";
        }
        for (const KeyOperator &state : key.operators) {
            const float gains[] = {state.gain, state.outputs[0], state.outputs[1]};
            if (HasDenormal<float>(gains)) {
                return "operator";
            }
        }
    }
    return "";
}

// Plays `seconds`, and looks at the state now and then.
void Decay(Synth &synth, double seconds, const std::string &what) {
    const int blocks = static_cast<int>(seconds * synth.rate) / BlockFrames;
    for (int block = 0; block < blocks; ++block) {
        float left[BlockFrames];
        float right[BlockFrames];
        Render(synth, left, right);
        ASSERT_FALSE(HasDenormal<float>(left) || HasDenormal<float>(right)) << what;
        if (block % 100 == 0) {
            ASSERT_EQ(DenormalIn(synth), "") << what << ", block " << block;
        }
    }
}

TEST(Denormals, AreNotInTheTailOfAnEffect) {
    for (int kind = 1; kind < 8; ++kind) {
        for (const double first : {0.01, 0.5, 1.0}) {
            for (const double second : {0.0, 1.0}) {
                PreparedVoice voice = InitialVoice().Prepared();
                voice.effects[0] = {static_cast<EffectKind>(kind), first, second};
                Synth synth = MakeSynth(Rate, 4);
                SetVoice(synth, &voice, false);
                NoteOn(synth, 60, 100);
                const std::string what = std::to_string(kind) + ": " + std::to_string(first) +
                                         ", " + std::to_string(second);
                Decay(synth, 0.3, what);
                // Its parameters go to 0 while it fades.
                voice.effects[0] = {static_cast<EffectKind>(kind), 0.0, 0.0};
                SetVoice(synth, &voice, true);
                NoteOff(synth, 60);
                Decay(synth, 3.0, what);
            }
        }
    }
}

TEST(Denormals, AreNotInAKeyThatIsHeldInSilence) {
    SixVoice bytes = InitialVoice();
    bytes.Operator(1, Rate1 + 1) = 70;
    bytes.Operator(1, Level1 + 1) = 0;
    bytes.Operator(1, Level1 + 2) = 0;
    const PreparedVoice voice = bytes.Prepared();
    Synth synth = MakeSynth(Rate, 4);
    SetVoice(synth, &voice, false);
    NoteOn(synth, 40, 100);
    Decay(synth, 60.0, "held");
    EXPECT_EQ(SoundingKeys(synth), 1);
}

TEST(Denormals, AreNotInVoicesThatFadeForAMinute) {
    for (int place = 1; place <= 32; ++place) {
        const PreparedVoice voice = ExampleVoice(place).Prepared();
        Synth synth = MakeSynth(Rate, 4);
        SetVoice(synth, &voice, false);
        NoteOn(synth, 36, 100);
        NoteOn(synth, 60, 40);
        Decay(synth, 1.0, std::to_string(place));
        NoteOff(synth, 60);
        Decay(synth, place % 8 == 0 ? 59.0 : 4.0, std::to_string(place));
    }
}

TEST(Denormals, AreNotInASlowVolume) {
    const PreparedVoice voice = InitialVoice().Prepared();
    Synth synth = MakeSynth(Rate, 4);
    SetVoice(synth, &voice, false);
    Control(synth, 7, 1);
    Control(synth, 11, 1);
    Control(synth, 5, 1);
    Control(synth, 65, 127);
    NoteOn(synth, 36, 100);
    NoteOff(synth, 36);
    NoteOn(synth, 90, 1);
    Decay(synth, 3.0, "soft");
}

} // namespace
} // namespace tonewright
