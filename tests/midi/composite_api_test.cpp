// Two MIDI tables as one.
#include "midi/composite_api.h"

#include "midi/transport.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = FakeMidi::Bytes;
using Calls = std::vector<std::string>;

constexpr int AlreadyStarted = -9999; // any number but that of success

// Takes the fake's table, so that a second fake can be made.
MidiApi TakeTable() {
    return std::exchange(TheMidi, MidiApi{});
}

struct Pair {
    FakeMidi first;
    MidiApi firstApi = TakeTable();
    FakeMidi second;
    MidiApi secondApi = TakeTable();

    Pair() { TheMidi = MakeCompositeApi(firstApi, secondApi); }
};

TEST(CompositeApi, ListsTheDevicesOfTheFirstAhead) {
    Pair pair;
    pair.first.AddInput("one");
    pair.first.AddOutput("two");
    pair.second.AddInput("three");
    EXPECT_EQ(TheMidi.Pm_CountDevices(), 3);
    EXPECT_STREQ(TheMidi.Pm_GetDeviceInfo(0)->name, "one");
    EXPECT_STREQ(TheMidi.Pm_GetDeviceInfo(1)->name, "two");
    EXPECT_STREQ(TheMidi.Pm_GetDeviceInfo(2)->name, "three");
    EXPECT_TRUE(TheMidi.Pm_GetDeviceInfo(2)->input);
    EXPECT_EQ(TheMidi.Pm_GetDeviceInfo(3), nullptr);
    EXPECT_EQ(TheMidi.Pm_GetDeviceInfo(-1), nullptr);
}

TEST(CompositeApi, LetsARealPortWinOverTheFirstOfTheSameName) {
    Pair pair;
    pair.first.AddInput("reface DX");
    pair.first.AddOutput("reface DX");
    pair.second.AddInput("reface DX");
    pair.second.AddOutput("reface DX");
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"reface DX", "reface DX"}, ports));
    EXPECT_EQ(ports.in, 2);
    EXPECT_EQ(ports.out, 3);
}

TEST(CompositeApi, CarriesAConversationAcrossBoth) {
    Pair pair;
    const int in = pair.first.AddInput("one");
    pair.second.AddInput("two");
    pair.second.AddOutput("three");
    MidiLink link;
    ASSERT_EQ(MidiLinkOpen(link, true, 0, 2), 1);
    EXPECT_EQ(WriteSysex(link.output, Bytes{0xF0, 0x01, 0xF7}), 0);
    EXPECT_EQ(WriteShort(link.output, 0xC0, 0x05, 0x00), 0);
    EXPECT_EQ(TheMidi.Pm_Write(link.output, {.message = 0x00403C90, .timestamp = 3}), 0);
    pair.first.SendAt(in, {0xF0, 0x02, 0xF7}, 0);
    Bytes buffer(8);
    std::size_t count = 0;
    EXPECT_EQ(SysexReceive(link.input, buffer, &count), 1);
    buffer.resize(count);
    EXPECT_EQ(buffer, (Bytes{0xF0, 0x02, 0xF7}));
    MidiLinkClose(link);
    EXPECT_EQ(pair.first.calls,
              (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pt_Stop()", "Pm_Close(0)"}));
    EXPECT_EQ(pair.second.calls,
              (Calls{"Pt_Start(1)", "Pm_OpenOutput(1, 0, 0)", "Pm_WriteSysEx(1, 0, F0 01 F7)",
                     "Pm_WriteShort(1, 0, C0 05 00)", "Pm_Write(1, 3, 90 3C 40)", "Pt_Stop()",
                     "Pm_Close(1)"}));
}

TEST(CompositeApi, KeepsStreamsOfBothApart) {
    Pair pair;
    pair.first.AddOutput("one");
    pair.second.AddOutput("two");
    MidiStream ofFirst = NoMidiStream, ofSecond = NoMidiStream;
    ASSERT_EQ(TheMidi.Pm_OpenOutput(&ofFirst, 0, 0, 0), 0);
    ASSERT_EQ(TheMidi.Pm_OpenOutput(&ofSecond, 1, 0, 0), 0);
    EXPECT_NE(ofFirst, ofSecond);
    EXPECT_NE(ofFirst, NoMidiStream);
    WriteShort(ofFirst, 0x90, 0x01, 0x01);
    WriteShort(ofSecond, 0x90, 0x02, 0x02);
    TheMidi.Pm_Close(ofSecond);
    TheMidi.Pm_Close(ofFirst);
    EXPECT_EQ(pair.first.WrittenBytes(), (std::vector<Bytes>{{0x90, 0x01, 0x01}}));
    EXPECT_EQ(pair.second.WrittenBytes(), (std::vector<Bytes>{{0x90, 0x02, 0x02}}));
}

TEST(CompositeApi, FailsToOpenWhatEitherDoesNotHave) {
    Pair pair;
    pair.first.AddOutput("one");
    pair.second.AddInput("two");
    for (const int device : {-1, 1, 2, 99}) {
        MidiStream stream = 5;
        EXPECT_NE(TheMidi.Pm_OpenOutput(&stream, device, 0, 0), 0);
        EXPECT_EQ(stream, NoMidiStream);
    }
    MidiStream stream = 5;
    EXPECT_NE(TheMidi.Pm_OpenInput(&stream, 0, 512), 0);
    EXPECT_EQ(stream, NoMidiStream);
}

TEST(CompositeApi, TellsTheTimeOfTheSecond) {
    Pair pair;
    TheMidi.Pt_Start(1);
    pair.first.now = 10;
    pair.second.now = 20;
    EXPECT_EQ(TheMidi.Pt_Time(), 20);
    TheMidi.Pt_Stop();
}

TEST(CompositeApi, TellsTheTimeOfTheFirstWhenTheSecondHasNoClock) {
    FakeMidi first;
    TheMidi = MakeCompositeApi(TakeTable(), MidiApi{});
    EXPECT_EQ(TheMidi.Pt_Start(1), 0);
    first.now = 10;
    EXPECT_EQ(TheMidi.Pt_Time(), 10);
    EXPECT_EQ(TheMidi.Pt_Stop(), 0);
    EXPECT_EQ(TheMidi.Pm_CountDevices(), 0);
}

TEST(CompositeApi, KeepsTheClockOfTheSecondWhenItSaysThatItRunsAlready) {
    Pair pair;
    bool runs = false;
    MidiApi second = pair.secondApi;
    second.Pt_Start = [&](int resolution) {
        return std::exchange(runs, true) ? AlreadyStarted : pair.secondApi.Pt_Start(resolution);
    };
    TheMidi = MakeCompositeApi(pair.firstApi, second);
    EXPECT_EQ(TheMidi.Pt_Start(1), 0);
    TheMidi.Pt_Start(1);
    pair.first.now = 10;
    pair.second.now = 20;
    EXPECT_EQ(TheMidi.Pt_Time(), 20);
    TheMidi.Pt_Stop();
}

TEST(CompositeApi, KeepsTheClockOfTheFirstUntilItIsStopped) {
    Pair pair;
    pair.second.clockFails = true;
    EXPECT_EQ(TheMidi.Pt_Start(1), 0);
    pair.second.clockFails = false;
    EXPECT_EQ(TheMidi.Pt_Start(1), 0);
    pair.first.now = 10;
    pair.second.now = 20;
    EXPECT_EQ(TheMidi.Pt_Time(), 10);
    TheMidi.Pt_Stop();
    EXPECT_EQ(TheMidi.Pt_Start(1), 0);
    pair.first.now = 10;
    pair.second.now = 20;
    EXPECT_EQ(TheMidi.Pt_Time(), 20);
    TheMidi.Pt_Stop();
}

TEST(CompositeApi, RescansBoth) {
    Pair pair;
    TheMidi.RescanDevices();
    EXPECT_EQ(pair.first.calls, (Calls{"RescanDevices()"}));
    EXPECT_EQ(pair.second.calls, (Calls{"RescanDevices()"}));
}

TEST(CompositeApi, FailsOnWhatIsNoStream) {
    TheMidi = MakeCompositeApi(MidiApi{}, MidiApi{});
    MidiEvent event;
    EXPECT_NE(TheMidi.Pm_Close(NoMidiStream), 0);
    EXPECT_NE(TheMidi.Pm_Poll(NoMidiStream), 0);
    EXPECT_NE(TheMidi.Pm_Read(NoMidiStream, &event), 0);
    EXPECT_NE(WriteShort(NoMidiStream, 0x90, 0x3C, 0x40), 0);
}

} // namespace
} // namespace tonewright
