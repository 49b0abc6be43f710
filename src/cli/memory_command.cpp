// The command that reads the memory of a built-in instrument back: its 32 voices as a bank, or the
// voice of its edit buffer as a single voice. The instruments know only bytes; what these mean as
// voices is said here.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/midi_session.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/transport.h"

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

VoiceObject Dx7MemoryVoice(Bytes packed) {
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    UnpackDx7Voice(voice, packed.first<Dx7PackedVoiceSize>());
    return MakeDx7VoiceObject(voice);
}

// All that a voice in memory has but the byte behind it, which operators are on: in the instrument
// all of them are.
VoiceObject Dx7EditedVoice(Bytes buffer) {
    constexpr std::uint8_t allOperators = 0x3F;
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    std::ranges::copy(buffer.first<Dx7Voice::operatorEnable>(), voice.begin());
    voice[Dx7Voice::operatorEnable] = allOperators;
    return MakeDx7VoiceObject(voice);
}

VoiceObject RefaceVoiceOfBytes(Bytes bytes) {
    return MakeVoiceObject(RefaceDxDriverId, bytes.first<RefaceCommonSize>(),
                           bytes.subspan<RefaceCommonSize, RefaceOperatorsSize>());
}

struct InstrumentMemory {
    BuiltinInstrument instrument;
    DriverId driver;
    std::size_t voiceSize; // in memory
    VoiceObject (*memoryVoice)(Bytes voice);
    VoiceObject (*editedVoice)(Bytes editBuffer);
};
constexpr InstrumentMemory Memories[] = {
    {.instrument = BuiltinInstrument::Dx7,
     .driver = Dx7DriverId,
     .voiceSize = Dx7PackedVoiceSize,
     .memoryVoice = Dx7MemoryVoice,
     .editedVoice = Dx7EditedVoice},
    {.instrument = BuiltinInstrument::VolcaFm,
     .driver = Dx7DriverId,
     .voiceSize = Dx7PackedVoiceSize,
     .memoryVoice = Dx7MemoryVoice,
     .editedVoice = Dx7EditedVoice},
    {.instrument = BuiltinInstrument::RefaceDx,
     .driver = RefaceDxDriverId,
     .voiceSize = RefaceCommonSize + RefaceOperatorsSize,
     .memoryVoice = RefaceVoiceOfBytes,
     .editedVoice = RefaceVoiceOfBytes},
};
static_assert(std::size(Memories) == BuiltinInstrumentCount);

// The name of an instrument is that of its ports, of which the input has an even index.
std::string NameOf(const InstrumentMemory &memory) {
    static const MidiApi ports = MakeBuiltinInstruments({});
    return ports.Pm_GetDeviceInfo(2 * static_cast<int>(memory.instrument))->name;
}

// The one instrument whose name holds `part`; nullptr after telling that there is none, or more.
const InstrumentMemory *MemoryOfName(const char *part) {
    const InstrumentMemory *meant = nullptr;
    int count = 0;
    std::string names;
    for (const InstrumentMemory &memory : Memories) {
        const std::string name = NameOf(memory);
        names += (names.empty() ? "" : "; ") + name;
        if (NameContains(name.c_str(), part)) {
            meant = &memory;
            ++count;
        }
    }
    if (count == 1) {
        return meant;
    }
    TellError(part, std::string(count == 0 ? "no such built-in instrument"
                                           : "more than one built-in instrument") +
                        "; there are: " + names);
    return nullptr;
}

} // namespace

int CliMemory(const CliCall &call) {
    const char *path = call.words[0], *out = call.words[2];
    const InstrumentMemory *memory = MemoryOfName(call.words[1]);
    if (!memory) {
        return ExitWrongCall;
    }
    const VoiceFileFormat *format = FormatOfPath(out);
    if (!format || format->driver != memory->driver) {
        return TellWrongCall(out, FormatText("the extension of the file to write must be \"%s\", "
                                             "or \"%s\" for the edit buffer",
                                             BankExtension(memory->driver),
                                             VoiceExtension(memory->driver)));
    }
    UseTerminalDesktop(call);
    if (const int status = ReadInstrumentMemory(path, false); status != ExitDone) {
        return status;
    }
    CurrentDriverId = memory->driver;
    if (format->kind == VoiceFileKind::SingleVoice) {
        ListSetVoice(MainList, ListAdd(MainList),
                     memory->editedVoice(EditBufferOf(memory->instrument)));
        return ExportVoiceDocument(0, out);
    }
    const Bytes voices = MemoryOf(memory->instrument);
    for (std::size_t at = 0; at < voices.size(); at += memory->voiceSize) {
        ListSetVoice(MainList, ListAdd(MainList),
                     memory->memoryVoice(voices.subspan(at, memory->voiceSize)));
    }
    return SaveBankDocument(out);
}

} // namespace tonewright
