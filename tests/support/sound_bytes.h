// Bytes of WAVE files, written out without any code of the program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

using SoundBytes = std::vector<std::uint8_t>;

inline void AddText(SoundBytes &bytes, const std::string &text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

inline void AddNumber(SoundBytes &bytes, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
}

// The 16 bytes of a "fmt " chunk.
inline SoundBytes TestSoundFormat(std::uint32_t code, std::uint32_t channels, std::uint32_t rate,
                                  std::uint32_t frameSize, std::uint32_t bits) {
    SoundBytes chunk;
    AddNumber(chunk, code, 2);
    AddNumber(chunk, channels, 2);
    AddNumber(chunk, rate, 4);
    AddNumber(chunk, rate * frameSize, 4);
    AddNumber(chunk, frameSize, 2);
    AddNumber(chunk, bits, 2);
    return chunk;
}

// Adds a chunk, with the pad byte behind an odd size.
inline void AddChunk(SoundBytes &bytes, const std::string &tag, const SoundBytes &content) {
    AddText(bytes, tag);
    AddNumber(bytes, static_cast<std::uint32_t>(content.size()), 4);
    bytes.insert(bytes.end(), content.begin(), content.end());
    if (content.size() % 2 != 0) {
        bytes.push_back(0);
    }
}

// A file of chunks "fmt " and "data".
inline SoundBytes TestSoundFile(const SoundBytes &format, const SoundBytes &data) {
    SoundBytes chunks;
    AddChunk(chunks, "fmt ", format);
    AddChunk(chunks, "data", data);
    SoundBytes file;
    AddText(file, "RIFF");
    AddNumber(file, static_cast<std::uint32_t>(chunks.size() + 4), 4);
    AddText(file, "WAVE");
    file.insert(file.end(), chunks.begin(), chunks.end());
    return file;
}

// One channel of 16 bits at 8,000 frames a second, each frame the number of its place.
inline SoundBytes TestSoundFrames(int count) {
    SoundBytes frames;
    for (int i = 0; i < count; ++i) {
        AddNumber(frames, static_cast<std::uint32_t>(i), 2);
    }
    return frames;
}
inline SoundBytes TestSound(int count) {
    return TestSoundFile(TestSoundFormat(1, 1, 8000, 2, 16), TestSoundFrames(count));
}

} // namespace tonewright
