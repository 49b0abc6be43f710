// The files of sound that are written, byte by byte.
#include "common/sound_file.h"
#include "common/wave_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A frame of full level to both sides, and one of silence.
constexpr float Frames[] = {1.0f, -1.0f, 0.0f, 0.0f};

Bytes FileOf(const WaveFormat &format, std::span<const float> samples) {
    Bytes bytes = EncodeWaveHeader(format, static_cast<std::uint32_t>(samples.size() / 2));
    AppendWaveSamples(bytes, samples, format.sample);
    return bytes;
}

Bytes SamplesOf(std::span<const float> samples, WaveSample sample) {
    Bytes bytes;
    AppendWaveSamples(bytes, samples, sample);
    return bytes;
}

TEST(WaveFile, OfSixteenBitsHasItsBytes) {
    const Bytes expected = {'R', 'I', 'F',  'F',  44,   0,    0,    0, 'W',  'A', 'V', 'E',  'f',
                            'm', 't', ' ',  16,   0,    0,    0,    1, 0,    2,   0,   0x80, 0xBB,
                            0,   0,   0x00, 0xEE, 0x02, 0,    4,    0, 16,   0,   'd', 'a',  't',
                            'a', 8,   0,    0,    0,    0xFF, 0x7F, 1, 0x80, 0,   0,   0,    0};
    EXPECT_EQ(FileOf({}, Frames), expected);
}

TEST(WaveFile, OfTwentyFourBitsHasItsBytes) {
    const Bytes expected = {'R',  'I',  'F', 'F', 48,   0,    0,    0, 'W',  'A',  'V',  'E',
                            'f',  'm',  't', ' ', 16,   0,    0,    0, 1,    0,    2,    0,
                            0x44, 0xAC, 0,   0,   0x98, 0x09, 0x04, 0, 6,    0,    24,   0,
                            'd',  'a',  't', 'a', 12,   0,    0,    0, 0xFF, 0xFF, 0x7F, 1,
                            0,    0x80, 0,   0,   0,    0,    0,    0};
    EXPECT_EQ(FileOf({.sample = WaveSample::Integer24, .framesPerSecond = 44100}, Frames),
              expected);
}

TEST(WaveFile, OfFloatingPointHasItsBytesAndTellsItsFrames) {
    const Bytes expected = {'R',  'I', 'F', 'F',  66,   0, 0, 0, 'W',  'A',  'V', 'E', 'f',
                            'm',  't', ' ', 18,   0,    0, 0, 3, 0,    2,    0,   0,   0xEE,
                            2,    0,   0,   0x70, 0x17, 0, 8, 0, 32,   0,    0,   0,   'f',
                            'a',  'c', 't', 4,    0,    0, 0, 2, 0,    0,    0,   'd', 'a',
                            't',  'a', 16,  0,    0,    0, 0, 0, 0x80, 0x3F, 0,   0,   0x80,
                            0xBF, 0,   0,   0,    0,    0, 0, 0, 0};
    EXPECT_EQ(FileOf({.sample = WaveSample::Float32, .framesPerSecond = 192000}, Frames), expected);
}

TEST(WaveFile, WithoutFramesIsWhole) {
    const Bytes bytes = FileOf({}, {});
    EXPECT_EQ(bytes.size(), 44u);
    EXPECT_EQ(bytes[4], 36);
    EXPECT_EQ(bytes[40], 0);
}

TEST(WaveFile, HasTheNearestNumbers) {
    // 1/32767 is a step; half of it is rounded away from 0, and less than that towards it.
    constexpr float Step = 1.0f / 32767.0f;
    EXPECT_EQ(SamplesOf({{Step, -Step, 0.51f * Step, 0.49f * Step, -0.51f * Step, 0.5f}},
                        WaveSample::Integer16),
              (Bytes{1, 0, 0xFF, 0xFF, 1, 0, 0, 0, 0xFF, 0xFF, 0x00, 0x40}));
    EXPECT_EQ(SamplesOf({{0.5f, -1e-6f}}, WaveSample::Integer24),
              (Bytes{0x00, 0x00, 0x40, 0xF8, 0xFF, 0xFF}));
}

TEST(WaveFile, LimitsWhatIsBeyondFullScaleButInFloatingPoint) {
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(SamplesOf({{1.5f, -1.5f, Infinity, -Infinity}}, WaveSample::Integer16),
              (Bytes{0xFF, 0x7F, 1, 0x80, 0xFF, 0x7F, 1, 0x80}));
    EXPECT_EQ(SamplesOf({{1.5f, -1.5f}}, WaveSample::Integer24),
              (Bytes{0xFF, 0xFF, 0x7F, 1, 0, 0x80}));
    EXPECT_EQ(SamplesOf({{1.5f}}, WaveSample::Float32), (Bytes{0, 0, 0xC0, 0x3F}));
}

TEST(WaveFile, TellsItsSizeUpToTheLimit) {
    const std::uint32_t frames = WaveFrameLimit(WaveSample::Integer24);
    EXPECT_EQ(frames, 715827875u);
    const Bytes header = EncodeWaveHeader({.sample = WaveSample::Integer24}, frames);
    // 6 * 715,827,875 bytes of samples are FFFFFFD2 hex, and 36 bytes before them FFFFFFF6.
    EXPECT_EQ(Bytes(header.begin() + 40, header.end()), (Bytes{0xD2, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Bytes(header.begin() + 4, header.begin() + 8), (Bytes{0xF6, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(WaveFrameLimit(WaveSample::Integer16), 1073741812u);
    EXPECT_EQ(WaveFrameLimit(WaveSample::Float32), 536870904u);
}

TEST(WaveFile, IsReadAgainAsWhatItIs) {
    const auto sound = DecodeSound(FileOf({.sample = WaveSample::Integer24}, Frames));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->format.channels, 2);
    EXPECT_EQ(sound->format.framesPerSecond, 48000);
    EXPECT_EQ(sound->format.bitsPerSample, 24);
    EXPECT_EQ(sound->frames.size(), 12u);
}

} // namespace
} // namespace tonewright
