// Writes WAVE files.
#include "common/wave_file.h"

#include <bit>
#include <cmath>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::uint32_t Sides = 2;

using Bytes = std::vector<std::uint8_t>;

struct SampleKind {
    std::uint32_t code; // of the format
    std::uint32_t size; // bytes
};
SampleKind KindOf(WaveSample sample) {
    constexpr std::uint32_t WholeNumbers = 1, FloatingPoint = 3;
    switch (sample) {
    case WaveSample::Integer16:
        return {WholeNumbers, 2};
    case WaveSample::Integer24:
        return {WholeNumbers, 3};
    case WaveSample::Float32:
        break;
    }
    return {FloatingPoint, 4};
}

void AppendNumber(Bytes &bytes, std::uint32_t number, std::uint32_t size) {
    for (std::uint32_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
}

void AppendTag(Bytes &bytes, std::string_view tag) {
    bytes.insert(bytes.end(), tag.begin(), tag.end());
}

// Bytes from the begin of the file to the samples.
std::uint32_t HeaderSize(WaveSample sample) {
    return sample == WaveSample::Float32 ? 58 : 44;
}

std::uint32_t NearestNumber(float sample, std::uint32_t size) {
    const double largest = (1u << (8 * size - 1)) - 1u;
    return static_cast<std::uint32_t>(
        std::lround(largest * std::fmax(-1.0, std::fmin(1.0, sample))));
}

} // namespace

int WaveFrameSize(WaveSample sample) {
    return static_cast<int>(Sides * KindOf(sample).size);
}

std::uint32_t WaveFrameLimit(WaveSample sample) {
    return (UINT32_MAX - HeaderSize(sample)) / static_cast<std::uint32_t>(WaveFrameSize(sample));
}

Bytes EncodeWaveHeader(const WaveFormat &format, std::uint32_t frames) {
    constexpr std::uint32_t BeforeRest = 8; // "RIFF" and the size of the rest
    const auto [code, size] = KindOf(format.sample);
    const auto rate = static_cast<std::uint32_t>(format.framesPerSecond);
    const std::uint32_t frameSize = Sides * size;
    const bool isFloat = format.sample == WaveSample::Float32;
    Bytes bytes;
    AppendTag(bytes, "RIFF");
    AppendNumber(bytes, HeaderSize(format.sample) - BeforeRest + frames * frameSize, 4);
    AppendTag(bytes, "WAVEfmt ");
    AppendNumber(bytes, isFloat ? 18 : 16, 4);
    AppendNumber(bytes, code, 2);
    AppendNumber(bytes, Sides, 2);
    AppendNumber(bytes, rate, 4);
    AppendNumber(bytes, rate * frameSize, 4);
    AppendNumber(bytes, frameSize, 2);
    AppendNumber(bytes, 8 * size, 2);
    if (isFloat) {
        AppendNumber(bytes, 0, 2);
        AppendTag(bytes, "fact");
        AppendNumber(bytes, 4, 4);
        AppendNumber(bytes, frames, 4);
    }
    AppendTag(bytes, "data");
    AppendNumber(bytes, frames * frameSize, 4);
    return bytes;
}

void AppendWaveSamples(Bytes &bytes, std::span<const float> samples, WaveSample sample) {
    const std::uint32_t size = KindOf(sample).size;
    for (const float value : samples) {
        AppendNumber(bytes,
                     sample == WaveSample::Float32 ? std::bit_cast<std::uint32_t>(value)
                                                   : NearestNumber(value, size),
                     size);
    }
}

} // namespace tonewright
