// Reads uncompressed WAVE files.
#include "common/sound_file.h"

#include "common/file_bytes.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace tonewright {
namespace {

constexpr std::size_t ChunkHeaderSize = 8;
constexpr std::size_t FormatSize = 16;
constexpr std::size_t SubformatAt = 24; // in an extended "fmt " chunk: the real format
constexpr unsigned FormatPcm = 1;
constexpr unsigned FormatExtended = 0xFFFE;

using Bytes = std::span<const std::uint8_t>;

// Little-endian numbers; the caller has checked that they lie inside.
unsigned Number16(Bytes bytes, std::size_t at) {
    return bytes[at] | static_cast<unsigned>(bytes[at + 1]) << 8;
}

std::uint32_t Number32(Bytes bytes, std::size_t at) {
    return Number16(bytes, at) | static_cast<std::uint32_t>(Number16(bytes, at + 2)) << 16;
}

bool HasTag(Bytes bytes, std::string_view tag) {
    return bytes.size() >= tag.size() && std::equal(tag.begin(), tag.end(), bytes.begin());
}

// Content of the first chunk of that name; nothing when there is none that lies inside.
std::optional<Bytes> FindChunk(Bytes chunks, std::string_view tag) {
    while (chunks.size() >= ChunkHeaderSize) {
        const std::size_t size = Number32(chunks, 4);
        const Bytes rest = chunks.subspan(ChunkHeaderSize);
        if (size > rest.size()) {
            return std::nullopt;
        }
        if (HasTag(chunks, tag)) {
            return rest.first(size);
        }
        chunks = rest.subspan(std::min(size + size % 2, rest.size()));
    }
    return std::nullopt;
}

std::optional<SoundFormat> DecodeFormat(Bytes chunk) {
    if (chunk.size() < FormatSize) {
        return std::nullopt;
    }
    unsigned code = Number16(chunk, 0);
    if (code == FormatExtended && chunk.size() >= SubformatAt + 2) {
        code = Number16(chunk, SubformatAt);
    }
    const unsigned channels = Number16(chunk, 2);
    const std::uint32_t rate = Number32(chunk, 4);
    const unsigned frameSize = Number16(chunk, 12);
    const unsigned bits = Number16(chunk, 14);
    const bool knownBits = bits == 8 || bits == 16 || bits == 24 || bits == 32;
    if (code != FormatPcm || channels < 1 || channels > 8 || rate < 1'000 || rate > 384'000 ||
        !knownBits || frameSize != channels * (bits / 8)) {
        return std::nullopt;
    }
    return SoundFormat{.channels = static_cast<int>(channels),
                       .framesPerSecond = static_cast<int>(rate),
                       .bitsPerSample = static_cast<int>(bits)};
}

} // namespace

int FrameSize(const SoundFormat &format) {
    return format.channels * (format.bitsPerSample / 8);
}

std::optional<Sound> DecodeSound(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t FileHeaderSize = 12;
    if (bytes.size() < FileHeaderSize || !HasTag(bytes, "RIFF") ||
        !HasTag(bytes.subspan(8), "WAVE")) {
        return std::nullopt;
    }
    const Bytes chunks = bytes.subspan(FileHeaderSize);
    const auto formatChunk = FindChunk(chunks, "fmt ");
    const auto format = formatChunk ? DecodeFormat(*formatChunk) : std::nullopt;
    const auto data = FindChunk(chunks, "data");
    if (!format || !data) {
        return std::nullopt;
    }
    const std::size_t frameSize = static_cast<std::size_t>(FrameSize(*format));
    const Bytes whole = data->first(data->size() - data->size() % frameSize);
    if (whole.empty()) {
        return std::nullopt;
    }
    return Sound{.format = *format, .frames = {whole.begin(), whole.end()}};
}

std::optional<Sound> ReadSoundFile(const char *path) {
    std::error_code error;
    const std::filesystem::path file = PathOfUtf8(path);
    const auto size = std::filesystem::is_regular_file(file, error)
                          ? std::filesystem::file_size(file, error)
                          : SoundFileLimit + 1;
    if (error || size > SoundFileLimit) {
        return std::nullopt;
    }
    const auto bytes = ReadFileBytes(path, SoundFileLimit);
    return bytes ? DecodeSound(*bytes) : std::nullopt;
}

} // namespace tonewright
