// Places in streams, and what streams of another form hold.
#include "extras/dump_stream.h"

#include <algorithm>

namespace tonewright {
namespace {

std::uint64_t OffsetIn(const OffsetRun &run, std::uint64_t index) {
    return run.offset + (index - run.index) * run.step;
}

} // namespace

std::uint64_t OffsetOf(const DumpStream &stream, std::size_t at) {
    const std::uint64_t index = stream.index + at;
    if (stream.runs.empty()) {
        return index;
    }
    const auto next = std::ranges::upper_bound(stream.runs, index, {}, &OffsetRun::index);
    return OffsetIn(*(next - 1), index);
}

std::uint64_t LengthInFile(const DumpStream &stream, std::size_t size) {
    return size == 0 ? 0 : OffsetOf(stream, size - 1) + stream.width - OffsetOf(stream, 0);
}

void AddBytes(DecodedBytes &decoded, std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    const std::uint64_t index = decoded.index + decoded.bytes.size();
    if (decoded.runs.empty() || decoded.runs.back().step != 1 ||
        OffsetIn(decoded.runs.back(), index) != offset) {
        decoded.runs.push_back({index, offset, 1});
    }
    decoded.bytes.insert(decoded.bytes.end(), bytes.begin(), bytes.end());
}

void AddByte(DecodedBytes &decoded, std::uint8_t byte, std::uint64_t offset) {
    const std::uint64_t index = decoded.index + decoded.bytes.size();
    if (decoded.runs.empty()) {
        decoded.runs.push_back({index, offset, 1});
    } else if (OffsetRun &last = decoded.runs.back(); OffsetIn(last, index) != offset) {
        // The second byte of a run says how far they are apart.
        if (index == last.index + 1) {
            last.step = offset - last.offset;
        } else {
            decoded.runs.push_back({index, offset, last.step});
        }
    }
    decoded.bytes.push_back(byte);
}

void ForgetUsed(DecodedBytes &decoded, const DumpStream &stream) {
    const auto used = static_cast<std::ptrdiff_t>(stream.index - decoded.index);
    decoded.bytes.erase(decoded.bytes.begin(), decoded.bytes.begin() + used);
    decoded.index = stream.index;
    const auto next = std::ranges::upper_bound(decoded.runs, decoded.index, {}, &OffsetRun::index);
    if (next != decoded.runs.begin()) {
        decoded.runs.erase(decoded.runs.begin(), next - 1);
    }
}

void ShowBytes(const DecodedBytes &decoded, DumpStream &stream) {
    stream.bytes = decoded.bytes;
    stream.runs = decoded.runs;
}

} // namespace tonewright
