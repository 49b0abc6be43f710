// Any run of events as what arrives at an input: nothing is written behind a buffer, whatever comes
// in whatever order and however late, and a reception always ends.
//
// The input is a program of steps of six bytes: when the event comes, how the read goes, and its
// four bytes. Its first two bytes say how large the buffer is and how long is waited.
#include "common/settings.h"
#include "drivers/reface_dx/find.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/tracing_api.h"
#include "midi/transport.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>

using namespace tonewright;

namespace {

constexpr std::size_t StepSize = 6;
constexpr std::uint8_t Unwritten = 0xEE;

// Events of the fuzzer's input behind a simulated clock.
struct Source {
    std::span<const std::uint8_t> steps;
    std::int32_t now = 0;
    std::int32_t due = 0; // of the first step

    bool Empty() const { return steps.size() < StepSize; }
    void Next() {
        steps = Empty() ? steps.first(0) : steps.subspan(StepSize);
        due = Empty() ? 0 : now + steps[0];
    }
};

constexpr std::array<MidiDeviceInfo, 2> Devices = {
    MidiDeviceInfo{.interf = "", .name = "reface DX", .input = true},
    MidiDeviceInfo{.interf = "", .name = "reface DX", .output = true}};

MidiApi ApiOf(Source &source) {
    MidiApi api;
    api.Pt_Start = [](int) { return MidiSuccess; };
    api.Pt_Stop = [] { return MidiSuccess; };
    api.Pt_Time = [&source] { return source.now; };
    api.Pm_CountDevices = [] { return static_cast<int>(Devices.size()); };
    api.Pm_GetDeviceInfo = [](int device) { return &Devices[static_cast<std::size_t>(device)]; };
    api.Pm_OpenInput = [](MidiStream *stream, int, std::int32_t) {
        *stream = 1;
        return MidiSuccess;
    };
    api.Pm_OpenOutput = [](MidiStream *stream, int, std::int32_t, std::int32_t) {
        *stream = 2;
        return MidiSuccess;
    };
    api.Pm_Close = [](MidiStream) { return MidiSuccess; };
    api.Pm_WriteSysEx = [](MidiStream, std::int32_t, std::span<const std::uint8_t>) {
        return MidiSuccess;
    };
    api.Pm_Poll = [&source](MidiStream) {
        const bool ready = !source.Empty() && source.now >= source.due;
        ++source.now;
        return static_cast<int>(ready);
    };
    api.Pm_Read = [&source](MidiStream, MidiEvent *event) {
        const std::uint8_t how = source.steps[1];
        const std::uint8_t *bytes = &source.steps[2];
        const std::uint32_t message = bytes[0] | std::uint32_t{bytes[1]} << 8 |
                                      std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
        source.Next();
        if (how == 0xFF) {
            return 0; // nothing was there after all
        }
        if (how == 0xFE) {
            return MidiFailure;
        }
        *event = {message, source.now};
        return 1;
    };
    return api;
}

void Receive(Source &source, std::size_t capacity) {
    std::vector<std::uint8_t> buffer(capacity, Unwritten);
    while (!source.Empty()) {
        std::ranges::fill(buffer, Unwritten);
        std::size_t count = capacity + 1;
        const int result = SysexReceive(1, buffer, &count);
        Demand(count <= capacity, "the count stays within the buffer");
        const auto received = std::span(buffer).first(count);
        const auto end = std::ranges::find(received, 0xF7);
        Demand(end == received.end() || end + 1 == received.end(), "nothing follows the end");
        Demand(result == 0 || count == capacity || end != received.end(),
               "a reception ends with F7 or a full buffer");
        Demand(result != 0 || end == received.end(), "what has its end is no time-out");
        Demand(std::ranges::all_of(std::span(buffer).subspan(count),
                                   [](std::uint8_t byte) { return byte == Unwritten; }),
               "what is behind the count is left alone");
        if (result == 0 && !source.Empty()) {
            source.now = std::max(source.now, source.due); // the next one waits until it comes
        }
        if (capacity == 0) {
            return;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const std::span<const std::uint8_t> steps(data + 2, size - 2);
    SysexWait = data[1] + 1u;

    Source source = {.steps = steps};
    TheMidi = ApiOf(source);
    Receive(source, data[0]);

    // The same through a trace, which shows whole bytes only.
    source = {.steps = steps};
    TheMidi = MakeTracingApi(ApiOf(source), [](const std::string &line) {
        Demand(line.find("\tin\t") != std::string::npos, "a line says where it comes from");
        Demand((line.size() - line.rfind('\t')) % 3 == 0, "bytes have two digits and one blank");
    });
    Receive(source, data[0]);

    // And as what answers an identity request.
    source = {.steps = steps};
    TheMidi = ApiOf(source);
    FoundSynth found;
    RefaceFindSynth(nullptr, found, {}, true);
    Demand(found.driver == NoDriverId || found.driver == RefaceDriverId,
           "a driver is known or none");
    Demand(found.driver == NoDriverId || found.firmware >= 0x10000,
           "an instrument has its version");
    TheMidi = {};
    return 0;
}
