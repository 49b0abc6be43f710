// Uploads of banks and single voices.
#include "drivers/dx7/transfer.h"

#include "common/desktop.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/short_messages.h"
#include "midi/sysex.h"
#include "midi/transport.h"

#include <algorithm>
#include <array>
#include <string>

namespace tonewright {
namespace {

constexpr std::size_t DumpDataSize = 155;
static_assert(Dx7VoiceHeader.size() + DumpDataSize + 2 == Dx7VoiceDumpSize);

void SendController(const MidiLink &link, std::uint8_t controller) {
    WriteShort(link.output, OnCurrentChannel(ControlChange), controller, 0);
}

// As it is shown; empty for no voice.
std::string NameOf(const std::optional<Dx7UnpackedConst> &voice) {
    return voice ? Latin1ToUtf8(Dx7NameText(&(*voice)[Dx7Voice::name])) : std::string();
}

// The dump of a voice; of no voice, with zeros.
std::array<std::uint8_t, Dx7VoiceDumpSize>
MakeVoiceDump(const std::optional<Dx7UnpackedConst> &voice) {
    std::array<std::uint8_t, Dx7VoiceDumpSize> dump = {};
    const auto data = std::span(dump).subspan<Dx7VoiceHeader.size(), DumpDataSize>();
    std::ranges::copy(Dx7VoiceHeader, dump.begin());
    if (voice) {
        std::ranges::copy(voice->first<DumpDataSize>(), data.begin());
    }
    dump[Dx7VoiceDumpSize - 2] = SysexChecksum(data);
    dump[Dx7VoiceDumpSize - 1] = EndOfSysex;
    return dump;
}

// Tells of every row that holds a block and thus has its place in the image of the bank.
void TellOfEncoding(QWidget *window, const VoiceList &list) {
    for (int row = 0; row < Dx7VoicesPerBank; ++row) {
        const VoiceObject *voice = ListVoice(list, row);
        if (!voice) {
            continue;
        }
        SetProgress(row, Dx7VoicesPerBank);
        SetStatusText(window, FormatText("Encoding voice %d of %d (%s)", row + 1, Dx7VoicesPerBank,
                                         NameOf(Dx7VoiceOf(voice)).c_str()));
    }
}

void ShowInstrument(QWidget *window) {
    SetStatusText(window, SynthTitle(CurrentDriverId, SynthFirmware));
}

} // namespace

int Dx7UploadBank(QWidget *window, VoiceList &list, MidiPorts ports) {
    MidiLink link;
    if (!MidiLinkOpen(link, false, NoMidiDevice, ports.out)) {
        return 0;
    }
    ListEnable(list, false);
    SetProgress(0, 1);
    ShowBusyBox(window, "Uploading voices");
    SendController(link, OmniOn);
    std::array<std::uint8_t, Dx7BankFileSize> image;
    EncodeDx7Bank(list, image);
    TellOfEncoding(window, list);
    if (!TransferCancelled()) {
        WriteSysex(link.output, image);
        SelectLastThenFirstProgram(link.output);
    }
    SendController(link, OmniOff);
    SetProgress(0, 1);
    SetStatusText(window, "");
    ShowInstrument(window);
    ListSetRedraw(list, true);
    ListEnable(list, true);
    CloseBusyBox();
    MidiLinkClose(link);
    return 1;
}

int Dx7UploadVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                   int index, std::uint8_t flags) {
    MidiLink link;
    if (!MidiLinkOpen(link, false, NoMidiDevice, ports.out)) {
        return 0;
    }
    ListEnable(list, false);
    SendController(link, OmniOn);
    // What is sent is settled ahead of the prompt, during which the program lives on.
    const auto bytes = Dx7VoiceOf(voice ? voice : ListVoice(list, index));
    const auto dump = MakeVoiceDump(bytes);
    const std::string name = NameOf(bytes);
    const bool prompts = (flags & 1) != 0;
    if (prompts && bytes) {
        ShowMessage(window, name + " is about to be uploaded to your synthesizer.\n\nPlease "
                                   "select the voice bank in which you'd like it to be stored. "
                                   "(Turn the black Program knob on the Korg Volca FM.)");
    }
    const bool isCancelled = TransferCancelled(); // at the prompt
    if (!isCancelled) {
        WriteSysex(link.output, dump);
    }
    if (prompts && !isCancelled) {
        ShowMessage(window, name + " has been uploaded to your synthesizer.\n\nPress the Save "
                                   "button twice to store it.");
    }
    SendController(link, OmniOff);
    ShowInstrument(window);
    ListSetRedraw(list, true);
    ListEnable(list, true);
    MidiLinkClose(link);
    return 1;
}

} // namespace tonewright
