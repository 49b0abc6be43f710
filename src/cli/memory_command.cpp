// The command that reads the memory of a built-in instrument back: its 32 voices as a bank, or the
// voice of its edit buffer as a single voice. The instruments know only bytes; what these mean as
// voices the rows of the drivers say.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/midi_session.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/builtin_ports.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/transport.h"

#include <optional>
#include <string>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

// A built-in instrument whose memory the row of a family can read.
struct ReadableInstrument {
    BuiltinInstrument instrument;
    const SynthDriver *driver;
    const InstrumentMemory *memory;
};

// The name of an instrument is that of its ports, of which the input has an even index.
std::string NameOf(BuiltinInstrument instrument) {
    static const MidiApi ports = MakeBuiltinInstruments({});
    return ports.Pm_GetDeviceInfo(2 * static_cast<int>(instrument))->name;
}

std::optional<ReadableInstrument> ReadableOf(BuiltinInstrument instrument) {
    const std::string name = NameOf(instrument);
    for (const SynthDriver *driver : SynthDrivers) {
        if (const InstrumentMemory *memory = MemoryOfFamily(*driver, name.c_str())) {
            return ReadableInstrument{instrument, driver, memory};
        }
    }
    return std::nullopt;
}

// The one instrument whose name holds `part`; nothing after telling that there is none, or more.
std::optional<ReadableInstrument> InstrumentOfName(const char *part) {
    std::optional<ReadableInstrument> meant;
    int count = 0;
    std::string names;
    for (int index = 0; index < BuiltinInstrumentCount; ++index) {
        const auto readable = ReadableOf(static_cast<BuiltinInstrument>(index));
        if (!readable) {
            continue;
        }
        const std::string name = NameOf(readable->instrument);
        names += (names.empty() ? "" : "; ") + name;
        if (NameContains(name.c_str(), part)) {
            meant = readable;
            ++count;
        }
    }
    if (count == 1) {
        return meant;
    }
    TellError(part, std::string(count == 0 ? "no such built-in instrument"
                                           : "more than one built-in instrument") +
                        "; there are: " + names);
    return std::nullopt;
}

} // namespace

int CliMemory(const CliCall &call) {
    const char *path = call.words[0], *out = call.words[2];
    const auto meant = InstrumentOfName(call.words[1]);
    if (!meant) {
        return ExitWrongCall;
    }
    const DriverId driver = meant->driver->id;
    const VoiceFileFormat *format = FormatOfPath(out);
    if (!format || format->driver != driver) {
        return TellWrongCall(out, FormatText("the extension of the file to write must be \"%s\", "
                                             "or \"%s\" for the edit buffer",
                                             BankExtension(driver), VoiceExtension(driver)));
    }
    UseTerminalDesktop(call);
    if (const int status = ReadInstrumentMemory(path, false); status != ExitDone) {
        return status;
    }
    CurrentDriverId = driver;
    const InstrumentMemory &memory = *meant->memory;
    if (format->kind == VoiceFileKind::SingleVoice) {
        ListSetVoice(MainList, ListAdd(MainList),
                     memory.editedVoice(EditBufferOf(meant->instrument)));
        return ExportVoiceDocument(0, out);
    }
    const std::span<const std::uint8_t> voices = MemoryOf(meant->instrument);
    for (std::size_t at = 0; at < voices.size(); at += memory.voiceSize) {
        ListSetVoice(MainList, ListAdd(MainList),
                     memory.memoryVoice(voices.subspan(at, memory.voiceSize)));
    }
    return SaveBankDocument(out);
}

} // namespace tonewright
