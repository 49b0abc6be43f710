// Sends and receives reface DX voices and system settings.
#include "drivers/reface_dx/transfer.h"

#include "common/desktop.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/short_messages.h"
#include "midi/sysex.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <optional>
#include <string>
#include <vector>

namespace tonewright {
namespace {

using Message = std::vector<std::uint8_t>;

const Message SystemDumpRequest = {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x00, 0xF7};
const Message VoiceDumpRequest = {0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0E, 0x0F, 0x00, 0xF7};
const Message BulkHeader = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x04,
                            0x05, 0x0E, 0x0F, 0x00, 0x5E, 0xF7};
const Message BulkFooter = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x04,
                            0x05, 0x0F, 0x0F, 0x00, 0x5D, 0xF7};

// Addresses of system settings, and what they are set to for a transfer.
constexpr std::uint8_t TransmitChannel = 0x00;
constexpr std::uint8_t ReceiveChannel = 0x01;
constexpr std::uint8_t AutoPowerOff = 0x0C;
constexpr std::uint8_t Speaker = 0x0D;
constexpr std::uint8_t MidiControl = 0x0E;

// The settings that are put back: the first address and the number of bytes of each message.
struct SystemRun {
    std::uint8_t address;
    std::uint8_t size;
};
constexpr SystemRun SystemRuns[] = {{0x00, 1}, {0x01, 1}, {0x02, 4}, {0x06, 1},
                                    {0x07, 1}, {0x08, 2}, {0x0A, 1}, {0x0B, 1},
                                    {0x0C, 1}, {0x0D, 1}, {0x0E, 1}};

// Fixed places of a received dump.
constexpr std::size_t CountHighPlace = 5;
constexpr std::size_t CountLowPlace = 6;
constexpr std::size_t ModelPlace = 7;
constexpr std::size_t OperatorPlace = 9; // middle byte of the address
constexpr std::size_t DataPlace = 11;
constexpr std::uint8_t Model = 0x05;
constexpr std::uint8_t AddressSize = 4;                                  // with the model byte
constexpr std::uint8_t SystemCount = AddressSize + RefaceSystemSize;     // 24
constexpr std::uint8_t CommonCount = AddressSize + RefaceCommonSize;     // 2A
constexpr std::uint8_t OperatorCount = AddressSize + RefaceOperatorSize; // 20
static_assert(SystemCount == 0x24 && CommonCount == 0x2A && OperatorCount == 0x20);
constexpr std::uint8_t CommonAddress = 0x30;
constexpr std::uint8_t OperatorAddress = 0x31;

Message MakeParameterChange(std::uint8_t address, std::span<const std::uint8_t> data) {
    Message message = {0xF0, 0x43, 0x10, 0x7F, 0x1C, Model, 0x00, 0x00, address};
    message.insert(message.end(), data.begin(), data.end());
    message.push_back(EndOfSysex);
    return message;
}

void SendSetting(const MidiLink &link, std::uint8_t address, std::uint8_t value) {
    WriteSysex(link.output, MakeParameterChange(address, std::span(&value, 1)));
}

// `middle`: the operator's number, 0 for the common block.
void SendBlock(const MidiLink &link, std::uint8_t high, std::uint8_t middle,
               std::span<const std::uint8_t> data) {
    Message message = {
        0xF0,  0x43, 0x00,   0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(AddressSize + data.size()),
        Model, high, middle, 0x00};
    message.insert(message.end(), data.begin(), data.end());
    message.push_back(SysexChecksum(std::span(message).subspan(ModelPlace)));
    message.push_back(EndOfSysex);
    WriteSysex(link.output, message);
}

// The five blocks of a voice. All five go out in any case: one that the voice does not hold is sent
// as zeros, and does not keep the others back.
void SendVoice(const MidiLink &link, const VoiceObject &voice) {
    constexpr std::array<std::uint8_t, RefaceCommonSize> noCommon = {};
    constexpr std::array<std::uint8_t, RefaceOperatorSize> noOperator = {};
    SendBlock(link, CommonAddress, 0, RefaceCommonOf(voice).value_or(noCommon));
    for (std::size_t n = 0; n < RefaceOperatorCount; ++n) {
        SendBlock(link, OperatorAddress, static_cast<std::uint8_t>(n),
                  RefaceOperatorOf(voice, n).value_or(noOperator));
    }
}

void PrepareInstrument(const MidiLink &link, bool setTransmitChannel) {
    SendSetting(link, ReceiveChannel, 0);
    if (setTransmitChannel) {
        SendSetting(link, TransmitChannel, 0);
    }
    SendSetting(link, AutoPowerOff, 0);
    SendSetting(link, Speaker, 0);
    SendSetting(link, MidiControl, 1);
}

// The blocks of one voice that have arrived: the operators by number, then the common block.
using ReceivedBlocks = std::bitset<RefaceOperatorCount + 1>;

// Takes one message into the voice of a row.
void TakeBlock(QWidget *window, const RefaceMessage &message, int index, VoiceList &list, int row,
               ReceivedBlocks &received) {
    const auto block = RefaceBlockOf(message);
    if (!block) {
        return;
    }
    if (block->number == RefaceCommonBlock) {
        const std::string text =
            FormatText("Downloading voice %d of %d (%s)", index + 1, RefaceVoicesPerBank,
                       Latin1ToUtf8(RefaceNameText(block->data.data())).c_str());
        SetProgress(index, RefaceVoicesPerBank);
        SetStatusText(window, text);
    }
    ListWriteVoice(list, row, [&block](VoiceObject &voice) { StoreRefaceBlock(voice, *block); });
    received.set(block->number);
}

// Asks for the voice of a program and waits until all of it has come, or nothing more comes.
void DownloadVoice(QWidget *window, const MidiLink &link, VoiceList &list, int index) {
    const int row = ListAdd(list);
    ListSetVoice(list, row, MakeRefaceVoiceObject());
    WriteShort(link.output, ProgramChange, static_cast<std::uint8_t>(index), 0);
    if (WriteSysex(link.output, VoiceDumpRequest) != 0) {
        return;
    }
    ReceivedBlocks received;
    while (!received.all()) {
        RefaceMessage message = {};
        std::size_t count = 0;
        if (!SysexReceive(link.input, message, &count)) {
            return;
        }
        TakeBlock(window, message, index, list, row, received);
    }
}

} // namespace

std::optional<RefaceSystemConst> RefaceSystemOf(const RefaceMessage &message) {
    if (message[0] != StartOfSysex || message[1] != 0x43 || message[CountHighPlace] != 0 ||
        message[CountLowPlace] != SystemCount || message[ModelPlace] != Model) {
        return std::nullopt;
    }
    return std::span(message).subspan<DataPlace, RefaceSystemSize>();
}

std::optional<RefaceBlock> RefaceBlockOf(const RefaceMessage &message) {
    if (message[CountHighPlace] != 0) {
        return std::nullopt;
    }
    const auto data = std::span(message).subspan(DataPlace);
    switch (message[CountLowPlace]) {
    case CommonCount:
        return RefaceBlock{.number = RefaceCommonBlock, .data = data.first(RefaceCommonSize)};
    case OperatorCount:
        return RefaceBlock{
            .number = std::min<std::size_t>(message[OperatorPlace], RefaceOperatorCount - 1),
            .data = data.first(RefaceOperatorSize)};
    default:
        return std::nullopt;
    }
}

void StoreRefaceBlock(VoiceObject &voice, const RefaceBlock &block) {
    const auto parts = MutableRefaceVoiceOf(voice);
    if (!parts) {
        return;
    }
    const std::span<std::uint8_t> place =
        block.number == RefaceCommonBlock
            ? std::span<std::uint8_t>(parts->common)
            : parts->operators.subspan(block.number * RefaceOperatorSize, RefaceOperatorSize);
    std::ranges::copy(block.data, place.begin());
}

int ReadSystemCommon(const MidiLink &link, RefaceSystem destination) {
    WriteSysex(link.output, SystemDumpRequest);
    RefaceMessage message = {};
    std::size_t count = 0;
    if (!SysexReceive(link.input, message, &count)) {
        return 0;
    }
    const auto system = RefaceSystemOf(message);
    if (!system) {
        return 0;
    }
    std::ranges::copy(*system, destination.begin());
    return 1;
}

int WriteSystemCommon(const MidiLink &link, RefaceSystemConst system) {
    for (const SystemRun &run : SystemRuns) {
        WriteSysex(link.output,
                   MakeParameterChange(run.address, system.subspan(run.address, run.size)));
    }
    return 1;
}

int OpenRefaceLink(QWidget *window, MidiLink &link, MidiPorts ports, RefaceSystem settings) {
    if (!MidiLinkOpen(link, true, ports.in, ports.out)) {
        return 0;
    }
    if (!ReadSystemCommon(link, settings)) {
        ShowMessage(window, "Invalid system common.");
        MidiLinkClose(link);
        return 0;
    }
    return 1;
}

int RefaceDownloadBank(QWidget *window, VoiceList &list, MidiPorts ports) {
    MidiLink link;
    std::array<std::uint8_t, RefaceSystemSize> saved = {};
    if (!OpenRefaceLink(window, link, ports, saved)) {
        return 0;
    }
    ShowBusyBox(window, "Downloading voices");
    WriteShort(link.output, ControlChange, OmniOff, 0);
    PrepareInstrument(link, false);
    ListReset(list);
    ListEnable(list, false);
    ListSetRedraw(list, false);
    SetProgress(0, 1);
    for (int index = 0; index < RefaceVoicesPerBank; ++index) {
        DownloadVoice(window, link, list, index);
        SelectListFonts(list, RefaceDriverId);
        ListSelect(list, 0);
    }
    WriteShort(link.output, ProgramChange, 0, 0);
    SetProgress(0, 1);
    SetStatusText(window, "");
    SetStatusText(window, SynthTitle(CurrentDriverId, SynthFirmware));
    ListSetRedraw(list, true);
    ListEnable(list, true);
    CloseBusyBox();
    WriteSystemCommon(link, saved);
    MidiLinkClose(link);
    return 1;
}

int RefaceUploadBank(QWidget *window, VoiceList &list, MidiPorts ports) {
    MidiLink link;
    std::array<std::uint8_t, RefaceSystemSize> saved = {};
    if (!OpenRefaceLink(window, link, ports, saved)) {
        return 0;
    }
    PrepareInstrument(link, true);
    ListEnable(list, false);
    SetProgress(0, 1);
    WriteSysex(link.output, BulkHeader);
    if (const VoiceObject *voice = ListVoice(list, 0)) {
        SendVoice(link, *voice);
    }
    WriteSysex(link.output, BulkFooter);
    WriteSystemCommon(link, saved);
    MidiLinkClose(link);
    return 1;
}

int RefaceUploadVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                      int index, std::uint8_t flags) {
    MidiLink link;
    std::array<std::uint8_t, RefaceSystemSize> saved = {};
    if (!OpenRefaceLink(window, link, ports, saved)) {
        return 0;
    }
    WriteShort(link.output, ControlChange, OmniOff, 0);
    PrepareInstrument(link, true);
    WriteSysex(link.output, BulkHeader);
    std::string name;
    if (!voice) {
        voice = ListVoice(list, index);
    }
    if (voice) {
        name = Latin1ToUtf8(VoiceObjectName(*voice));
        ShowBusyBox(window, "Uploading " + name);
        SendVoice(link, *voice);
        CloseBusyBox();
    }
    WriteSysex(link.output, BulkFooter);
    WriteSystemCommon(link, saved);
    WriteShort(link.output, ControlChange, OmniOn, 0);
    if (flags & 1) {
        ShowMessage(window, name + " has been uploaded to your reface DX.\n\nPress Store, select "
                                   "the bank and program you want to store your uploaded voice to "
                                   "and then use the red Data Entry controls to confirm the "
                                   "upload.");
    }
    MidiLinkClose(link);
    return 1;
}

} // namespace tonewright
