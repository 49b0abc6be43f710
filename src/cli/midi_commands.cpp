// The commands for instruments: ports, find, upload, upload-voice, download, play.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/midi_session.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/voice_fault.h"
#include "core/voice_file_reader.h"
#include "midi/audition.h"
#include "midi/instrument_sound.h"
#include "midi/midi_start.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

void PutText(std::string_view text) {
    Put(StandardOutput, '\t');
    Put(StandardOutput, FieldText(text));
}

// ---- find

// "01.20"; empty while it is not known.
std::string FirmwareText(std::uint32_t version) {
    return version == 0 ? std::string()
                        : FormatText("%u%u.%u%u", version >> 24, version >> 16 & 0xFF,
                                     version >> 8 & 0xFF, version & 0xFF);
}

void PutPort(int port) {
    const MidiDeviceInfo *info = TheMidi.Pm_GetDeviceInfo(port);
    Put(StandardOutput, '\t');
    PutNumber(StandardOutput, static_cast<unsigned>(port));
    PutText(info ? info->name : "");
}

void PutInstrument(const SynthDriver &synth) {
    Put(StandardOutput, FieldText(synth.name));
    PutText(FirmwareText(SynthFirmware));
    PutPort(MidiInPort);
    PutPort(MidiOutPort);
    Put(StandardOutput, '\n');
}

// One record for each of the families that is found; a failure when none is.
int FindEveryInstrument() {
    struct Search {
        const SynthDriver *synth;
        MidiPorts ports; // as far as they were found
    };
    std::vector<Search> inVain;
    bool isAnyFound = false;
    for (const SynthDriver *synth : SynthDrivers) {
        if (FindInstrument(*synth)) {
            PutInstrument(*synth);
            isAnyFound = true;
        } else {
            inVain.push_back({synth, CurrentMidiPorts()});
        }
    }
    if (isAnyFound) {
        return ExitDone;
    }
    for (const Search &search : inVain) {
        MidiInPort = search.ports.in;
        MidiOutPort = search.ports.out;
        TellNoDevice(*search.synth);
    }
    return ExitFailed;
}

// ---- what is sent

// What a call says of instrument, ports and file, before anything is opened.
struct MidiFile {
    const VoiceFileFormat *format = nullptr;
    const SynthDriver *synth = nullptr;
};

// The exit status; a failure has been told.
int ReadMidiFile(const CliCall &call, const char *path, MidiFile &file) {
    file.format = FormatOfPath(path);
    if (!file.format) {
        return TellWrongCall(path, UnknownFormatReason());
    }
    const SynthDriver *ofFile = DriverOfId(file.format->driver);
    const auto synth = ReadSynth(call, ofFile);
    if (!synth) {
        return ExitWrongCall;
    }
    if (*synth != ofFile) {
        return TellWrongCall(path, FormatText("such a file is for the %s, not for the %s",
                                              ofFile->name, (*synth)->name));
    }
    file.synth = ofFile;
    return ReadMidiSettings(call);
}

// What a command that sends one voice needs of its file, which is opened. The exit status; a
// failure has been told.
int OpenVoiceToSend(const CliCall &call, const char *path, int place, MidiFile &file,
                    const VoiceObject *&voice) {
    if (const int status = ReadMidiFile(call, path, file); status != ExitDone) {
        return status;
    }
    UseTerminalDesktop(call);
    voice = OpenVoiceAt(path, *file.format, place);
    return voice ? ExitDone : ExitFailed;
}

// ---- play

constexpr std::chrono::milliseconds NoteLength(500);
// Of voices that die away slowly, or never, as an organ whose releases are 0.
constexpr std::chrono::seconds LongestTail(10);
constexpr std::chrono::seconds LongestOpening(10); // long before, a card counts as one that fails

// Waits as long as `goesOn` says, but no longer than that, nor after Ctrl-C.
void WaitWhile(bool (*goesOn)(), std::chrono::milliseconds longest) {
    constexpr std::chrono::milliseconds step(10);
    const auto end = std::chrono::steady_clock::now() + longest;
    while (goesOn() && std::chrono::steady_clock::now() < end && !TransferCancelled()) {
        std::this_thread::sleep_for(step);
    }
}

void HoldNote() {
    WaitWhile([] { return true; }, NoteLength);
}

// Of the sound of the built-in instruments while one of them is played; `why` when it has failed.
InstrumentSoundState SoundOfAudition(std::string &why) {
    return InstrumentOutputIsOpen() ? StateOfInstrumentSound(why) : InstrumentSoundState::Closed;
}
bool SoundOfAuditionIs(InstrumentSoundState state) {
    std::string why;
    return SoundOfAudition(why) == state;
}

// A note that is played before the sound card answers would be heard too late, or in part.
void WaitForSoundCard() {
    WaitWhile([] { return SoundOfAuditionIs(InstrumentSoundState::Opening); }, LongestOpening);
}

void WaitForTail() {
    WaitWhile(
        [] { return SoundOfAuditionIs(InstrumentSoundState::Plays) && !InstrumentsAreSilent(); },
        LongestTail);
}

// Playing has not failed when nobody heard it.
void TellWhyNotHeard() {
    std::string why;
    if (SoundOfAudition(why) == InstrumentSoundState::Failed) {
        TellError("", "not heard: " + why);
    }
}

// As the Audition box does it, with notes in the stead of its keys; but no program is selected,
// which would recall the first voice of the instrument over the one that was sent.
int PlayNotes(const SynthDriver &synth, const VoiceObject &voice, const std::vector<int> &notes) {
    auto audition = PrepareAudition(nullptr, &voice, synth.id, CurrentMidiPorts(), 0);
    AuditionVelocity();
    const bool isOpen = SendAudition(*audition, nullptr);
    WaitForSoundCard();
    for (const int note : notes) {
        if (!isOpen || TransferCancelled()) {
            break;
        }
        PlayAuditionNote(*audition, note);
        HoldNote();
        ReleaseAuditionKey(*audition);
    }
    WaitForTail();
    TellWhyNotHeard();
    SilenceAudition(*audition);
    CloseAudition(*audition);
    return isOpen ? ExitDone : TellTransferFailed(synth);
}

// ---- download

// "srx", of every family whose voices can be downloaded.
std::string ExtensionsOfDownloads() {
    std::string extensions;
    for (const SynthDriver *synth : SynthDrivers) {
        if (synth->flags & DriverFlagDownload) {
            extensions +=
                (extensions.empty() ? "\"" : ", \"") + std::string(synth->bankExtension) + '"';
        }
    }
    return extensions;
}

} // namespace

int CliPorts(const CliCall &) {
    UseMidi(InstrumentsAre::Silent);
    for (int index = 0; index < TheMidi.Pm_CountDevices(); ++index) {
        const MidiDeviceInfo *info = TheMidi.Pm_GetDeviceInfo(index);
        if (!info) {
            continue;
        }
        PutNumber(StandardOutput, static_cast<unsigned>(index));
        PutText(info->interf);
        PutText(info->name);
        PutText(info->input ? "yes" : "no");
        PutText(info->output ? "yes" : "no");
        Put(StandardOutput, '\n');
    }
    EndMidi();
    return ExitDone;
}

int CliFind(const CliCall &call) {
    if (const int status = ReadMidiSettings(call); status != ExitDone) {
        return status;
    }
    const auto synth = ReadSynth(call, SynthOfSettings());
    if (!synth) {
        return ExitWrongCall;
    }
    return WithMidi(call, [&] {
        if (!*synth) {
            return FindEveryInstrument();
        }
        if (!FindInstrument(**synth)) {
            return TellNoDevice(**synth);
        }
        PutInstrument(**synth);
        return static_cast<int>(ExitDone);
    });
}

int CliUpload(const CliCall &call) {
    const char *path = call.words[0];
    MidiFile file;
    if (const int status = ReadMidiFile(call, path, file); status != ExitDone) {
        return status;
    }
    if (file.format->kind != VoiceFileKind::Bank) {
        return TellWrongCall(path, "a single voice; upload-voice sends it");
    }
    if (!(file.synth->flags & DriverFlagUpload)) {
        return TellWrongCall(path, FormatText("the %s takes single voices only; upload-voice "
                                              "sends one",
                                              file.synth->name));
    }
    UseTerminalDesktop(call);
    if (!OpenVoices(path, *file.format) ||
        !CanBeSent(path, *file.format, 0, ListCount(MainList) - 1)) {
        return ExitFailed;
    }
    return WithInstrument(call, *file.synth, [&] {
        return UploadCurrent(nullptr, MainList) ? ExitDone : TellTransferFailed(*file.synth);
    });
}

int CliUploadVoice(const CliCall &call) {
    const char *path = call.words[0];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    MidiFile file;
    const VoiceObject *voice = nullptr;
    if (const int status = OpenVoiceToSend(call, path, *place, file, voice); status != ExitDone) {
        return status;
    }
    return WithInstrument(call, *file.synth, [&] {
        return UploadOneVoice(nullptr, MainList, voice, file.synth->id, CurrentMidiPorts(),
                              *place - 1, 0)
                   ? ExitDone
                   : TellTransferFailed(*file.synth);
    });
}

int CliDownload(const CliCall &call) {
    const char *out = call.words[0];
    if (!FormatOfPath(out)) {
        return TellWrongCall(out, FormatText("the extension of the file to write must be %s",
                                             ExtensionsOfDownloads().c_str()));
    }
    MidiFile file;
    if (const int status = ReadMidiFile(call, out, file); status != ExitDone) {
        return status;
    }
    if (!(file.synth->flags & DriverFlagDownload)) {
        return TellWrongCall(out,
                             FormatText("the %s does not give its voices back", file.synth->name));
    }
    if (file.format->kind != VoiceFileKind::Bank) {
        return TellWrongCall(out, FormatText("the extension of the file to write must be \"%s\"",
                                             file.synth->bankExtension));
    }
    std::error_code error;
    if (!fs::is_directory(fs::path(AbsolutePath(out)).parent_path(), error)) {
        return TellFailure(out, "could not be written: there is no such folder");
    }
    UseTerminalDesktop(call);
    // The file is written before the memory of the instruments, whose failure costs no voices.
    return WithInstrument(call, *file.synth, [&] {
        if (!DownloadCurrent(nullptr, MainList)) {
            return TellTransferFailed(*file.synth);
        }
        if (TransferCancelled()) {
            return static_cast<int>(ExitFailed);
        }
        const std::string missing = PlacesNotReceived(MainList, *file.format);
        if (!missing.empty() &&
            AskYesNo(nullptr, "The instrument did not send all of these voices: " + missing +
                                  ".\n\nDo you wish to save the others anyway?") != ResultYes) {
            return TellFailure(out, "not written, as answered");
        }
        return SaveBankDocument(out);
    });
}

int CliPlay(const CliCall &call) {
    const char *path = call.words[0];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    std::vector<int> notes;
    for (const char *word : call.words.subspan(2)) {
        const auto note = ReadNote(word);
        if (!note) {
            return TellWrongCall(word, NotANote);
        }
        notes.push_back(*note);
    }
    MidiFile file;
    const VoiceObject *voice = nullptr;
    if (const int status = OpenVoiceToSend(call, path, *place, file, voice); status != ExitDone) {
        return status;
    }
    return WithInstrument(
        call, *file.synth, [&] { return PlayNotes(*file.synth, *voice, notes); },
        call[CliOption::Silent] ? InstrumentsAre::Silent : InstrumentsAre::Heard);
}

} // namespace tonewright
