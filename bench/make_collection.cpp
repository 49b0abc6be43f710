// Makes a collection of banks for the benchmarks of the archive: make_collection FOLDER FILES KIND,
// where KIND is "distinct", every voice of which there is once, or "copies", two voices in three of
// which stand in other banks too, as in collections that people have. 500 files stand in each
// folder.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using Voice = std::array<std::uint8_t, 128>;

// A packed voice with values that the instrument has, and a name that can be read.
Voice MakeVoice(std::mt19937_64 &random) {
    const auto below = [&random](unsigned limit) {
        return static_cast<std::uint8_t>((random() >> 11) % limit);
    };
    Voice voice{};
    for (std::size_t of = 0; of < 6 * 17; of += 17) {
        for (std::size_t value = 0; value < 11; ++value) {
            voice[of + value] = below(100);
        }
        voice[of + 11] = below(16);
        voice[of + 12] = static_cast<std::uint8_t>(below(15) << 3 | below(8));
        voice[of + 13] = static_cast<std::uint8_t>(below(8) << 2 | below(4));
        voice[of + 14] = below(100);
        voice[of + 15] = static_cast<std::uint8_t>(below(32) << 1 | below(2));
        voice[of + 16] = below(100);
    }
    for (std::size_t value = 102; value < 110; ++value) {
        voice[value] = below(100);
    }
    voice[110] = below(32);
    voice[111] = static_cast<std::uint8_t>(below(2) << 3 | below(8));
    for (std::size_t value = 112; value < 116; ++value) {
        voice[value] = below(100);
    }
    voice[116] = static_cast<std::uint8_t>(below(8) << 4 | below(6) << 1 | below(2));
    voice[117] = below(49);
    static const char *const words[] = {"BRASS", "PIANO", "BELL", "BASS",  "STRNG", "ORGAN",
                                        "FLUTE", "LEAD",  "PAD",  "MARIM", "VOX",   "CLAV"};
    char name[16];
    std::snprintf(name, sizeof name, "%-5s%5u", words[below(12)],
                  static_cast<unsigned>(random() >> 11) % 100000);
    std::copy_n(name, 10, voice.begin() + 118);
    return voice;
}

} // namespace

int main(int count, char **arguments) {
    if (count != 4) {
        std::fputs("usage: make_collection FOLDER FILES distinct|copies\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    const int files = std::atoi(arguments[2]);
    const bool copies = std::string(arguments[3]) == "copies";
    std::mt19937_64 random(7);
    std::vector<Voice> former;
    for (int file = 0; file < files; ++file) {
        std::string bank = {'\xF0', 'C', 0, 9, ' ', 0};
        unsigned sum = 0;
        for (int number = 0; number < 32; ++number) {
            Voice voice;
            if (copies && former.size() > 1000 && random() % 3 != 0) {
                voice = former[random() % former.size()];
            } else {
                voice = MakeVoice(random);
                if (copies) {
                    former.push_back(voice);
                }
            }
            for (const std::uint8_t byte : voice) {
                sum += byte;
            }
            bank.append(voice.begin(), voice.end());
        }
        bank += {static_cast<char>((128 - sum % 128) % 128), '\xF7'};
        const std::filesystem::path below = folder / ("Folder " + std::to_string(file / 500));
        if (file % 500 == 0) {
            std::filesystem::create_directories(below);
        }
        std::ofstream(below / ("Bank number " + std::to_string(10000 + file) + ".syx"),
                      std::ios::binary)
            << bank;
    }
}
