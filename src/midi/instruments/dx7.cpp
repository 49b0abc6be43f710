// The built-in DX7 and Volca FM: they take single voices, banks and parameters, and never answer.
//
//     F0 43 0n 00 01 1B, 155 bytes, sum, F7     a voice for the edit buffer
//     F0 43 0n 09 20 00, 4096 bytes, sum, F7    32 packed voices for the memory
//     F0 43 1n 0gggggpp 0ppppppp 0vvvvvvv F7    a parameter of the edit buffer, in group g = 0
//
// n is the channel from 0. The sum makes the data bytes and itself a multiple of 128. A message of
// another length, count or sum is refused as a whole. Parameters 0 to 154 are the bytes of the edit
// buffer; 155 says in its bits 5 to 0 which of the operators 1 to 6 are switched on, which no voice
// keeps.
#include "midi/instruments/instrument.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tonewright {

namespace {

constexpr std::size_t PackedVoiceSize = 128;
constexpr std::size_t PackedOperatorSize = 17;
constexpr std::size_t VoiceSize = 155;
constexpr std::size_t OperatorSize = 21;
constexpr std::size_t OperatorCount = 6;
constexpr std::size_t BankSize = VoicesPerInstrument * PackedVoiceSize;
constexpr std::size_t HeaderSize = 6;
constexpr std::size_t FrameSize = HeaderSize + 2; // and the sum and F7
constexpr std::size_t ParameterMessageSize = 7;
constexpr std::size_t OperatorSwitches = VoiceSize; // the parameter

// "INIT VOICE": one sine wave, as after the instrument's own initialisation.
constexpr std::array<std::uint8_t, PackedVoiceSize> InitVoice = {
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 0,  0x02, 0, // operator 6
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 0,  0x02, 0, //
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 0,  0x02, 0, //
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 0,  0x02, 0, //
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 0,  0x02, 0, //
    99,  99,   99,  99,  99,   99,  99,  0,   39,  0,   0, 0, 0x38, 0, 99, 0x02, 0, // operator 1
    99,  99,   99,  99,  50,   50,  50,  50, // pitch envelope
    0,   0x08,                               // algorithm 1, key sync
    35,  0,    0,   0,   0x31, 24,           // LFO with key sync, pitch sensitivity 3, transpose C3
    'I', 'N',  'I', 'T', ' ',  'V', 'O', 'I', 'C', 'E',
};

void FillFactory(Instrument &instrument) {
    for (std::size_t voice = 0; voice < VoicesPerInstrument; ++voice) {
        std::ranges::copy(InitVoice, instrument.memory.begin() +
                                         static_cast<std::ptrdiff_t>(voice * PackedVoiceSize));
    }
}

void UnpackOperator(std::span<const std::uint8_t> packed, std::span<std::uint8_t> full) {
    std::ranges::copy(packed.first(11), full.begin());
    full[11] = packed[11] & 3;
    full[12] = packed[11] >> 2 & 3;
    full[13] = packed[12] & 7;
    full[14] = packed[13] & 3;
    full[15] = packed[13] >> 2 & 7;
    full[16] = packed[14];
    full[17] = packed[15] & 1;
    full[18] = packed[15] >> 1 & 31;
    full[19] = packed[16];
    full[20] = packed[12] >> 3 & 15;
}

void Recall(Instrument &instrument, int program) {
    const auto packed =
        std::span<const std::uint8_t>(instrument.memory)
            .subspan(static_cast<std::size_t>(program) * PackedVoiceSize, PackedVoiceSize);
    const auto full = std::span(instrument.editBuffer);
    for (std::size_t op = 0; op < OperatorCount; ++op) {
        UnpackOperator(packed.subspan(op * PackedOperatorSize, PackedOperatorSize),
                       full.subspan(op * OperatorSize, OperatorSize));
    }
    const auto from = packed.subspan(OperatorCount * PackedOperatorSize);
    const auto to = full.subspan(OperatorCount * OperatorSize);
    std::ranges::copy(from.first(9), to.begin()); // pitch envelope and algorithm
    to[9] = from[9] & 7;
    to[10] = from[9] >> 3 & 1;
    std::ranges::copy(from.subspan(10, 4), to.begin() + 11); // LFO
    to[15] = from[14] & 1;
    to[16] = from[14] >> 1 & 7;
    to[17] = from[14] >> 4 & 7;
    std::ranges::copy(from.subspan(15), to.begin() + 18); // transpose and name
    instrument.enabledOperators = AllOperators;
}

bool IsOwnChannel(const Instrument &instrument, int channel) {
    return channel == instrument.channel - 1;
}

bool Hears(const Instrument &instrument, int channel) {
    return instrument.omni || IsOwnChannel(instrument, channel);
}

void SetOmni(Instrument &instrument, int channel, bool on) {
    if (IsOwnChannel(instrument, channel)) {
        instrument.omni = on;
    }
}

// The data of a message with this format and count, when all of it is right; otherwise nothing.
std::span<const std::uint8_t> DataOf(const Instrument &instrument,
                                     std::span<const std::uint8_t> message, std::uint8_t format,
                                     std::uint8_t countHigh, std::uint8_t countLow,
                                     std::size_t size) {
    const auto subStatus = static_cast<std::uint8_t>(instrument.channel - 1);
    const std::array<std::uint8_t, HeaderSize> header = {0xF0,   0x43,      subStatus,
                                                         format, countHigh, countLow};
    if (message.size() != size + FrameSize ||
        !std::ranges::equal(message.first(HeaderSize), header)) {
        return {};
    }
    const auto summed = message.subspan(HeaderSize, size + 1);
    const unsigned sum = std::accumulate(summed.begin(), summed.end(), 0u);
    return sum % 128 == 0 ? message.subspan(HeaderSize, size) : std::span<const std::uint8_t>();
}

// A value is taken as it comes: any byte is legal in an edit buffer.
void TakeParameter(Instrument &instrument, std::span<const std::uint8_t> message,
                   std::vector<SynthEvent> &events) {
    const auto subStatus = static_cast<std::uint8_t>(0x10 | (instrument.channel - 1));
    if (message.size() != ParameterMessageSize || message[1] != 0x43 || message[2] != subStatus) {
        return;
    }
    const int group = message[3] >> 2;
    const std::size_t parameter = static_cast<std::size_t>((message[3] & 3) << 7 | message[4]);
    if (group != 0 || parameter > OperatorSwitches) {
        return;
    }
    const std::uint8_t value = message[5];
    if (parameter == OperatorSwitches) {
        instrument.enabledOperators = 0;
        for (std::size_t op = 0; op < OperatorCount; ++op) {
            instrument.enabledOperators |= (value >> (OperatorCount - 1 - op) & 1u) << op;
        }
    } else {
        instrument.editBuffer[parameter] = value;
    }
    events.push_back({SynthEventKind::ChangedVoice});
}

void TakeSysex(Instrument &instrument, std::span<const std::uint8_t> message, std::vector<Answer> &,
               std::vector<SynthEvent> &events) {
    TakeParameter(instrument, message, events);
    if (const auto bank = DataOf(instrument, message, 0x09, 0x20, 0x00, BankSize); !bank.empty()) {
        std::ranges::copy(bank, instrument.memory.begin());
    }
    if (const auto voice = DataOf(instrument, message, 0x00, 0x01, 0x1B, VoiceSize);
        !voice.empty()) {
        std::ranges::copy(voice, instrument.editBuffer.begin());
        instrument.enabledOperators = AllOperators;
        events.push_back({SynthEventKind::NewVoice});
    }
}

PreparedVoice Prepare(const Instrument &instrument) {
    static_assert(VoiceSize == SixOperatorBytes);
    std::uint8_t bytes[VoiceSize];
    std::ranges::copy(instrument.editBuffer, bytes);
    return PrepareSixOperatorVoice(bytes, instrument.enabledOperators);
}

constexpr InstrumentModel ModelAt(const char *portName) {
    return {
        .portName = portName,
        .memorySize = BankSize,
        .editBufferSize = VoiceSize,
        .systemSize = 0,
        .fillFactory = FillFactory,
        .hearsNotes = Hears,
        .hearsControls = Hears,
        .setOmni = SetOmni,
        .recall = Recall,
        .takeSysex = TakeSysex,
        .prepare = Prepare,
    };
}

} // namespace

// A Volca FM takes the same messages as a DX7.
const InstrumentModel Dx7Model = ModelAt("Built-in DX7");
const InstrumentModel VolcaFmModel = ModelAt("Built-in volca fm");

} // namespace tonewright
