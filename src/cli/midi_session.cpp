// Finds the instrument of a command, and opens and closes the MIDI table around the command's work.
#include "cli/midi_session.h"

#include "cli/interruption.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/session_api.h"
#include "midi/short_messages.h"
#include "midi/tracing_api.h"
#include "midi/transport.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

std::string Quoted(const std::string &name) {
    return '"' + FieldText(name) + '"';
}

// ---- which instrument

std::string NamesOfSynths() {
    std::string names;
    for (const SynthDriver *synth : SynthDrivers) {
        names += (names.empty() ? "" : "; ") + std::string(synth->name);
    }
    return names;
}

// ---- which ports

// How the ports of this call are found: as its options say, or else as the settings do.
struct PortChoice {
    std::string in, out; // parts of their names
    bool autodetect = false;
};
PortChoice Ports;

// True when the family's ports are found without their names.
bool IsDetected(const SynthDriver &synth) {
    return Ports.autodetect && (synth.flags & DriverFlagAutodetect) != 0;
}

constexpr std::string_view HelpOfPorts =
    "The ports are those of --in and --out, or else of the settings SelectKeyboardMidiIn and\n"
    "SelectKeyboardMidiOut; a part of a name will do, the last port that matches is taken, and a\n"
    "name that is missing is that of the other one.\n";
constexpr std::string_view HelpOfInstruments =
    "Without --synth the instrument is that of the file; find looks for that of the settings, or\n"
    "else for every one. TONEWRIGHT_INSTRUMENTS=1 in the environment adds built-in instruments, "
    "as\n"
    "does the setting extras.BuiltinInstruments.\n";

// Which instruments need no names; empty where all of them do.
std::string DetectionHelp() {
    std::string help;
    for (const SynthDriver *synth : SynthDrivers) {
        if (synth->flags & DriverFlagAutodetect) {
            help += FormatText("The %s is detected without names, unless --in or --out is given or "
                               "the setting\nSelectKeyboardAutodetect is 0.\n",
                               synth->name);
        }
    }
    return help;
}

// False for an option that was given an empty name, which every port would match.
bool TakeName(const CliCall &call, CliOption option, std::string &name) {
    if (call[option]) {
        name = CutText(call[option], SettingTextLimit);
        Ports.autodetect = false;
    }
    return !call[option] || !name.empty();
}

// What was missing of the ports that were looked for by name.
std::string MissingPorts() {
    std::string missing;
    if (MidiInPort == NoMidiDevice) {
        missing = "no MIDI input named " + Quoted(Ports.in);
    }
    if (MidiOutPort == NoMidiDevice) {
        missing += (missing.empty() ? "" : " and ") + std::string("no MIDI output named ") +
                   Quoted(Ports.out);
    }
    return missing;
}

// ---- the built-in instruments

// What they held after the call before this one.
int LoadMemory(const char *path) {
    if (!*path) {
        return TellWrongCall("--memory", "needs the name of a file");
    }
    if (!BuiltinInstrumentsWanted()) {
        return TellFailure(path, "no device: the built-in instruments, whose memory it keeps, are "
                                 "there with TONEWRIGHT_INSTRUMENTS=1, or the setting "
                                 "extras.BuiltinInstruments");
    }
    return ReadInstrumentMemory(path, true);
}

int SaveMemory(const char *path) {
    errno = 0;
    if (SaveInstrumentMemory(path)) {
        return ExitDone;
    }
    return TellFailure(path, WithSystemReason("could not be written", errno));
}

void PutTraceLine(const std::string &line) {
    Put(StandardError, line);
    Put(StandardError, '\n');
    Flush(StandardError);
}

} // namespace

std::string MidiHelp() {
    return std::string(HelpOfPorts) + DetectionHelp() + std::string(HelpOfInstruments);
}

int ReadInstrumentMemory(const char *path, bool mayBeNew) {
    errno = 0;
    if (LoadInstrumentMemory(path) || (mayBeNew && errno == ENOENT)) {
        return ExitDone;
    }
    return TellFailure(path, errno != 0 ? WithSystemReason("not readable", errno)
                                        : "not a memory of the built-in instruments");
}

int ReadMidiSettings(const CliCall &call) {
    ReadInstrumentSettings();
    Ports = {SelectKeyboardMidiIn, SelectKeyboardMidiOut, SelectKeyboardAutodetect != 0};
    if (!TakeName(call, CliOption::In, Ports.in)) {
        return TellWrongCall("--in", "needs the name of a port");
    }
    if (!TakeName(call, CliOption::Out, Ports.out)) {
        return TellWrongCall("--out", "needs the name of a port");
    }
    if (Ports.in.empty()) {
        Ports.in = Ports.out;
    } else if (Ports.out.empty()) {
        Ports.out = Ports.in;
    }
    if (const char *text = call[CliOption::Channel]) {
        const auto channel = ReadMidiChannel(text);
        if (!channel) {
            return TellWrongCall(text, "not a MIDI channel: a number from 1 to 16 is");
        }
        ChannelOfThisRun = static_cast<std::uint32_t>(*channel);
    }
    return ExitDone;
}

std::optional<const SynthDriver *> ReadSynth(const CliCall &call, const SynthDriver *preset) {
    const char *name = call[CliOption::Synth];
    if (!name) {
        return preset;
    }
    std::vector<const SynthDriver *> meant;
    for (const SynthDriver *synth : SynthDrivers) {
        if (EqualNoCase(synth->name, name)) {
            return synth;
        }
        if (*name && NameContains(synth->name, name)) {
            meant.push_back(synth);
        }
    }
    if (meant.size() == 1) {
        return meant.front();
    }
    TellError(name, std::string(meant.empty() ? "no such instrument" : "more than one instrument") +
                        "; there are: " + NamesOfSynths());
    return std::nullopt;
}

const SynthDriver *SynthOfSettings() {
    return DriverOfId(DriverIdAt(DriverIndexOfName(SelectKeyboardName.c_str())));
}

int WithMidi(const CliCall &call, const std::function<int()> &work, InstrumentsAre instruments) {
    if (const char *path = call[CliOption::Memory]) {
        if (const int status = LoadMemory(path); status != ExitDone) {
            return status;
        }
    }
    PostponeInterruption();
    UseMidi(instruments);
    MidiSession session{.inner = call[CliOption::Trace] ? MakeTracingApi(TheMidi, PutTraceLine)
                                                        : TheMidi,
                        .isCancelled = InterruptionWaits};
    TheMidi = MakeSessionApi(session);
    int status = work();
    EndSession(session);
    EndMidi();
    if (session.writeFailed) {
        status = TellFailure("", "not every message could be sent to the instrument");
    }
    if (InterruptionWaits()) {
        status = TellFailure("", "stopped");
        Flush(StandardError);
    }
    AllowInterruption();
    return status;
}

int WithInstrument(const CliCall &call, const SynthDriver &synth, const std::function<int()> &work,
                   InstrumentsAre instruments) {
    const auto workWithInstrument = [&] {
        if (!FindInstrument(synth)) {
            return TellNoDevice(synth);
        }
        const int status = work();
        const char *memory = call[CliOption::Memory];
        const int saved = memory ? SaveMemory(memory) : ExitDone;
        return status != ExitDone ? status : saved;
    };
    return WithMidi(call, workWithInstrument, instruments);
}

bool FindInstrument(const SynthDriver &synth) {
    // An empty name would be found in every port.
    if (!IsDetected(synth) && Ports.in.empty()) {
        return false;
    }
    CurrentDriverId = synth.id;
    FindCurrentSynth(nullptr, {Ports.in.c_str(), Ports.out.c_str()}, Ports.autodetect);
    return CurrentDriverId == synth.id;
}

int TellNoDevice(const SynthDriver &synth) {
    const bool portsFound = MidiInPort != NoMidiDevice && MidiOutPort != NoMidiDevice;
    if (IsDetected(synth)) {
        return TellFailure(synth.name, portsFound
                                           ? "no device: there are ports of its name, and no answer"
                                           : "no device: there are no MIDI ports of its name");
    }
    if (Ports.in.empty()) {
        return TellFailure(synth.name,
                           "no device: name its MIDI ports by --in and --out, or in the settings "
                           "SelectKeyboardMidiIn and SelectKeyboardMidiOut");
    }
    return TellFailure(synth.name, "no device: " + MissingPorts());
}

int TellTransferFailed(const SynthDriver &synth) {
    MidiLink link;
    const bool opens = MidiLinkOpen(link, true, MidiInPort, MidiOutPort) != 0;
    if (opens) {
        MidiLinkClose(link);
    }
    return TellFailure(synth.name, opens ? "did not answer as this instrument does"
                                         : "the MIDI ports could not be opened");
}

} // namespace tonewright
