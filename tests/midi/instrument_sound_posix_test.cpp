// The sound of the built-in instruments through the libraries, on a device that takes frames as
// fast as they come.
#include "midi/instrument_sound.h"
#include "support/alsa_posix.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace tonewright;

namespace {

using State = InstrumentSoundState;

constexpr auto Dx7 = BuiltinInstrument::Dx7;

struct InstrumentSoundOnADevice : testing::Test {
    void SetUp() override {
        ResetBuiltinInstruments();
        listener = InstrumentSound();
    }
    void Play(int note) {
        const auto number = static_cast<std::uint8_t>(note);
        listener.heard(Dx7, {SynthEventKind::NoteOn, number, 100});
        listener.heard(Dx7, {SynthEventKind::Controller, 1, 64});
        listener.heard(Dx7, {SynthEventKind::NoteOff, number});
    }
    State WaitForCard() {
        std::string why;
        while (StateOfInstrumentSound(why) == State::Opening) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return StateOfInstrumentSound(why);
    }
    // Opens an output, plays, closes it and ends, so many times.
    void PlayTimes(int times, bool waits) {
        int plays = 0;
        for (int time = 0; time < times; ++time) {
            listener.outputOpened(Dx7);
            Play(40 + time % 40);
            if (waits) {
                plays += WaitForCard() == State::Plays ? 1 : 0;
                Play(41 + time % 40);
            }
            listener.outputClosed(Dx7);
            EndInstrumentSound();
        }
        EXPECT_EQ(plays, waits ? times : 0);
    }

    TempFolder temp;
    const AlsaConfiguration alsa{temp, NullAlsaDevice};
    CapturedErrors errors{temp.File("errors")};
    InstrumentListener listener;
};

// Together a thousand times, each of them short enough for a machine that does much else.
TEST_F(InstrumentSoundOnADevice, IsOpenedAndClosedManyTimesWhileNotesCome) {
    PlayTimes(350, true);
    EXPECT_EQ(errors.Text(), "");
}

TEST_F(InstrumentSoundOnADevice, IsOpenedAndClosedManyTimesWhileNotesComeOnceMore) {
    PlayTimes(350, true);
    EXPECT_EQ(errors.Text(), "");
}

TEST_F(InstrumentSoundOnADevice, IsClosedManyTimesBeforeItRuns) {
    PlayTimes(300, false);
    EXPECT_EQ(errors.Text(), "");
}

TEST_F(InstrumentSoundOnADevice, IsOpenedAnewForOtherOptions) {
    for (int time = 0; time < 20; ++time) {
        SetInstrumentSound(
            {.device = "", .volume = 1.0, .frames = 128 << time % 3, .polyphony = 8 + time});
        listener.outputOpened(Dx7);
        EXPECT_EQ(WaitForCard(), State::Plays);
        Play(60);
        listener.outputClosed(Dx7);
    }
    EndInstrumentSound();
    EXPECT_EQ(errors.Text(), "");
}

TEST_F(InstrumentSoundOnADevice, SoundsAndEndsByItself) {
    listener.outputOpened(Dx7);
    ASSERT_EQ(WaitForCard(), State::Plays);
    listener.heard(Dx7, {SynthEventKind::NoteOn, 60, 100});
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_GT(InstrumentLevel().peak, 0.01f);
    listener.heard(Dx7, {SynthEventKind::NoteOff, 60});
    listener.outputClosed(Dx7);
    std::string why;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (StateOfInstrumentSound(why) == State::Plays && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(StateOfInstrumentSound(why), State::Closed);
    EXPECT_EQ(errors.Text(), "");
}

} // namespace
