// Plays instruments side by side for a sound card: events come in on one thread, sound goes out on
// another, and neither waits for the other.
//
// One thread writes (SendEvent, SendVoice, SendPanic, SetPlayerVolume) and one thread reads
// (RenderFrames): the callback of a sound card, in which nothing allocates, frees, locks or calls
// the system. The other functions say from where they may be called.
#pragma once

#include "synth/prepared_voice.h"
#include "synth/synth_event.h"

#include <memory>

namespace tonewright {

struct SynthPlayer;
struct DeleteSynthPlayer {
    void operator()(SynthPlayer *player) const;
};
using OwnedSynthPlayer = std::unique_ptr<SynthPlayer, DeleteSynthPlayer>;

// `instruments` 1 or more; `rate` 8,000 to 192,000 frames a second; `polyphony` MinPolyphony to
// MaxPolyphony, of each instrument. Silent until an instrument has got a voice.
OwnedSynthPlayer MakeSynthPlayer(int instruments, double rate, int polyphony);

// Hands over an event, but for the two that bring a voice, to the instrument (from 0). False when
// there is no room for it: it is lost, and everything falls silent as after SendPanic, so that no
// note hangs for want of its end.
bool SendEvent(SynthPlayer &player, int instrument, const SynthEvent &event);
// Hands over a voice, which is copied. As SendEvent does; of several that have come while nothing
// was read, or before one that is under way has been reached, the last one may stand for all.
bool SendVoice(SynthPlayer &player, int instrument, const PreparedVoice &voice, bool sameKeys);
// Silence, tails of effects too, within the next frames that are rendered (FadeTime, or all of
// them when they are fewer); what was sent before it is no longer played, but for voices and
// controllers, which stay.
void SendPanic(SynthPlayer &player);
// The gain of the output, 0 to 1; heard within FadeTime.
void SetPlayerVolume(SynthPlayer &player, double gain);

// The next `count` frames of both sides, interleaved, -1 to 1: above -3 dB of full scale a limiter
// rounds them off. Any count from 0.
void RenderFrames(SynthPlayer &player, float *frames, int count);

// Takes what has been sent as if it had been played long ago: voices and controllers stay, no key
// sounds. Only while nobody reads.
void SkipEvents(SynthPlayer &player);
// Voices and controllers of another player, at another rate or polyphony. Only while nobody reads.
void TakeOver(SynthPlayer &player, const SynthPlayer &from);

// From any thread: nothing sounds nor waits to be played, and what is rendered is exactly 0.
bool IsSilent(const SynthPlayer &player);

struct PlayerLevel {
    float peak = 0.0f;    // of both sides, in full scale
    bool limited = false; // the limiter worked
};
// The level since the last call, from the writing thread.
PlayerLevel TakePlayerLevel(SynthPlayer &player);

} // namespace tonewright
