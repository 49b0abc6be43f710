// Any bytes as the memory file of the built-in instruments, and laid over a right one with the
// check made right, so that what stands behind the check is seen too: all of a file is taken, or
// nothing.
#include "midi/instruments/memory_file.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>
#include <zlib.h>

using namespace tonewright;

namespace {

using Instruments = std::array<Instrument, 3>;

bool AreFactory(const Instruments &instruments) {
    return std::ranges::equal(instruments, FactoryInstruments(), [](const auto &a, const auto &b) {
        return a.model == b.model && a.memory == b.memory && a.editBuffer == b.editBuffer &&
               a.system == b.system && a.selectedProgram == b.selectedProgram &&
               a.channel == b.channel && a.omni == b.omni;
    });
}

void Decode(std::span<const std::uint8_t> file) {
    Instruments instruments = FactoryInstruments();
    if (!DecodeMemory(file, instruments)) {
        Demand(AreFactory(instruments), "what is refused changes nothing");
        return;
    }
    for (const Instrument &instrument : instruments) {
        Demand(instrument.selectedProgram >= 0 && instrument.selectedProgram < VoicesPerInstrument,
               "one of the programs is selected");
        Demand(instrument.channel >= 1 && instrument.channel <= 16, "a channel is one of sixteen");
        Demand(instrument.memory.size() == instrument.model->memorySize &&
                   instrument.editBuffer.size() == instrument.model->editBufferSize &&
                   instrument.system.size() == instrument.model->systemSize,
               "the blocks have their sizes");
    }
    Demand(std::ranges::equal(EncodeMemory(instruments), file), "all of it is kept");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    Decode(input);
    if (size < 2) {
        return 0;
    }
    // The first two bytes say where the others go.
    static const std::vector<std::uint8_t> factory = [] {
        Instruments instruments = FactoryInstruments();
        return EncodeMemory(instruments);
    }();
    std::vector<std::uint8_t> file = factory;
    const std::size_t checked = file.size() - 4;
    const std::size_t place = (data[0] | std::size_t{data[1]} << 8) % checked;
    const auto laid = input.subspan(2, std::min(size - 2, checked - place));
    for (std::size_t i = 0; i < laid.size(); ++i) {
        file[place + i] = file[place + i] ^ laid[i];
    }
    const auto check = crc32(crc32(0, nullptr, 0), file.data(), static_cast<uInt>(checked));
    for (std::size_t i = 0; i < 4; ++i) {
        file[checked + i] = static_cast<std::uint8_t>(check >> (8 * i));
    }
    Decode(file);
    return 0;
}
