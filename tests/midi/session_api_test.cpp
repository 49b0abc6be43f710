// One clock, one note of failures and one question for a whole session.
#include "midi/session_api.h"

#include "common/settings.h"
#include "midi/transport.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

#include <array>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

bool Cancelled = false;

class SessionApi : public testing::Test {
protected:
    void SetUp() override {
        Cancelled = false;
        TheMidi = MakeSessionApi(session);
    }
    void TearDown() override {
        EndSession(session);
        TheMidi = session.inner;
    }

    // Opens a link, sends a message and closes the link.
    void Send() {
        MidiLink link;
        ASSERT_EQ(MidiLinkOpen(link, false, NoMidiDevice, out), 1);
        WriteSysex(link.output, FakeMidi::Bytes{0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7});
        MidiLinkClose(link);
    }
    // Waits for a message; how many milliseconds that took.
    int TimeOfReceiving() {
        MidiLink link;
        EXPECT_EQ(MidiLinkOpen(link, true, in, out), 1);
        std::array<std::uint8_t, 20> buffer;
        std::size_t count = 0;
        const int before = midi.now;
        result = SysexReceive(link.input, buffer, &count);
        MidiLinkClose(link);
        return midi.now - before;
    }

    FakeMidi midi;
    const int in = midi.AddInput("Synth"), out = midi.AddOutput("Synth");
    MidiSession session{.inner = TheMidi, .isCancelled = [] { return Cancelled; }};
    int result = -1; // of receiving
};

TEST_F(SessionApi, ItsClockRunsFromItsBeginningToItsEnd) {
    EXPECT_TRUE(midi.clockRuns);
    midi.now = 17;
    Send();
    EXPECT_EQ(midi.now, 17);
    EXPECT_TRUE(midi.clockRuns);
    Send();
    EndSession(session);
    EXPECT_FALSE(midi.clockRuns);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)", "Pm_Close(1)",
                                 "Pm_OpenOutput(1, 0, 0)", "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)",
                                 "Pm_Close(1)", "Pt_Stop()"}));
}

TEST_F(SessionApi, AnOperationHearsWhetherTheClockStarted) {
    EXPECT_EQ(TheMidi.Pt_Start(1), MidiSuccess);
    EXPECT_EQ(TheMidi.Pt_Stop(), MidiSuccess);
    EndSession(session);
    midi.clockFails = true;
    TheMidi = MakeSessionApi(session);
    EXPECT_NE(TheMidi.Pt_Start(1), MidiSuccess);
}

TEST_F(SessionApi, NotesAWriteOfEachKindThatFails) {
    MidiLink link;
    MidiLinkOpen(link, false, NoMidiDevice, out);
    const std::function<void()> writes[] = {
        [&] {
            TheMidi.Pm_WriteSysEx(link.output, 0, FakeMidi::Bytes{0xF0, 0xF7});
        },
        [&] { TheMidi.Pm_WriteShort(link.output, 0, 0x403C90); },
        [&] {
            TheMidi.Pm_Write(link.output, {0x403C90, 0});
        }};
    for (const auto &write : writes) {
        write();
        EXPECT_FALSE(session.writeFailed);
    }
    for (const auto &write : writes) {
        midi.failingWrites = {midi.writes};
        write();
        EXPECT_TRUE(session.writeFailed);
        write(); // one that succeeds takes nothing back
        EXPECT_TRUE(session.writeFailed);
        session.writeFailed = false;
    }
    MidiLinkClose(link);
}

TEST_F(SessionApi, NothingIsAwaitedAnyMoreOnceItIsCancelled) {
    SysexWait = 1500;
    EXPECT_EQ(TimeOfReceiving(), 1500);
    Cancelled = true;
    EXPECT_EQ(TimeOfReceiving(), 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(SysexWait, 1500u);
}

TEST_F(SessionApi, AWaitEndsWhenItIsCancelled) {
    SysexWait = 600000;
    TheMidi.Pm_Poll = [this](MidiStream stream) {
        Cancelled = midi.now >= 40;
        return session.inner.Pm_Poll(stream);
    };
    EXPECT_EQ(TimeOfReceiving(), 41);
    EXPECT_EQ(result, 0);
}

TEST_F(SessionApi, WhatIsSentGoesOutAllTheSame) {
    Cancelled = true;
    Send();
    EXPECT_EQ(midi.written.size(), 1u);
    EXPECT_FALSE(session.writeFailed);
}

TEST_F(SessionApi, WithoutAQuestionNothingIsCancelled) {
    EndSession(session);
    session.isCancelled = nullptr;
    TheMidi = MakeSessionApi(session);
    EXPECT_FALSE(TransferCancelled());
}

} // namespace
} // namespace tonewright
