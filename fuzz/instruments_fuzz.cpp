// Any bytes to the built-in instruments, in any pieces, with any faults: they stay what they are,
// what they answer can be read, and what they tell a listener can be played.
//
// The input is a run of steps: a byte that says what is done, and the bytes that it needs.
#include "midi/instruments/builtin_instruments.h"
#include "midi/instruments/instrument.h"
#include "support/fuzz_support.h"
#include "support/instrument_events.h"

#include <algorithm>
#include <array>
#include <numeric>

using namespace tonewright;

namespace {

constexpr std::array<BuiltinInstrument, BuiltinInstrumentCount> All = {
    BuiltinInstrument::Dx7, BuiltinInstrument::VolcaFm, BuiltinInstrument::Reface};
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
    const auto order = steps.Piece(steps.Byte() % 8);
    faults.blockOrder.resize(order.size());
    std::ranges::transform(order, faults.blockOrder.begin(),
                           [](std::uint8_t block) { return static_cast<std::int8_t>(block); });
}

// Reads all that comes, until nothing has come for as long as the instrument may be late. It is
// never more than the buffer holds.
void Drain(const MidiApi &midi, MidiStream input, const InstrumentFaults &faults) {
    const int patience = std::max(0, faults.lateByMilliseconds) + 1;
    std::size_t read = 0;
    MidiEvent event;
    for (int quiet = 0; quiet < patience; ++quiet) {
        if (midi.Pm_Poll(input) > 0) {
            Demand(midi.Pm_Read(input, &event) == 1, "what a poll has found can be read");
            ++read;
            quiet = -1;
        }
    }
    Demand(read <= MidiInputBufferSize, "no more comes than the buffer holds");
}

bool IsData(std::uint8_t byte) {
    return byte < 0x80;
}

// A message: its start, the piece as `size` bytes of data, cut or filled with zeros, the sum of
// these and of the last `summed` bytes of the start, and the end. Nothing is kept free behind it,
// so that a read past its end is seen.
std::vector<std::uint8_t> MessageOf(std::span<const std::uint8_t> start, std::size_t summed,
                                    std::span<const std::uint8_t> piece, std::size_t size) {
    std::vector<std::uint8_t> message(start.size() + size + 2);
    const auto data = std::ranges::copy(start, message.begin()).out;
    std::ranges::copy(piece.first(std::min(piece.size(), size)), data);
    const auto end = message.end() - 2;
    const unsigned sum = std::accumulate(data - static_cast<std::ptrdiff_t>(summed), end, 0u);
    end[0] = static_cast<std::uint8_t>((128 - sum % 128) % 128);
    end[1] = 0xF7;
    return message;
}

int OpenOutputs = 0; // as a listener knows them

InstrumentListener Listener() {
    return {.outputOpened = [](BuiltinInstrument) { ++OpenOutputs; },
            .outputClosed = [](BuiltinInstrument) { --OpenOutputs; },
            .heard =
                [](BuiltinInstrument instrument, const SynthEvent &event) {
                    DemandSoundEvent(event);
                    const bool bringsVoice = event.kind == SynthEventKind::NewVoice ||
                                             event.kind == SynthEventKind::ChangedVoice;
                    if (bringsVoice) {
                        PreparedVoiceOf(instrument);
                    }
                }};
}

void CheckInstruments() {
    for (const BuiltinInstrument instrument : All) {
        const auto i = static_cast<std::size_t>(instrument);
        Demand(MemoryOf(instrument).size() == MemorySizes[i], "the memory keeps its size");
        Demand(EditBufferOf(instrument).size() == EditBufferSizes[i], "so does the edit buffer");
        Demand(MemoryOf(instrument) == FactoryInstruments()[i].memory ||
                   std::ranges::all_of(MemoryOf(instrument), IsData),
               "seven bits in memory");
        Demand(std::ranges::all_of(EditBufferOf(instrument), IsData), "and in the edit buffer");
        Demand(std::ranges::all_of(SystemSettingsOf(instrument), IsData), "and in the settings");
        const int program = SelectedProgramOf(instrument);
        Demand(program >= 0 && program < 32, "one of the programs is selected");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const MidiApi midi =
        MakeBuiltinInstruments({.simulatedClock = true, .listener = Listener()});
    ResetBuiltinInstruments();
    std::array<MidiStream, BuiltinInstrumentCount> inputs{};
    std::array<MidiStream, BuiltinInstrumentCount> outputs{};
    midi.Pt_Start(1);
    const auto open = [&](std::size_t target) {
        const int device = static_cast<int>(2 * target);
        midi.Pm_OpenInput(&inputs[target], device, MidiInputBufferSize);
        midi.Pm_OpenOutput(&outputs[target], device + 1, MidiOutputBufferSize, 0);
    };
    Steps steps{{data, size}};
    while (!steps.IsOver()) {
        const std::uint8_t step = steps.Byte();
        const std::size_t target = step / 16 % BuiltinInstrumentCount;
        if (outputs[target] == NoMidiStream) {
            open(target);
        }
        switch (step % 8) {
        case 0:
            midi.Pm_WriteShort(outputs[target], 0, steps.Word());
            break;
        case 1:
            midi.Pm_Write(outputs[target], {steps.Word(), 0});
            break;
        case 2: { // a frame around any bytes
            const auto piece = steps.Piece(steps.Byte());
            std::vector<std::uint8_t> message(piece.size() + 2);
            message.front() = 0xF0;
            std::ranges::copy(piece, message.begin() + 1);
            message.back() = 0xF7;
            midi.Pm_WriteSysEx(outputs[target], 0, message);
            break;
        }
        case 3: { // a voice or a bank for a DX7 with the right sum
            constexpr std::uint8_t voice[] = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
            constexpr std::uint8_t bank[] = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
            const bool isBank = (step & 8) != 0;
            const auto piece = steps.Piece(steps.Byte());
            midi.Pm_WriteSysEx(outputs[target], 0,
                               isBank ? MessageOf(bank, 0, piece, 4096)
                                      : MessageOf(voice, 0, piece, 155));
            break;
        }
        case 4:
            SetFaults(FaultsOf(All[target]), steps);
            break;
        case 5:
            Drain(midi, inputs[target], FaultsOf(All[target]));
            break;
        case 6: { // a block for a reface DX with the right count and sum
            const auto piece = steps.Piece(steps.Byte() % 64);
            const auto count = static_cast<std::uint8_t>(piece.size() + 1);
            const std::uint8_t start[] = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, count, 0x05};
            midi.Pm_WriteSysEx(outputs[target], 0, MessageOf(start, 1, piece, piece.size()));
            break;
        }
        case 7:
            midi.Pm_Close(inputs[target]);
            midi.Pm_Close(outputs[target]);
            open(target);
            break;
        default:
            break;
        }
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (inputs[i] == NoMidiStream) {
            continue;
        }
        Drain(midi, inputs[i], FaultsOf(All[i]));
        midi.Pm_Close(outputs[i]);
        midi.Pm_Close(inputs[i]);
    }
    midi.Pt_Stop();
    Demand(OpenBuiltinStreams() == 0 && !BuiltinClockRuns(), "everything is closed");
    Demand(OpenOutputs == 0, "and a listener knows it");
    CheckInstruments();
    return 0;
}
