// What is asked of PortMidi when there are devices: the library's functions are replaced by a small
// one that records its calls.
#include "midi/portmidi_api.h"

#include <gtest/gtest.h>
#include <portmidi.h>
#include <porttime.h>

#include <algorithm>
#include <array>
#include <list>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

// The library. Devices 0 (in) and 1 (out); 2 has no record; 3 is neither.
struct Library {
    Calls calls;
    bool initialised = false;
    int count = 4;
    std::array<char, 16> inputName = {"Synth in"};
    PmError openResult = pmNoError;
    bool givesNoStream = false;
    std::list<int> opened; // addresses serve as streams
    std::vector<std::uint8_t> sysex;
    PmError writeResult = pmNoError;
    std::vector<PmEvent> incoming;
    int readResult = 1;
    PmDeviceInfo info = {};
};
Library TheLibrary;

// The call that was made, its stream as the n-th one opened.
std::string With(const char *name, const void *stream) {
    int number = 0;
    for (const int &opened : TheLibrary.opened) {
        ++number;
        if (&opened == stream) {
            return std::string(name) + " " + std::to_string(number);
        }
    }
    return std::string(name) + " of a wrong stream";
}

PmError OpenStream(PortMidiStream **stream) {
    *stream = nullptr;
    if (TheLibrary.openResult == pmNoError && !TheLibrary.givesNoStream) {
        *stream = &TheLibrary.opened.emplace_back();
    }
    return TheLibrary.openResult;
}

} // namespace

extern "C" {

PmError Pm_Initialize() {
    TheLibrary.calls.emplace_back("initialise");
    TheLibrary.initialised = true;
    return pmNoError;
}

PmError Pm_Terminate() {
    TheLibrary.calls.emplace_back("terminate");
    TheLibrary.initialised = false;
    TheLibrary.inputName = {"gone"};
    return pmNoError;
}

int Pm_CountDevices() {
    EXPECT_TRUE(TheLibrary.initialised);
    return TheLibrary.count;
}

const PmDeviceInfo *Pm_GetDeviceInfo(PmDeviceID device) {
    EXPECT_TRUE(TheLibrary.initialised);
    EXPECT_TRUE(device >= 0 && device < TheLibrary.count);
    switch (device) {
    case 0:
        TheLibrary.info = {1, "Fake", TheLibrary.inputName.data(), 1, 0, 0};
        return &TheLibrary.info;
    case 1:
        TheLibrary.info = {1, nullptr, nullptr, 0, 1, 0};
        return &TheLibrary.info;
    case 3:
        TheLibrary.info = {1, "Fake", "Neither", 0, 0, 0};
        return &TheLibrary.info;
    default:
        return nullptr;
    }
}

PmError Pm_OpenInput(PortMidiStream **stream, PmDeviceID device, void *driverInfo,
                     int32_t bufferSize, PmTimeProcPtr timeProcedure, void *timeInfo) {
    EXPECT_TRUE(TheLibrary.initialised);
    EXPECT_EQ(device, 0);
    EXPECT_EQ(driverInfo, nullptr);
    EXPECT_EQ(timeProcedure, nullptr);
    EXPECT_EQ(timeInfo, nullptr);
    TheLibrary.calls.push_back("open input " + std::to_string(bufferSize));
    return OpenStream(stream);
}

PmError Pm_OpenOutput(PortMidiStream **stream, PmDeviceID device, void *driverInfo,
                      int32_t bufferSize, PmTimeProcPtr timeProcedure, void *timeInfo,
                      int32_t latency) {
    EXPECT_TRUE(TheLibrary.initialised);
    EXPECT_EQ(device, 1);
    EXPECT_EQ(driverInfo, nullptr);
    EXPECT_EQ(timeProcedure, nullptr);
    EXPECT_EQ(timeInfo, nullptr);
    TheLibrary.calls.push_back("open output " + std::to_string(bufferSize) + " " +
                               std::to_string(latency));
    return OpenStream(stream);
}

PmError Pm_Close(PortMidiStream *stream) {
    TheLibrary.calls.push_back(With("close", stream));
    return pmNoError;
}

PmError Pm_WriteSysEx(PortMidiStream *stream, PmTimestamp when, unsigned char *message) {
    TheLibrary.calls.push_back(With("sysex", stream) + " at " + std::to_string(when));
    unsigned char *end = message;
    while (*end++ != 0xF7) { // as the library does: the sanitizer sees it run over
    }
    TheLibrary.sysex.assign(message, end);
    return TheLibrary.writeResult;
}

PmError Pm_WriteShort(PortMidiStream *stream, PmTimestamp when, PmMessage message) {
    TheLibrary.calls.push_back(With("short", stream) + " at " + std::to_string(when) + " " +
                               std::to_string(static_cast<std::uint32_t>(message)));
    return TheLibrary.writeResult;
}

PmError Pm_Write(PortMidiStream *stream, PmEvent *events, int32_t length) {
    EXPECT_EQ(length, 1);
    TheLibrary.calls.push_back(With("event", stream) + " at " + std::to_string(events->timestamp) +
                               " " + std::to_string(static_cast<std::uint32_t>(events->message)));
    return TheLibrary.writeResult;
}

PmError Pm_Poll(PortMidiStream *stream) {
    TheLibrary.calls.push_back(With("poll", stream));
    return TheLibrary.incoming.empty() ? pmNoData : pmGotData;
}

int Pm_Read(PortMidiStream *stream, PmEvent *buffer, int32_t length) {
    EXPECT_EQ(length, 1);
    TheLibrary.calls.push_back(With("read", stream));
    if (TheLibrary.readResult == 1 && !TheLibrary.incoming.empty()) {
        *buffer = TheLibrary.incoming.front();
        TheLibrary.incoming.erase(TheLibrary.incoming.begin());
        return 1;
    }
    return TheLibrary.incoming.empty() ? 0 : TheLibrary.readResult;
}

PtError Pt_Start(int resolution, PtCallback *callback, void *userData) {
    EXPECT_EQ(resolution, 1);
    EXPECT_EQ(callback, nullptr);
    EXPECT_EQ(userData, nullptr);
    TheLibrary.calls.emplace_back("start");
    return ptAlreadyStarted;
}

PtError Pt_Stop() {
    TheLibrary.calls.emplace_back("stop");
    return ptNoError;
}

PtTimestamp Pt_Time() {
    return 4711;
}

} // extern "C"

namespace tonewright {
namespace {

struct Opened {
    MidiApi api = MakePortMidiApi();
    MidiStream input = NoMidiStream, output = NoMidiStream;

    Opened() {
        EXPECT_EQ(api.Pm_OpenInput(&input, 0, 512), 0);
        EXPECT_EQ(api.Pm_OpenOutput(&output, 1, 0, 0), 0);
        EXPECT_NE(input, output);
        TheLibrary.calls.clear();
    }
};

TEST(PortMidiDevices, AreListedAsTheLibraryListsThem) {
    const MidiApi api = MakePortMidiApi();
    EXPECT_TRUE(TheLibrary.calls.empty()) << "the library wakes up when it is needed";
    EXPECT_EQ(api.Pm_CountDevices(), 4);
    EXPECT_EQ(api.Pm_CountDevices(), 4);
    EXPECT_EQ(TheLibrary.calls, (Calls{"initialise"}));
    const MidiDeviceInfo *input = api.Pm_GetDeviceInfo(0), *output = api.Pm_GetDeviceInfo(1);
    ASSERT_TRUE(input && output);
    EXPECT_STREQ(input->name, "Synth in");
    EXPECT_STREQ(input->interf, "Fake");
    EXPECT_TRUE(input->input);
    EXPECT_FALSE(input->output);
    EXPECT_STREQ(output->name, "") << "a device without a name";
    EXPECT_STREQ(output->interf, "");
    EXPECT_FALSE(output->input);
    EXPECT_TRUE(output->output);
    EXPECT_EQ(api.Pm_GetDeviceInfo(2), nullptr);
    EXPECT_EQ(api.Pm_GetDeviceInfo(4), nullptr);
    EXPECT_EQ(api.Pm_GetDeviceInfo(-1), nullptr);
}

TEST(PortMidiDevices, AreOpenedAndClosedWithTheArgumentsOfTheCall) {
    const MidiApi api = MakePortMidiApi();
    MidiStream input = NoMidiStream, output = NoMidiStream;
    EXPECT_EQ(api.Pm_OpenInput(&input, 0, MidiInputBufferSize), 0);
    EXPECT_EQ(api.Pm_OpenOutput(&output, 1, MidiOutputBufferSize, MidiLatency), 0);
    EXPECT_EQ(api.Pm_Close(output), 0);
    EXPECT_EQ(api.Pm_Close(input), 0);
    EXPECT_EQ(TheLibrary.calls,
              (Calls{"initialise", "open input 512", "open output 0 0", "close 2", "close 1"}));
}

TEST(PortMidiDevices, OfTheOtherDirectionAreNotEvenTried) {
    const MidiApi api = MakePortMidiApi();
    MidiStream stream = 5;
    for (const int device : {1, 2, 3, 4, -1}) {
        EXPECT_NE(api.Pm_OpenInput(&stream, device, 512), 0);
        EXPECT_EQ(stream, NoMidiStream);
    }
    for (const int device : {0, 2, 3, 4, -1}) {
        EXPECT_NE(api.Pm_OpenOutput(&stream, device, 0, 0), 0);
    }
    EXPECT_EQ(TheLibrary.calls, (Calls{"initialise"}));
}

TEST(PortMidiDevices, ThatDoNotOpenLeaveNoStream) {
    const MidiApi api = MakePortMidiApi();
    TheLibrary.openResult = pmHostError;
    MidiStream stream = 5;
    EXPECT_EQ(api.Pm_OpenInput(&stream, 0, 512), pmHostError);
    EXPECT_EQ(stream, NoMidiStream);
    TheLibrary.openResult = pmNoError;
    TheLibrary.givesNoStream = true;
    EXPECT_NE(api.Pm_OpenOutput(&stream, 1, 0, 0), 0);
    EXPECT_EQ(stream, NoMidiStream);
}

TEST(PortMidiStreams, CarryMessagesAndTheirTimes) {
    Opened open;
    const std::vector<std::uint8_t> message = {0xF0, 0x43, 0x01, 0xF7};
    EXPECT_EQ(open.api.Pm_WriteSysEx(open.output, 0, message), 0);
    EXPECT_EQ(TheLibrary.sysex, message);
    EXPECT_EQ(open.api.Pm_WriteShort(open.output, 7, 0x407F90), 0);
    EXPECT_EQ(open.api.Pm_Write(open.output, {.message = 0x90, .timestamp = 9}), 0);
    EXPECT_EQ(TheLibrary.calls,
              (Calls{"sysex 2 at 0", "short 2 at 7 4226960", "event 2 at 9 144"}));
    TheLibrary.writeResult = pmBufferOverflow;
    EXPECT_EQ(open.api.Pm_WriteSysEx(open.output, 0, message), pmBufferOverflow);
    EXPECT_EQ(open.api.Pm_WriteShort(open.output, 7, 0x90), pmBufferOverflow);
    EXPECT_EQ(open.api.Pm_Write(open.output, {}), pmBufferOverflow);
}

TEST(PortMidiStreams, GiveEventsOneByOne) {
    Opened open;
    MidiEvent event = {.message = 1, .timestamp = 2};
    EXPECT_EQ(open.api.Pm_Poll(open.input), 0);
    EXPECT_EQ(open.api.Pm_Read(open.input, &event), 0);
    EXPECT_EQ(event.message, 1u);
    TheLibrary.incoming = {{static_cast<PmMessage>(0xF7030201), 33}};
    EXPECT_NE(open.api.Pm_Poll(open.input), 0);
    EXPECT_EQ(open.api.Pm_Read(open.input, &event), 1);
    EXPECT_EQ(event.message, 0xF7030201u);
    EXPECT_EQ(event.timestamp, 33);
}

TEST(PortMidiStreams, LeaveTheEventAloneWhenReadingFails) {
    Opened open;
    TheLibrary.incoming = {{0, 0}};
    TheLibrary.readResult = pmBufferOverflow;
    MidiEvent event = {.message = 1, .timestamp = 2};
    EXPECT_EQ(open.api.Pm_Read(open.input, &event), pmBufferOverflow);
    EXPECT_EQ(event.message, 1u);
}

TEST(PortMidiStreams, GoOnAfterOneReadHasFailed) {
    Opened open;
    TheLibrary.incoming = {{1, 0}, {2, 0}, {3, 0}};
    MidiEvent event;
    for (const PmMessage expected : {1, 2}) {
        TheLibrary.readResult = pmBufferOverflow;
        EXPECT_LT(open.api.Pm_Read(open.input, &event), 0);
        EXPECT_NE(open.api.Pm_Poll(open.input), 0);
        TheLibrary.readResult = 1;
        EXPECT_EQ(open.api.Pm_Read(open.input, &event), 1);
        EXPECT_EQ(static_cast<PmMessage>(event.message), expected);
    }
}

TEST(PortMidiStreams, CountAsSilentWhenReadsGoOnFailing) {
    Opened open;
    TheLibrary.incoming = {{1, 0}};
    TheLibrary.readResult = pmHostError;
    MidiEvent event;
    EXPECT_NE(open.api.Pm_Poll(open.input), 0);
    EXPECT_LT(open.api.Pm_Read(open.input, &event), 0);
    EXPECT_LT(open.api.Pm_Read(open.input, &event), 0);
    EXPECT_EQ(open.api.Pm_Poll(open.input), 0);
    // Opened anew, it is heard again.
    TheLibrary.readResult = 1;
    open.api.Pm_Close(open.input);
    EXPECT_EQ(open.api.Pm_OpenInput(&open.input, 0, 512), 0);
    EXPECT_NE(open.api.Pm_Poll(open.input), 0);
}

TEST(PortMidiStreams, GetNoMessageWithoutItsStartOrEnd) {
    Opened open;
    using Bytes = std::vector<std::uint8_t>;
    for (const Bytes &message : {Bytes{}, Bytes{0xF0, 0x01}, Bytes{0x01, 0xF7}}) {
        EXPECT_NE(open.api.Pm_WriteSysEx(open.output, 0, message), 0);
    }
    EXPECT_TRUE(TheLibrary.calls.empty());
    // Exactly as long as the message: whatever reads on behind F7 leaves the block.
    const Bytes exact = {0xF0, 0xF7};
    EXPECT_EQ(open.api.Pm_WriteSysEx(open.output, 0, exact), 0);
}

TEST(PortMidiStreams, OfTheOtherDirectionAreRefused) {
    Opened open;
    MidiEvent event;
    EXPECT_NE(open.api.Pm_Poll(open.output), 0);
    EXPECT_NE(open.api.Pm_Read(open.output, &event), 0);
    EXPECT_NE(open.api.Pm_Write(open.input, event), 0);
    EXPECT_NE(open.api.Pm_WriteShort(open.input, 0, 0x90), 0);
    EXPECT_NE(open.api.Pm_WriteSysEx(open.input, 0, std::array<std::uint8_t, 2>{0xF0, 0xF7}), 0);
    EXPECT_TRUE(TheLibrary.calls.empty());
}

TEST(PortMidiStreams, AreClosedOnce) {
    Opened open;
    EXPECT_EQ(open.api.Pm_Close(open.input), 0);
    EXPECT_NE(open.api.Pm_Close(open.input), 0);
    EXPECT_NE(open.api.Pm_Poll(open.input), 0);
    EXPECT_EQ(TheLibrary.calls, (Calls{"close 1"}));
}

TEST(PortMidiStreams, TakeTheFirstFreePlace) {
    Opened open;
    open.api.Pm_Close(open.input);
    MidiStream again = NoMidiStream;
    EXPECT_EQ(open.api.Pm_OpenInput(&again, 0, 512), 0);
    EXPECT_EQ(again, open.input);
    EXPECT_EQ(open.api.Pm_WriteShort(open.output, 1, 0x90), 0) << "the other one stays";
    EXPECT_EQ(TheLibrary.calls.back(), "short 2 at 1 144");
}

TEST(RescanDevices, EndsTheLibraryAndBeginsAnew) {
    const MidiApi api = MakePortMidiApi();
    EXPECT_EQ(api.Pm_CountDevices(), 4);
    TheLibrary.count = 1;
    EXPECT_EQ(api.Pm_CountDevices(), 4) << "what is plugged in is seen only by a rescan";
    api.RescanDevices();
    EXPECT_EQ(api.Pm_CountDevices(), 1);
    EXPECT_STREQ(api.Pm_GetDeviceInfo(0)->name, "gone");
    EXPECT_EQ(TheLibrary.calls, (Calls{"initialise", "terminate", "initialise"}));
}

TEST(RescanDevices, AsTheFirstCallOnlyBegins) {
    MakePortMidiApi().RescanDevices();
    EXPECT_EQ(TheLibrary.calls, (Calls{"initialise"}));
}

TEST(RescanDevices, WithAStreamOpenDoesNothing) {
    Opened open;
    open.api.Pm_Close(open.input);
    TheLibrary.calls.clear();
    open.api.RescanDevices();
    EXPECT_TRUE(TheLibrary.calls.empty());
    EXPECT_STREQ(open.api.Pm_GetDeviceInfo(0)->name, "Synth in");
    open.api.Pm_Close(open.output);
    open.api.RescanDevices();
    EXPECT_EQ(TheLibrary.calls, (Calls{"close 2", "terminate", "initialise"}));
}

TEST(PortMidiClock, IsThatOfTheLibrary) {
    const MidiApi api = MakePortMidiApi();
    EXPECT_EQ(api.Pt_Start(1), ptAlreadyStarted);
    EXPECT_EQ(api.Pt_Time(), 4711);
    EXPECT_EQ(api.Pt_Stop(), 0);
    EXPECT_EQ(TheLibrary.calls, (Calls{"start", "stop"}));
}

} // namespace
} // namespace tonewright
