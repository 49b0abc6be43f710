// Bytes that are read once, from their start to their end, while some of them stand in memory: of a
// file, or of what a file holds in another form (events of a MIDI file, digits of a text).
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace tonewright {

// So far can be looked ahead of a place; whatever is judged at once is shorter.
constexpr std::size_t DumpLookAhead = 64 * 1024;
// Of the end of what may begin in front of it.
constexpr std::size_t DumpWindow = 2 * DumpLookAhead;

struct DumpStream {
    std::span<const std::uint8_t> bytes;    // from the place that is looked at, as far as in memory
    bool ends = true;                       // nothing comes behind them
    std::uint64_t offset = 0;               // of the place in the file, unless the following holds
    std::span<const std::uint64_t> offsets; // of each of `bytes` in the file
    // Makes `bytes` at least so many, unless the end comes before; what lies behind them was used.
    std::function<void(DumpStream &, std::size_t)> more;
};

// As many bytes in memory as asked for, at most DumpWindow, unless fewer are left.
inline std::span<const std::uint8_t> LookAhead(DumpStream &stream, std::size_t size = DumpWindow) {
    if (stream.bytes.size() < size && !stream.ends) {
        stream.more(stream, size);
    }
    return stream.bytes;
}

// Moves on by bytes that are in memory.
inline void MoveOn(DumpStream &stream, std::size_t size) {
    stream.bytes = stream.bytes.subspan(size);
    if (stream.offsets.empty()) {
        stream.offset += size;
    } else {
        stream.offsets = stream.offsets.subspan(size);
    }
}

// Where a byte in memory stands in the file; `index` from the place that is looked at.
inline std::uint64_t OffsetOf(const DumpStream &stream, std::size_t index) {
    return stream.offsets.empty() ? stream.offset + index : stream.offsets[index];
}

} // namespace tonewright
