// The one table of MIDI calls: a member for each PortMidi and PortTime call that the program uses,
// under the same names, and what else is asked of them. Implementations: PortMidi itself, the
// built-in instruments, a composite of both, a wrapper that traces any of them and one for a
// session with any of them.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace tonewright {

// An open stream; 0 stands for none.
using MidiStream = std::uintptr_t;
constexpr MidiStream NoMidiStream = 0;

// One message word, its bytes from the lowest upward, and a time stamp in milliseconds. System
// exclusive data come as a run of events of four bytes each.
struct MidiEvent {
    std::uint32_t message = 0;
    std::int32_t timestamp = 0;
};

// The interface of the built-in instruments.
constexpr const char *BuiltinInterface = "Built-in";

struct MidiDeviceInfo {
    const char *interf = ""; // name of the system's interface: "ALSA", or BuiltinInterface
    const char *name = "";
    bool input = false;
    bool output = false;
};

constexpr int MidiClockResolution = 1;            // milliseconds; for Pt_Start
constexpr std::int32_t MidiInputBufferSize = 512; // events
constexpr std::int32_t MidiOutputBufferSize = 0;
// Of every output stream, in milliseconds; at 0 messages go out at once.
extern const std::int32_t MidiLatency;

// Error codes are yes or no: 0 is success.
constexpr int MidiSuccess = 0;
constexpr int MidiFailure = -10000;

// A member that nothing was put into fails: no devices, no stream opens. A stream that is none is
// "ready" and its reads fail, so that whoever polls it comes to an end; an input that has failed
// for good must be silent instead, since a transfer goes on waiting for what it still lacks.
struct MidiApi {
    std::function<int(int resolution)> Pt_Start = [](int) { return MidiFailure; }; // milliseconds
    std::function<int()> Pt_Stop = [] { return MidiFailure; };
    std::function<std::int32_t()> Pt_Time = [] {
        return 0;
    }; // milliseconds since the clock's start

    std::function<int()> Pm_CountDevices = [] { return 0; };
    // nullptr for an index without a device. Valid until RescanDevices.
    std::function<const MidiDeviceInfo *(int device)> Pm_GetDeviceInfo = [](int) {
        return nullptr;
    };
    // Open the device of that index, which must be an input or an output respectively; `bufferSize`
    // is in events, `latency` in milliseconds. On success *stream is open until it is passed to
    // Pm_Close; on failure nothing is open, and *stream is NoMidiStream or what it was.
    std::function<int(MidiStream *stream, int device, std::int32_t bufferSize)> Pm_OpenInput =
        [](MidiStream *, int, std::int32_t) { return MidiFailure; };
    std::function<int(MidiStream *stream, int device, std::int32_t bufferSize,
                      std::int32_t latency)>
        Pm_OpenOutput = [](MidiStream *, int, std::int32_t, std::int32_t) { return MidiFailure; };
    std::function<int(MidiStream stream)> Pm_Close = [](MidiStream) { return MidiFailure; };

    // Writing. `when` is a time of Pt_Time, in milliseconds; at latency 0 it has no effect, and
    // what is written goes out at once.

    // `message` begins with F0 and ends at its first F7, which must be inside it.
    std::function<int(MidiStream stream, std::int32_t when, std::span<const std::uint8_t> message)>
        Pm_WriteSysEx =
            [](MidiStream, std::int32_t, std::span<const std::uint8_t>) { return MidiFailure; };
    // `message`: status and data bytes as in MidiEvent.
    std::function<int(MidiStream stream, std::int32_t when, std::uint32_t message)> Pm_WriteShort =
        [](MidiStream, std::int32_t, std::uint32_t) { return MidiFailure; };
    std::function<int(MidiStream stream, const MidiEvent &event)> Pm_Write = // one event
        [](MidiStream, const MidiEvent &) { return MidiFailure; };
    // Not 0: there is something to read, or to learn that reading fails.
    std::function<int(MidiStream stream)> Pm_Poll = [](MidiStream) { return MidiFailure; };
    // Reads one event. 0: nothing was read; above 0: an event is in *event; below: it failed, and
    // *event is left as it was.
    std::function<int(MidiStream stream, MidiEvent *event)> Pm_Read = [](MidiStream, MidiEvent *) {
        return MidiFailure;
    };

    // Beside the calls of PortMidi.

    // Looks for instruments that were plugged in or out. Only with no stream open.
    std::function<void()> RescanDevices = [] {};
    // True when whoever waits for something is to wait no longer, nor for anything that follows:
    // what is under way ends as it does when nothing comes any more. What it has to send at its end
    // is sent all the same. Empty: never; ask through the function below.
    std::function<bool()> TransferCancelled = {};
};

// The table in use; at first one without devices.
extern MidiApi TheMidi;

inline bool TransferCancelled() {
    return TheMidi.TransferCancelled && TheMidi.TransferCancelled();
}

} // namespace tonewright
