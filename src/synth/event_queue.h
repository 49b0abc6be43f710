// A ring of events between one thread that writes and one that reads: neither waits for the other,
// and nothing is allocated.
#pragma once

#include "synth/synth_event.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace tonewright {

struct EventQueue {
    // More than a second of a MIDI line.
    static constexpr std::size_t Capacity = 4096;

    std::array<SynthEvent, Capacity> events;
    // Events since the begin; a cache line each, so that the threads do not slow each other down.
    alignas(64) std::atomic<std::uint64_t> written = 0;
    alignas(64) std::atomic<std::uint64_t> read = 0;
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// For the thread that writes: whether there is room, which there is until it has written; and an
// event more, but false when there is none.
inline bool HasRoom(const EventQueue &queue) {
    return queue.written.load(std::memory_order_relaxed) -
               queue.read.load(std::memory_order_acquire) <
           EventQueue::Capacity;
}
inline bool Push(EventQueue &queue, const SynthEvent &event) {
    if (!HasRoom(queue)) {
        return false;
    }
    const std::uint64_t written = queue.written.load(std::memory_order_relaxed);
    queue.events[written % EventQueue::Capacity] = event;
    queue.written.store(written + 1, std::memory_order_release);
    return true;
}

// For the thread that reads: how many events are waiting, which of them is number `index` (the
// oldest is 0), and that the oldest ones have been dealt with.
inline std::size_t Waiting(const EventQueue &queue) {
    return static_cast<std::size_t>(queue.written.load(std::memory_order_acquire) -
                                    queue.read.load(std::memory_order_relaxed));
}
inline const SynthEvent &Waiting(const EventQueue &queue, std::size_t index) {
    const std::uint64_t place = queue.read.load(std::memory_order_relaxed) + index;
    return queue.events[place % EventQueue::Capacity];
}
inline void Pop(EventQueue &queue, std::size_t count = 1) {
    queue.read.store(queue.read.load(std::memory_order_relaxed) + count, std::memory_order_release);
}

} // namespace tonewright
