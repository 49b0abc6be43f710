// Opens and closes links, receives messages, finds ports by name and writes.
#include "midi/transport.h"

#include "common/settings.h"
#include "common/text.h"
#include "midi/sysex.h"

#include <algorithm>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::int32_t AtOnce = 0;
constexpr int BytesOfEvent = 4;

// When an event that is awaited from now on is too late. In 64 bits: the setting may hold anything.
std::int64_t DeadlineFrom(std::int32_t start) {
    return std::int64_t{start} + static_cast<std::int32_t>(SysexWait);
}

// Polls until there is something to read; false at the deadline, or when the user will not wait.
bool AwaitEvent(MidiStream input) {
    const std::int64_t deadline = DeadlineFrom(TheMidi.Pt_Time());
    while (TheMidi.Pt_Time() < deadline && !TransferCancelled()) {
        if (TheMidi.Pm_Poll(input) != 0) {
            return true;
        }
    }
    return false;
}

bool Contains(const char *name, const char *pattern) {
    return NameContains(name, pattern) != nullptr;
}

} // namespace

int MidiLinkOpen(MidiLink &link, bool withInput, int inputDevice, int outputDevice) {
    link = {};
    TheMidi.Pt_Start(MidiClockResolution);
    if (withInput &&
        TheMidi.Pm_OpenInput(&link.input, inputDevice, MidiInputBufferSize) != MidiSuccess) {
        link.input = NoMidiStream;
        MidiLinkClose(link);
        return 0;
    }
    if (TheMidi.Pm_OpenOutput(&link.output, outputDevice, MidiOutputBufferSize, MidiLatency) !=
        MidiSuccess) {
        link.output = NoMidiStream;
        MidiLinkClose(link);
        return 0;
    }
    return 1;
}

void MidiLinkClose(MidiLink &link) {
    TheMidi.Pt_Stop();
    if (link.output != NoMidiStream) {
        TheMidi.Pm_Close(link.output);
    }
    if (link.input != NoMidiStream) {
        TheMidi.Pm_Close(link.input);
    }
    link = {};
}

LinkFault TryMidiLink(MidiPorts ports) {
    MidiLink link;
    if (ports.out == NoMidiDevice) {
        return LinkFault::NoOutput;
    }
    if (!MidiLinkOpen(link, false, NoMidiDevice, ports.out)) {
        return LinkFault::OutputNotOpened;
    }
    MidiLinkClose(link);
    if (ports.in == NoMidiDevice) {
        return LinkFault::NoInput;
    }
    if (!MidiLinkOpen(link, true, ports.in, ports.out)) {
        return LinkFault::InputNotOpened;
    }
    MidiLinkClose(link);
    return LinkFault::None;
}

int SysexReceive(MidiStream input, std::span<std::uint8_t> buffer, std::size_t *count) {
    *count = 0;
    std::uint8_t last = 0;
    MidiEvent event; // a failed read counts as an event too: the former one once more
    while (*count < buffer.size()) {
        // Every event begins the wait anew.
        if (!AwaitEvent(input)) {
            return 0;
        }
        if (TheMidi.Pm_Read(input, &event) == 0) {
            continue;
        }
        for (int position = 0; position < BytesOfEvent && last != EndOfSysex; ++position) {
            last = static_cast<std::uint8_t>(event.message >> 8 * position);
            if (*count < buffer.size()) {
                buffer[(*count)++] = last;
            }
        }
        if (last == EndOfSysex) {
            return 1;
        }
    }
    return 1;
}

const char *NameContains(const char *name, const char *pattern) {
    const std::string_view where(name ? name : "");
    const std::string_view what(pattern ? pattern : "");
    const auto found = std::search(where.begin(), where.end(), what.begin(), what.end(),
                                   [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
    const auto place = static_cast<std::size_t>(found - where.begin());
    // An empty pattern is found at once, in an empty name too.
    return place < where.size() || what.empty() ? where.data() + place : nullptr;
}

bool FindPorts(const PortNames &names, MidiPorts &ports) {
    bool inputFound = false, outputFound = false;
    for (int device = 0; device < TheMidi.Pm_CountDevices(); ++device) {
        const MidiDeviceInfo *info = TheMidi.Pm_GetDeviceInfo(device);
        if (!info) {
            continue;
        }
        if (info->input && Contains(info->name, names.in)) {
            inputFound = true;
            ports.in = device;
        } else if (info->output && Contains(info->name, names.out)) {
            outputFound = true;
            ports.out = device;
        }
    }
    return inputFound && outputFound;
}

int WriteShort(MidiStream output, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    const std::uint32_t message =
        std::uint32_t{status} | std::uint32_t{data1} << 8 | std::uint32_t{data2} << 16;
    return TheMidi.Pm_WriteShort(output, TheMidi.Pt_Time(), message);
}

int WriteSysex(MidiStream output, std::span<const std::uint8_t> message) {
    const auto end = std::ranges::find(message, EndOfSysex);
    if (end == message.end() || message.front() != StartOfSysex) {
        return MidiFailure;
    }
    const auto length = static_cast<std::size_t>(end - message.begin()) + 1;
    return TheMidi.Pm_WriteSysEx(output, AtOnce, message.first(length));
}

} // namespace tonewright
