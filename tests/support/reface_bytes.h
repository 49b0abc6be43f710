// Bytes of reface DX voices and documents, written out here without any code of the program.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

constexpr std::size_t TestRefaceHeaderSize = 160;
constexpr std::size_t TestRefaceBlockSize = 202;

// "REFACE 01" to "REFACE 32", nine characters.
inline std::string TestRefaceName(int number) {
    const int shown = number + 1;
    return std::string("REFACE ") + static_cast<char>('0' + shown / 10) +
           static_cast<char>('0' + shown % 10);
}

// The common block of voice `number` (0 to 31): name with a zero byte behind it, algorithm `number`
// modulo 12, LFO speed twice `number`. The five bytes of no parameter are not zero.
inline std::vector<std::uint8_t> TestRefaceCommon(int number) {
    std::vector<std::uint8_t> common;
    const std::string name = TestRefaceName(number);
    common.assign(name.begin(), name.end());
    // clang-format off
    const std::vector<std::uint8_t> rest = {
        0,                                      // the name's tenth byte
        0x51, 0x52,                             // no parameter
        52,                                     // transpose 12
        1,                                      // mono-full
        17,                                     // portamento time
        42,                                     // pitch bend 2
        static_cast<std::uint8_t>(number % 12), // algorithm
        6,                                      // LFO wave: sample and hold
        static_cast<std::uint8_t>(2 * number),  // LFO speed
        21, 22,                                 // LFO delay, modulation depth
        101, 102, 103, 104,                     // pitch EG rates
        64, 65, 66, 67,                         // pitch EG levels
        7, 31, 32,                              // effect 1: reverb
        1, 33, 34,                              // effect 2: distortion
        0x61, 0x62, 0x63,                       // no parameter
    };
    // clang-format on
    common.insert(common.end(), rest.begin(), rest.end());
    return common;
}

// The block of operator `index` (0 to 3), which shows in its output level and in its last byte.
inline std::vector<std::uint8_t> TestRefaceOperator(int index) {
    const auto mark = static_cast<std::uint8_t>(index);
    // clang-format off
    return {
        1,                                                  // enabled
        120, 80, 40, 90,                                    // EG rates
        127, 100, 70, 0,                                    // EG levels
        15, 5, 6, 2, 3,                                     // keyboard scaling
        9, 1, 0,                                            // LFO AMD depth, LFO PMD, pitch EG
        33, static_cast<std::uint8_t>(90 + mark),           // velocity sense, output level
        45, 1,                                              // feedback: square
        0, 3, 50, 64,                                       // ratio 3.50, detune 0
        0x71, 0x72, static_cast<std::uint8_t>(0x73 + mark), // no parameter
    };
    // clang-format on
}

// A whole block: header, common block, four operators.
inline std::vector<std::uint8_t> TestRefaceBlock(int number) {
    std::vector<std::uint8_t> block = {
        0x6F, 0x57, 0x4E, 0x54, // "TNWo", T in the high byte
        52,   0,    0,    0,    // payload offset
        38,   0,    0,    0,    // payload size
        112,  0,    0,    0,    // extra size
        'x',  'd',  'F',  'R',
    };
    block.resize(52, 0);
    const auto common = TestRefaceCommon(number);
    block.insert(block.end(), common.begin(), common.end());
    for (int index = 0; index < 4; ++index) {
        const auto bytes = TestRefaceOperator(index);
        block.insert(block.end(), bytes.begin(), bytes.end());
    }
    return block;
}

inline void PutTestNumber(std::vector<std::uint8_t> &file, std::size_t offset,
                          std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        file[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

// The header of a file by its magic, with time 0.
inline std::vector<std::uint8_t> TestRefaceHeader(const std::string &magic, std::uint32_t count,
                                                  std::uint32_t recordSize = 202,
                                                  std::uint32_t firmware = 0) {
    std::vector<std::uint8_t> header(magic.begin(), magic.end());
    header.resize(TestRefaceHeaderSize, 0);
    header[8] = 160;
    header[12] = 0x20; // version 544
    header[13] = 0x02;
    header[16] = 'x';
    header[17] = 'd';
    header[18] = 'F';
    header[19] = 'R';
    PutTestNumber(header, 24, count);
    PutTestNumber(header, 28, recordSize);
    PutTestNumber(header, 32, firmware);
    return header;
}

constexpr const char *TestRefaceBankMagic = "TNWRDXrf";
constexpr const char *TestRefaceVoiceMagic = "TNWRDxrf";

// A bank file of the voices 0 to `count` - 1.
inline std::vector<std::uint8_t> TestRefaceBank(int count = 32, std::uint32_t firmware = 0) {
    auto file =
        TestRefaceHeader(TestRefaceBankMagic, static_cast<std::uint32_t>(count), 202, firmware);
    for (int number = 0; number < count; ++number) {
        const auto block = TestRefaceBlock(number);
        file.insert(file.end(), block.begin(), block.end());
    }
    return file;
}

// A single-voice file of voice `number`.
inline std::vector<std::uint8_t> TestRefaceVoiceFile(int number, std::uint32_t firmware = 0) {
    auto file = TestRefaceHeader(TestRefaceVoiceMagic, 1, 202, firmware);
    const auto block = TestRefaceBlock(number);
    file.insert(file.end(), block.begin(), block.end());
    return file;
}

// The file with its time of writing replaced by 0, so that it can be compared.
inline std::vector<std::uint8_t> WithoutTestTime(std::vector<std::uint8_t> file) {
    std::fill(file.begin() + 20, file.begin() + 24, std::uint8_t{0});
    return file;
}

} // namespace tonewright
