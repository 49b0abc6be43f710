// Bytes of DX7 documents, written out here without any code of the program: a valid bank of 32
// distinct voices, a valid single voice, and the checksum.
#pragma once

#include <cstdint>
#include <numeric>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

constexpr std::size_t TestBankSize = 4104;
constexpr std::size_t TestPackedVoiceSize = 128;
constexpr std::size_t TestVoiceFileSize = 164;

// What the checksum adds up to a multiple of 128.
inline std::uint8_t TestChecksum(std::span<const std::uint8_t> bytes) {
    const unsigned sum = std::accumulate(bytes.begin(), bytes.end(), 0u);
    return static_cast<std::uint8_t>((128 - sum % 128) % 128);
}

// Where voice `number` (from 0) of a bank begins.
constexpr std::size_t TestBankVoiceOffset(int number) {
    return 6 + 128 * static_cast<std::size_t>(number);
}

// "VOICE 01" to "VOICE 32".
inline std::string TestVoiceName(int number) {
    const int shown = number + 1;
    return std::string("VOICE ") + static_cast<char>('0' + shown / 10) +
           static_cast<char>('0' + shown % 10);
}

// The 128 packed bytes of voice `number` (0 to 31): every value in its range, every operator
// audible, no detune above 7, no bit set that belongs to no parameter. The voices differ in
// algorithm (`number`), LFO speed (twice `number`), transpose and name. The first operator block
// differs from the others.
inline std::vector<std::uint8_t> TestPackedVoice(int number) {
    const auto mark = static_cast<std::uint8_t>(number);
    const std::vector<std::uint8_t> first = {
        95,   29, 20, 50, 99, 95, 0, 0, 41, 0, // EG rates and levels, break point, depth
        19,                                    // right depth
        0x0D,                                  // left curve 1, right curve 3
        0x3B,                                  // rate scaling 3, detune 7
        0x16,                                  // AM sensitivity 2, velocity 5
        79,                                    // output level
        0x1D,                                  // fixed frequency, coarse 14
        88,                                    // fine
    };
    const std::vector<std::uint8_t> other = {
        99, 98, 97, 96, 90, 80, 70, 0, 39, 11, 12, 0x02, 0x28, 0x1C, 99, 0x02, 5,
    };
    std::vector<std::uint8_t> voice = first;
    for (int block = 1; block < 6; ++block) {
        voice.insert(voice.end(), other.begin(), other.end());
    }
    const std::vector<std::uint8_t> common = {
        84,
        95,
        95,
        60,
        50,
        50,
        50,
        50,   // pitch EG rates and levels
        mark, // algorithm
        0x0E, // feedback 6, oscillator sync 1
        static_cast<std::uint8_t>(2 * mark),
        33,
        44,
        55,                                   // LFO
        0x39,                                 // LFO sync 1, wave 4, pitch sens. 3
        static_cast<std::uint8_t>(mark % 49), // transpose
    };
    voice.insert(voice.end(), common.begin(), common.end());
    std::string name = TestVoiceName(number);
    name.resize(10, ' ');
    voice.insert(voice.end(), name.begin(), name.end());
    return voice;
}

// Puts the right checksum into a bank or a single-voice file.
inline void FixTestChecksum(std::vector<std::uint8_t> &file) {
    file[file.size() - 2] = TestChecksum(std::span(file).subspan(6, file.size() - 8));
}

// A valid bank file with the voices TestPackedVoice(0) to TestPackedVoice(31).
inline std::vector<std::uint8_t> TestBank() {
    std::vector<std::uint8_t> file = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    for (int number = 0; number < 32; ++number) {
        const auto voice = TestPackedVoice(number);
        file.insert(file.end(), voice.begin(), voice.end());
    }
    file.push_back(0);
    file.push_back(0xF7);
    FixTestChecksum(file);
    return file;
}

// The 156 unpacked bytes of a voice "E.PIANO 1x" whose second operator block (bit 4) is switched
// off and keeps its level of 58.
inline std::vector<std::uint8_t> TestUnpackedVoice() {
    std::vector<std::uint8_t> voice = {
        96, 25, 25, 67, 99, 75,  0,   0,   0,   0,   0,   0,   0,   3,   0,   6,    79, 0,  1,  0,
        14, 95, 50, 35, 78, 99,  75,  0,   0,   0,   0,   0,   0,   0,   3,   0,    0,  58, 0,  14,
        0,  7,  95, 20, 20, 50,  99,  95,  0,   0,   0,   0,   0,   0,   0,   3,    0,  2,  99, 0,
        1,  0,  7,  95, 29, 20,  50,  99,  95,  0,   0,   0,   0,   0,   0,   0,    3,  0,  6,  89,
        0,  1,  0,  7,  95, 20,  20,  50,  99,  95,  0,   0,   0,   0,   0,   0,    0,  3,  0,  2,
        99, 0,  1,  0,  14, 95,  29,  20,  50,  99,  95,  0,   0,   41,  0,   19,   0,  3,  3,  0,
        6,  79, 1,  31, 9,  0,   94,  67,  95,  60,  50,  50,  50,  50,  4,   6,    0,  34, 33, 0,
        0,  0,  4,  3,  24, 'E', '.', 'P', 'I', 'A', 'N', 'O', ' ', '1', 'x', 0x2F,
    };
    return voice;
}

// A valid single-voice file around TestUnpackedVoice().
inline std::vector<std::uint8_t> TestVoiceFile() {
    std::vector<std::uint8_t> file = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    const auto voice = TestUnpackedVoice();
    file.insert(file.end(), voice.begin(), voice.end());
    file.push_back(0);
    file.push_back(0xF7);
    FixTestChecksum(file);
    return file;
}

} // namespace tonewright
