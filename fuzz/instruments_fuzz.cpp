// Any bytes to the built-in instruments, in any pieces, with any faults, and any bytes as their
// memory file: they stay what they are, and what they answer can be read.
//
// The input is a run of steps: a byte that says what is done, and the bytes that it needs.
#include "midi/instruments/builtin_instruments.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>
#include <zlib.h>

using namespace tonewright;

namespace {

constexpr std::array<BuiltinInstrument, BuiltinInstrumentCount> All = {
    BuiltinInstrument::Dx7, BuiltinInstrument::VolcaFm, BuiltinInstrument::RefaceDx};
constexpr std::array<std::size_t, BuiltinInstrumentCount> MemorySizes = {4096, 4096, 4800};
constexpr std::array<std::size_t, BuiltinInstrumentCount> EditBufferSizes = {155, 155, 150};

struct Steps {
    std::span<const std::uint8_t> rest;

    bool IsOver() const { return rest.empty(); }
    std::uint8_t Byte() {
        if (rest.empty()) {
            return 0;
        }
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }
    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word |= static_cast<std::uint32_t>(Byte()) << (8 * i);
        }
        return word;
    }
    std::span<const std::uint8_t> Piece(std::size_t size) {
        const auto piece = rest.first(std::min(size, rest.size()));
        rest = rest.subspan(piece.size());
        return piece;
    }
};

void SetFaults(InstrumentFaults &faults, Steps &steps) {
    const std::uint8_t flags = steps.Byte();
    const std::uint8_t stray = steps.Byte();
    faults.silent = (flags & 1) != 0;
    faults.noteBeforeReply = (flags & 2) != 0;
    faults.activeSensingInReply = (flags & 4) != 0;
    faults.operatorNumberAboveThree = (flags & 8) != 0;
    faults.byteFiveNonzero = (flags & 16) != 0;
    faults.cutMessages = (flags & 32) != 0;
    faults.corruptChecksum = (flags & 64) != 0;
    faults.twin = (flags & 128) != 0;
    faults.activeSensingBeforeReply = (stray & 64) != 0;
    faults.noteInReply = (stray & 128) != 0;
    faults.strayPlace = stray % 64;
    faults.goodMessages = static_cast<std::int8_t>(steps.Byte());
    faults.faultyMessages = static_cast<std::int8_t>(steps.Byte());
    faults.silentAfterMessages = static_cast<std::int8_t>(steps.Byte());
    faults.lateEvent = static_cast<std::int8_t>(steps.Byte());
    faults.lateByMilliseconds = static_cast<std::int8_t>(steps.Byte());
    faults.failWrite = static_cast<std::int8_t>(steps.Byte());
    faults.blockOrder.clear();
    for (const std::uint8_t block : steps.Piece(steps.Byte() % 8)) {
        faults.blockOrder.push_back(static_cast<std::int8_t>(block));
    }
}

// Reads all that is there now and in the next 300 ms, which is never more than the buffer holds.
void Drain(const MidiApi &midi, MidiStream input) {
    std::size_t read = 0;
    MidiEvent event;
    for (std::int32_t end = midi.Pt_Time() + 300; midi.Pt_Time() < end;) {
        if (midi.Pm_Poll(input) > 0) {
            Demand(midi.Pm_Read(input, &event) == 1, "what a poll has found can be read");
            ++read;
        }
    }
    Demand(read <= MidiInputBufferSize, "no more comes than the buffer holds");
}

void CheckInstruments() {
    for (const BuiltinInstrument instrument : All) {
        const auto i = static_cast<std::size_t>(instrument);
        Demand(MemoryOf(instrument).size() == MemorySizes[i], "the memory keeps its size");
        Demand(EditBufferOf(instrument).size() == EditBufferSizes[i], "so does the edit buffer");
        const auto isData = [](std::uint8_t byte) { return byte < 0x80; };
        Demand(std::ranges::all_of(MemoryOf(instrument), isData), "seven bits in memory");
        Demand(std::ranges::all_of(EditBufferOf(instrument), isData), "and in the edit buffer");
        Demand(std::ranges::all_of(SystemSettingsOf(instrument), isData), "and in the settings");
        const int program = SelectedProgramOf(instrument);
        Demand(program >= 0 && program < 32, "one of the programs is selected");
    }
    const std::string path = FuzzPath("saved");
    Demand(SaveInstrumentMemory(path.c_str()), "the memory can be saved");
    const auto saved = FuzzRead(path);
    Demand(LoadInstrumentMemory(path.c_str()), "and loaded");
    Demand(SaveInstrumentMemory(path.c_str()) && FuzzRead(path) == saved, "as it was");
}

// The input as a memory file, and again laid over a right one with the check made right, so that
// what stands behind the check is seen too. What does not load leaves the factory.
void LoadMemories(std::span<const std::uint8_t> input) {
    const std::string path = FuzzPath("factory");
    Demand(SaveInstrumentMemory(path.c_str()), "the factory can be saved");
    auto file = FuzzRead(path);
    const auto factory = file;
    Demand(!LoadInstrumentMemory(FuzzFile("input", input).c_str()) || input.size() == file.size(),
           "only a file of the right size loads");
    const std::size_t checked = file.size() - 4;
    for (std::size_t i = 0; i < std::min(input.size(), checked); ++i) {
        file[i] = file[i] ^ input[i];
    }
    const auto check = crc32(crc32(0, nullptr, 0), file.data(), static_cast<uInt>(checked));
    for (std::size_t i = 0; i < 4; ++i) {
        file[checked + i] = static_cast<std::uint8_t>(check >> (8 * i));
    }
    const bool isLoaded = LoadInstrumentMemory(FuzzFile("overlaid", file).c_str());
    Demand(SaveInstrumentMemory(path.c_str()), "what was loaded can be saved");
    Demand(FuzzRead(path) == (isLoaded ? file : factory), "all of it is loaded, or nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ResetBuiltinInstruments();
    LoadMemories({data, size});

    const MidiApi midi = MakeBuiltinInstruments({.simulatedClock = true});
    std::array<MidiStream, BuiltinInstrumentCount> inputs{};
    std::array<MidiStream, BuiltinInstrumentCount> outputs{};
    midi.Pt_Start(1);
    for (int i = 0; i < BuiltinInstrumentCount; ++i) {
        const auto place = static_cast<std::size_t>(i);
        midi.Pm_OpenInput(&inputs[place], 2 * i, MidiInputBufferSize);
        midi.Pm_OpenOutput(&outputs[place], 2 * i + 1, MidiOutputBufferSize, 0);
    }
    Steps steps{{data, size}};
    while (!steps.IsOver()) {
        const std::uint8_t step = steps.Byte();
        const std::size_t target = step / 16 % BuiltinInstrumentCount;
        switch (step % 8) {
        case 0:
            midi.Pm_WriteShort(outputs[target], 0, steps.Word());
            break;
        case 1:
            midi.Pm_Write(outputs[target], {steps.Word(), 0});
            break;
        case 2: { // a frame around any bytes
            std::vector<std::uint8_t> message = {0xF0};
            const auto piece = steps.Piece(steps.Byte());
            message.insert(message.end(), piece.begin(), piece.end());
            message.push_back(0xF7);
            midi.Pm_WriteSysEx(outputs[target], 0, message);
            break;
        }
        case 3: // as long as a bank may be
            midi.Pm_WriteSysEx(outputs[target], 0, steps.Piece(4104));
            break;
        case 4:
            SetFaults(FaultsOf(All[target]), steps);
            break;
        case 5:
            Drain(midi, inputs[target]);
            break;
        case 6: { // a block for a reface DX with the right count and sum
            const auto piece = steps.Piece(steps.Byte() % 64);
            std::vector<std::uint8_t> message = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00};
            message.push_back(static_cast<std::uint8_t>(piece.size() + 1));
            message.push_back(0x05);
            message.insert(message.end(), piece.begin(), piece.end());
            unsigned sum = 0x05;
            for (const std::uint8_t byte : piece) {
                sum += byte;
            }
            message.push_back(static_cast<std::uint8_t>((128 - sum % 128) % 128));
            message.push_back(0xF7);
            midi.Pm_WriteSysEx(outputs[target], 0, message);
            break;
        }
        case 7:
            midi.Pm_Close(inputs[target]);
            midi.Pm_OpenInput(&inputs[target], static_cast<int>(2 * target), MidiInputBufferSize);
            break;
        default:
            break;
        }
    }
    for (const MidiStream input : inputs) {
        Drain(midi, input);
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        midi.Pm_Close(outputs[i]);
        midi.Pm_Close(inputs[i]);
    }
    midi.Pt_Stop();
    Demand(OpenBuiltinStreams() == 0 && !BuiltinClockRuns(), "everything is closed");
    CheckInstruments();
    return 0;
}
