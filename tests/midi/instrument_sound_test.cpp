// The worker that opens the sound card, with a card that the test plays itself. What is heard is
// held against a player of the test's own.
#include "midi/instrument_sound.h"

#include "support/fake_audio.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

using namespace tonewright;

namespace {

using Clock = std::chrono::steady_clock;
using Frames = std::vector<float>;
using State = InstrumentSoundState;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto Reface = BuiltinInstrument::Reface;

constexpr SynthEvent Note(int number) {
    return {SynthEventKind::NoteOn, static_cast<std::uint8_t>(number), 100};
}
constexpr SynthEvent NoteEnd(int number) {
    return {SynthEventKind::NoteOff, static_cast<std::uint8_t>(number)};
}
constexpr SynthEvent Control(int number, int value) {
    return {SynthEventKind::Controller, static_cast<std::uint8_t>(number),
            static_cast<std::uint16_t>(value)};
}

constexpr int ModulationWheel = 1;
constexpr int Volume = 7;
constexpr int AllSoundOff = 120;

// The instruments of the factory in a player of 48 kHz.
OwnedSynthPlayer PlayerOfInstruments(double rate = 48000.0, int polyphony = 16) {
    OwnedSynthPlayer player = MakeSynthPlayer(BuiltinInstrumentCount, rate, polyphony);
    for (int instrument = 0; instrument < BuiltinInstrumentCount; ++instrument) {
        SendVoice(*player, instrument, PreparedVoiceOf(static_cast<BuiltinInstrument>(instrument)),
                  false);
    }
    SkipEvents(*player);
    return player;
}

Frames Rendered(SynthPlayer &player, int count) {
    Frames frames(2 * static_cast<std::size_t>(count));
    RenderFrames(player, frames.data(), count);
    return frames;
}

bool IsSilence(const Frames &frames) {
    return std::ranges::all_of(frames, [](float frame) { return frame == 0.0f; });
}

struct InstrumentSoundTest : testing::Test {
    void SetUp() override {
        ResetBuiltinInstruments();
        SetInstrumentSound({});
        listener = InstrumentSound();
    }

    State Now() {
        why.clear();
        return StateOfInstrumentSound(why);
    }
    bool UntilState(State state) {
        const auto end = Clock::now() + seconds(10);
        while (Now() != state && Clock::now() < end) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        return Now() == state;
    }
    void OpenAndPlay() {
        listener.outputOpened(Dx7);
        ASSERT_TRUE(card.UntilItRuns());
        ASSERT_TRUE(UntilState(State::Plays));
    }
    // Plays the card until it is closed. False when that takes longer than ten seconds.
    bool PlayUntilClosed(int closes) {
        const auto end = Clock::now() + seconds(10);
        while (Clock::now() < end) {
            card.Play(4800);
            {
                const std::lock_guard lock(card.mutex);
                if (card.closes >= closes) {
                    return true;
                }
            }
            std::this_thread::sleep_for(milliseconds(1));
        }
        return false;
    }

    FakeAudio card;
    InstrumentListener listener;
    std::string why;
};

} // namespace

TEST_F(InstrumentSoundTest, NothingIsOpenedBeforeAnOutputIs) {
    SetInstrumentSound({.device = "card", .volume = 0.5});
    listener.heard(Dx7, Note(60));
    listener.outputClosed(Dx7);
    PanicInstruments();
    EXPECT_EQ(InstrumentLevel().peak, 0.0f);
    EXPECT_FALSE(InstrumentOutputIsOpen());
    EXPECT_TRUE(InstrumentsAreSilent());
    EXPECT_EQ(Now(), State::Closed);
    EndInstrumentSound();
    EXPECT_EQ(card.Calls(), 0);
}

TEST_F(InstrumentSoundTest, WhatIsHeardIsWhatAPlayerPlays) {
    OpenAndPlay();
    EXPECT_TRUE(InstrumentOutputIsOpen());
    const OwnedSynthPlayer player = PlayerOfInstruments();
    EXPECT_TRUE(IsSilence(card.Play(1000)));
    Rendered(*player, 1000);
    for (const SynthEvent &event : {Note(60), Control(ModulationWheel, 100), Note(64)}) {
        listener.heard(Dx7, event);
        SendEvent(*player, 0, event);
    }
    listener.heard(Reface, Note(40));
    SendEvent(*player, 2, Note(40));
    const Frames played = card.Play(4800);
    EXPECT_EQ(played, Rendered(*player, 4800));
    EXPECT_FALSE(IsSilence(played));
    EXPECT_GT(InstrumentLevel().peak, 0.01f);
    EXPECT_FALSE(InstrumentsAreSilent());
}

TEST_F(InstrumentSoundTest, ANewVoiceIsTheOneOfTheEditBuffer) {
    OpenAndPlay();
    EditBufferOf(Dx7)[134] = 31; // algorithm 32
    listener.heard(Dx7, {SynthEventKind::NewVoice});
    listener.heard(Dx7, Note(60));
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Note(60));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
    EditBufferOf(Dx7)[134] = 0;
    listener.heard(Dx7, {SynthEventKind::ChangedVoice});
    SendVoice(*player, 0, PreparedVoiceOf(Dx7), true);
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, WhatComesWhileTheCardOpensIsHeardWhenItRuns) {
    card.hangs = true;
    const auto begin = Clock::now();
    listener.outputOpened(Dx7);
    EXPECT_EQ(Now(), State::Opening);
    listener.heard(Dx7, Note(60));
    listener.heard(Dx7, Control(ModulationWheel, 50));
    EXPECT_FALSE(InstrumentsAreSilent());
    EXPECT_LT(Clock::now() - begin, seconds(1));
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Note(60));
    SendEvent(*player, 0, Control(ModulationWheel, 50));
    const Frames played = card.Play(4800);
    EXPECT_EQ(played, Rendered(*player, 4800));
    EXPECT_FALSE(IsSilence(played));
}

TEST_F(InstrumentSoundTest, ANoteThatEndedBeforeTheCardRanIsHeard) {
    card.hangs = true;
    listener.outputOpened(Dx7);
    listener.heard(Dx7, Note(60));
    listener.heard(Dx7, NoteEnd(60));
    listener.heard(Dx7, Control(AllSoundOff, 0));
    listener.outputClosed(Dx7);
    EXPECT_FALSE(InstrumentsAreSilent());
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Note(60));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
    EXPECT_FALSE(InstrumentsAreSilent());
    std::this_thread::sleep_for(milliseconds(400));
    card.Play(4800);
    EXPECT_TRUE(IsSilence(card.Play(4800)));
    EXPECT_TRUE(InstrumentsAreSilent());
}

TEST_F(InstrumentSoundTest, ANoteThatFollowsDoesNotWaitForTheEndOfTheOneBefore) {
    card.hangs = true;
    listener.outputOpened(Dx7);
    listener.heard(Dx7, Note(60));
    listener.heard(Dx7, NoteEnd(60));
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Note(60));
    EXPECT_EQ(card.Play(480), Rendered(*player, 480));
    listener.heard(Dx7, Note(64));
    SendEvent(*player, 0, NoteEnd(60));
    SendEvent(*player, 0, Note(64));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, TheCardIsOpenedAsTheOptionsSay) {
    SetInstrumentSound({.device = "Second card", .volume = 0.5, .frames = 512, .polyphony = 8});
    OpenAndPlay();
    EXPECT_EQ(card.request.device, "Second card");
    EXPECT_EQ(card.request.frames, 512);
    EXPECT_EQ(card.request.rate, 48000.0);
    const OwnedSynthPlayer player = PlayerOfInstruments(48000.0, 8);
    SetPlayerVolume(*player, 0.5);
    SkipEvents(*player); // from the first frame on
    for (int note = 40; note < 60; ++note) {
        listener.heard(Dx7, Note(note));
        SendEvent(*player, 0, Note(note));
    }
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
    SetInstrumentSound({.device = "Second card", .volume = 0.25, .frames = 512, .polyphony = 8});
    SetPlayerVolume(*player, 0.25);
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, AtAnotherRateOfTheCardNothingIsLost) {
    card.hangs = true;
    card.rate = 44100.0;
    listener.outputOpened(Dx7);
    listener.heard(Dx7, Control(Volume, 80));
    listener.heard(Dx7, Note(60));
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    const OwnedSynthPlayer player = PlayerOfInstruments(44100.0);
    SendEvent(*player, 0, Control(Volume, 80));
    SendEvent(*player, 0, Note(60));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, OtherOptionsCountWhenAnOutputIsOpenedNext) {
    OpenAndPlay();
    listener.heard(Dx7, Control(Volume, 80));
    SetInstrumentSound({.device = "", .volume = 1.0, .frames = 1024, .polyphony = 32});
    listener.outputOpened(Reface); // while one is open the card stays as it is
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(Now(), State::Plays);
    EXPECT_EQ(card.opens, 1);
    listener.outputClosed(Reface);
    listener.outputClosed(Dx7);
    listener.outputOpened(Dx7);
    ASSERT_TRUE(card.Until([this] { return card.opens == 2; }));
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_EQ(card.closes, 1);
    EXPECT_EQ(card.request.frames, 1024);
    const OwnedSynthPlayer player = PlayerOfInstruments(48000.0, 32);
    SendEvent(*player, 0, Control(Volume, 80));
    SkipEvents(*player); // from the first frame on
    for (int note = 36; note < 60; ++note) {
        listener.heard(Dx7, Note(note));
        SendEvent(*player, 0, Note(note));
    }
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, TheCardStaysOpenForTheTailAndIsClosedAfterIt) {
    OpenAndPlay();
    listener.heard(Dx7, Note(60));
    card.Play(4800);
    listener.outputClosed(Dx7);
    EXPECT_FALSE(InstrumentOutputIsOpen());
    std::this_thread::sleep_for(milliseconds(1500)); // the key is still down
    EXPECT_EQ(Now(), State::Plays);
    EXPECT_FALSE(IsSilence(card.Play(4800)));
    listener.heard(Dx7, NoteEnd(60));
    EXPECT_TRUE(PlayUntilClosed(1));
    EXPECT_TRUE(UntilState(State::Closed));
    EXPECT_TRUE(InstrumentsAreSilent());
    listener.outputOpened(Dx7);
    EXPECT_TRUE(card.UntilItRuns());
    EXPECT_EQ(card.opens, 2);
}

TEST_F(InstrumentSoundTest, WhoPlaysOneVoiceAfterTheOtherFindsTheCardOpen) {
    OpenAndPlay();
    for (int times = 0; times < 5; ++times) {
        listener.outputClosed(Dx7);
        card.Play(4800);
        std::this_thread::sleep_for(milliseconds(100));
        EXPECT_EQ(Now(), State::Plays);
        listener.outputOpened(Dx7);
    }
    EXPECT_EQ(card.opens, 1);
}

TEST_F(InstrumentSoundTest, AnOutputThatIsOpenKeepsTheCardOpen) {
    OpenAndPlay();
    listener.outputOpened(Reface);
    listener.outputClosed(Dx7);
    const auto end = Clock::now() + milliseconds(1500);
    while (Clock::now() < end) {
        card.Play(480);
        std::this_thread::sleep_for(milliseconds(1));
    }
    EXPECT_EQ(Now(), State::Plays);
    EXPECT_EQ(card.closes, 0);
}

TEST_F(InstrumentSoundTest, WithoutACardEverythingGoesOnInSilence) {
    card.refuses = "there is none";
    listener.outputOpened(Dx7);
    ASSERT_TRUE(UntilState(State::Failed));
    EXPECT_EQ(why, "there is none");
    listener.heard(Dx7, Note(60));
    listener.heard(Dx7, Control(Volume, 80));
    EditBufferOf(Dx7)[134] = 31;
    listener.heard(Dx7, {SynthEventKind::NewVoice});
    EXPECT_TRUE(InstrumentsAreSilent());
    // The next output finds one.
    card.Change([this] { card.refuses.clear(); });
    listener.outputClosed(Dx7);
    listener.outputOpened(Dx7);
    ASSERT_TRUE(card.UntilItRuns());
    ASSERT_TRUE(UntilState(State::Plays));
    EXPECT_TRUE(IsSilence(card.Play(4800))); // the key is not
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Control(Volume, 80));
    Rendered(*player, 4800);
    listener.heard(Dx7, Note(62));
    SendEvent(*player, 0, Note(62));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, ACardThatDoesNotStartIsClosed) {
    card.startFails = true;
    listener.outputOpened(Dx7);
    ASSERT_TRUE(UntilState(State::Failed));
    EXPECT_EQ(why, "it does not start");
    EXPECT_EQ(card.closes, 1);
}

TEST_F(InstrumentSoundTest, ACardThatVanishesIsTriedAgainByTheNextOutput) {
    OpenAndPlay();
    listener.heard(Dx7, Note(60));
    card.Play(4800);
    card.Change([this] { card.runs = false; });
    ASSERT_TRUE(UntilState(State::Failed));
    EXPECT_EQ(why, "the sound card no longer plays");
    EXPECT_EQ(card.closes, 1);
    EXPECT_TRUE(InstrumentsAreSilent());
    card.Change([this] { card.runs = true; });
    listener.outputOpened(Reface);
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_TRUE(IsSilence(card.Play(4800)));
}

TEST_F(InstrumentSoundTest, AKeyThatWasDownWhenTheCardVanishedStaysSilent) {
    OpenAndPlay();
    listener.heard(Dx7, Note(60));
    card.Play(4800);
    card.Change([this] {
        card.runs = false;
        card.hangsAtEnd = true;
    });
    ASSERT_TRUE(card.Until([this] { return card.closes == 1; }));
    listener.outputOpened(Reface); // before the card has been given back
    EXPECT_EQ(Now(), State::Opening);
    card.Change([this] {
        card.runs = true;
        card.hangsAtEnd = false;
    });
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_TRUE(IsSilence(card.Play(4800)));
    EXPECT_EQ(card.opens, 2);
}

TEST_F(InstrumentSoundTest, ACardThatAsksForNothingCountsAsGone) {
    OpenAndPlay();
    EXPECT_TRUE(UntilState(State::Failed));
    EXPECT_EQ(why, "the sound card no longer plays");
}

TEST_F(InstrumentSoundTest, ACardThatHangsHoldsNobodyUp) {
    card.hangs = true;
    auto begin = Clock::now();
    listener.outputOpened(Dx7);
    listener.heard(Dx7, Control(Volume, 80));
    for (int times = 0; times < 3000; ++times) {
        listener.heard(Dx7, Note(60));
        listener.heard(Dx7, {SynthEventKind::NewVoice});
        listener.heard(Dx7, NoteEnd(60));
        listener.heard(Dx7, Control(ModulationWheel, times % 128));
    }
    PanicInstruments();
    InstrumentLevel();
    listener.outputClosed(Dx7);
    EXPECT_LT(Clock::now() - begin, seconds(5));
    ASSERT_TRUE(UntilState(State::Failed));
    EXPECT_EQ(why, "the sound card does not answer");
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    // Of all that counts what stays: voices and controllers.
    const OwnedSynthPlayer player = PlayerOfInstruments();
    SendEvent(*player, 0, Control(Volume, 80));
    SendEvent(*player, 0, Control(ModulationWheel, 2999 % 128));
    EXPECT_TRUE(IsSilence(card.Play(480)));
    Rendered(*player, 480);
    listener.heard(Dx7, Note(62));
    SendEvent(*player, 0, Note(62));
    EXPECT_EQ(card.Play(4800), Rendered(*player, 4800));
}

TEST_F(InstrumentSoundTest, ACardThatHangsIsLeftBehindAtTheEnd) {
    card.hangs = true;
    listener.outputOpened(Dx7);
    ASSERT_TRUE(card.Until([this] { return card.opens == 1; }));
    const auto begin = Clock::now();
    EndInstrumentSound();
    EXPECT_LT(Clock::now() - begin, seconds(3));
    EXPECT_EQ(Now(), State::Closed);
    EXPECT_FALSE(InstrumentOutputIsOpen());
    // Once it answers it is closed and not played.
    card.Change([this] { card.hangs = false; });
    EXPECT_TRUE(card.Until([this] { return card.closes == 1; }));
    EXPECT_EQ(card.starts, 0);
    listener.outputOpened(Dx7);
    EXPECT_TRUE(card.UntilItRuns());
}

TEST_F(InstrumentSoundTest, PanicIsHeardWithinABuffer) {
    OpenAndPlay();
    listener.heard(Dx7, Note(60));
    card.Play(4800);
    PanicInstruments();
    card.Play(256);
    EXPECT_TRUE(IsSilence(card.Play(256)));
    EXPECT_TRUE(InstrumentsAreSilent());
}

TEST_F(InstrumentSoundTest, PanicForgetsTheNotesThatWaitForTheCard) {
    card.hangs = true;
    listener.outputOpened(Dx7);
    listener.heard(Dx7, Note(60));
    PanicInstruments();
    EXPECT_TRUE(InstrumentsAreSilent());
    card.Change([this] { card.hangs = false; });
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_TRUE(IsSilence(card.Play(4800)));
}

TEST_F(InstrumentSoundTest, TheEndClosesTheCard) {
    OpenAndPlay();
    EndInstrumentSound();
    EXPECT_EQ(card.closes, 1);
    EXPECT_EQ(Now(), State::Closed);
    EXPECT_FALSE(InstrumentOutputIsOpen());
    EXPECT_TRUE(IsSilence(card.Play(100)));
}

TEST_F(InstrumentSoundTest, WhatSoundsAtTheEndFadesBeforeTheCardIsClosed) {
    OpenAndPlay();
    listener.heard(Dx7, Note(60));
    card.Play(4800);
    Frames last;
    std::thread asks([&] {
        for (Frames frames = card.Play(256); !frames.empty(); frames = card.Play(256)) {
            last = std::move(frames);
            std::this_thread::sleep_for(milliseconds(5));
        }
    });
    const auto begin = Clock::now();
    EndInstrumentSound();
    EXPECT_LT(Clock::now() - begin, milliseconds(500));
    asks.join();
    ASSERT_FALSE(last.empty());
    EXPECT_EQ(last.back(), 0.0f);
}
