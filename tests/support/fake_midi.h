// A MIDI table for tests: devices, answers and failures are scripted, every call is recorded, and
// the clock is simulated, so that a time-out costs nothing.
//
//     FakeMidi midi;
//     const int in = midi.AddInput("reface DX"), out = midi.AddOutput("reface DX");
//     midi.onWrite = [&](const FakeMidi::Message &written) {
//         midi.Send(in, {0xF0, 0x7E, ..., 0xF7}, 5); // five milliseconds later
//     };
//     ... the code under test ...
//     EXPECT_EQ(midi.calls, (std::vector<std::string>{"Pt_Start(1)", "Pm_OpenInput(0, 512)",
//     ...}));
//
// Pm_Poll answers for the present millisecond and then moves Pt_Time on by one: a byte that arrives
// exactly at a deadline is too late. Pt_Start sets the clock to 0.
//
// The test fails at a call with a stream that is not open or goes the other way, at a sysex message
// that does not run from F0 to its first F7, at RescanDevices with a stream open, and at the end
// when a stream is open or the clock runs.
#pragma once

#include "midi/midi_api.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace tonewright {

struct FakeMidi {
    // Takes TheMidi over, and gives it back at the end.
    FakeMidi();
    ~FakeMidi();
    FakeMidi(const FakeMidi &) = delete;
    FakeMidi &operator=(const FakeMidi &) = delete;

    using Bytes = std::vector<std::uint8_t>;

    struct Device {
        std::string name;
        bool input = false, output = false;
        std::string interf = "Fake";
        bool absent = false; // Pm_GetDeviceInfo knows nothing of it
        bool opens = true;
    };
    // Each returns the index of the device.
    int AddDevice(Device device);
    int AddInput(const std::string &name);
    int AddOutput(const std::string &name);
    std::deque<Device> devices; // change them as the test needs

    // Events that arrive at an input. `bytes` are cut into events of four, the last one filled up
    // with zeros; a run of them shares one time.
    void Send(int device, const Bytes &bytes, int afterMilliseconds = 0); // from now on
    void SendAt(int device, const Bytes &bytes, std::int32_t time);       // on the clock
    // One event.
    void SendEventAt(int device, std::uint32_t word, std::int32_t time);

    // What was written, oldest first, failed writes included.
    struct Message {
        int device = 0;
        bool sysex = false;
        std::int32_t when = 0; // the time stamp that was passed
        Bytes bytes;           // of a short message its three bytes
        bool failed = false;
        bool operator==(const Message &) const = default;
    };
    std::vector<Message> written;
    std::vector<Bytes> WrittenBytes() const;      // the bytes alone, of those that did not fail
    std::function<void(const Message &)> onWrite; // after a write that did not fail

    // Calls in their order, each as it would be written, with the device in place of its stream:
    //   "Pt_Start(1)"  "Pt_Stop()"  "Pm_OpenInput(0, 512)"  "Pm_OpenOutput(1, 0, 0)"
    //   "Pm_Close(1)"  "Pm_WriteShort(1, 0, B0 7D 00)"  "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)"
    //   "Pm_Write(1, 17, 90 3C 40)"  "RescanDevices()"; beyond 16 bytes "4104 bytes" is said
    //   instead.
    std::vector<std::string> calls;
    // Also Pt_Time, Pm_Poll, Pm_Read, Pm_CountDevices and Pm_GetDeviceInfo: "Pm_Poll(0)".
    bool recordEverything = false;

    // Failures.
    std::set<int> failingWrites; // numbers of writes, counted from 0 over writes of all kinds
    bool allWritesFail = false;
    int lyingPolls = 0;      // so many polls say that something is there
    int failingReads = 0;    // so many reads fail with an error code
    bool clockFails = false; // Pt_Start and Pt_Stop answer with an error; time goes on all the same

    std::function<void()> onRescan; // when RescanDevices is called: plug something in

    // State.
    std::int32_t now = 0; // milliseconds
    bool clockRuns = false;
    int OpenStreams() const;
    int writes = 0; // of all kinds

private:
    struct Event {
        int device = 0;
        MidiEvent event;
    };
    struct Stream {
        int device = 0;
        bool input = false;
        bool open = false;
    };
    std::vector<Event> arriving;
    std::vector<Stream> streams; // stream n is at n - 1
    std::deque<MidiDeviceInfo> infos;
    MidiApi former;

    void Record(const std::string &call);
    void RecordDetail(const std::string &call);
    Stream *OpenStream(MidiStream stream, bool input, const char *call);
    int Open(MidiStream *stream, int device, bool input);
    int Write(MidiStream stream, std::int32_t when, const Bytes &bytes, bool sysex,
              const char *call);
    std::vector<Event>::iterator DueEvent(int device);
};

} // namespace tonewright
