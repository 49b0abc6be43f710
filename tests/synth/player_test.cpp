// The player: what has been sent is heard, in order and in blocks of any size, and ends.
#include "synth/player.h"

#include "measure.h"
#include "synth/event_queue.h"
#include "synth/synth.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

// Frames until a key of the sine that has gone up has left the filter of offsets, too.
constexpr int Release = 24000;

using Frames = std::vector<float>;

Frames Played(SynthPlayer &player, int count, int part = 256) {
    Frames frames(2 * static_cast<std::size_t>(count), 9.0f);
    for (int done = 0; done < count; done += part) {
        RenderFrames(player, frames.data() + 2 * done, std::min(part, count - done));
    }
    return frames;
}

int InFrames(double seconds) {
    return static_cast<int>(seconds * Rate);
}

bool IsExactlySilent(const Frames &frames) {
    return std::ranges::all_of(frames, [](float sample) { return sample == 0.0f; });
}

float Loudest(const Frames &frames) {
    float loudest = 0.0f;
    for (const float sample : frames) {
        loudest = std::max(loudest, std::fabs(sample));
    }
    return loudest;
}

Samples Left(const Frames &frames) {
    Samples samples;
    for (std::size_t i = 0; i < frames.size(); i += 2) {
        samples.push_back(frames[i]);
    }
    return samples;
}

double Hz(SynthPlayer &player) {
    Played(player, InFrames(0.05));
    return PeakFrequency(Left(Played(player, InFrames(0.5))), Rate, 0.25);
}

double Frequency(int key) {
    return 440.0 * std::exp2((key - 69) / 12.0);
}

constexpr SynthEvent Down(int key, int velocity = 98) {
    return {.kind = SynthEventKind::NoteOn,
            .number = static_cast<std::uint8_t>(key),
            .value = static_cast<std::uint16_t>(velocity)};
}

constexpr SynthEvent Up(int key) {
    return {.kind = SynthEventKind::NoteOff, .number = static_cast<std::uint8_t>(key)};
}

constexpr SynthEvent Controller(int number, int value) {
    return {.kind = SynthEventKind::Controller,
            .number = static_cast<std::uint8_t>(number),
            .value = static_cast<std::uint16_t>(value)};
}

constexpr SynthEvent Bent(int value) {
    return {.kind = SynthEventKind::Bend, .value = static_cast<std::uint16_t>(value)};
}

// The sine, `multiple` times as high.
PreparedVoice Sine(int multiple = 1) {
    SixVoice voice = InitialVoice();
    voice.Operator(1, Coarse) = static_cast<std::uint8_t>(multiple);
    return voice.Prepared();
}

// What never ends by itself, in a reverb and a delay.
PreparedVoice Endless() {
    SixVoice bytes = InitialVoice();
    bytes.Operator(1, Level1 + 3) = 99;
    PreparedVoice voice = bytes.Prepared();
    voice.effects[0] = {.kind = EffectKind::Reverb, .first = 1.0, .second = 1.0};
    voice.effects[1] = {.kind = EffectKind::Delay, .first = 1.0, .second = 0.5};
    return voice;
}

class Player : public testing::Test {
protected:
    OwnedSynthPlayer player_ = MakeSynthPlayer(3, Rate, 16);

    void Send(const SynthEvent &event, int instrument = 0) {
        EXPECT_TRUE(SendEvent(*player_, instrument, event));
    }
    void SendNew(const PreparedVoice &voice, int instrument = 0) {
        EXPECT_TRUE(SendVoice(*player_, instrument, voice, false));
    }
    void SendChanged(const PreparedVoice &voice, int instrument = 0) {
        EXPECT_TRUE(SendVoice(*player_, instrument, voice, true));
    }
    Frames Played(int count, int part = 256) { return tonewright::Played(*player_, count, part); }
};

TEST_F(Player, IsSilentUntilItHasAVoice) {
    EXPECT_TRUE(IsSilent(*player_));
    Send(Down(60));
    EXPECT_FALSE(IsSilent(*player_));
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
    EXPECT_TRUE(IsSilent(*player_));
}

TEST_F(Player, PlaysWhatTheSynthesizersMake) {
    const PreparedVoice sine = Sine();
    const PreparedVoice bell = ExampleVoice(2).Prepared();
    SendNew(sine, 0);
    SendNew(bell, 2);
    Send(Down(50), 0);
    Send(Down(60), 2);
    const Frames frames = Played(64 * 100);

    Synth first = MakeSynth(Rate, 16);
    SetVoice(first, &sine, false);
    NoteOn(first, 50, 98);
    Synth second = MakeSynth(Rate, 16);
    SetVoice(second, &bell, false);
    NoteOn(second, 60, 98);
    for (int block = 0; block < 100; ++block) {
        float left[2][BlockFrames];
        float right[2][BlockFrames];
        Render(first, left[0], right[0]);
        Render(second, left[1], right[1]);
        for (int i = 0; i < BlockFrames; ++i) {
            const std::size_t frame = static_cast<std::size_t>(block * BlockFrames + i);
            ASSERT_FLOAT_EQ(frames[2 * frame], left[0][i] + left[1][i]) << frame;
            ASSERT_FLOAT_EQ(frames[2 * frame + 1], right[0][i] + right[1][i]) << frame;
        }
    }
}

// A buffer of 256 frames is 5.3 ms: with it and the next one, which waits at the sound card, a key
// is heard in far less than 20 ms.
TEST_F(Player, BeginsAKeyWithTheBlockThatFollows) {
    SendNew(Sine());
    Send(Down(60));
    Send(Up(60));
    // At every place of the buffer's begin within a block.
    for (int before = 0; before < BlockFrames; before += 7) {
        Played(Release + before);
        Send(Down(72));
        const Frames frames = Played(256);
        const auto first =
            std::ranges::find_if(frames, [](float sample) { return std::fabs(sample) > 0.001f; });
        EXPECT_LT((first - frames.begin()) / 2, BlockFrames + 8) << before;
        Send(Up(72));
    }
}

TEST_F(Player, PlaysTheSameInPartsOfAnySize) {
    Frames whole;
    for (const int part : {10000, 1, 63, 64, 65, 100, 1023, 4096}) {
        player_ = MakeSynthPlayer(1, Rate, 16);
        SendNew(ExampleVoice(3).Prepared());
        Send(Down(40));
        Send(Down(47));
        const Frames frames = Played(10000, part);
        if (whole.empty()) {
            whole = frames;
            EXPECT_GT(Loudest(whole), 0.05f);
        }
        EXPECT_EQ(frames, whole) << part;
    }
}

TEST_F(Player, KnowsWhenItIsSilent) {
    SixVoice bytes = InitialVoice();
    bytes.Operator(1, Rate1 + 3) = 60;
    PreparedVoice voice = bytes.Prepared();
    voice.effects[0] = {.kind = EffectKind::Reverb, .first = 0.5, .second = 0.2};
    SendNew(voice);
    Played(256);
    EXPECT_TRUE(IsSilent(*player_));
    Send(Down(60));
    Played(2560);
    EXPECT_FALSE(IsSilent(*player_));
    Send(Up(60));
    int parts = 0;
    for (; !IsSilent(*player_) && parts < 10000; ++parts) {
        Played(100, 100);
    }
    EXPECT_GT(parts, 480); // a second at least
    EXPECT_LT(parts, 4800);
    EXPECT_TRUE(IsExactlySilent(Played(48000)));
    Send(Controller(64, 127));
    EXPECT_FALSE(IsSilent(*player_));
    Played(64);
    EXPECT_TRUE(IsSilent(*player_));
}

TEST_F(Player, KeepsNotesInOrderAroundANewVoice) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    Send(Down(62)); // ends with its voice
    SendNew(Sine(2));
    Send(Down(64));
    EXPECT_NEAR(Hz(*player_), 2.0 * Frequency(64), 0.1);
    Send(Up(60));
    Send(Up(62));
    EXPECT_NEAR(Hz(*player_), 2.0 * Frequency(64), 0.1);
    Send(Up(64));
    Played(Release);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
}

TEST_F(Player, TakesSeveralNewVoicesAtOnce) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    for (int voice = 2; voice <= 9; ++voice) {
        SendNew(Sine(voice));
        Send(Down(40 + voice));
    }
    // The key that came behind the last of them sounds, and no other.
    EXPECT_NEAR(Hz(*player_), 9.0 * Frequency(49), 0.1);
    Send(Up(49));
    Played(Release);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
}

TEST_F(Player, LetsAKeyWaitForTheNewVoiceNoLongerThanAFade) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    SendNew(Sine(2));
    Played(64);
    SendNew(Sine(3)); // while the keys of the first one fade out
    Send(Down(72));
    Played(InFrames(FadeTime) + 64, 64);
    const Samples samples = Left(Played(InFrames(0.2)));
    EXPECT_NEAR(PeakFrequency(samples, Rate, 0.1), 3.0 * Frequency(72), 0.2);
}

TEST_F(Player, GoesOnWithItsKeysInAChangedVoice) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    SendChanged(Sine(3));
    EXPECT_NEAR(Hz(*player_), 3.0 * Frequency(60), 0.1);
}

TEST_F(Player, FollowsAFloodOfChanges) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    // Two seconds of them, as fast as a line brings them, in buffers of 43 ms.
    for (int change = 0; change < 900; ++change) {
        SendChanged(Sine(1 + change % 8));
        if (change % 20 == 19) {
            Played(2048, 2048);
        }
    }
    Send(Up(60));
    Send(Down(60));
    SendChanged(Sine(5));
    Played(InFrames(2.0 * FadeTime) + 2 * BlockFrames, 64); // no longer than that
    const Samples samples = Left(Played(InFrames(0.2)));
    EXPECT_NEAR(PeakFrequency(samples, Rate, 0.1), 5.0 * Frequency(60), 0.3);
}

TEST_F(Player, LosesNoVoiceThatComesWhileNothingIsRead) {
    for (int voice = 0; voice < 1000; ++voice) {
        SendNew(Sine(1 + voice % 9));
        SendChanged(Sine(2));
    }
    SendChanged(Sine(7));
    Send(Down(50));
    EXPECT_NEAR(Hz(*player_), 7.0 * Frequency(50), 0.1);
}

TEST_F(Player, FallsSilentWhenThereIsNoRoom) {
    for (const bool forAVoice : {false, true}) {
        player_ = MakeSynthPlayer(1, Rate, 16);
        SendNew(Sine(1));
        Send(Down(60));
        Played(4800);
        Send(Controller(64, 127));
        for (std::size_t i = 1; i < EventQueue::Capacity; ++i) {
            Send(Down(static_cast<int>(i % 128)));
        }
        if (forAVoice) {
            EXPECT_FALSE(SendVoice(*player_, 0, Sine(4), false));
        } else {
            EXPECT_FALSE(SendEvent(*player_, 0, Up(60)));
        }
        Played(256);
        EXPECT_TRUE(IsExactlySilent(Played(4800)));
        EXPECT_TRUE(IsSilent(*player_));
        // The voice has come nevertheless, and the pedal is up.
        Send(Down(60));
        EXPECT_NEAR(Hz(*player_), (forAVoice ? 4.0 : 1.0) * Frequency(60), 0.1);
        Send(Up(60));
        Played(Release);
        EXPECT_TRUE(IsExactlySilent(Played(4800)));
    }
}

TEST_F(Player, IsNotSilentWhileSomethingWaits) {
    SendNew(Sine(1));
    Played(1, 1); // of a block, whose other frames come first
    EXPECT_TRUE(IsSilent(*player_));
    Send(Down(60));
    Played(1, 1);
    EXPECT_FALSE(IsSilent(*player_));
    SendPanic(*player_);
    Played(300);
    EXPECT_TRUE(IsSilent(*player_));
    SendChanged(Sine(2));
    Played(1, 1);
    EXPECT_FALSE(IsSilent(*player_));
    Played(64);
    EXPECT_TRUE(IsSilent(*player_));
}

TEST_F(Player, PlaysNoKeyBehindWhichPanicComes) {
    SendNew(Sine(1));
    Played(256);
    Send(Down(60));
    SendPanic(*player_);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
}

TEST_F(Player, ChangesEffectsWithTheVoice) {
    PreparedVoice echo = Sine(1);
    echo.effects[0] = {.kind = EffectKind::Delay, .first = 1.0, .second = 1.0}; // 1.2 s
    for (const bool sameKeys : {false, true}) {
        player_ = MakeSynthPlayer(1, Rate, 16);
        SendNew(echo);
        Send(Down(60));
        Played(4800);
        SendVoice(*player_, 0, Sine(1), sameKeys);
        Send(Up(60));
        Played(Release);
        EXPECT_TRUE(IsExactlySilent(Played(2 * 48000))) << sameKeys;
        Send(Down(60));
        Played(4800);
        SendVoice(*player_, 0, echo, sameKeys);
        Send(Up(60));
        Send(Down(64));
        Played(4800);
        Send(Up(64));
        Played(Release);
        EXPECT_GT(Loudest(Played(2 * 48000)), 0.02f) << sameKeys;
    }
}

TEST_F(Player, IsSilentOneBufferAfterPanic) {
    for (const int part : {128, 240, 256, 1024}) {
        player_ = MakeSynthPlayer(3, Rate, 16);
        for (int instrument = 0; instrument < 3; ++instrument) {
            SendNew(Endless(), instrument);
            for (const int key : {40, 47, 52, 55}) {
                Send(Down(key), instrument);
            }
            Send(Up(40), instrument);
        }
        Played(48000);
        EXPECT_GT(Loudest(Played(part, part)), 0.2f);
        Send(Down(60)); // is not heard any more
        SendPanic(*player_);
        EXPECT_FALSE(IsSilent(*player_));
        Played(part, part);
        EXPECT_TRUE(IsExactlySilent(Played(48000, part))) << part;
        EXPECT_TRUE(IsSilent(*player_));
    }
}

TEST_F(Player, SilencesTailsWithTheKeysOfAnInstrument) {
    SendNew(Endless(), 0);
    SendNew(Sine(3), 1);
    Send(Down(40), 0);
    Played(48000);
    Send(Controller(120, 0), 0);
    Played(256);
    EXPECT_TRUE(IsExactlySilent(Played(48000)));
    EXPECT_TRUE(IsSilent(*player_));
    // A key behind it is heard, and so are those of another instrument.
    Send(Down(40), 0);
    Send(Down(60), 1);
    Played(4800);
    Send(Controller(120, 0), 0);
    EXPECT_NEAR(Hz(*player_), 3.0 * Frequency(60), 0.1);
    Send(Up(60), 1);
    Send(Controller(120, 0), 0);
    Send(Down(64), 0);
    EXPECT_NEAR(Hz(*player_), Frequency(64), 5.0); // its echoes blur it
}

// An effect may bend a wave that is not the same on both sides of zero.
TEST_F(Player, HasNoOffset) {
    SixVoice bytes = InitialVoice();
    bytes.bytes[AlgorithmByte] = 0;
    bytes.Operator(2, OutputLevel) = 86;
    bytes.Operator(2, Coarse) = 2; // takes all from one side of the sine
    for (int kind = 0; kind < 8; ++kind) {
        PreparedVoice voice = bytes.Prepared();
        voice.effects[0] = {.kind = static_cast<EffectKind>(kind), .first = 1.0, .second = 0.7};
        player_ = MakeSynthPlayer(1, Rate, 16);
        SendNew(voice);
        for (const int key : {36, 43, 48, 52, 55, 60}) {
            Send(Down(key));
        }
        Played(2 * 48000);
        const Frames frames = Played(4 * 48000);
        double sum = 0.0;
        for (const float sample : frames) {
            sum += sample;
        }
        EXPECT_LT(std::fabs(sum) / static_cast<double>(frames.size()), 0.001 * Loudest(frames))
            << kind;
    }
}

TEST_F(Player, PlaysWhatComesAfterPanic) {
    SendNew(Sine(1));
    Send(Controller(64, 127));
    Send(Down(60));
    Played(4800);
    Send(Bent(16383));
    SendNew(Sine(3));
    Send(Down(40));
    SendPanic(*player_);
    Send(Down(70));
    Played(InFrames(FadeTime), 64);
    // Voice and bend are there, the keys of before are not.
    EXPECT_NEAR(Hz(*player_), 3.0 * Frequency(72), 0.1);
    Send(Up(70));
    Played(Release);
    EXPECT_TRUE(IsExactlySilent(Played(4800))); // nor is the pedal down
}

TEST_F(Player, SkipsWhatHasBeenSent) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    SendNew(Sine(2));
    Send(Down(62));
    Send(Bent(16383));
    SkipEvents(*player_);
    EXPECT_TRUE(IsSilent(*player_));
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
    Send(Down(60));
    EXPECT_NEAR(Hz(*player_), 2.0 * Frequency(62), 0.1);
}

TEST_F(Player, TakesOverVoicesAndControllers) {
    SetPlayerVolume(*player_, 0.5);
    SendNew(Sine(3), 0);
    SendNew(Sine(5), 1);
    Send(Down(60), 0);
    Send(Bent(16383), 0);
    Played(4800);
    SendChanged(Sine(2), 0); // has not been read yet, nor has this
    Send(Controller(7, 64), 1);
    Send(Down(50), 1);

    const OwnedSynthPlayer other = MakeSynthPlayer(3, 44100.0, 8);
    TakeOver(*other, *player_);
    EXPECT_TRUE(IsSilent(*other));
    EXPECT_TRUE(SendEvent(*other, 0, Down(60)));
    Frames frames = tonewright::Played(*other, 220); // at once as loud as it is meant to be
    EXPECT_NEAR(Loudest(frames), 0.5 * 0.125, 0.002);
    frames = tonewright::Played(*other, 44100);
    EXPECT_NEAR(PeakFrequency(Left(frames), 44100.0, 0.5), 2.0 * Frequency(62), 0.1);
    EXPECT_NEAR(Loudest(frames), 0.5 * 0.125, 0.002);
    EXPECT_TRUE(SendEvent(*other, 0, Up(60)));
    EXPECT_TRUE(SendEvent(*other, 1, Down(60)));
    tonewright::Played(*other, 4410);
    frames = tonewright::Played(*other, 44100);
    EXPECT_NEAR(PeakFrequency(Left(frames), 44100.0, 0.5), 5.0 * Frequency(60), 0.1);
    EXPECT_NEAR(Loudest(frames), 0.5 * 0.125 * std::pow(64.0 / 127.0, 2.0), 0.002);
}

TEST_F(Player, IsAsLoudAsItsVolume) {
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    EXPECT_NEAR(Loudest(Played(4800)), 0.125, 0.001);
    SetPlayerVolume(*player_, 0.25);
    Played(InFrames(FadeTime) + BlockFrames);
    EXPECT_NEAR(Loudest(Played(4800)), 0.25 * 0.125, 0.001);
    SetPlayerVolume(*player_, 0.0);
    Played(InFrames(FadeTime) + BlockFrames);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
}

TEST_F(Player, HandsOnEveryKindOfEvent) {
    SendNew(Sine(1));
    Send(Down(60));
    Send(Bent(16383));
    EXPECT_NEAR(Hz(*player_), Frequency(62), 0.1);
    Send(Controller(11, 0));
    Played(4800);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
    Send(Controller(121, 0)); // the bend, too
    EXPECT_NEAR(Hz(*player_), Frequency(60), 0.1);
    Send({.kind = SynthEventKind::Pressure, .value = 127}); // moves nothing with our choices
    EXPECT_NEAR(Hz(*player_), Frequency(60), 0.1);
    Send(Up(60));
    Played(Release);
    EXPECT_TRUE(IsExactlySilent(Played(4800)));
}

TEST_F(Player, TellsItsLevel) {
    EXPECT_EQ(TakePlayerLevel(*player_).peak, 0.0f);
    SendNew(Sine(1));
    Send(Down(60));
    Played(4800);
    PlayerLevel level = TakePlayerLevel(*player_);
    EXPECT_NEAR(level.peak, 0.125, 0.005);
    EXPECT_FALSE(level.limited);
    Send(Up(60));
    Played(Release);
    TakePlayerLevel(*player_);
    Played(4800);
    EXPECT_EQ(TakePlayerLevel(*player_).peak, 0.0f);
    for (int key = 48; key < 64; ++key) {
        Send(Down(key));
    }
    Played(48000);
    level = TakePlayerLevel(*player_);
    EXPECT_GT(level.peak, 0.8f);
    EXPECT_LE(level.peak, 1.0f);
    EXPECT_TRUE(level.limited);
}

} // namespace
} // namespace tonewright
