// Bytes that are read once, from their start to their end, while some of them stand in memory: of a
// file, or of what a file holds in another form (events of a MIDI file, digits of a text).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tonewright {

// So far can be looked ahead of a place; whatever is judged at once is shorter.
constexpr std::size_t DumpLookAhead = 64 * 1024;
// So many bytes are in memory from the place that is looked at, so that what begins within the
// first half of them can be looked at as far.
constexpr std::size_t DumpWindow = 2 * DumpLookAhead;

// Where bytes that are held in another form stand in the file, `step` bytes one from the other,
// from one of them up to the next run.
struct OffsetRun {
    std::uint64_t index = 0;
    std::uint64_t offset = 0;
    std::uint64_t step = 1;
};

struct DumpStream {
    std::span<const std::uint8_t> bytes; // from the place that is looked at, as far as in memory
    bool ends = true;                    // nothing comes behind them
    std::uint64_t index = 0;             // of the place
    std::span<const OffsetRun> runs;     // none where an index is the offset in the file
    std::size_t width = 1;               // bytes of the file for each byte
    // Makes `bytes` at least so many, unless the end comes before; what lies in front of them is
    // needed no more.
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
    stream.index += size;
}

// Where a byte in memory stands in the file, `at` being counted from the place that is looked at.
std::uint64_t OffsetOf(const DumpStream &stream, std::size_t at);
// How many bytes of the file lie from the place to the end of the first `size` bytes in memory.
std::uint64_t LengthInFile(const DumpStream &stream, std::size_t size);

// What has been read out of another form and not been used yet.
struct DecodedBytes {
    std::vector<std::uint8_t> bytes;
    std::uint64_t index = 0; // of the first of them
    std::vector<OffsetRun> runs;
};
// As many at once that moving those to the front which are not used yet costs little.
constexpr std::size_t DecodedAtOnce = 4 * DumpWindow;

// Adds bytes that stand one behind the other in the file, and one byte wherever it stands.
void AddBytes(DecodedBytes &decoded, std::span<const std::uint8_t> bytes, std::uint64_t offset);
void AddByte(DecodedBytes &decoded, std::uint8_t byte, std::uint64_t offset);
// Forgets what a stream over these bytes has moved on from, and shows it those that are there.
void ForgetUsed(DecodedBytes &decoded, const DumpStream &stream);
void ShowBytes(const DecodedBytes &decoded, DumpStream &stream);

} // namespace tonewright
