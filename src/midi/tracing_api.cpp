// Writes a line for each message that passes, and gathers incoming system-exclusive data from their
// events of four bytes.
#include "midi/tracing_api.h"

#include "midi/sysex.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr std::uint8_t FirstStatus = 0x80;
constexpr std::uint8_t FirstRealTime = 0xF8;
constexpr int BytesOfEvent = 4;
constexpr std::size_t MostGathered = 65536; // of a message that finds no end

using Bytes = std::vector<std::uint8_t>;

struct Tracer {
    MidiApi inner;
    std::function<void(const std::string &)> out;
    std::map<MidiStream, Bytes> unfinished; // system-exclusive data that came in so far
};

// Bytes of a message by its status; of no message at all, the three that were written.
std::size_t LengthOfShort(std::uint8_t status) {
    switch (status & 0xF0) {
    case 0xC0: // program change
    case 0xD0: // channel pressure
        return 2;
    case 0xF0:
        break;
    default:
        return 3;
    }
    switch (status) {
    case 0xF1: // quarter frame
    case 0xF3: // song select
        return 2;
    case 0xF2: // song position
        return 3;
    default:
        return 1;
    }
}

std::uint8_t ByteOf(std::uint32_t message, int position) {
    return static_cast<std::uint8_t>(message >> 8 * position);
}

Bytes BytesOfShort(std::uint32_t message) {
    Bytes bytes;
    for (std::size_t position = 0; position < LengthOfShort(ByteOf(message, 0)); ++position) {
        bytes.push_back(ByteOf(message, static_cast<int>(position)));
    }
    return bytes;
}

void Show(const Tracer &tracer, std::int32_t time, const char *direction,
          std::span<const std::uint8_t> bytes, int result = MidiSuccess) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string line = std::to_string(time) + '\t' + direction + '\t';
    const char *separator = "";
    for (const std::uint8_t byte : bytes) {
        line += separator;
        line += digits[byte >> 4];
        line += digits[byte & 0x0F];
        separator = " ";
    }
    if (result != MidiSuccess) {
        line += "\tfailed";
    }
    tracer.out(line);
}

void ShowIncoming(const Tracer &tracer, Bytes &bytes) {
    if (!bytes.empty()) {
        Show(tracer, tracer.inner.Pt_Time(), "in", bytes);
        bytes.clear();
    }
}

void TakeEvent(Tracer &tracer, MidiStream stream, std::uint32_t message) {
    Bytes &gathered = tracer.unfinished[stream];
    const std::uint8_t first = ByteOf(message, 0);
    if (first == StartOfSysex || gathered.size() >= MostGathered) {
        ShowIncoming(tracer, gathered);
    } else if (first >= FirstStatus && first != EndOfSysex) {
        Show(tracer, tracer.inner.Pt_Time(), "in", BytesOfShort(message));
        return;
    }
    for (int position = 0; position < BytesOfEvent; ++position) {
        const std::uint8_t byte = ByteOf(message, position);
        if (byte >= FirstRealTime) {
            Show(tracer, tracer.inner.Pt_Time(), "in", std::span(&byte, 1));
            continue;
        }
        gathered.push_back(byte);
        if (byte == EndOfSysex) {
            ShowIncoming(tracer, gathered);
            return;
        }
    }
}

// The message as far as it is sent: to its first F7.
std::span<const std::uint8_t> ToItsEnd(std::span<const std::uint8_t> message) {
    const auto end = std::ranges::find(message, EndOfSysex);
    return end == message.end()
               ? message
               : message.first(static_cast<std::size_t>(end - message.begin()) + 1);
}

} // namespace

MidiApi MakeTracingApi(MidiApi inner, std::function<void(const std::string &line)> out) {
    const auto tracer = std::make_shared<Tracer>(Tracer{std::move(inner), std::move(out), {}});
    MidiApi api = tracer->inner; // what carries no message is passed on as it is
    api.Pm_WriteSysEx = [tracer](MidiStream stream, std::int32_t when,
                                 std::span<const std::uint8_t> message) {
        const std::int32_t time = tracer->inner.Pt_Time();
        const int result = tracer->inner.Pm_WriteSysEx(stream, when, message);
        Show(*tracer, time, "out", ToItsEnd(message), result);
        return result;
    };
    api.Pm_WriteShort = [tracer](MidiStream stream, std::int32_t when, std::uint32_t message) {
        const std::int32_t time = tracer->inner.Pt_Time();
        const int result = tracer->inner.Pm_WriteShort(stream, when, message);
        Show(*tracer, time, "out", BytesOfShort(message), result);
        return result;
    };
    api.Pm_Write = [tracer](MidiStream stream, const MidiEvent &event) {
        const std::int32_t time = tracer->inner.Pt_Time();
        const int result = tracer->inner.Pm_Write(stream, event);
        Show(*tracer, time, "out", BytesOfShort(event.message), result);
        return result;
    };
    api.Pm_Read = [tracer](MidiStream stream, MidiEvent *event) {
        const int result = tracer->inner.Pm_Read(stream, event);
        if (result > 0) {
            TakeEvent(*tracer, stream, event->message);
        }
        return result;
    };
    api.Pm_Close = [tracer](MidiStream stream) {
        const auto unfinished = tracer->unfinished.find(stream);
        if (unfinished != tracer->unfinished.end()) {
            ShowIncoming(*tracer, unfinished->second);
            tracer->unfinished.erase(unfinished);
        }
        return tracer->inner.Pm_Close(stream);
    };
    return api;
}

} // namespace tonewright
