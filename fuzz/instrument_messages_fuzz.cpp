// Any bytes on the cable to one built-in instrument, and the same as the data of a message whose
// frame and sum are right: it stays what it is, answers in whole messages, and tells of events
// whose values are in range.
//
// The first byte of the input says which instrument, how the bytes come, and what the frame is.
#include "midi/instruments/instrument.h"
#include "support/fuzz_support.h"
#include "support/instrument_events.h"

#include <algorithm>

using namespace tonewright;

namespace {

bool IsData(std::uint8_t byte) {
    return byte < 0x80;
}

void Take(Instrument &instrument, std::span<const std::uint8_t> message) {
    std::vector<Answer> answers;
    std::vector<SynthEvent> events;
    TakeInstrumentMessage(instrument, message, answers, events);
    std::ranges::for_each(events, DemandSoundEvent);
    for (const Answer &answer : answers) {
        const std::span<const std::uint8_t> bytes = answer.bytes;
        Demand(bytes.size() > 2 && bytes.front() == 0xF0 && bytes.back() == 0xF7 &&
                   std::ranges::all_of(bytes.subspan(1, bytes.size() - 2), IsData),
               "an answer is a whole message");
    }
}

void Check(const Instrument &instrument, const Instrument &factory) {
    const InstrumentModel &model = *instrument.model;
    Demand(instrument.memory.size() == model.memorySize &&
               instrument.editBuffer.size() == model.editBufferSize &&
               instrument.system.size() == model.systemSize,
           "the blocks keep their sizes");
    Demand(instrument.memory == factory.memory || std::ranges::all_of(instrument.memory, IsData),
           "seven bits in memory");
    Demand(std::ranges::all_of(instrument.editBuffer, IsData), "and in the edit buffer");
    Demand(std::ranges::all_of(instrument.system, IsData), "and in the settings");
    Demand(instrument.selectedProgram >= 0 && instrument.selectedProgram < VoicesPerInstrument,
           "one of the programs is selected");
    Demand(instrument.enabledOperators <= AllOperators, "there are six operators");
    model.prepare(instrument);
}

// The bytes of the input behind `start`, filled up or cut to `size`, with their sum and the end.
std::vector<std::uint8_t> Framed(std::vector<std::uint8_t> start,
                                 std::span<const std::uint8_t> input, std::size_t size,
                                 unsigned sum) {
    for (const std::uint8_t byte : input.first(std::min(input.size(), size))) {
        start.push_back(byte & 0x7F);
        sum += byte & 0x7Fu;
    }
    start.resize(start.size() + size - std::min(input.size(), size));
    start.push_back(static_cast<std::uint8_t>((128 - sum % 128) % 128));
    start.push_back(0xF7);
    return start;
}

std::vector<std::uint8_t> Unsummed(std::vector<std::uint8_t> start,
                                   std::span<const std::uint8_t> input) {
    start.insert(start.end(), input.begin(), input.end());
    start.push_back(0xF7);
    return start;
}

std::vector<std::uint8_t> MessageOf(unsigned kind, std::span<const std::uint8_t> input) {
    switch (kind % 5) {
    case 0:
        return Framed({0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B}, input, 155, 0);
    case 1:
        return Framed({0xF0, 0x43, 0x00, 0x09, 0x20, 0x00}, input, 4096, 0);
    case 2: { // a block of a reface DX
        const std::size_t size = std::min<std::size_t>(input.size(), 120);
        return Framed({0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(size + 1), 5},
                      input, size, 5);
    }
    case 3: // a setting or parameters of a reface DX
        return Unsummed({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05}, input);
    default: // a parameter of a DX7, and what is a byte too short or too long
        return Unsummed({0xF0, 0x43, 0x10}, input.first(std::min<std::size_t>(input.size(), 4)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const auto &factories = FactoryInstruments();
    const Instrument &factory = factories[data[0] % factories.size()];
    const bool inWords = (data[0] & 0x80) != 0;
    const std::span<const std::uint8_t> input(data + 1, size - 1);

    Instrument instrument = factory;
    const TakeMessage take = [&](std::span<const std::uint8_t> message) {
        Take(instrument, message);
    };
    if (inWords) {
        for (std::size_t i = 0; i + 4 <= input.size(); i += 4) {
            ReadWord(instrument.reader,
                     input[i] | std::uint32_t{input[i + 1]} << 8 |
                         std::uint32_t{input[i + 2]} << 16 | std::uint32_t{input[i + 3]} << 24,
                     take);
        }
    } else {
        ReadBytes(instrument.reader, input, take);
    }
    ReadBytes(instrument.reader, MessageOf(data[0] / 4u, input), take);
    Check(instrument, factory);
    return 0;
}
