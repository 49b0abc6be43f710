// Bytes of dumps of many kinds, written out here without any code of the program.
#pragma once

#include "support/bank_bytes.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

using DumpBytes = std::vector<std::uint8_t>;

inline DumpBytes &operator+=(DumpBytes &bytes, std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

inline DumpBytes Join(std::initializer_list<DumpBytes> parts) {
    DumpBytes bytes;
    for (const DumpBytes &part : parts) {
        bytes += part;
    }
    return bytes;
}

inline DumpBytes TextBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

// F0 43 0n ff, the byte count of the data, the data, their checksum, F7.
inline DumpBytes TestBulk(std::uint8_t format, const DumpBytes &data, int channel = 1) {
    DumpBytes message = {0xF0,
                         0x43,
                         static_cast<std::uint8_t>(channel - 1),
                         format,
                         static_cast<std::uint8_t>(data.size() >> 7),
                         static_cast<std::uint8_t>(data.size() & 0x7F)};
    message += data;
    message.push_back(TestChecksum(data));
    message.push_back(0xF7);
    return message;
}

// `count` packed voices, TestPackedVoice(first) and on, round after 32.
inline DumpBytes TestPackedVoices(int count, int first = 0) {
    DumpBytes voices;
    for (int number = first; number < first + count; ++number) {
        voices += TestPackedVoice(number % 32);
    }
    return voices;
}

// A bank of the instrument for a channel.
inline DumpBytes TestBankMessage(int channel = 1) {
    return TestBulk(0x09, TestPackedVoices(32), channel);
}

// A single voice as the instrument sends it, 163 bytes: the first 155 of TestUnpackedVoice.
inline DumpBytes TestVoiceMessage(int channel = 1) {
    DumpBytes voice = TestUnpackedVoice();
    voice.pop_back();
    return TestBulk(0x00, voice, channel);
}

// The 150 bytes of a reface DX voice, every value in its range, "Reface NN"; voices of different
// numbers differ.
inline DumpBytes TestRefaceVoice(int number) {
    const auto mark = static_cast<std::uint8_t>(number % 100);
    DumpBytes voice = TextBytes("Reface ");
    voice.push_back(static_cast<std::uint8_t>('0' + mark / 10));
    voice.push_back(static_cast<std::uint8_t>('0' + mark % 10));
    voice += DumpBytes{0,  0,  0,  40, 1,   5,  42, static_cast<std::uint8_t>(mark % 12),
                       6,  60, 7,  8,  100, 90, 80, 70,
                       64, 65, 66, 63, 3,   64, 65, 7,
                       10, 20, 0,  0,  0};
    for (int n = 0; n < 4; ++n) {
        voice += DumpBytes{1,
                           100,
                           90,
                           80,
                           70,
                           127,
                           110,
                           100,
                           0,
                           5,
                           10,
                           12,
                           3,
                           2,
                           30,
                           1,
                           1,
                           40,
                           mark,
                           20,
                           1,
                           0,
                           static_cast<std::uint8_t>(n + 1),
                           50,
                           64,
                           0,
                           0,
                           0};
    }
    return voice;
}

// A bulk dump of the reface DX: the address, then the data.
inline DumpBytes TestRefaceBlock(const DumpBytes &addressAndData, int device = 1) {
    DumpBytes counted = {0x05};
    counted += addressAndData;
    DumpBytes message = {0xF0,
                         0x43,
                         static_cast<std::uint8_t>(device - 1),
                         0x7F,
                         0x1C,
                         static_cast<std::uint8_t>(counted.size() >> 7),
                         static_cast<std::uint8_t>(counted.size() & 0x7F)};
    message += counted;
    message.push_back(TestChecksum(counted));
    message.push_back(0xF7);
    return message;
}

inline DumpBytes TestRefaceHeader(int device = 1) {
    return TestRefaceBlock({0x0E, 0x0F, 0x00}, device);
}
inline DumpBytes TestRefaceFooter(int device = 1) {
    return TestRefaceBlock({0x0F, 0x0F, 0x00}, device);
}
inline DumpBytes TestRefaceCommon(const DumpBytes &voice, int device = 1) {
    return TestRefaceBlock(Join({{0x30, 0x00, 0x00}, DumpBytes(voice.begin(), voice.begin() + 38)}),
                           device);
}
inline DumpBytes TestRefaceOperator(const DumpBytes &voice, int number, int device = 1) {
    const auto start = voice.begin() + 38 + 28 * number;
    return TestRefaceBlock(
        Join({{0x31, static_cast<std::uint8_t>(number), 0x00}, DumpBytes(start, start + 28)}),
        device);
}

// The 241 bytes of a voice as the instrument sends it.
inline DumpBytes TestRefaceMessages(const DumpBytes &voice, int device = 1) {
    DumpBytes messages = Join({TestRefaceHeader(device), TestRefaceCommon(voice, device)});
    for (int number = 0; number < 4; ++number) {
        messages += TestRefaceOperator(voice, number, device);
    }
    return Join({messages, TestRefaceFooter(device)});
}

// ---- MIDI files

// A length or a delta time, seven bits a byte.
inline DumpBytes TestMidiNumber(std::size_t number) {
    DumpBytes bytes = {static_cast<std::uint8_t>(number & 0x7F)};
    for (number >>= 7; number > 0; number >>= 7) {
        bytes.insert(bytes.begin(), static_cast<std::uint8_t>(0x80 | (number & 0x7F)));
    }
    return bytes;
}

// An event at delta time 0: of a message, or of a part of it.
inline DumpBytes TestMidiEvent(std::uint8_t status, const DumpBytes &data) {
    return Join({{0x00, status}, TestMidiNumber(data.size()), data});
}
// The event of a whole message.
inline DumpBytes TestMidiMessage(const DumpBytes &message) {
    return TestMidiEvent(0xF0, DumpBytes(message.begin() + 1, message.end()));
}

inline DumpBytes TestMidiChunk(std::string_view id, const DumpBytes &data) {
    DumpBytes chunk = TextBytes(id);
    for (int shift = 24; shift >= 0; shift -= 8) {
        chunk.push_back(static_cast<std::uint8_t>(data.size() >> shift));
    }
    return Join({chunk, data});
}

// The end of a track.
inline DumpBytes TestMidiEnd() {
    return {0x00, 0xFF, 0x2F, 0x00};
}

inline DumpBytes TestMidiFile(const std::vector<DumpBytes> &tracks) {
    DumpBytes file =
        TestMidiChunk("MThd", {0, 1, 0, static_cast<std::uint8_t>(tracks.size()), 0, 96});
    for (const DumpBytes &track : tracks) {
        file += TestMidiChunk("MTrk", track);
    }
    return file;
}

// ---- text

// Two digits a byte, with `between` between two of them.
inline std::string TestHex(const DumpBytes &bytes, std::string_view between = " ",
                           std::string_view digits = "0123456789ABCDEF") {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : between;
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

} // namespace tonewright
