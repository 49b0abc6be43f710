// Sound files as they are written: WAVE of two sides, little-endian. What sound_file reads, but for
// the last of the three kinds of samples.
//
//   0  "RIFF"   4  size of the rest   8  "WAVE"
//  12  "fmt "  16  size of the format, 16 or 18
//  20  the format: 1 (whole numbers) or 3 (floating point), sides (2 bytes each), frames a second,
//      bytes a second (4 each), bytes a frame, bits a sample (2 each); of floating point 2 bytes of
//      0
//  38  only of floating point: "fact", 4, the number of frames (4 bytes each)
//      "data", the size of the samples (4 bytes each), the samples: of each frame left, then right
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tonewright {

enum class WaveSample { Integer16, Integer24, Float32 };

struct WaveFormat {
    WaveSample sample = WaveSample::Integer16;
    int framesPerSecond = 48000;
};

// Bytes of a frame: a sample for each side.
int WaveFrameSize(WaveSample sample);

// The most frames whose size a file can tell.
std::uint32_t WaveFrameLimit(WaveSample sample);

// What stands in front of the samples of so many frames, WaveFrameLimit at most.
std::vector<std::uint8_t> EncodeWaveHeader(const WaveFormat &format, std::uint32_t frames);

// Appends samples of -1 to 1, what is beyond being limited to that but in floating point. Whole
// numbers are the nearest ones, 1 being the largest of them and -1 its negative.
void AppendWaveSamples(std::vector<std::uint8_t> &bytes, std::span<const float> samples,
                       WaveSample sample);

} // namespace tonewright
