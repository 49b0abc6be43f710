// A MIDI table for tests: plays a script, records every call, and simulates the clock.
#include "support/fake_midi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace tonewright {

namespace {

constexpr int BadStream = -9995;
constexpr int BadDevice = -9999;
constexpr std::size_t BytesShown = 16;

std::string InHex(const FakeMidi::Bytes &bytes) {
    if (bytes.size() > BytesShown) {
        return std::to_string(bytes.size()) + " bytes";
    }
    std::string text;
    for (const std::uint8_t byte : bytes) {
        std::array<char, 4> hex;
        std::snprintf(hex.data(), hex.size(), "%s%02X", text.empty() ? "" : " ", byte);
        text += hex.data();
    }
    return text;
}

// "name(1, 2, 3)"
std::string CallText(const char *name, std::initializer_list<std::string> arguments) {
    std::string text = std::string(name) + "(";
    const char *separator = "";
    for (const std::string &argument : arguments) {
        text += separator + argument;
        separator = ", ";
    }
    return text + ")";
}

FakeMidi::Bytes BytesOfShort(std::uint32_t message) {
    return {static_cast<std::uint8_t>(message), static_cast<std::uint8_t>(message >> 8),
            static_cast<std::uint8_t>(message >> 16)};
}

} // namespace

FakeMidi::FakeMidi() : former(std::move(TheMidi)) {
    const auto number = [](auto value) { return std::to_string(value); };
    TheMidi = MidiApi{
        .Pt_Start =
            [this, number](int resolution) {
                Record(CallText("Pt_Start", {number(resolution)}));
                now = 0;
                clockRuns = true;
                return clockFails ? MidiFailure : MidiSuccess;
            },
        .Pt_Stop =
            [this] {
                Record("Pt_Stop()");
                clockRuns = false;
                return clockFails ? MidiFailure : MidiSuccess;
            },
        .Pt_Time =
            [this] {
                RecordDetail("Pt_Time()");
                return now;
            },
        .Pm_CountDevices =
            [this] {
                RecordDetail("Pm_CountDevices()");
                return static_cast<int>(devices.size());
            },
        .Pm_GetDeviceInfo = [this, number](int index) -> const MidiDeviceInfo * {
            RecordDetail(CallText("Pm_GetDeviceInfo", {number(index)}));
            if (index < 0 || index >= static_cast<int>(devices.size()) || devices[index].absent) {
                return nullptr;
            }
            const Device &device = devices[index];
            infos.resize(std::max(infos.size(), devices.size()));
            infos[index] = {.interf = device.interf.c_str(),
                            .name = device.name.c_str(),
                            .input = device.input,
                            .output = device.output};
            return &infos[index];
        },
        .Pm_OpenInput =
            [this, number](MidiStream *stream, int device, std::int32_t bufferSize) {
                Record(CallText("Pm_OpenInput", {number(device), number(bufferSize)}));
                return Open(stream, device, true);
            },
        .Pm_OpenOutput =
            [this, number](MidiStream *stream, int device, std::int32_t bufferSize,
                           std::int32_t latency) {
                Record(CallText("Pm_OpenOutput",
                                {number(device), number(bufferSize), number(latency)}));
                return Open(stream, device, false);
            },
        .Pm_Close =
            [this, number](MidiStream stream) {
                if (stream < 1 || stream > streams.size() || !streams[stream - 1].open) {
                    ADD_FAILURE() << "Pm_Close of a stream that is not open";
                    return BadStream;
                }
                Stream &closing = streams[stream - 1];
                Record(CallText("Pm_Close", {number(closing.device)}));
                closing.open = false;
                if (closing.input) {
                    // What was not read is lost with its stream.
                    std::erase_if(arriving, [&](const Event &event) {
                        return event.device == closing.device && event.event.timestamp <= now;
                    });
                }
                return MidiSuccess;
            },
        .Pm_WriteSysEx =
            [this](MidiStream stream, std::int32_t when, std::span<const std::uint8_t> message) {
                return Write(stream, when, Bytes(message.begin(), message.end()), true,
                             "Pm_WriteSysEx");
            },
        .Pm_WriteShort =
            [this](MidiStream stream, std::int32_t when, std::uint32_t message) {
                EXPECT_EQ(message >> 24, 0u) << "a short message has three bytes";
                return Write(stream, when, BytesOfShort(message), false, "Pm_WriteShort");
            },
        .Pm_Write =
            [this](MidiStream stream, const MidiEvent &event) {
                return Write(stream, event.timestamp, BytesOfShort(event.message), false,
                             "Pm_Write");
            },
        .Pm_Poll =
            [this, number](MidiStream stream) {
                const Stream *reading = OpenStream(stream, true, "Pm_Poll");
                if (!reading) {
                    return BadStream;
                }
                RecordDetail(CallText("Pm_Poll", {number(reading->device)}));
                int ready = DueEvent(reading->device) != arriving.end();
                if (!ready && lyingPolls > 0) {
                    --lyingPolls;
                    ready = 1;
                }
                ++now;
                return ready;
            },
        .Pm_Read =
            [this, number](MidiStream stream, MidiEvent *event) {
                const Stream *reading = OpenStream(stream, true, "Pm_Read");
                if (!reading) {
                    return BadStream;
                }
                RecordDetail(CallText("Pm_Read", {number(reading->device)}));
                if (failingReads > 0) {
                    --failingReads;
                    return MidiFailure;
                }
                const auto due = DueEvent(reading->device);
                if (due == arriving.end()) {
                    return 0;
                }
                *event = due->event;
                arriving.erase(due);
                return 1;
            },
        .RescanDevices =
            [this] {
                Record("RescanDevices()");
                EXPECT_EQ(OpenStreams(), 0) << "RescanDevices with a stream open";
                if (onRescan) {
                    onRescan();
                }
            },
    };
}

FakeMidi::~FakeMidi() {
    EXPECT_EQ(OpenStreams(), 0) << "a stream is still open";
    EXPECT_FALSE(clockRuns) << "the clock still runs";
    TheMidi = std::move(former);
}

int FakeMidi::AddDevice(Device device) {
    devices.push_back(std::move(device));
    return static_cast<int>(devices.size()) - 1;
}

int FakeMidi::AddInput(const std::string &name) {
    return AddDevice({.name = name, .input = true});
}

int FakeMidi::AddOutput(const std::string &name) {
    return AddDevice({.name = name, .output = true});
}

void FakeMidi::Send(int device, const Bytes &bytes, int afterMilliseconds) {
    SendAt(device, bytes, now + afterMilliseconds);
}

void FakeMidi::SendAt(int device, const Bytes &bytes, std::int32_t time) {
    for (std::size_t start = 0; start < bytes.size(); start += 4) {
        std::uint32_t word = 0;
        for (std::size_t place = start; place < std::min(start + 4, bytes.size()); ++place) {
            word |= std::uint32_t{bytes[place]} << 8 * (place - start);
        }
        SendEventAt(device, word, time);
    }
}

void FakeMidi::SendEventAt(int device, std::uint32_t word, std::int32_t time) {
    // In the order of time, and of the script within a millisecond.
    const auto later = std::ranges::find_if(
        arriving, [&](const Event &event) { return event.event.timestamp > time; });
    arriving.insert(later, {device, {.message = word, .timestamp = time}});
}

std::vector<FakeMidi::Bytes> FakeMidi::WrittenBytes() const {
    std::vector<Bytes> all;
    for (const Message &message : written) {
        if (!message.failed) {
            all.push_back(message.bytes);
        }
    }
    return all;
}

int FakeMidi::OpenStreams() const {
    return static_cast<int>(std::ranges::count(streams, true, &Stream::open));
}

void FakeMidi::Record(const std::string &call) {
    calls.push_back(call);
}

void FakeMidi::RecordDetail(const std::string &call) {
    if (recordEverything) {
        calls.push_back(call);
    }
}

FakeMidi::Stream *FakeMidi::OpenStream(MidiStream stream, bool input, const char *call) {
    if (stream < 1 || stream > streams.size() || !streams[stream - 1].open) {
        ADD_FAILURE() << call << " with a stream that is not open";
        return nullptr;
    }
    if (streams[stream - 1].input != input) {
        ADD_FAILURE() << call << " with a stream of the other direction";
        return nullptr;
    }
    return &streams[stream - 1];
}

int FakeMidi::Open(MidiStream *stream, int device, bool input) {
    const bool exists = device >= 0 && device < static_cast<int>(devices.size());
    const bool isOpen = std::ranges::any_of(streams, [&](const Stream &other) {
        return other.open && other.device == device && other.input == input;
    });
    if (!exists || isOpen || !(input ? devices[device].input : devices[device].output)) {
        return BadDevice;
    }
    if (!devices[device].opens) {
        return MidiFailure;
    }
    streams.push_back({.device = device, .input = input, .open = true});
    *stream = streams.size();
    return MidiSuccess;
}

int FakeMidi::Write(MidiStream stream, std::int32_t when, const Bytes &bytes, bool sysex,
                    const char *call) {
    const Stream *writing = OpenStream(stream, false, call);
    if (!writing) {
        return BadStream;
    }
    if (sysex) {
        const bool whole = !bytes.empty() && bytes.front() == 0xF0 &&
                           std::ranges::find(bytes, 0xF7) == bytes.end() - 1;
        EXPECT_TRUE(whole) << "a message does not run from F0 to its first F7: " << InHex(bytes);
    }
    Record(CallText(call, {std::to_string(writing->device), std::to_string(when), InHex(bytes)}));
    const bool fails = failingWrites.contains(writes++) || allWritesFail;
    written.push_back({writing->device, sysex, when, bytes, fails});
    if (fails) {
        return MidiFailure;
    }
    if (onWrite) {
        const Message message = written.back();
        onWrite(message);
    }
    return MidiSuccess;
}

std::vector<FakeMidi::Event>::iterator FakeMidi::DueEvent(int device) {
    return std::ranges::find_if(arriving, [&](const Event &event) {
        return event.device == device && event.event.timestamp <= now;
    });
}

} // namespace tonewright
