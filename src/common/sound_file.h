// Sound files, as they are played for an event: uncompressed WAVE, little-endian.
//
//   0  "RIFF"   4  size of the rest   8  "WAVE"
//   then chunks: four letters, size of the content, content, a pad byte behind an odd size
//   "fmt "  format 1 (PCM; FFFE when the real format is given in an extension), channels (2 bytes
//           each), frames a second, bytes a second (4 each), bytes a frame, bits a sample (2 each)
//   "data"  the frames: for each channel one sample, unsigned with 8 bits, signed with more
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

struct SoundFormat {
    int channels = 0;        // 1 to 8
    int framesPerSecond = 0; // 1,000 to 384,000
    int bitsPerSample = 0;   // 8, 16, 24 or 32
};

struct Sound {
    SoundFormat format;
    std::vector<std::uint8_t> frames; // whole frames, at least one
};

constexpr std::size_t SoundFileLimit = 64 * 1024 * 1024; // bytes; a longer file is not played

// Bytes of one frame: a sample for each channel.
int FrameSize(const SoundFormat &format);

// The sound of a file's bytes. Nothing when they are no uncompressed WAVE file, when a chunk in
// front of the end of the data reaches beyond the bytes, or when there is no whole frame.
std::optional<Sound> DecodeSound(std::span<const std::uint8_t> bytes);

// The same for a regular file; nothing for any other one.
std::optional<Sound> ReadSoundFile(const char *path);

} // namespace tonewright
