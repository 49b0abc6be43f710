// The voices that the built-in reface DX leaves the factory with, as they are heard.
#include "midi/instruments/builtin_instruments.h"
#include "synth/player.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr int Rate = 48000;
constexpr std::size_t VoiceBytes = FourOperatorBytes;

// The loudest of so many seconds, in full scale.
float LoudestOf(SynthPlayer &player, int seconds) {
    std::vector<float> frames(2 * Rate);
    float loudest = 0.0f;
    for (int second = 0; second < seconds; ++second) {
        RenderFrames(player, frames.data(), Rate);
        for (const float sample : frames) {
            loudest = std::max(loudest, std::fabs(sample));
        }
    }
    return loudest;
}

TEST(FactoryVoices, AreLoudEnoughAndEndWithTheirKey) {
    ResetBuiltinInstruments();
    const auto &memory = MemoryOf(BuiltinInstrument::Reface);
    ASSERT_EQ(memory.size(), 32 * VoiceBytes);
    for (std::size_t place = 0; place < 32; ++place) {
        std::uint8_t bytes[VoiceBytes];
        std::copy_n(memory.data() + place * VoiceBytes, VoiceBytes, bytes);
        SCOPED_TRACE(std::string(bytes, bytes + 10));
        const OwnedSynthPlayer player = MakeSynthPlayer(1, Rate, 16);
        SendVoice(*player, 0, PrepareFourOperatorVoice(bytes), false);
        SendEvent(*player, 0, {.kind = SynthEventKind::NoteOn, .number = 60, .value = 100});
        const float loudest = LoudestOf(*player, 2);
        EXPECT_GT(loudest, 0.07f); // 5 dB below a carrier at full level
        EXPECT_LT(loudest, 0.5f);
        EXPECT_FALSE(TakePlayerLevel(*player).limited);
        SendEvent(*player, 0, {.kind = SynthEventKind::NoteOff, .number = 60, .value = 0});
        LoudestOf(*player, 8);
        EXPECT_TRUE(IsSilent(*player));
        EXPECT_EQ(LoudestOf(*player, 1), 0.0f);
    }
}

} // namespace
} // namespace tonewright
