// The file that keeps what the built-in instruments hold between two runs.
//
//     0   "TwInst01"
//     8   for each instrument: selected program, channel, Omni (a byte each), memory, edit buffer,
//         settings (as long as the model says)
//     end CRC-32 of all before it, lowest byte first
#include "midi/instruments/memory_file.h"

#include "common/file_bytes.h"
#include "common/whole_file.h"

#include <algorithm>
#include <array>
#include <vector>
#include <zlib.h>

namespace tonewright {

namespace {

constexpr std::array<std::uint8_t, 8> Magic = {'T', 'w', 'I', 'n', 's', 't', '0', '1'};
constexpr std::size_t CheckSize = 4;
constexpr std::size_t StateSize = 3; // program, channel, Omni

std::size_t SizeOf(const InstrumentModel &model) {
    return StateSize + model.memorySize + model.editBufferSize + model.systemSize;
}

std::size_t FileSizeOf(std::span<const Instrument> instruments) {
    std::size_t size = Magic.size() + CheckSize;
    for (const Instrument &instrument : instruments) {
        size += SizeOf(*instrument.model);
    }
    return size;
}

std::uint32_t CheckOf(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint32_t>(
        crc32(crc32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size())));
}

void Append(std::vector<std::uint8_t> &to, const std::vector<std::uint8_t> &bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

// Takes the next `size` bytes off the front.
std::span<const std::uint8_t> Next(std::span<const std::uint8_t> &bytes, std::size_t size) {
    const auto next = bytes.first(size);
    bytes = bytes.subspan(size);
    return next;
}

std::vector<std::uint8_t> BlockOf(std::span<const std::uint8_t> &bytes, std::size_t size) {
    const auto block = Next(bytes, size);
    return {block.begin(), block.end()};
}

} // namespace

std::vector<std::uint8_t> EncodeMemory(std::span<Instrument> instruments) {
    std::vector<std::uint8_t> bytes(Magic.begin(), Magic.end());
    for (Instrument &instrument : instruments) {
        FitBlocks(instrument);
        bytes.push_back(static_cast<std::uint8_t>(instrument.selectedProgram));
        bytes.push_back(static_cast<std::uint8_t>(instrument.channel));
        bytes.push_back(instrument.omni ? 1 : 0);
        Append(bytes, instrument.memory);
        Append(bytes, instrument.editBuffer);
        Append(bytes, instrument.system);
    }
    const std::uint32_t check = CheckOf(bytes);
    for (std::size_t i = 0; i < CheckSize; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(check >> (8 * i)));
    }
    return bytes;
}

bool DecodeMemory(std::span<const std::uint8_t> bytes, std::span<Instrument> instruments) {
    if (bytes.size() != FileSizeOf(instruments) ||
        !std::ranges::equal(bytes.first(Magic.size()), Magic)) {
        return false;
    }
    std::uint32_t check = 0;
    for (std::size_t i = 0; i < CheckSize; ++i) {
        check |= static_cast<std::uint32_t>(bytes[bytes.size() - CheckSize + i]) << (8 * i);
    }
    if (check != CheckOf(bytes.first(bytes.size() - CheckSize))) {
        return false;
    }
    auto rest = bytes.subspan(Magic.size(), bytes.size() - Magic.size() - CheckSize);
    if (std::ranges::any_of(rest, [](std::uint8_t byte) { return byte > 0x7F; })) {
        return false;
    }
    std::vector<Instrument> read;
    for (const Instrument &present : instruments) {
        Instrument instrument;
        instrument.model = present.model;
        const auto state = Next(rest, StateSize);
        instrument.selectedProgram = state[0];
        instrument.channel = state[1];
        instrument.omni = state[2] == 1;
        if (state[0] >= VoicesPerInstrument || state[1] < 1 || state[1] > 16 || state[2] > 1) {
            return false;
        }
        instrument.memory = BlockOf(rest, present.model->memorySize);
        instrument.editBuffer = BlockOf(rest, present.model->editBufferSize);
        instrument.system = BlockOf(rest, present.model->systemSize);
        read.push_back(std::move(instrument));
    }
    std::ranges::move(read, instruments.begin());
    return true;
}

bool WriteMemoryFile(const char *path, std::span<Instrument> instruments) {
    return WriteFileWhole(path, EncodeMemory(instruments));
}

bool ReadMemoryFile(const char *path, std::span<Instrument> instruments) {
    // One byte more than the file may have, so that a longer one is noticed.
    const auto bytes = ReadFileBytes(path, FileSizeOf(instruments) + 1);
    return bytes && DecodeMemory(*bytes, instruments);
}

} // namespace tonewright
