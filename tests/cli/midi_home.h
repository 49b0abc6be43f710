// The command-line program with the built-in instruments, on a home of its own.
#pragma once

#include "run_cli.h"

#include "support/bank_bytes.h"
#include "support/environment.h"
#include "support/family_names.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace tonewright {

using Bytes = std::vector<std::uint8_t>;

// Where the parts of the file stand in which the instruments keep their memory: eight bytes of
// name, then for each instrument program, channel, Omni, memory, edit buffer and settings.
constexpr std::size_t Dx7StateOffset = 8;
constexpr std::size_t Dx7MemoryOffset = Dx7StateOffset + 3;
constexpr std::size_t Dx7EditOffset = Dx7MemoryOffset + 4096;
constexpr std::size_t VolcaStateOffset = Dx7EditOffset + 155;
constexpr std::size_t RefaceStateOffset = VolcaStateOffset + 3 + 4096 + 155;
constexpr std::size_t RefaceMemoryOffset = RefaceStateOffset + 3;
constexpr std::size_t RefaceEditOffset = RefaceMemoryOffset + 32 * 150;
constexpr std::size_t RefaceSystemOffset = RefaceEditOffset + 150;
constexpr std::size_t InstrumentFileSize = RefaceSystemOffset + 32 + 4;

// Puts the right check sum into such a file.
inline void FixMemoryCheck(Bytes &studio) {
    const auto check =
        crc32(crc32(0, nullptr, 0), studio.data(), static_cast<uInt>(studio.size() - 4));
    PutTestNumber(studio, studio.size() - 4, static_cast<std::uint32_t>(check));
}

inline Bytes Part(const Bytes &bytes, std::size_t offset, std::size_t size) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

// One line of a trace without its time.
struct TraceLine {
    long time = -1;
    std::string message; // "out" or "in", a tab, the bytes
};

// The lines of a trace; one that does not begin with a time and a tab, or with a time before that
// of the line above it, fails the test.
inline std::vector<TraceLine> TraceOf(const std::string &errors) {
    std::vector<TraceLine> lines;
    std::istringstream stream(errors);
    for (std::string line; std::getline(stream, line);) {
        const auto tab = line.find('\t');
        const bool isTimed =
            tab != std::string::npos && tab > 0 && line.find_first_not_of("0123456789") == tab;
        EXPECT_TRUE(isTimed) << line;
        if (isTimed) {
            const long time = std::stol(line.substr(0, tab));
            EXPECT_GE(time, lines.empty() ? 0 : lines.back().time) << line;
            lines.push_back({time, line.substr(tab + 1)});
        }
    }
    return lines;
}

inline std::vector<std::string> MessagesOf(const std::string &errors) {
    std::vector<std::string> messages;
    for (const TraceLine &line : TraceOf(errors)) {
        messages.push_back(line.message);
    }
    return messages;
}

// "F0 43 00", the bytes as a trace shows them.
inline std::string HexOf(const Bytes &bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
}

class CliMidi : public testing::Test {
protected:
    void SetUp() override {
        SetHome(folder.path.string());
        SetVariable("TONEWRIGHT_INSTRUMENTS", "1");
    }

    void WriteSettings(const std::string &text) const {
        std::filesystem::create_directories(folder.path / ".config/Quillbrook");
        WriteTestText(folder.File(".config/Quillbrook/Tonewright 17.ini"), text);
    }
    std::string Bank() const { return folder.Write("bank.syx", TestBank()); }
    std::string RefaceBank() const { return folder.Write("bank.srx", TestRefaceBank()); }
    std::string Memory() const { return folder.File("studio"); }

    TempFolder folder;
};

} // namespace tonewright
