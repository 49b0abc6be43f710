// Ports, streams and clocks of the built-in instruments, and the rules that PortMidi has for them.
#include "cable.h"

#include <algorithm>
#include <chrono>

namespace tonewright {
namespace {

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto Reface = BuiltinInstrument::Reface;

// How many bytes of a system-exclusive message an event carries: up to F7, four at most.
int BytesOf(std::uint32_t word) {
    int bytes = 1;
    while (bytes < 4 && (word >> 8 * (bytes - 1) & 0xFF) != 0xF7) {
        ++bytes;
    }
    return bytes;
}

TEST(BuiltinPorts, AreAnInputAndAnOutputOfOneNameForEachInstrument) {
    const MidiApi midi = MakeBuiltinInstruments({});
    ASSERT_EQ(midi.Pm_CountDevices(), 6);
    const char *names[] = {"Built-in DX7", "Built-in volca fm", "Built-in reface DX"};
    for (int device = 0; device < 6; ++device) {
        const MidiDeviceInfo *info = midi.Pm_GetDeviceInfo(device);
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->interf, "Built-in");
        EXPECT_STREQ(info->name, names[device / 2]);
        EXPECT_EQ(info->input, device % 2 == 0);
        EXPECT_EQ(info->output, device % 2 == 1);
    }
    EXPECT_EQ(midi.Pm_GetDeviceInfo(-1), nullptr);
    EXPECT_EQ(midi.Pm_GetDeviceInfo(6), nullptr);
    midi.RescanDevices();
    EXPECT_EQ(midi.Pm_CountDevices(), 6);
}

TEST(BuiltinPorts, OpenOnlyInTheirDirectionAndOnce) {
    const MidiApi midi = MakeBuiltinInstruments({});
    MidiStream first = NoMidiStream;
    MidiStream second = NoMidiStream;
    EXPECT_NE(midi.Pm_OpenInput(&first, 1, 512), 0);
    EXPECT_NE(midi.Pm_OpenOutput(&first, 0, 0, 0), 0);
    EXPECT_NE(midi.Pm_OpenInput(&first, -1, 512), 0);
    EXPECT_NE(midi.Pm_OpenInput(&first, 6, 512), 0);
    EXPECT_EQ(first, NoMidiStream);
    EXPECT_EQ(midi.Pm_OpenInput(&first, 0, 512), 0);
    EXPECT_NE(midi.Pm_OpenInput(&second, 0, 512), 0);
    EXPECT_EQ(midi.Pm_Close(first), 0);
    EXPECT_EQ(midi.Pm_OpenInput(&second, 0, 512), 0);
    EXPECT_NE(second, first);
    EXPECT_NE(midi.Pm_Close(first), 0);
}

TEST(BuiltinPorts, StreamsAreCounted) {
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    {
        Cable cable(Reface);
        EXPECT_EQ(OpenBuiltinStreams(), 2);
    }
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

TEST(BuiltinPorts, CallsOnTheWrongStreamFailAndChangeNothing) {
    Cable cable(Reface);
    MidiEvent event{.message = 0x12345678, .timestamp = 9};
    for (const MidiStream stream : {NoMidiStream, MidiStream{999}}) {
        EXPECT_LT(cable.midi.Pm_Poll(stream), 0);
        EXPECT_LT(cable.midi.Pm_Read(stream, &event), 0);
        EXPECT_LT(cable.midi.Pm_WriteShort(stream, 0, 0x03C0), 0);
        EXPECT_LT(cable.midi.Pm_Write(stream, {0x03C0, 0}), 0);
        EXPECT_LT(cable.midi.Pm_WriteSysEx(stream, 0, IdentityRequest), 0);
        EXPECT_LT(cable.midi.Pm_Close(stream), 0);
    }
    EXPECT_LT(cable.midi.Pm_Poll(cable.output), 0);
    EXPECT_LT(cable.midi.Pm_Read(cable.output, &event), 0);
    EXPECT_LT(cable.midi.Pm_WriteShort(cable.input, 0, 0x03C0), 0);
    EXPECT_EQ(event.message, 0x12345678u);
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
    EXPECT_TRUE(cable.Words().empty());
}

TEST(BuiltinPorts, ASysexMessageEndsAtItsFirstF7) {
    Cable cable(Reface);
    EXPECT_EQ(cable.Send(IdentityRequest + Bytes{0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}), 0);
    EXPECT_EQ(cable.Messages().size(), 1u);
    EXPECT_NE(cable.Send({0xF0, 0x7E, 0x00, 0x06, 0x01}), 0) << "none at all";
    EXPECT_NE(cable.Send({}), 0);
    EXPECT_TRUE(cable.Words().empty());
}

TEST(BuiltinPorts, AnInputHearsOnlyWhatIsAnsweredWhileItIsOpen) {
    Cable cable(Reface);
    cable.Send(IdentityRequest);
    cable.midi.Pm_Close(cable.input);
    cable.Send(IdentityRequest);
    ASSERT_EQ(cable.midi.Pm_OpenInput(&cable.input, 4, 512), 0);
    EXPECT_TRUE(cable.Words().empty());
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Messages().size(), 1u);
}

TEST(BuiltinPorts, WhatTheBufferCannotTakeIsLost) {
    Cable cable(Reface);
    for (int i = 0; i < 1000; ++i) {
        cable.Send(VoiceRequest);
    }
    EXPECT_EQ(cable.Words().size(), 512u);
    cable.midi.Pm_Close(cable.input);
    ASSERT_EQ(cable.midi.Pm_OpenInput(&cable.input, 4, 2), 0);
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words().size(), 2u);
}

TEST(SimulatedClock, MovesByOneMillisecondForEachPollAndForNothingElse) {
    Cable cable(Reface);
    EXPECT_EQ(cable.midi.Pt_Time(), 0);
    EXPECT_EQ(cable.midi.Pt_Time(), 0);
    EXPECT_EQ(cable.midi.Pm_Poll(cable.input), 0);
    EXPECT_EQ(cable.midi.Pt_Time(), 1);
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.midi.Pt_Time(), 1);
    EXPECT_GT(cable.midi.Pm_Poll(cable.input), 0);
    EXPECT_EQ(cable.midi.Pt_Time(), 2);
    MidiEvent event;
    EXPECT_GT(cable.midi.Pm_Read(cable.input, &event), 0);
    EXPECT_EQ(event.message, 0x067F7EF0u);
    EXPECT_EQ(event.timestamp, 1);
    EXPECT_EQ(cable.midi.Pt_Time(), 2);
}

TEST(SimulatedClock, ATimeOutCostsNothing) {
    Cable cable(Reface);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 32; ++i) {
        EXPECT_TRUE(cable.Words(1500).empty());
    }
    EXPECT_EQ(cable.midi.Pt_Time(), 32 * 1500);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(SimulatedClock, StartsAtZeroOnlyWhenItDidNotRun) {
    Cable cable(Reface);
    EXPECT_TRUE(BuiltinClockRuns());
    cable.Words(10);
    EXPECT_EQ(cable.midi.Pt_Start(1), 0);
    EXPECT_EQ(cable.midi.Pt_Time(), 10);
    cable.midi.Pt_Stop();
    EXPECT_FALSE(BuiltinClockRuns());
    cable.midi.Pt_Start(1);
    EXPECT_EQ(cable.midi.Pt_Time(), 0);
}

TEST(SimulatedClock, AReadWithNothingThereGivesNothing) {
    Cable cable(Reface);
    MidiEvent event{.message = 5, .timestamp = 6};
    EXPECT_EQ(cable.midi.Pm_Read(cable.input, &event), 0);
    EXPECT_EQ(event.message, 5u);
}

TEST(WallClock, AnAnswerBegins16MillisecondsBehindItsRequestAtThePaceOfALine) {
    constexpr int perByte = 320; // microseconds
    constexpr int millisecond = 1000;
    Cable cable(Reface, false);
    EXPECT_LT(cable.midi.Pt_Time(), 1000);
    const std::int32_t asked = cable.midi.Pt_Time();
    cable.Send(VoiceRequest);
    const std::int32_t sent = cable.midi.Pt_Time();
    const int requestTime = static_cast<int>(VoiceRequest.size()) * perByte;
    int onLine = 16 * millisecond;
    int bytes = 0;
    // An event that is read late holds the next one up until then, and nothing else does.
    for (std::int32_t lastRead = sent; bytes < 241 && cable.midi.Pt_Time() < sent + 5000;) {
        MidiEvent event;
        if (cable.midi.Pm_Read(cable.input, &event) <= 0) {
            continue;
        }
        const int length = BytesOf(event.message);
        bytes += length;
        onLine += length * perByte;
        EXPECT_GE(event.timestamp, asked + (requestTime + onLine) / millisecond);
        EXPECT_LE(event.timestamp, std::max(sent + 1 + onLine / millisecond, lastRead));
        lastRead = cable.midi.Pt_Time();
        EXPECT_LE(event.timestamp, lastRead);
    }
    EXPECT_EQ(bytes, 241);
    EXPECT_TRUE(cable.Words().empty());
}

TEST(WallClock, AWriteLastsAsLongAsItsBytesNeed) {
    Cable cable(Dx7, false);
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::steady_clock::now() - start; };
    Bytes message(500, 0x00); // 160 ms
    message.front() = 0xF0;
    message.back() = 0xF7;
    EXPECT_EQ(cable.Send(message), 0);
    EXPECT_GE(elapsed(), std::chrono::milliseconds(160));
    EXPECT_LT(elapsed(), std::chrono::seconds(5));
}

TEST(SimulatedClock, AWriteTakesNoTime) {
    Cable cable(Dx7);
    const auto start = std::chrono::steady_clock::now();
    Bytes message(100'000, 0x00); // 32 seconds on a line
    message.front() = 0xF0;
    message.back() = 0xF7;
    EXPECT_EQ(cable.Send(message), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(WallClock, TimeGoesOnByItself) {
    Cable cable(Reface, false);
    const std::int32_t start = cable.midi.Pt_Time();
    const auto begin = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(30)) {
    }
    EXPECT_GE(cable.midi.Pt_Time() - start, 29);
}

TEST(WallClock, ALateEventIsLate) {
    Cable cable(Reface, false);
    FaultsOf(Reface).lateByMilliseconds = 600;
    cable.Send(IdentityRequest);
    EXPECT_TRUE(cable.Words(50).empty());
    EXPECT_EQ(cable.Messages(1000), std::vector<Bytes>{IdentityReply});
}

TEST(BuiltinInstruments, AReSetBringsTheFactoryBack) {
    Cable cable(Reface);
    const Bytes memory = MemoryOf(Reface);
    const Bytes voice = EditBufferOf(Reface);
    const Bytes settings = SystemSettingsOf(Reface);
    cable.SendShort(0x04C0);
    cable.SendShort(0x643C90);
    cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x0D, 0x00, 0xF7});
    MemoryOf(Reface).clear();
    FaultsOf(Reface).silent = true;
    ResetBuiltinInstruments();
    EXPECT_EQ(MemoryOf(Reface), memory);
    EXPECT_EQ(EditBufferOf(Reface), voice);
    EXPECT_EQ(SystemSettingsOf(Reface), settings);
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
    EXPECT_TRUE(SoundingNotesOf(Reface).empty());
    EXPECT_FALSE(FaultsOf(Reface).silent);
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_FALSE(BuiltinClockRuns());
}

TEST(BuiltinInstruments, AMemoryOfTheWrongSizeDoesNoHarm) {
    Cable cable(Reface);
    MemoryOf(Reface).clear();
    EditBufferOf(Reface).resize(3);
    SystemSettingsOf(Reface).clear();
    cable.SendShort(0x1FC0);
    cable.Send(VoiceRequest);
    EXPECT_EQ(MemoryOf(Reface).size(), 4800u);
    EXPECT_EQ(SystemSettingsOf(Reface).size(), 32u);
    EXPECT_EQ(cable.Messages().size(), 7u);
}

} // namespace
} // namespace tonewright
