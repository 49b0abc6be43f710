// The built-in reface DX: it tells what it is, gives its settings and the voice of its edit buffer,
// and takes voices, parameters and settings.
//
//     F0 7E 00 06 01 F7                            what are you? (7F for 00 as well)
//     F0 43 20 7F 1C 05 aH aM aL F7                give the block at this address
//     F0 43 10 7F 1C 05 aH aM aL data F7           a setting; parameters of the edit buffer, as
//                                                  many as data bytes, from this address on
//     F0 43 00 7F 1C cH cL 05 aH aM aL data sum F7 a block; cH cL count from 05 to the last data
//     byte
//
// A voice is a header (0E 0F 00), the common block (30 00 00), four operators (31 0n 00) and a
// footer (0F 0F 00). The sum makes the counted bytes and itself a multiple of 128.
#include "midi/instruments/reface_dx_factory.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tonewright {

namespace {

constexpr std::uint8_t DeviceNumber = 0;
constexpr std::uint8_t ModelByte = 0x05;
constexpr std::uint8_t Firmware = 0x02;
constexpr std::size_t SystemSize = 32;

using Address = std::array<std::uint8_t, 3>;
constexpr Address SystemAddress = {0x00, 0x00, 0x00};
constexpr Address HeaderAddress = {0x0E, 0x0F, 0x00};
constexpr Address FooterAddress = {0x0F, 0x0F, 0x00};
constexpr Address CommonAddress = {0x30, 0x00, 0x00};
constexpr std::uint8_t OperatorAddressHigh = 0x31;

// The settings by their addresses, which are also their offsets in the block.
constexpr std::size_t ReceiveChannel = 0x01;
constexpr std::size_t MasterTune = 0x02;
constexpr std::size_t Transpose = 0x07;
constexpr std::size_t MidiControl = 0x0E;
constexpr std::uint8_t ReceiveAllChannels = 16;
struct Setting {
    std::uint8_t address;
    std::size_t size;    // bytes
    int lowest, highest; // that it takes
    int bits = 7;        // of its number in each byte, the highest first
    int alsoTaken = -1;  // a value that stands for itself; -1 for none
};
constexpr std::array<Setting, 11> Settings = {{
    {.address = 0x00, .size = 1, .lowest = 0, .highest = 15, .alsoTaken = 127}, // transmit channel
    {.address = 0x01, .size = 1, .lowest = 0, .highest = ReceiveAllChannels},   // receive channel
    {.address = 0x02, .size = 4, .lowest = 0, .highest = 0xFFFF, .bits = 4},    // master tune
    {.address = 0x06, .size = 1, .lowest = 0, .highest = 1},                    // local control
    {.address = 0x07, .size = 1, .lowest = 64 - 12, .highest = 64 + 12},        // transpose
    {.address = 0x08, .size = 2, .lowest = 30, .highest = 300},                 // tempo
    {.address = 0x0A, .size = 1, .lowest = 0, .highest = 63}, // contrast of the display
    {.address = 0x0B, .size = 1, .lowest = 0, .highest = 1},  // sustain pedal
    {.address = 0x0C, .size = 1, .lowest = 0, .highest = 1},  // auto power off
    {.address = 0x0D, .size = 1, .lowest = 0, .highest = 1},  // speaker
    {.address = 0x0E, .size = 1, .lowest = 0, .highest = 1},  // MIDI control
}};

// True when the data are a value that the setting takes.
bool Takes(const Setting &setting, std::span<const std::uint8_t> data) {
    if (setting.size != data.size()) {
        return false;
    }
    int value = 0;
    for (const std::uint8_t byte : data) {
        if (byte >> setting.bits != 0) {
            return false;
        }
        value = value << setting.bits | byte;
    }
    return (value >= setting.lowest && value <= setting.highest) || value == setting.alsoTaken;
}

constexpr std::array<std::uint8_t, SystemSize> FactorySettings = {
    0x00,                   // transmits on channel 1
    0x10,                   // receives all channels
    0x00, 0x04, 0x00, 0x00, // 440.0 Hz
    0x01,                   // local control
    0x40,                   // transpose 0
    0x00, 0x78,             // tempo 120
    0x20,                   // contrast
    0x00,                   // pedal FC3
    0x01,                   // auto power off
    0x01,                   // speaker
    0x01,                   // MIDI control
};

void FillFactory(Instrument &instrument) {
    FillRefaceFactoryVoices(instrument.memory);
    std::ranges::copy(FactorySettings, instrument.system.begin());
}

bool HearsNotes(const Instrument &instrument, int channel) {
    const std::uint8_t own = instrument.system[ReceiveChannel];
    return own == ReceiveAllChannels || own == channel;
}

bool HearsControls(const Instrument &instrument, int channel) {
    return instrument.system[MidiControl] != 0 && HearsNotes(instrument, channel);
}

// The receive channel says which channels are heard; Omni only silences the keys.
void SetOmni(Instrument &, int, bool) {}

void Recall(Instrument &instrument, int program) {
    const auto voice =
        std::span<const std::uint8_t>(instrument.memory)
            .subspan(static_cast<std::size_t>(program) * RefaceVoiceBytes, RefaceVoiceBytes);
    std::ranges::copy(voice, instrument.editBuffer.begin());
}

Answer Block(const Address &address, std::span<const std::uint8_t> data, int voiceBlock = -1) {
    const std::size_t count = 1 + address.size() + data.size();
    Answer answer{.bytes = {0xF0, 0x43, DeviceNumber, 0x7F, 0x1C,
                            static_cast<std::uint8_t>(count >> 7 & 0x7F),
                            static_cast<std::uint8_t>(count & 0x7F), ModelByte},
                  .hasChecksum = true,
                  .voiceBlock = voiceBlock};
    unsigned sum = ModelByte;
    const auto add = [&](std::uint8_t byte) {
        answer.bytes.push_back(byte & 0x7F);
        sum += byte & 0x7Fu;
    };
    std::ranges::for_each(address, add);
    std::ranges::for_each(data, add);
    answer.bytes.push_back(static_cast<std::uint8_t>((128 - sum % 128) % 128));
    answer.bytes.push_back(0xF7);
    return answer;
}

void AnswerVoice(const Instrument &instrument, std::vector<Answer> &answers) {
    const auto voice = std::span<const std::uint8_t>(instrument.editBuffer);
    answers.push_back(Block(HeaderAddress, {}));
    answers.push_back(Block(CommonAddress, voice.first(RefaceCommonBytes), 0));
    for (std::size_t op = 0; op < RefaceOperators; ++op) {
        const Address address = {OperatorAddressHigh, static_cast<std::uint8_t>(op), 0x00};
        answers.push_back(
            Block(address,
                  voice.subspan(RefaceCommonBytes + op * RefaceOperatorBytes, RefaceOperatorBytes),
                  static_cast<int>(op) + 1));
    }
    answers.push_back(Block(FooterAddress, {}));
}

void TakeDumpRequest(const Instrument &instrument, const Address &address,
                     std::vector<Answer> &answers) {
    if (address == SystemAddress) {
        answers.push_back(Block(SystemAddress, instrument.system));
    } else if (address == HeaderAddress) {
        AnswerVoice(instrument, answers);
    }
}

// Where a block stands in a voice; a size of 0 for an address that is in none.
struct BlockRange {
    std::size_t offset = 0;
    std::size_t size = 0;
};
BlockRange BlockOf(const Address &address) {
    if (address[0] == CommonAddress[0] && address[1] == CommonAddress[1]) {
        return {0, RefaceCommonBytes};
    }
    const std::size_t op = address[1];
    if (address[0] == OperatorAddressHigh && op < RefaceOperators) {
        return {RefaceCommonBytes + op * RefaceOperatorBytes, RefaceOperatorBytes};
    }
    return {};
}

// Any values; a message that goes beyond its block is refused as a whole.
void TakeParameters(Instrument &instrument, const Address &address,
                    std::span<const std::uint8_t> data, std::vector<SynthEvent> &events) {
    const BlockRange block = BlockOf(address);
    const std::size_t place = address[2];
    if (data.empty() || place + data.size() > block.size) {
        return;
    }
    std::ranges::copy(data, instrument.editBuffer.begin() +
                                static_cast<std::ptrdiff_t>(block.offset + place));
    events.push_back({SynthEventKind::ChangedVoice});
}

void TakeSetting(Instrument &instrument, const Address &address, std::span<const std::uint8_t> data,
                 std::vector<SynthEvent> &events) {
    const auto isMeant = [&](const Setting &setting) {
        return setting.address == address[2] && Takes(setting, data);
    };
    if (address[0] == 0 && address[1] == 0 && std::ranges::any_of(Settings, isMeant)) {
        std::ranges::copy(data, instrument.system.begin() + address[2]);
        if (address[2] == MasterTune || address[2] == Transpose) {
            events.push_back({SynthEventKind::ChangedVoice});
        }
    }
}

// The edit buffer changes when the footer comes: blocks that did not come stay as they were.
void TakeBlock(Instrument &instrument, const Address &address, std::span<const std::uint8_t> data,
               std::vector<SynthEvent> &events) {
    if (address == HeaderAddress && data.empty()) {
        instrument.arriving = instrument.editBuffer;
        return;
    }
    if (instrument.arriving.size() != RefaceVoiceBytes) {
        return;
    }
    if (address == FooterAddress && data.empty()) {
        instrument.editBuffer.swap(instrument.arriving);
        instrument.arriving.clear();
        events.push_back({SynthEventKind::NewVoice});
        return;
    }
    const BlockRange block = BlockOf(address);
    if (address[2] == 0 && block.size != 0 && block.size == data.size()) {
        std::ranges::copy(data,
                          instrument.arriving.begin() + static_cast<std::ptrdiff_t>(block.offset));
    }
}

bool IsIdentityRequest(std::span<const std::uint8_t> message) {
    const std::array<std::uint8_t, 6> request = {0xF0, 0x7E, DeviceNumber, 0x06, 0x01, 0xF7};
    const std::array<std::uint8_t, 6> toAll = {0xF0, 0x7E, 0x7F, 0x06, 0x01, 0xF7};
    return std::ranges::equal(message, request) || std::ranges::equal(message, toAll);
}

bool SumIsRight(std::span<const std::uint8_t> message) {
    const auto summed = message.subspan(7, message.size() - 8);
    return std::accumulate(summed.begin(), summed.end(), 0u) % 128 == 0;
}

void TakeSysex(Instrument &instrument, std::span<const std::uint8_t> message,
               std::vector<Answer> &answers, std::vector<SynthEvent> &events) {
    if (IsIdentityRequest(message)) {
        answers.push_back({.bytes = {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x43, 0x00, 0x41, 0x53, 0x06,
                                     Firmware, 0x00, 0x00, 0x7F, 0xF7}});
        return;
    }
    constexpr std::size_t shortest = 10; // a dump request
    if (message.size() < shortest || message[1] != 0x43 || (message[2] & 0x0F) != DeviceNumber ||
        message[3] != 0x7F || message[4] != 0x1C) {
        return;
    }
    const auto addressAt = [&](std::size_t offset) {
        return Address{message[offset], message[offset + 1], message[offset + 2]};
    };
    switch (message[2] >> 4) {
    case 0: {
        constexpr std::size_t frame = 9; // around the counted bytes
        const std::size_t count = static_cast<std::size_t>(message[5]) * 128 + message[6];
        const bool isRight = message.size() >= frame + 4 && count == message.size() - frame &&
                             message[7] == ModelByte && SumIsRight(message);
        if (isRight) {
            TakeBlock(instrument, addressAt(8), message.subspan(11, count - 4), events);
        }
        break;
    }
    case 1:
        if (message[5] == ModelByte) {
            const auto data = message.subspan(9, message.size() - 10);
            TakeSetting(instrument, addressAt(6), data, events);
            TakeParameters(instrument, addressAt(6), data, events);
        }
        break;
    case 2:
        if (message[5] == ModelByte && message.size() == shortest) {
            TakeDumpRequest(instrument, addressAt(6), answers);
        }
        break;
    default:
        break;
    }
}

PreparedVoice Prepare(const Instrument &instrument) {
    static_assert(RefaceVoiceBytes == FourOperatorBytes);
    std::uint8_t bytes[RefaceVoiceBytes];
    std::ranges::copy(instrument.editBuffer, bytes);
    PreparedVoice voice = PrepareFourOperatorVoice(bytes);
    const std::vector<std::uint8_t> &system = instrument.system;
    voice.transpose += std::clamp(system[Transpose] - 64, -12, 12);
    // Tenths of a cent about 1024, in four nibbles; the panel goes as far as 102.3 cents up.
    int tune = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        tune = tune << 4 | (system[MasterTune + i] & 0xF);
    }
    voice.tune = (std::min(tune, 2047) - 1024) / 10.0 / 1200.0;
    return voice;
}

} // namespace

const InstrumentModel RefaceModel = {
    .portName = "Built-in reface DX",
    .memorySize = VoicesPerInstrument * RefaceVoiceBytes,
    .editBufferSize = RefaceVoiceBytes,
    .systemSize = SystemSize,
    .fillFactory = FillFactory,
    .hearsNotes = HearsNotes,
    .hearsControls = HearsControls,
    .setOmni = SetOmni,
    .recall = Recall,
    .takeSysex = TakeSysex,
    .prepare = Prepare,
};

} // namespace tonewright
