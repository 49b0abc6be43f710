// How many events a second the reception of a message takes, without the library below it.
#include "midi/transport.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <vector>

namespace tonewright {
namespace {

// A dump of `size` bytes as its events.
std::vector<MidiEvent> EventsOfDump(std::size_t size) {
    std::vector<MidiEvent> events((size + 3) / 4);
    for (std::size_t place = 0; place < size; ++place) {
        std::uint32_t byte = place & 0x7F;
        if (place == 0) {
            byte = 0xF0;
        } else if (place == size - 1) {
            byte = 0xF7;
        }
        events[place / 4].message |= byte << 8 * (place % 4);
    }
    return events;
}

void ReceiveDump(benchmark::State &state, const std::function<std::int32_t()> &time) {
    const auto events = EventsOfDump(static_cast<std::size_t>(state.range(0)));
    std::size_t next = 0;
    TheMidi.Pt_Time = time;
    TheMidi.Pm_Poll = [](MidiStream) { return 1; };
    TheMidi.Pm_Read = [&](MidiStream, MidiEvent *event) {
        *event = events[next++];
        return 1;
    };
    std::array<std::uint8_t, SysexBufferSize> buffer = {};
    for (auto _ : state) {
        next = 0;
        std::size_t count = 0;
        if (!SysexReceive(1, buffer, &count) || next != events.size()) {
            state.SkipWithError("the dump did not arrive whole");
            break;
        }
        benchmark::DoNotOptimize(buffer);
    }
    TheMidi = {};
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(events.size()));
}

// Items are events.
void ReceiveEvents(benchmark::State &state) {
    ReceiveDump(state, [] { return 0; });
}
BENCHMARK(ReceiveEvents)->Arg(15)->Arg(163)->Arg(4104)->Arg(8192);

// The same with a real clock, which is looked at twice for each event.
void ReceiveEventsByTheWallClock(benchmark::State &state) {
    using namespace std::chrono;
    ReceiveDump(state, [] {
        return static_cast<std::int32_t>(
            duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count() &
            0x3FFFFFFF);
    });
}
BENCHMARK(ReceiveEventsByTheWallClock)->Arg(4104);

} // namespace
} // namespace tonewright
