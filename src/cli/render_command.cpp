// The command that writes how a voice sounds. A built-in instrument gets the voice and the notes as
// the bytes that every instrument gets, on a clock that costs no time; what they make it do is
// played without a sound card.
#include "cli/bank_document.h"
#include "cli/choices.h"
#include "cli/cli_commands.h"
#include "cli/midi_session.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/wave_file.h"
#include "common/whole_file.h"
#include "core/dispatch.h"
#include "midi/audition.h"
#include "midi/builtin_ports.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_start.h"
#include "synth/block.h"
#include "synth/player.h"
#include "synth/synth.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {
namespace {

// ---- what is asked for

constexpr int UsualNote = 60;
constexpr double ShortestHold = 0.01, LongestHold = 1800.0; // s
constexpr double LongestRelease = 60.0;

struct RenderOrder {
    WaveFormat format;
    std::vector<int> notes;
    int velocity = 100;
    double held = 2.0;    // s
    double release = 5.0; // s, at most
};

// Takes the value of an option, if it was given. False after telling that it is none: `read` turns
// it into the value, or into nothing.
template <typename Value, typename Read>
bool TakeOption(const CliCall &call, CliOption option, Value &value, Read read,
                const char *notOne) {
    if (const char *text = call[option]) {
        const auto found = read(text);
        if (!found) {
            TellError(text, notOne);
            return false;
        }
        value = *found;
    }
    return true;
}

bool TakeNotes(const CliCall &call, std::vector<int> &notes) {
    for (const char *text : call.notes) {
        const auto note = ReadNote(text);
        if (!note) {
            TellError(text, NotANote);
            return false;
        }
        notes.push_back(*note);
    }
    if (notes.empty()) {
        notes.push_back(UsualNote);
    }
    if (notes.size() > MaxPolyphony) {
        TellError("", FormatText("more than %d notes", MaxPolyphony));
        return false;
    }
    return true;
}

std::optional<WaveSample> ReadSampleKind(const char *text) {
    const Choice *choice = ChoiceOfName(SampleKinds, text);
    return choice ? std::optional(static_cast<WaveSample>(choice->value)) : std::nullopt;
}

// Nothing after telling why the call is wrong.
std::optional<RenderOrder> ReadRenderOrder(const CliCall &call) {
    RenderOrder order;
    const auto readHold = [](const char *text) {
        return ReadSeconds(text, ShortestHold, LongestHold);
    };
    const auto readRelease = [](const char *text) {
        return ReadSeconds(text, 0.0, LongestRelease);
    };
    const bool isRight =
        TakeNotes(call, order.notes) &&
        TakeOption(call, CliOption::Velocity, order.velocity, ReadVelocity,
                   "not a velocity: a number from 1 to 127 is") &&
        TakeOption(call, CliOption::Seconds, order.held, readHold,
                   "not a time to hold a note: 0.01 to 1800 seconds are") &&
        TakeOption(call, CliOption::Release, order.release, readRelease,
                   "not a time to sound on: 0 to 60 seconds are") &&
        TakeOption(call, CliOption::Rate, order.format.framesPerSecond, ReadSoundRate,
                   "not a rate: 8000 to 192000 frames a second are") &&
        TakeOption(call, CliOption::Bits, order.format.sample, ReadSampleKind,
                   "not a kind of samples: 16, 24 and 32f are");
    return isRight ? std::optional(order) : std::nullopt;
}

// ---- what the instrument does

struct Happening {
    SynthEvent event;
    PreparedVoice voice; // of an event that brings one
};
using Happenings = std::vector<Happening>;

struct Performance {
    Happenings before; // the voice comes
    Happenings pressed;
    Happenings released;
};

// The first one whose memory has voices of the family, in the program's MIDI table.
std::optional<BuiltinInstrument> InstrumentOf(const SynthDriver &family) {
    for (int index = 0; index < BuiltinInstrumentCount; ++index) {
        if (MemoryOfFamily(family, TheMidi.Pm_GetDeviceInfo(2 * index)->name)) {
            return static_cast<BuiltinInstrument>(index);
        }
    }
    return std::nullopt;
}

// Nothing after telling why. The user's settings of MIDI are those of other instruments.
std::optional<Performance> Perform(const SynthDriver &family, const VoiceObject &voice,
                                   const RenderOrder &order) {
    std::optional<BuiltinInstrument> played;
    Happenings *happenings = nullptr;
    InstrumentsOptions options;
    options.listener.heard = [&](BuiltinInstrument instrument, const SynthEvent &event) {
        if (happenings && instrument == played) {
            happenings->push_back({event, PreparedVoiceOf(instrument)});
        }
    };
    TheMidi = MakeBuiltinInstruments(options);
    AuditionCurrentVelocity = static_cast<std::uint32_t>(order.velocity);
    Performance performance;
    played = InstrumentOf(family);
    if (!played) {
        TellError(family.name, "there is no built-in instrument that plays its voices");
        return std::nullopt;
    }
    happenings = &performance.before;
    const int input = 2 * static_cast<int>(*played);
    const MidiPorts ports{.in = input, .out = input + 1};
    auto audition = PrepareAudition(nullptr, &voice, family.id, ports, 0);
    const bool isSent = SendAudition(*audition, nullptr);
    happenings = &performance.pressed;
    for (const int note : order.notes) {
        PlayAuditionNote(*audition, note);
    }
    happenings = &performance.released;
    for (const int note : order.notes) {
        audition->sustainedNote = note;
        ReleaseAuditionKey(*audition);
    }
    CloseAudition(*audition);
    EndMidi(); // nobody listens beyond this
    return isSent ? std::optional(performance) : std::nullopt;
}

// ---- what is heard

void Send(SynthPlayer &player, const Happenings &happenings) {
    for (const auto &[event, voice] : happenings) {
        const bool sameKeys = event.kind == SynthEventKind::ChangedVoice;
        if (sameKeys || event.kind == SynthEventKind::NewVoice) {
            SendVoice(player, 0, voice, sameKeys);
        } else {
            SendEvent(player, 0, event);
        }
    }
}

// Frames of both sides, interleaved; false when no more are wanted.
using TakeFrames = std::function<bool(std::span<const float> samples)>;

// All frames of a performance, the same ones whenever it is played. False when `take` said so.
bool Play(const Performance &performance, const RenderOrder &order, const TakeFrames &take) {
    const double rate = order.format.framesPerSecond;
    const OwnedSynthPlayer player = MakeSynthPlayer(1, rate, MaxPolyphony);
    std::vector<float> samples;
    // No more than a block at a time where `untilSilent`, which may be over after each of them.
    const auto play = [&](long long frames, bool untilSilent) {
        constexpr long long Most = 64 * BlockFrames;
        while (frames > 0 && !(untilSilent && IsSilent(*player))) {
            const auto count = static_cast<int>(std::min(frames, untilSilent ? BlockFrames : Most));
            samples.resize(2 * static_cast<std::size_t>(count));
            RenderFrames(*player, samples.data(), count);
            if (!take(samples)) {
                return false;
            }
            frames -= count;
        }
        return true;
    };
    Send(*player, performance.before);
    SkipEvents(*player);
    Send(*player, performance.pressed);
    if (!play(std::llround(order.held * rate), false)) {
        return false;
    }
    Send(*player, performance.released);
    const long long release = std::llround(order.release * rate);
    const long long fade = std::min(release, std::llround(FadeTime * rate));
    if (!play(release - fade, true)) {
        return false;
    }
    if (IsSilent(*player)) {
        return true;
    }
    SendPanic(*player);
    return play(fade, false);
}

// Writes a sound file. Played twice: its begin tells how much follows.
bool PutSoundFile(const Performance &performance, const RenderOrder &order, std::FILE *file,
                  std::size_t &written) {
    static_assert((LongestHold + LongestRelease) * 192'000 * 8 < 4e9); // what a file can tell
    std::uint32_t frames = 0;
    Play(performance, order, [&](std::span<const float> samples) {
        frames += static_cast<std::uint32_t>(samples.size() / 2);
        return true;
    });
    std::vector<std::uint8_t> bytes = EncodeWaveHeader(order.format, frames);
    const auto put = [&] {
        const std::size_t count = std::fwrite(bytes.data(), 1, bytes.size(), file);
        written += count;
        const bool isWhole = count == bytes.size();
        bytes.clear();
        return isWhole;
    };
    return put() && Play(performance, order, [&](std::span<const float> samples) {
               AppendWaveSamples(bytes, samples, order.format.sample);
               return put();
           });
}

} // namespace

int CliRender(const CliCall &call) {
    const char *path = call.words[0], *out = call.words[2];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    if (!EqualNoCase(ExtensionOfPath(out), "wav")) {
        return TellWrongCall(out, "the extension of the file to write must be \"wav\"");
    }
    const auto order = ReadRenderOrder(call);
    if (!order) {
        return ExitWrongCall;
    }
    const VoiceFileFormat *format = FormatOfPath(path);
    if (!format) {
        return TellWrongCall(path, UnknownFormatReason());
    }
    UseTerminalDesktop(call);
    const VoiceObject *voice = OpenVoiceAt(path, *format, *place);
    if (!voice) {
        return ExitFailed;
    }
    const auto performance = Perform(*DriverOfId(format->driver), *voice, *order);
    if (!performance) {
        return ExitFailed;
    }
    errno = 0;
    const bool isWritten =
        WriteFileWhole(AbsolutePath(out).c_str(), [&](std::FILE *file, std::size_t &written) {
            return PutSoundFile(*performance, *order, file, written);
        });
    return isWritten ? ExitDone : TellFailure(out, WithSystemReason("could not be written", errno));
}

} // namespace tonewright
