// The worker thread that opens the sound card and closes it, and what of the instruments' events
// goes where meanwhile.
//
// Two threads write to the player, one after the other by a mutex that neither holds while it waits
// for the card: the one that writes to the instruments, and the worker. The card's own thread,
// which reads, knows nothing of it.
#include "midi/instrument_sound.h"

#include "common/audio_output.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr double UsualRate = 48000.0; // frames a second
constexpr milliseconds LookInterval{20};
// After the tail: who plays one voice after the other does not wait for the card each time.
constexpr milliseconds Linger{1000};
// For a note that was let go before the card ran.
constexpr milliseconds LeastNote{250};
// For the fade of what sounds when the card is closed.
constexpr milliseconds FadeLimit{50};
constexpr milliseconds FadeInterval{2};
constexpr seconds OpenLimit{5};  // then the card counts as one that does not answer
constexpr seconds StallLimit{3}; // without being asked for frames
constexpr milliseconds StopLimit{1000};
// More than a second of three MIDI lines.
constexpr std::size_t MostPending = 4096;
constexpr int FirstModeMessage = 120; // All Sound Off

// What has become of the card, and so of an event.
enum class Phase {
    Idle,    // there is none: taken in silence
    Opening, // kept until it runs
    Playing, // played, or kept behind the end of a note that is to be heard first
    Closing  // kept: it may still ask for frames, and may be opened again at once
};

// An event that is kept; with its voice, when it brings one.
struct PendingEvent {
    int instrument = 0;
    SynthEvent event;
    std::shared_ptr<const PreparedVoice> voice = {};
};

// What the card's thread knows.
struct Reader {
    SynthPlayer *player = nullptr;
    std::atomic<unsigned> calls = 0;
};

// What the writer and the worker share. The worker holds it too, so that it outlives a writer who
// gave up waiting.
struct Sounding {
    AudioOutput output;
    Reader reader;

    std::mutex mutex; // for all that follows
    std::condition_variable changed;
    InstrumentSoundOptions options;
    InstrumentSoundOptions openedWith;
    int openOutputs = 0;
    Phase phase = Phase::Idle;
    Clock::time_point phaseBegin = {};
    bool wanted = false; // to be opened, when it has been closed or now
    bool failed = false; // the last time
    std::string why;     // then
    OwnedSynthPlayer player;
    double rate = UsualRate; // of the player, as the next one
    int polyphony = 0;
    std::vector<PendingEvent> pending;
    bool stop = false;
    bool ended = false;
};

struct Worker {
    std::shared_ptr<Sounding> sounding; // nullptr: no thread
    std::thread thread;
    InstrumentSoundOptions options; // of the next one, too
};
Worker TheWorker;

// Falls silent when the program ends, whichever way it takes.
struct EndAtExit {
    ~EndAtExit() { EndInstrumentSound(); }
} EndInstrumentSoundAtExit;

// ---- events

void Play(SynthPlayer &player, const PendingEvent &pending) {
    if (pending.voice) {
        SendVoice(player, pending.instrument, *pending.voice,
                  pending.event.kind == SynthEventKind::ChangedVoice);
    } else {
        SendEvent(player, pending.instrument, pending.event);
    }
}

bool IsNote(const PendingEvent &pending) {
    return pending.event.kind == SynthEventKind::NoteOn ||
           pending.event.kind == SynthEventKind::NoteOff;
}

void DropNotes(std::vector<PendingEvent> &pending) {
    std::erase_if(pending, IsNote);
}

// Leaves what counts in the end, for a card that takes its time: no notes, and of everything else
// the last one of its kind.
void Condense(std::vector<PendingEvent> &pending) {
    DropNotes(pending);
    const auto key = [](const PendingEvent &event) {
        return std::tuple(event.instrument, event.voice != nullptr,
                          event.voice ? SynthEventKind::NewVoice : event.event.kind,
                          event.event.number);
    };
    std::vector<PendingEvent> last;
    for (auto event = pending.rbegin(); event != pending.rend(); ++event) {
        if (std::none_of(last.begin(), last.end(),
                         [&](const PendingEvent &later) { return key(later) == key(*event); })) {
            last.push_back(std::move(*event));
        }
    }
    std::reverse(last.begin(), last.end());
    pending = std::move(last);
}

void PlayPending(Sounding &sounding, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        Play(*sounding.player, sounding.pending[i]);
    }
    sounding.pending.erase(sounding.pending.begin(),
                           sounding.pending.begin() + static_cast<std::ptrdiff_t>(count));
}

void PlayPending(Sounding &sounding) {
    PlayPending(sounding, sounding.pending.size());
}

bool EndsNotes(const PendingEvent &pending) {
    const SynthEvent &event = pending.event;
    return event.kind == SynthEventKind::NoteOff || event.kind == SynthEventKind::NewVoice ||
           (event.kind == SynthEventKind::Controller && event.number >= FirstModeMessage);
}

// The end of the last note and what follows it stay, for a note that begins and ends within a
// block is not heard.
void PlayPendingNotes(Sounding &sounding) {
    const auto note = std::find_if(
        sounding.pending.rbegin(), sounding.pending.rend(),
        [](const PendingEvent &pending) { return pending.event.kind == SynthEventKind::NoteOn; });
    const auto end = note == sounding.pending.rend()
                         ? sounding.pending.end()
                         : std::find_if(note.base(), sounding.pending.end(), EndsNotes);
    PlayPending(sounding, static_cast<std::size_t>(end - sounding.pending.begin()));
}

void Take(Sounding &sounding, PendingEvent event) {
    switch (sounding.phase) {
    case Phase::Idle:
        Play(*sounding.player, event);
        SkipEvents(*sounding.player);
        break;
    case Phase::Opening:
    case Phase::Closing:
        sounding.pending.push_back(std::move(event));
        if (sounding.pending.size() > MostPending) {
            Condense(sounding.pending);
        }
        break;
    case Phase::Playing:
        if (event.event.kind == SynthEventKind::NoteOn) {
            PlayPending(sounding);
        }
        if (sounding.pending.empty()) {
            Play(*sounding.player, event);
        } else {
            sounding.pending.push_back(std::move(event));
        }
        break;
    }
}

// ---- the worker

void Enter(Sounding &sounding, Phase phase) {
    sounding.phase = phase;
    sounding.phaseBegin = Clock::now();
    sounding.changed.notify_all();
}

void Fill(void *context, float *frames, int count) {
    Reader &reader = *static_cast<Reader *>(context);
    reader.calls.fetch_add(1, std::memory_order_relaxed);
    RenderFrames(*reader.player, frames, count);
}

// A player for that rate and polyphony, when the present one is for others: nullptr otherwise.
OwnedSynthPlayer OtherPlayer(const Sounding &sounding, double rate, int polyphony) {
    return rate != sounding.rate || polyphony != sounding.polyphony
               ? MakeSynthPlayer(BuiltinInstrumentCount, rate, polyphony)
               : nullptr;
}

// Puts `player` in the place of the present one, which it becomes. Nobody reads.
void Replace(Sounding &sounding, OwnedSynthPlayer &player, double rate, int polyphony) {
    SkipEvents(*sounding.player);
    TakeOver(*player, *sounding.player);
    sounding.player.swap(player);
    sounding.rate = rate;
    sounding.polyphony = polyphony;
}

using Lock = std::unique_lock<std::mutex>;

// While the card runs: until it is to be closed, or no longer asks for frames, and why.
void Watch(Sounding &sounding, Lock &lock, std::string &why) {
    unsigned calls = sounding.reader.calls;
    Clock::time_point lastCall = Clock::now();
    Clock::time_point lastNeed = lastCall;
    const Clock::time_point begin = lastCall;
    for (;;) {
        if (sounding.changed.wait_for(lock, LookInterval, [&] {
                return sounding.stop || sounding.phase != Phase::Playing;
            })) {
            return;
        }
        lock.unlock();
        const bool runs = sounding.output.Runs();
        lock.lock();
        const Clock::time_point now = Clock::now();
        if (const unsigned callsNow = sounding.reader.calls; callsNow != calls) {
            calls = callsNow;
            lastCall = now;
        }
        if (now - begin > LeastNote) {
            PlayPending(sounding);
        }
        if (!runs || now - lastCall > StallLimit) {
            why = "the sound card no longer plays";
            return;
        }
        if (sounding.openOutputs > 0 || !IsSilent(*sounding.player)) {
            lastNeed = now;
        } else if (now - lastNeed > Linger) {
            return;
        }
    }
}

// Lets what sounds fade before the card is closed, which would cut it off with a click. The card
// has asked for the fade once it has asked twice: the first time may have begun before.
void FadeOut(Sounding &sounding, Lock &lock) {
    if (IsSilent(*sounding.player)) {
        return;
    }
    SendPanic(*sounding.player);
    const unsigned calls = sounding.reader.calls;
    const Clock::time_point end = Clock::now() + FadeLimit;
    lock.unlock();
    while (sounding.reader.calls - calls < 2 && Clock::now() < end) {
        std::this_thread::sleep_for(FadeInterval);
    }
    lock.lock();
}

// From opening the card to its end. `why` is empty when it did not fail.
void PlayOnCard(Sounding &sounding, Lock &lock, std::string &why) {
    const InstrumentSoundOptions options = sounding.options;
    sounding.openedWith = options;
    lock.unlock();
    AudioStream stream;
    const bool isOpen = sounding.output.Open(
        {.device = options.device, .rate = UsualRate, .frames = options.frames}, stream, why);
    OwnedSynthPlayer other =
        isOpen ? OtherPlayer(sounding, stream.rate, options.polyphony) : nullptr;
    lock.lock();
    if (isOpen && !sounding.stop) {
        if (other) {
            Replace(sounding, other, stream.rate, options.polyphony);
        }
        sounding.reader.player = sounding.player.get();
        PlayPendingNotes(sounding);
        Enter(sounding, Phase::Playing);
        lock.unlock();
        other.reset();
        const bool starts = sounding.output.Start(Fill, &sounding.reader, why);
        lock.lock();
        if (starts) {
            Watch(sounding, lock, why);
        }
        if (starts && why.empty()) {
            FadeOut(sounding, lock);
        }
    }
    Enter(sounding, Phase::Closing);
    lock.unlock();
    sounding.output.Close();
    lock.lock();
}

void Work(const std::shared_ptr<Sounding> &shared) {
    Sounding &sounding = *shared;
    Lock lock(sounding.mutex);
    for (;;) {
        sounding.changed.wait(lock, [&] { return sounding.stop || sounding.wanted; });
        if (sounding.stop) {
            break;
        }
        sounding.wanted = false;
        Enter(sounding, Phase::Opening);
        std::string why;
        PlayOnCard(sounding, lock, why);
        sounding.failed = !why.empty();
        sounding.why = std::move(why);
        if (sounding.failed) {
            SkipEvents(*sounding.player); // of the keys that were down some may never be let go
        }
        if (!sounding.wanted) {
            PlayPending(sounding);
            SkipEvents(*sounding.player);
            Enter(sounding, Phase::Idle);
        }
    }
    sounding.ended = true;
    sounding.changed.notify_all();
}

// ---- the writer

void StartWorker() {
    const auto sounding = std::make_shared<Sounding>();
    const InstrumentSoundOptions &options = TheWorker.options;
    sounding->output = TheAudioOutput;
    sounding->options = options;
    sounding->polyphony = options.polyphony;
    sounding->player = MakeSynthPlayer(BuiltinInstrumentCount, UsualRate, options.polyphony);
    SetPlayerVolume(*sounding->player, options.volume);
    for (int instrument = 0; instrument < BuiltinInstrumentCount; ++instrument) {
        SendVoice(*sounding->player, instrument,
                  PreparedVoiceOf(static_cast<BuiltinInstrument>(instrument)), false);
    }
    SkipEvents(*sounding->player);
    TheWorker.thread = std::thread(Work, sounding);
    TheWorker.sounding = sounding;
}

// All but the volume, which counts at once.
bool NeedAnotherCard(const InstrumentSoundOptions &options, const InstrumentSoundOptions &others) {
    return options.device != others.device || options.frames != others.frames ||
           options.polyphony != others.polyphony;
}

void OutputOpened(BuiltinInstrument) {
    if (!TheWorker.sounding) {
        StartWorker();
    }
    Sounding &sounding = *TheWorker.sounding;
    const std::lock_guard lock(sounding.mutex);
    ++sounding.openOutputs;
    switch (sounding.phase) {
    case Phase::Idle:
        sounding.wanted = true;
        Enter(sounding, Phase::Opening);
        break;
    case Phase::Opening:
        break;
    case Phase::Playing:
        if (sounding.openOutputs == 1 && NeedAnotherCard(sounding.options, sounding.openedWith)) {
            sounding.wanted = true;
            Enter(sounding, Phase::Closing);
        }
        break;
    case Phase::Closing:
        sounding.wanted = true;
        break;
    }
}

void OutputClosed(BuiltinInstrument) {
    if (!TheWorker.sounding) {
        return;
    }
    const std::lock_guard lock(TheWorker.sounding->mutex);
    int &count = TheWorker.sounding->openOutputs;
    count = std::max(0, count - 1);
}

void Heard(BuiltinInstrument instrument, const SynthEvent &event) {
    if (!TheWorker.sounding) {
        return;
    }
    PendingEvent heard = {.instrument = static_cast<int>(instrument), .event = event};
    if (event.kind == SynthEventKind::NewVoice || event.kind == SynthEventKind::ChangedVoice) {
        heard.voice = std::make_shared<const PreparedVoice>(PreparedVoiceOf(instrument));
    }
    const std::lock_guard lock(TheWorker.sounding->mutex);
    Take(*TheWorker.sounding, std::move(heard));
}

} // namespace

void SetInstrumentSound(const InstrumentSoundOptions &options) {
    TheWorker.options = options;
    if (TheWorker.sounding) {
        const std::lock_guard lock(TheWorker.sounding->mutex);
        TheWorker.sounding->options = options;
        SetPlayerVolume(*TheWorker.sounding->player, options.volume);
    }
}

InstrumentListener InstrumentSound() {
    return {.outputOpened = OutputOpened, .outputClosed = OutputClosed, .heard = Heard};
}

void EndInstrumentSound() {
    if (!TheWorker.sounding) {
        return;
    }
    bool ended = false;
    {
        Sounding &sounding = *TheWorker.sounding;
        Lock lock(sounding.mutex);
        sounding.stop = true;
        sounding.changed.notify_all();
        ended = sounding.changed.wait_for(lock, StopLimit, [&] { return sounding.ended; });
    }
    if (ended) {
        TheWorker.thread.join();
    } else {
        TheWorker.thread.detach();
    }
    TheWorker.sounding.reset();
}

InstrumentSoundState StateOfInstrumentSound(std::string &why) {
    if (!TheWorker.sounding) {
        return InstrumentSoundState::Closed;
    }
    const Sounding &sounding = *TheWorker.sounding;
    const std::lock_guard lock(TheWorker.sounding->mutex);
    const bool opens =
        sounding.phase == Phase::Opening || (sounding.phase == Phase::Closing && sounding.wanted);
    if (opens && Clock::now() - sounding.phaseBegin > OpenLimit) {
        why = "the sound card does not answer";
        return InstrumentSoundState::Failed;
    }
    if (opens) {
        return InstrumentSoundState::Opening;
    }
    if (sounding.phase == Phase::Playing) {
        return InstrumentSoundState::Plays;
    }
    why = sounding.why;
    return sounding.failed ? InstrumentSoundState::Failed : InstrumentSoundState::Closed;
}

bool InstrumentOutputIsOpen() {
    if (!TheWorker.sounding) {
        return false;
    }
    const std::lock_guard lock(TheWorker.sounding->mutex);
    return TheWorker.sounding->openOutputs > 0;
}

bool InstrumentsAreSilent() {
    if (!TheWorker.sounding) {
        return true;
    }
    const Sounding &sounding = *TheWorker.sounding;
    const std::lock_guard lock(TheWorker.sounding->mutex);
    return sounding.phase == Phase::Idle ||
           (std::none_of(sounding.pending.begin(), sounding.pending.end(), IsNote) &&
            IsSilent(*sounding.player));
}

void PanicInstruments() {
    if (!TheWorker.sounding) {
        return;
    }
    Sounding &sounding = *TheWorker.sounding;
    const std::lock_guard lock(sounding.mutex);
    DropNotes(sounding.pending);
    if (sounding.phase == Phase::Playing || sounding.phase == Phase::Closing) {
        SendPanic(*sounding.player);
    }
}

PlayerLevel InstrumentLevel() {
    if (!TheWorker.sounding) {
        return {};
    }
    const std::lock_guard lock(TheWorker.sounding->mutex);
    return TakePlayerLevel(*TheWorker.sounding->player);
}

} // namespace tonewright
