// The MIDI table over PortMidi; the only file that includes the library's headers.
//
// Depending on how it was built, the library answers a wrong argument with an error code, or with a
// question on the terminal and the end of the program; so nothing wrong is passed to it.
#include "midi/portmidi_api.h"

#include "common/quiet_library.h"
#include "midi/sysex.h"

#include <portmidi.h>
#include <porttime.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tonewright {
namespace {

static_assert(pmNoError == MidiSuccess && ptNoError == MidiSuccess);
static_assert(sizeof(PmMessage) == sizeof(MidiEvent::message));
static_assert(sizeof(PmTimestamp) == sizeof(MidiEvent::timestamp));

struct Stream {
    PortMidiStream *stream = nullptr; // nullptr: closed, the slot is free
    bool input = false;
    int failedReads = 0; // in a row
};

// After an overflow one read fails, and the next one goes on. An input that fails again is broken,
// its device unplugged: it counts as silent, so that whoever waits for it comes to an end.
constexpr int MostFailedReads = 2;

struct Device {
    bool present = false;
    std::string interf, name;
    MidiDeviceInfo info; // its texts are the two above
};

bool Initialised = false;
std::vector<Device> Devices;
std::vector<Stream> Streams; // a MidiStream is an index plus one

std::string TextOf(const char *text) {
    return text ? text : "";
}

void Initialise() {
    if (Initialised) {
        return;
    }
    KeepAlsaQuiet();
    Pm_Initialize();
    Initialised = true;
    Devices.clear();
    Devices.resize(static_cast<std::size_t>(std::max(0, Pm_CountDevices())));
    for (std::size_t index = 0; index < Devices.size(); ++index) {
        if (const PmDeviceInfo *info = Pm_GetDeviceInfo(static_cast<PmDeviceID>(index))) {
            Device &device = Devices[index];
            device.present = true;
            device.interf = TextOf(info->interf);
            device.name = TextOf(info->name);
            device.info = {.interf = device.interf.c_str(),
                           .name = device.name.c_str(),
                           .input = info->input != 0,
                           .output = info->output != 0};
        }
    }
}

// nullptr for an index without a device.
const MidiDeviceInfo *InfoOf(int index) {
    Initialise();
    if (index < 0 || index >= static_cast<int>(Devices.size()) || !Devices[index].present) {
        return nullptr;
    }
    return &Devices[index].info;
}

// nullptr for a stream that is not open.
Stream *OpenStream(MidiStream stream) {
    const bool exists = stream != NoMidiStream && stream <= Streams.size();
    return exists && Streams[stream - 1].stream ? &Streams[stream - 1] : nullptr;
}

// nullptr for a stream that is not open or goes the other way.
Stream *OpenInputStream(MidiStream stream) {
    Stream *found = OpenStream(stream);
    return found && found->input ? found : nullptr;
}

// The library's stream; nullptr when it is not open or goes the other way.
PortMidiStream *OpenOutputStream(MidiStream stream) {
    const Stream *found = OpenStream(stream);
    return found && !found->input ? found->stream : nullptr;
}

MidiStream KeepStream(PortMidiStream *stream, bool input) {
    const auto free = std::ranges::find(Streams, nullptr, &Stream::stream);
    const auto slot = static_cast<std::size_t>(free - Streams.begin());
    if (slot == Streams.size()) {
        Streams.emplace_back();
    }
    Streams[slot] = {.stream = stream, .input = input};
    return slot + 1;
}

bool AnyStreamOpen() {
    return std::ranges::any_of(Streams, [](const Stream &stream) { return stream.stream; });
}

int OpenInput(MidiStream *stream, int device, std::int32_t bufferSize) {
    *stream = NoMidiStream;
    const MidiDeviceInfo *info = InfoOf(device);
    if (!info || !info->input) {
        return pmInvalidDeviceId;
    }
    PortMidiStream *opened = nullptr;
    const PmError error = Pm_OpenInput(&opened, device, nullptr, bufferSize, nullptr, nullptr);
    if (error != pmNoError || !opened) {
        return error != pmNoError ? error : pmBadPtr;
    }
    *stream = KeepStream(opened, true);
    return MidiSuccess;
}

int OpenOutput(MidiStream *stream, int device, std::int32_t bufferSize, std::int32_t latency) {
    *stream = NoMidiStream;
    const MidiDeviceInfo *info = InfoOf(device);
    if (!info || !info->output) {
        return pmInvalidDeviceId;
    }
    PortMidiStream *opened = nullptr;
    const PmError error =
        Pm_OpenOutput(&opened, device, nullptr, bufferSize, nullptr, nullptr, latency);
    if (error != pmNoError || !opened) {
        return error != pmNoError ? error : pmBadPtr;
    }
    *stream = KeepStream(opened, false);
    return MidiSuccess;
}

int Close(MidiStream stream) {
    Stream *closing = OpenStream(stream);
    if (!closing) {
        return pmBadPtr;
    }
    const PmError error = Pm_Close(closing->stream);
    *closing = {};
    return error;
}

// The library reads on behind the end of a buffer in search of an F7.
int WriteSysEx(MidiStream stream, std::int32_t when, std::span<const std::uint8_t> message) {
    PortMidiStream *output = OpenOutputStream(stream);
    if (!output) {
        return pmBadPtr;
    }
    if (message.empty() || message.front() != StartOfSysex ||
        std::ranges::find(message, EndOfSysex) == message.end()) {
        return pmBadData;
    }
    return Pm_WriteSysEx(output, when, const_cast<unsigned char *>(message.data()));
}

int WriteShortMessage(MidiStream stream, std::int32_t when, std::uint32_t message) {
    PortMidiStream *output = OpenOutputStream(stream);
    return output ? Pm_WriteShort(output, when, static_cast<PmMessage>(message)) : pmBadPtr;
}

int WriteEvent(MidiStream stream, const MidiEvent &event) {
    PortMidiStream *output = OpenOutputStream(stream);
    PmEvent written = {static_cast<PmMessage>(event.message), event.timestamp};
    return output ? Pm_Write(output, &written, 1) : pmBadPtr;
}

int Poll(MidiStream stream) {
    const Stream *input = OpenInputStream(stream);
    if (!input) {
        return pmBadPtr;
    }
    return input->failedReads < MostFailedReads ? Pm_Poll(input->stream) : pmNoData;
}

int Read(MidiStream stream, MidiEvent *event) {
    Stream *input = OpenInputStream(stream);
    if (!input) {
        return pmBadPtr;
    }
    PmEvent read = {};
    const int count = Pm_Read(input->stream, &read, 1);
    input->failedReads = count < 0 ? input->failedReads + 1 : 0;
    if (count > 0) {
        *event = {static_cast<std::uint32_t>(read.message), read.timestamp};
    }
    return count;
}

// The library sees what was plugged in since then only when it begins anew.
void Rescan() {
    if (AnyStreamOpen()) {
        return;
    }
    if (Initialised) {
        Pm_Terminate();
        Initialised = false;
    }
    Initialise();
}

} // namespace

MidiApi MakePortMidiApi() {
    return MidiApi{
        .Pt_Start = [](int resolution) -> int { return Pt_Start(resolution, nullptr, nullptr); },
        .Pt_Stop = []() -> int { return Pt_Stop(); },
        .Pt_Time = []() -> std::int32_t { return Pt_Time(); },
        .Pm_CountDevices =
            [] {
                Initialise();
                return static_cast<int>(Devices.size());
            },
        .Pm_GetDeviceInfo = InfoOf,
        .Pm_OpenInput = OpenInput,
        .Pm_OpenOutput = OpenOutput,
        .Pm_Close = Close,
        .Pm_WriteSysEx = WriteSysEx,
        .Pm_WriteShort = WriteShortMessage,
        .Pm_Write = WriteEvent,
        .Pm_Poll = Poll,
        .Pm_Read = Read,
        .RescanDevices = Rescan,
    };
}

} // namespace tonewright
