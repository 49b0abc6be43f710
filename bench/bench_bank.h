// The bank that the benchmarks work on.
#pragma once

#include "drivers/dx7/files.h"

#include <array>
#include <cstdint>
#include <numeric>
#include <string>

namespace tonewright {

using BankBytes = std::array<std::uint8_t, Dx7BankFileSize>;

// 32 voices, each with another algorithm and a name of ten letters.
inline BankBytes MakeBenchBank() {
    BankBytes bank{0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    for (std::size_t voice = 0; voice < 32; ++voice) {
        std::uint8_t *bytes = &bank[6 + 128 * voice];
        for (std::size_t offset = 0; offset < 118; ++offset) {
            bytes[offset] = static_cast<std::uint8_t>((offset * 7 + voice) % 64);
        }
        bytes[110] = static_cast<std::uint8_t>(voice);
        const std::string name = "BENCH VC " + std::string(1, static_cast<char>('A' + voice));
        std::copy(name.begin(), name.end(), bytes + 118);
    }
    const unsigned sum = std::accumulate(&bank[6], &bank[4102], 0u);
    bank[4102] = static_cast<std::uint8_t>((128 - sum % 128) % 128);
    bank[4103] = 0xF7;
    return bank;
}

} // namespace tonewright
