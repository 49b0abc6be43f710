// Links, the reception of messages, the search for ports, and writing.
#include "midi/transport.h"

#include "common/settings.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

#include <array>
#include <numeric>

namespace tonewright {
namespace {

using Bytes = FakeMidi::Bytes;
using Calls = std::vector<std::string>;

// An open input of a device named "In".
struct OpenInput {
    FakeMidi midi;
    int device = midi.AddInput("In");
    MidiStream stream = NoMidiStream;

    OpenInput() {
        TheMidi.Pt_Start(1);
        TheMidi.Pm_OpenInput(&stream, device, 512);
        midi.calls.clear();
    }
    ~OpenInput() {
        TheMidi.Pt_Stop();
        TheMidi.Pm_Close(stream);
    }
};

struct Received {
    int result = -1;
    Bytes bytes;
};

// Whatever is not written keeps the value EE.
Received Receive(MidiStream stream, std::size_t capacity) {
    Bytes buffer(capacity, 0xEE);
    std::size_t count = 999;
    Received received;
    received.result = SysexReceive(stream, buffer, &count);
    EXPECT_LE(count, capacity);
    for (std::size_t place = count; place < capacity; ++place) {
        EXPECT_EQ(buffer[place], 0xEE) << "byte " << place << " is behind the count";
    }
    buffer.resize(std::min(count, capacity));
    received.bytes = buffer;
    return received;
}

// F0, data bytes, F7: `size` in all.
Bytes Dump(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t place = 0; place < size; ++place) {
        bytes[place] = static_cast<std::uint8_t>(place & 0x7F);
    }
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

// Links.

TEST(MidiLink, OpensClockInputAndOutputAndClosesTheOutputBeforeTheInput) {
    FakeMidi midi;
    const int in = midi.AddInput("A"), out = midi.AddOutput("B");
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, true, in, out), 1);
    EXPECT_NE(link.input, NoMidiStream);
    EXPECT_NE(link.output, NoMidiStream);
    MidiLinkClose(link);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pt_Stop()", "Pm_Close(1)", "Pm_Close(0)"}));
    EXPECT_EQ(link.input, NoMidiStream);
    EXPECT_EQ(link.output, NoMidiStream);
}

TEST(MidiLink, OfAnOutputAloneOpensNoInput) {
    FakeMidi midi;
    midi.AddInput("A");
    const int out = midi.AddOutput("B");
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, false, 0, out), 1);
    EXPECT_EQ(link.input, NoMidiStream);
    MidiLinkClose(link);
    EXPECT_EQ(midi.calls,
              (Calls{"Pt_Start(1)", "Pm_OpenOutput(1, 0, 0)", "Pt_Stop()", "Pm_Close(1)"}));
}

TEST(MidiLink, StopsTheClockWhenTheInputDoesNotOpen) {
    FakeMidi midi;
    const int in = midi.AddInput("A"), out = midi.AddOutput("B");
    midi.devices[static_cast<std::size_t>(in)].opens = false;
    MidiLink link = {.input = 77, .output = 78};
    EXPECT_EQ(MidiLinkOpen(link, true, in, out), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pt_Stop()"}));
    EXPECT_EQ(link.input, NoMidiStream);
    EXPECT_EQ(link.output, NoMidiStream);
}

TEST(MidiLink, StopsTheClockThenClosesTheInputWhenTheOutputDoesNotOpen) {
    FakeMidi midi;
    const int in = midi.AddInput("A"), out = midi.AddOutput("B");
    midi.devices[static_cast<std::size_t>(out)].opens = false;
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, true, in, out), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pt_Stop()", "Pm_Close(0)"}));
    EXPECT_EQ(link.input, NoMidiStream);
}

TEST(MidiLink, ToNoDeviceIsTriedAndFails) {
    FakeMidi midi;
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, false, NoMidiDevice, NoMidiDevice), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(-1, 0, 0)", "Pt_Stop()"}));
}

TEST(MidiLink, LooksPastAFailingClock) {
    FakeMidi midi;
    const int out = midi.AddOutput("B");
    midi.clockFails = true;
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, false, NoMidiDevice, out), 1);
    MidiLinkClose(link);
}

TEST(MidiLink, LeavesNoHandleOfAFailedOpen) {
    // A library may write into the handle and fail nevertheless.
    FakeMidi midi;
    TheMidi.Pm_OpenInput = [](MidiStream *stream, int, std::int32_t) {
        *stream = 4711;
        return MidiFailure;
    };
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, true, 0, 0), 0);
    EXPECT_EQ(link.input, NoMidiStream);
}

TEST(MidiLink, ClosedTwiceClosesNoStreamTwice) {
    FakeMidi midi;
    const int out = midi.AddOutput("B");
    MidiLink link;
    ASSERT_EQ(MidiLinkOpen(link, false, NoMidiDevice, out), 1);
    MidiLinkClose(link);
    midi.calls.clear();
    MidiLinkClose(link);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Stop()"}));
}

TEST(MidiLink, WithoutAnyTableOfCallsFails) {
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, true, 0, 0), 0);
    MidiLinkClose(link);
    EXPECT_EQ(link.input, NoMidiStream);
}

// Reception.

TEST(SysexReceive, TakesAWholeMessageAndItsEnd) {
    OpenInput open;
    const Bytes message = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x05, 0x08, 0x01, 0xF7};
    open.midi.SendAt(open.device, message, 3);
    const Received received = Receive(open.stream, SysexBufferSize);
    EXPECT_EQ(received.result, 1);
    EXPECT_EQ(received.bytes, message);
}

TEST(SysexReceive, TakesTheEndAtEachOfTheFourPositions) {
    for (std::size_t size = 5; size <= 8; ++size) {
        OpenInput open;
        open.midi.SendAt(open.device, Dump(size), 0);
        const Received received = Receive(open.stream, 20);
        EXPECT_EQ(received.result, 1);
        EXPECT_EQ(received.bytes, Dump(size));
    }
}

TEST(SysexReceive, TakesADumpWithGapsJustBelowTheWait) {
    OpenInput open;
    SysexWait = 1500;
    const Bytes message = Dump(40);
    for (std::size_t event = 0; event < 10; ++event) {
        open.midi.SendAt(open.device,
                         Bytes(message.begin() + 4 * static_cast<std::ptrdiff_t>(event),
                               message.begin() + 4 * static_cast<std::ptrdiff_t>(event) + 4),
                         static_cast<std::int32_t>(1400 * (event + 1)));
    }
    const Received received = Receive(open.stream, SysexBufferSize);
    EXPECT_EQ(received.result, 1);
    EXPECT_EQ(received.bytes, message);
    EXPECT_EQ(open.midi.now, 14001) << "each event begins the wait anew";
}

TEST(SysexReceive, IsTooLateAtExactlyTheWait) {
    OpenInput open;
    SysexWait = 1500;
    open.midi.SendAt(open.device, {0xF0, 0xF7}, 1500);
    const Received received = Receive(open.stream, 20);
    EXPECT_EQ(received.result, 0);
    EXPECT_TRUE(received.bytes.empty());
    EXPECT_EQ(open.midi.now, 1500);
}

TEST(SysexReceive, IsInTimeAMillisecondEarlier) {
    OpenInput open;
    SysexWait = 1500;
    open.midi.SendAt(open.device, {0xF0, 0xF7}, 1499);
    EXPECT_EQ(Receive(open.stream, 20).result, 1);
}

TEST(SysexReceive, KeepsWhatCameAheadOfATimeOut) {
    OpenInput open;
    SysexWait = 100;
    open.midi.SendAt(open.device, {0xF0, 0x43, 0x10}, 10); // at 11 the wait begins anew
    open.midi.SendAt(open.device, {0x7F, 0xF7}, 111);
    const Received received = Receive(open.stream, 20);
    EXPECT_EQ(received.result, 0);
    EXPECT_EQ(received.bytes, (Bytes{0xF0, 0x43, 0x10, 0x00}));
}

TEST(SysexReceive, DoesNotLookWithAWaitOfZeroOrLess) {
    for (const std::uint32_t wait : {0u, 0xFFFFFFFFu, 0x80000000u}) {
        OpenInput open;
        SysexWait = wait;
        open.midi.SendAt(open.device, {0xF0, 0xF7}, 0);
        open.midi.recordEverything = true;
        EXPECT_EQ(Receive(open.stream, 20).result, 0);
        EXPECT_EQ(open.midi.calls, (Calls{"Pt_Time()", "Pt_Time()"}));
    }
}

TEST(SysexReceive, CountsTheLongestWaitWithoutOverflow) {
    OpenInput open;
    SysexWait = 0x7FFFFFFF;
    open.midi.now = 0x7FFFFF00;
    open.midi.SendAt(open.device, {0xF0, 0xF7}, 0x7FFFFF10);
    EXPECT_EQ(Receive(open.stream, 20).result, 1);
}

TEST(SysexReceive, ReadsTheSettingForEveryEvent) {
    OpenInput open;
    SysexWait = 1500;
    open.midi.SendAt(open.device, {0xF0, 0x01, 0x02, 0x03}, 0);
    const auto read = TheMidi.Pm_Read;
    TheMidi.Pm_Read = [read](MidiStream stream, MidiEvent *event) {
        SysexWait = 10;
        return read(stream, event);
    };
    EXPECT_EQ(Receive(open.stream, 20).result, 0);
    EXPECT_EQ(open.midi.now, 11);
}

TEST(SysexReceive, PollsOnceInEveryMillisecondBetweenLooksAtTheClock) {
    OpenInput open;
    SysexWait = 2;
    open.midi.recordEverything = true;
    EXPECT_EQ(Receive(open.stream, 20).result, 0);
    EXPECT_EQ(open.midi.calls, (Calls{"Pt_Time()", "Pt_Time()", "Pm_Poll(0)", "Pt_Time()",
                                      "Pm_Poll(0)", "Pt_Time()"}));
}

TEST(SysexReceive, DropsTheBytesBehindAnEndInTheFirstPosition) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x030201F0, 0);
    open.midi.SendEventAt(open.device, 0x665544F7, 0);
    const Received received = Receive(open.stream, 20);
    EXPECT_EQ(received.result, 1);
    EXPECT_EQ(received.bytes, (Bytes{0xF0, 0x01, 0x02, 0x03, 0xF7}));
}

TEST(SysexReceive, StoresAnEndThatComesAlone) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x665544F7, 0);
    EXPECT_EQ(Receive(open.stream, 20).bytes, (Bytes{0xF7}));
}

TEST(SysexReceive, BeginsTheNextMessageWithTheNextEvent) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x7F55F7F0, 0); // 55 and 7F are behind the end
    open.midi.SendEventAt(open.device, 0x00F701F0, 0);
    EXPECT_EQ(Receive(open.stream, 20).bytes, (Bytes{0xF0, 0xF7}));
    EXPECT_EQ(Receive(open.stream, 20).bytes, (Bytes{0xF0, 0x01, 0xF7}));
}

TEST(SysexReceive, StoresANoteAheadOfAMessageAsItsBeginning) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x00403C90, 0);
    open.midi.SendAt(open.device, {0xF0, 0x7E, 0x7F, 0x06, 0xF7}, 1);
    EXPECT_EQ(Receive(open.stream, 20).bytes,
              (Bytes{0x90, 0x3C, 0x40, 0x00, 0xF0, 0x7E, 0x7F, 0x06, 0xF7}));
}

TEST(SysexReceive, StoresARealTimeByteInsideAMessage) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x000143F0, 0);
    open.midi.SendEventAt(open.device, 0x000000FE, 0);
    open.midi.SendEventAt(open.device, 0x0000F705, 0);
    EXPECT_EQ(Receive(open.stream, 20).bytes,
              (Bytes{0xF0, 0x43, 0x01, 0x00, 0xFE, 0x00, 0x00, 0x00, 0x05, 0xF7}));
}

TEST(SysexReceive, EndsAtAFullBufferWithoutLookingForTheEnd) {
    OpenInput open;
    open.midi.SendAt(open.device, Dump(24), 0);
    const Received first = Receive(open.stream, 15);
    EXPECT_EQ(first.result, 1);
    EXPECT_EQ(first.bytes, (Bytes{0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
    // The byte in the sixteenth place was read and dropped; the rest is still there.
    EXPECT_EQ(Receive(open.stream, 15).bytes, (Bytes{16, 17, 18, 19, 20, 21, 22, 0xF7}));
}

TEST(SysexReceive, EndsWithTheEndJustBehindAFullBuffer) {
    OpenInput open;
    open.midi.SendAt(open.device, Dump(16), 0);
    const Received received = Receive(open.stream, 15);
    EXPECT_EQ(received.result, 1);
    EXPECT_EQ(received.bytes.size(), 15u);
}

TEST(SysexReceive, FillsABufferOfAnySizeAndNoMore) {
    for (std::size_t capacity = 1; capacity <= 9; ++capacity) {
        OpenInput open;
        open.midi.SendAt(open.device, Bytes(12, 0x01), 0);
        const Received received = Receive(open.stream, capacity);
        EXPECT_EQ(received.result, 1);
        EXPECT_EQ(received.bytes, Bytes(capacity, 0x01));
    }
}

TEST(SysexReceive, WithoutRoomEndsAtOnce) {
    OpenInput open;
    open.midi.recordEverything = true;
    std::size_t count = 99;
    EXPECT_EQ(SysexReceive(open.stream, {}, &count), 1);
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(open.midi.calls.empty());
}

TEST(SysexReceive, PollsAgainWhenNothingCouldBeRead) {
    OpenInput open;
    SysexWait = 50;
    open.midi.lyingPolls = 3;
    open.midi.SendAt(open.device, {0xF0, 0xF7}, 52); // the wait began anew with each false alarm
    const Received received = Receive(open.stream, 20);
    EXPECT_EQ(received.result, 1);
    EXPECT_EQ(received.bytes, (Bytes{0xF0, 0xF7}));
}

TEST(SysexReceive, TakesAFailedReadForAnEvent) {
    OpenInput open;
    open.midi.SendEventAt(open.device, 0x030201F0, 0);
    open.midi.SendEventAt(open.device, 0x000000F7, 0);
    const auto read = TheMidi.Pm_Read;
    int reads = 0;
    TheMidi.Pm_Read = [&](MidiStream stream, MidiEvent *event) {
        return ++reads == 2 ? MidiFailure : read(stream, event);
    };
    EXPECT_EQ(Receive(open.stream, 20).bytes,
              (Bytes{0xF0, 1, 2, 3, 0xF0, 1, 2, 3, 0xF7})); // the event before, once more
}

TEST(SysexReceive, ComesToAnEndWithoutAStream) {
    std::size_t count = 0;
    std::array<std::uint8_t, 15> buffer = {};
    EXPECT_EQ(SysexReceive(NoMidiStream, buffer, &count), 1); // filled up with what is no event
    EXPECT_EQ(count, 15u);
}

TEST(SysexReceive, TakesALongDumpWhole) {
    OpenInput open;
    const Bytes message = Dump(SysexBufferSize);
    open.midi.SendAt(open.device, message, 0);
    EXPECT_EQ(Receive(open.stream, SysexBufferSize).bytes, message);
}

// Names.

struct NameCase {
    const char *name, *pattern;
    int place; // -1: none
};

TEST(NameContains, FindsTheFirstPlaceWithoutRegardToCase) {
    const NameCase cases[] = {
        {"reface DX", "reface DX", 0},
        {"Yamaha REFACE dx MIDI 1", "reface DX", 7},
        {"reface D", "reface DX", -1}, // shorter than the pattern
        {"reface CS and more", "reface DX", -1},
        {"reface refacE DX", "REFACE dx", 7},
        {"aaab", "AAB", 1}, // goes on at the next character after a failed attempt
        {"abababac", "ababac", 2},
        {"USB Audio Device USB Audio Device", "usb audio device", 0},
        {"x", "X", 0},
        {"x", "y", -1},
        {"", "x", -1},
        {"", "", 0},
        {"anything", "", 0},
        {"ends in z", "Z", 8},
        {"[name]", "{NAME}", -1}, // signs have no case
        {"@", "`", -1},
    };
    for (const NameCase &each : cases) {
        const char *found = NameContains(each.name, each.pattern);
        EXPECT_EQ(found ? static_cast<int>(found - each.name) : -1, each.place)
            << '"' << each.pattern << "\" in \"" << each.name << '"';
    }
}

TEST(NameContains, ComparesBytesBeyondAsciiAsTheyAre) {
    const char name[] = "Clavier \xC3\xA9lectrique";
    EXPECT_EQ(NameContains(name, "\xC3\xA9LECTRIQUE"), name + 8);
    EXPECT_EQ(NameContains(name, "\xC3\x89lectrique"), nullptr);
}

TEST(NameContains, OfANameWithFewerThanNineCharactersFindsNoReface) {
    const std::string whole = "reface DX";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(NameContains(whole.substr(0, length).c_str(), "reface DX"), nullptr);
    }
}

// Ports.

TEST(FindPorts, GivesAnInputAndAnOutputOfTheSameNameTheirOwnIndices) {
    FakeMidi midi;
    midi.AddOutput("Piano");
    midi.AddOutput("My Synth");
    midi.AddInput("My Synth");
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"synth", "synth"}, ports));
    EXPECT_EQ(ports.in, 2);
    EXPECT_EQ(ports.out, 1);
}

TEST(FindPorts, TakesTheLastMatch) {
    FakeMidi midi;
    for (int twin = 0; twin < 3; ++twin) {
        midi.AddInput("Synth");
        midi.AddOutput("Synth");
    }
    midi.AddInput("Other");
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"Synth", "Synth"}, ports));
    EXPECT_EQ(ports.in, 4);
    EXPECT_EQ(ports.out, 5);
}

TEST(FindPorts, DoesNotTakeADeviceThatMatchesAsAnInputForAnOutput) {
    FakeMidi midi;
    midi.AddDevice({.name = "Synth", .input = true, .output = true});
    MidiPorts ports;
    EXPECT_FALSE(FindPorts({"Synth", "Synth"}, ports));
    EXPECT_EQ(ports.in, 0);
    EXPECT_EQ(ports.out, -1);
}

TEST(FindPorts, TakesADeviceOfBothKindsForAnOutputWhenItsInputDoesNotMatch) {
    FakeMidi midi;
    midi.AddDevice({.name = "Loud", .input = true, .output = true});
    midi.AddInput("Soft");
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"Soft", "Loud"}, ports));
    EXPECT_EQ(ports.in, 1);
    EXPECT_EQ(ports.out, 0);
}

TEST(FindPorts, PassesOverIndicesWithoutADevice) {
    FakeMidi midi;
    midi.AddDevice({.name = "Synth", .input = true, .absent = true});
    midi.AddInput("Synth");
    midi.AddOutput("Synth");
    midi.AddDevice({.name = "Synth", .output = true, .absent = true});
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"Synth", "Synth"}, ports));
    EXPECT_EQ(ports.in, 1);
    EXPECT_EQ(ports.out, 2);
}

TEST(FindPorts, LeavesWhatItDoesNotFindAsItWas) {
    FakeMidi midi;
    midi.AddOutput("Synth");
    MidiPorts ports{.in = 40, .out = 41};
    EXPECT_FALSE(FindPorts({"Synth", "Synth"}, ports));
    EXPECT_EQ(ports.in, 40);
    EXPECT_EQ(ports.out, 0);
}

TEST(FindPorts, CountsTheDevicesAtEachStep) {
    FakeMidi midi;
    midi.AddInput("A");
    midi.AddOutput("B");
    midi.recordEverything = true;
    MidiPorts ports;
    FindPorts({"A", "B"}, ports);
    EXPECT_EQ(midi.calls, (Calls{"Pm_CountDevices()", "Pm_GetDeviceInfo(0)", "Pm_CountDevices()",
                                 "Pm_GetDeviceInfo(1)", "Pm_CountDevices()"}));
}

TEST(FindPorts, AmongNoDevicesFindsNothing) {
    FakeMidi midi;
    MidiPorts ports;
    EXPECT_FALSE(FindPorts({}, ports));
    EXPECT_EQ(ports, MidiPorts{});
}

TEST(FindPorts, WithEmptyPatternsTakesTheLastOfEach) {
    FakeMidi midi;
    midi.AddInput("A");
    midi.AddOutput("B");
    midi.AddInput("");
    midi.AddOutput("D");
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"", ""}, ports));
    EXPECT_EQ(ports.in, 2);
    EXPECT_EQ(ports.out, 3);
}

// Writing.

struct OpenOutput {
    FakeMidi midi;
    MidiLink link;

    OpenOutput() {
        MidiLinkOpen(link, false, NoMidiDevice, midi.AddOutput("Out"));
        midi.calls.clear();
    }
    ~OpenOutput() { MidiLinkClose(link); }
};

TEST(WriteShort, PutsTheStatusLowestAndStampsThePresentTime) {
    OpenOutput open;
    open.midi.now = 17;
    open.midi.recordEverything = true;
    EXPECT_EQ(WriteShort(open.link.output, 0xB3, 0x7D, 0x01), 0);
    EXPECT_EQ(open.midi.calls, (Calls{"Pt_Time()", "Pm_WriteShort(0, 17, B3 7D 01)"}));
}

TEST(WriteShort, TellsOfAFailedWrite) {
    OpenOutput open;
    open.midi.failingWrites = {0};
    EXPECT_NE(WriteShort(open.link.output, 0x90, 0x3C, 0x40), 0);
    EXPECT_EQ(WriteShort(open.link.output, 0x90, 0x3C, 0x40), 0);
}

TEST(WriteSysex, SendsAWholeMessageWithTheTimeZero) {
    OpenOutput open;
    open.midi.now = 17;
    const Bytes message = {0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7};
    EXPECT_EQ(WriteSysex(open.link.output, message), 0);
    EXPECT_EQ(open.midi.calls, (Calls{"Pm_WriteSysEx(0, 0, F0 7E 00 06 01 F7)"}));
}

TEST(WriteSysex, CutsBehindTheFirstEnd) {
    OpenOutput open;
    const Bytes message = {0xF0, 0x43, 0xF7, 0x99, 0x01, 0xF7};
    EXPECT_EQ(WriteSysex(open.link.output, message), 0);
    EXPECT_EQ(open.midi.WrittenBytes(), (std::vector<Bytes>{{0xF0, 0x43, 0xF7}}));
}

TEST(WriteSysex, RefusesWhatHasNoEndOrNoStart) {
    OpenOutput open;
    for (const Bytes &message :
         {Bytes{}, Bytes{0xF0}, Bytes{0xF0, 0x43, 0x00}, Bytes{0x43, 0x00, 0xF7}, Bytes{0xF7}}) {
        EXPECT_NE(WriteSysex(open.link.output, message), 0);
    }
    EXPECT_TRUE(open.midi.written.empty());
}

TEST(WriteSysex, TellsOfAFailedWrite) {
    OpenOutput open;
    open.midi.allWritesFail = true;
    EXPECT_NE(WriteSysex(open.link.output, Bytes{0xF0, 0xF7}), 0);
}

TEST(TheMidi, IsWithoutDevicesAtFirst) {
    EXPECT_EQ(MidiLatency, 0);
    EXPECT_EQ(TheMidi.Pm_CountDevices(), 0);
    EXPECT_EQ(TheMidi.Pm_GetDeviceInfo(0), nullptr);
    MidiStream stream = NoMidiStream;
    EXPECT_NE(TheMidi.Pm_OpenInput(&stream, 0, 512), 0);
    EXPECT_NE(TheMidi.Pm_OpenOutput(&stream, 0, 0, 0), 0);
    EXPECT_NE(TheMidi.Pm_Close(NoMidiStream), 0);
    EXPECT_NE(WriteShort(NoMidiStream, 0x90, 0x3C, 0x40), 0);
    EXPECT_NE(WriteSysex(NoMidiStream, Bytes{0xF0, 0xF7}), 0);
    EXPECT_NE(TheMidi.Pm_Write(NoMidiStream, {}), 0);
    EXPECT_NE(TheMidi.Pt_Start(1), 0);
    EXPECT_NE(TheMidi.Pt_Stop(), 0);
    TheMidi.RescanDevices();
}

} // namespace
} // namespace tonewright
