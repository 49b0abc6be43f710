// Each instrument has a queue of its own, so that none waits for the voice of another, and a
// mailbox for voices. A new voice is an event in the queue as well, since notes keep their order
// around it; a changed one is taken as soon as the keys of the one before have faded out.
#include "synth/player.h"

#include "synth/event_queue.h"
#include "synth/synth.h"
#include "synth/voice_mailbox.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <vector>

namespace tonewright {

namespace {

// From here on up the limiter works, -3 dB; and the time in which it lets go.
constexpr float LimiterFloor = 0.70794578f;
constexpr float LimiterRoom = 1.0f - LimiterFloor;
constexpr double LimiterRelease = 0.2; // s

constexpr std::uint64_t Sounds = std::numeric_limits<std::uint64_t>::max();

struct Instrument {
    EventQueue queue;
    VoiceMailbox mailbox;
    // New voices, whose number is the era of a voice: sent, of the writer, and taken, of the
    // reader.
    std::uint64_t newVoicesSent = 0;
    alignas(64) std::uint64_t newVoicesTaken = 0;
    // Events that were written when panic came.
    std::atomic<std::uint64_t> panicAt = 0;
    Synth synth;
};

} // namespace

struct SynthPlayer {
    double rate = 48000.0;
    std::vector<Instrument> instruments;

    // Of the writer.
    alignas(64) std::atomic<std::uint64_t> sent = 0; // events, voices and panics
    std::atomic<std::uint64_t> panics = 0;
    std::atomic<double> volume = 1.0;

    // Of the reader: how many had been sent that are all played and over, or Sounds.
    alignas(64) std::atomic<std::uint64_t> over = 0;
    std::atomic<float> peak = 0.0f;
    std::atomic<bool> limited = false;

    std::uint64_t panicsSeen = 0;
    float gain = 1.0f;
    float excess = 0.0f; // over the limiter's floor, which it remembers
    // The last block, of which so many frames have been handed out.
    float frames[2 * BlockFrames] = {};
    int used = BlockFrames;
};

static_assert(std::atomic<double>::is_always_lock_free);
static_assert(std::atomic<float>::is_always_lock_free);

namespace {

void Play(Synth &synth, const SynthEvent &event) {
    switch (event.kind) {
    case SynthEventKind::NoteOn:
        NoteOn(synth, event.number, event.value);
        break;
    case SynthEventKind::NoteOff:
        NoteOff(synth, event.number);
        break;
    case SynthEventKind::Controller:
        Control(synth, event.number, event.value);
        break;
    case SynthEventKind::Bend:
        Bend(synth, event.value);
        break;
    case SynthEventKind::Pressure:
        Press(synth, event.value);
        break;
    case SynthEventKind::NewVoice:
    case SynthEventKind::ChangedVoice:
        break;
    }
}

void PlayUnlessKeyDown(Synth &synth, const SynthEvent &event) {
    if (event.kind != SynthEventKind::NoteOn) {
        Play(synth, event);
    }
}

// Takes the first `count` events without the keys that go down. New voices are passed by: the
// mailbox has the last of them.
void TakeWithoutKeys(Instrument &instrument, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const SynthEvent &event = Waiting(instrument.queue, i);
        PlayUnlessKeyDown(instrument.synth, event);
        instrument.newVoicesTaken += event.kind == SynthEventKind::NewVoice ? 1 : 0;
    }
    Pop(instrument.queue, count);
}

void TakeChangedVoice(Instrument &instrument) {
    if (!IsFading(instrument.synth)) {
        const PreparedVoice *voice = TakeVoice(instrument.mailbox, instrument.newVoicesTaken);
        if (voice) {
            SetVoice(instrument.synth, voice, true);
        }
    }
}

void TakeEvents(Instrument &instrument) {
    EventQueue &queue = instrument.queue;
    std::size_t waiting = Waiting(queue);
    std::size_t last = waiting; // events as far as the last new voice
    while (last > 0 && Waiting(queue, last - 1).kind != SynthEventKind::NewVoice) {
        --last;
    }
    if (last > 0) {
        // Keys that go down before it would fade out at once.
        TakeWithoutKeys(instrument, last - 1);
        if (IsFading(instrument.synth)) {
            return;
        }
        ++instrument.newVoicesTaken;
        Pop(queue);
        const PreparedVoice *voice = TakeVoice(instrument.mailbox, instrument.newVoicesTaken);
        if (!voice) {
            voice = instrument.synth.voice; // the next one is under way already
        }
        if (voice) {
            SetVoice(instrument.synth, voice, false);
        }
        waiting -= last;
    }
    for (std::size_t i = 0; i < waiting; ++i) {
        Play(instrument.synth, Waiting(queue, i));
    }
    Pop(queue, waiting);
    TakeChangedVoice(instrument);
}

// What was sent before the panic.
void TakeBeforePanic(Instrument &instrument) {
    const std::uint64_t read = instrument.queue.read.load(std::memory_order_relaxed);
    const std::uint64_t end = instrument.panicAt.load(std::memory_order_acquire);
    if (end > read) {
        TakeWithoutKeys(instrument, static_cast<std::size_t>(end - read));
    }
}

void SilenceAll(SynthPlayer &player) {
    for (Instrument &instrument : player.instruments) {
        Silence(instrument.synth);
    }
    player.excess = 0.0f;
    player.used = BlockFrames;
}

// A frame of both sides, rounded off. The limiter follows a louder sound at once, so that what goes
// out never jumps, and lets go slowly, so that it does not bend every wave anew.
void Limit(SynthPlayer &player, float keep, float &left, float &right) {
    const float loudness = std::max(std::fabs(left), std::fabs(right));
    player.excess = std::max(loudness - LimiterFloor, player.excess * keep);
    if (player.excess < 1e-6f) {
        player.excess = 0.0f;
        return;
    }
    // Straight on at first, and never more than the room.
    const float part = player.excess / LimiterRoom;
    const float rounded = LimiterFloor + player.excess / std::sqrt(1.0f + part * part);
    const float gain = rounded / (LimiterFloor + player.excess);
    left = std::clamp(left * gain, -1.0f, 1.0f);
    right = std::clamp(right * gain, -1.0f, 1.0f);
}

// The next block of all instruments. Nothing new is taken while a panic fades.
void RenderBlock(SynthPlayer &player, bool takesEvents) {
    float left[BlockFrames] = {};
    float right[BlockFrames] = {};
    for (Instrument &instrument : player.instruments) {
        if (takesEvents) {
            TakeEvents(instrument);
        }
        float synthLeft[BlockFrames];
        float synthRight[BlockFrames];
        Render(instrument.synth, synthLeft, synthRight);
        for (int i = 0; i < BlockFrames; ++i) {
            left[i] += synthLeft[i];
            right[i] += synthRight[i];
        }
    }
    const auto wanted = static_cast<float>(player.volume.load(std::memory_order_relaxed));
    const auto most = static_cast<float>(BlockFrames / player.rate / FadeTime);
    const float gain = std::clamp(wanted, player.gain - most, player.gain + most);
    const float step = (gain - player.gain) / BlockFrames;
    const auto keep = static_cast<float>(std::exp(-1.0 / (LimiterRelease * player.rate)));
    bool limited = false;
    for (int i = 0; i < BlockFrames; ++i) {
        player.gain += step;
        left[i] *= player.gain;
        right[i] *= player.gain;
        Limit(player, keep, left[i], right[i]);
        limited = limited || player.excess > 0.0f;
        player.frames[2 * i] = left[i];
        player.frames[2 * i + 1] = right[i];
    }
    player.gain = gain;
    player.used = 0;
    if (limited) {
        player.limited.store(true, std::memory_order_relaxed);
    }
}

void KeepPeak(SynthPlayer &player, const float *frames, int count) {
    float peak = 0.0f;
    for (int i = 0; i < 2 * count; ++i) {
        peak = std::max(peak, std::fabs(frames[i]));
    }
    float known = player.peak.load(std::memory_order_relaxed);
    while (peak > known &&
           !player.peak.compare_exchange_weak(known, peak, std::memory_order_relaxed)) {
    }
}

bool NothingWaits(const Instrument &instrument) {
    return Waiting(instrument.queue) == 0 && !WaitingVoice(instrument.mailbox);
}

bool NothingIsLeft(const SynthPlayer &player) {
    const float *rest = player.frames + 2 * player.used;
    return std::all_of(rest, player.frames + 2 * BlockFrames,
                       [](float sample) { return sample == 0.0f; }) &&
           std::ranges::all_of(player.instruments, [](const Instrument &instrument) {
               return NothingWaits(instrument) && IsSilent(instrument.synth);
           });
}

} // namespace

void DeleteSynthPlayer::operator()(SynthPlayer *player) const {
    delete player;
}

OwnedSynthPlayer MakeSynthPlayer(int instruments, double rate, int polyphony) {
    OwnedSynthPlayer player(new SynthPlayer);
    player->rate = rate;
    player->instruments = std::vector<Instrument>(static_cast<std::size_t>(instruments));
    for (Instrument &instrument : player->instruments) {
        instrument.synth = MakeSynth(rate, polyphony);
    }
    return player;
}

bool SendEvent(SynthPlayer &player, int number, const SynthEvent &event) {
    if (!Push(player.instruments[static_cast<std::size_t>(number)].queue, event)) {
        SendPanic(player);
        return false;
    }
    player.sent.fetch_add(1, std::memory_order_release);
    return true;
}

bool SendVoice(SynthPlayer &player, int number, const PreparedVoice &voice, bool sameKeys) {
    Instrument &instrument = player.instruments[static_cast<std::size_t>(number)];
    const bool isNew = !sameKeys && HasRoom(instrument.queue);
    if (isNew) {
        ++instrument.newVoicesSent;
    }
    PutVoice(instrument.mailbox, voice, instrument.newVoicesSent);
    if (isNew) {
        Push(instrument.queue, {.kind = SynthEventKind::NewVoice});
    }
    player.sent.fetch_add(1, std::memory_order_release);
    if (!isNew && !sameKeys) {
        SendPanic(player);
        return false;
    }
    return true;
}

void SendPanic(SynthPlayer &player) {
    for (Instrument &instrument : player.instruments) {
        // The reader may see this of a panic behind the one that it has come to.
        instrument.panicAt.store(instrument.queue.written.load(std::memory_order_relaxed),
                                 std::memory_order_release);
    }
    player.panics.fetch_add(1, std::memory_order_release);
    player.sent.fetch_add(1, std::memory_order_release);
}

void SetPlayerVolume(SynthPlayer &player, double gain) {
    player.volume.store(gain, std::memory_order_relaxed);
}

void RenderFrames(SynthPlayer &player, float *frames, int count) {
    if (count <= 0) {
        return;
    }
    const std::uint64_t sent = player.sent.load(std::memory_order_acquire);
    const std::uint64_t panics = player.panics.load(std::memory_order_acquire);
    int fadeFrames = 0; // of a panic
    if (panics != player.panicsSeen) {
        player.panicsSeen = panics;
        std::ranges::for_each(player.instruments, TakeBeforePanic);
        fadeFrames = std::min(FadeFrames(player.rate), count);
    }
    int fadeLeft = fadeFrames;
    for (int done = 0; done < count;) {
        if (player.used == BlockFrames) {
            RenderBlock(player, fadeLeft == 0);
        }
        int turn = std::min(count - done, BlockFrames - player.used);
        float *out = frames + 2 * done;
        if (fadeLeft > 0) {
            turn = std::min(turn, fadeLeft);
        }
        std::copy_n(player.frames + 2 * player.used, 2 * turn, out);
        player.used += turn;
        done += turn;
        if (fadeLeft > 0) {
            for (int i = 0; i < turn; ++i) {
                --fadeLeft;
                const float rest = static_cast<float>(fadeLeft) / static_cast<float>(fadeFrames);
                out[2 * i] *= rest;
                out[2 * i + 1] *= rest;
            }
            if (fadeLeft == 0) {
                SilenceAll(player);
            }
        }
    }
    KeepPeak(player, frames, count);
    player.over.store(NothingIsLeft(player) ? sent : Sounds, std::memory_order_release);
}

void SkipEvents(SynthPlayer &player) {
    const std::uint64_t sent = player.sent.load(std::memory_order_acquire);
    for (Instrument &instrument : player.instruments) {
        TakeWithoutKeys(instrument, Waiting(instrument.queue));
        Silence(instrument.synth);
        TakeChangedVoice(instrument);
    }
    player.panicsSeen = player.panics.load(std::memory_order_acquire);
    SilenceAll(player);
    player.gain = static_cast<float>(player.volume.load(std::memory_order_relaxed));
    player.over.store(sent, std::memory_order_release);
}

void TakeOver(SynthPlayer &player, const SynthPlayer &from) {
    const std::size_t count = std::min(player.instruments.size(), from.instruments.size());
    for (std::size_t i = 0; i < count; ++i) {
        const Instrument &source = from.instruments[i];
        Instrument &instrument = player.instruments[i];
        const PreparedVoice *newest = WaitingVoice(source.mailbox);
        const PreparedVoice *voice = newest ? newest : source.synth.voice;
        if (voice) {
            PutVoice(instrument.mailbox, *voice, instrument.newVoicesSent);
        }
        instrument.synth.controls = source.synth.controls;
        for (std::size_t event = 0; event < Waiting(source.queue); ++event) {
            PlayUnlessKeyDown(instrument.synth, Waiting(source.queue, event));
        }
    }
    SetPlayerVolume(player, from.volume.load(std::memory_order_relaxed));
    SkipEvents(player);
}

bool IsSilent(const SynthPlayer &player) {
    // In this order: what has been sent only grows.
    const std::uint64_t over = player.over.load(std::memory_order_acquire);
    return over == player.sent.load(std::memory_order_acquire);
}

PlayerLevel TakePlayerLevel(SynthPlayer &player) {
    return {.peak = player.peak.exchange(0.0f, std::memory_order_relaxed),
            .limited = player.limited.exchange(false, std::memory_order_relaxed)};
}

} // namespace tonewright
