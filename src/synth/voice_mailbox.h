// Hands voices from a thread that writes to one that reads, which gets the newest: one that comes
// before the former was taken replaces it, so there is always room and nothing is allocated.
//
// The reader keeps two voices, since the one before goes on until its keys have faded out; so there
// are four: those two, one that is under way and one that is being written.
#pragma once

#include "synth/prepared_voice.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace tonewright {

struct VoiceMailbox {
    std::array<PreparedVoice, 4> voices;
    std::uint64_t writing = 0; // the writer's place
    // What is under way: its place in two bits, a bit that says that it has not been taken, and
    // above them its era.
    alignas(64) std::atomic<std::uint64_t> underWay = 1;
    alignas(64) std::uint64_t newest = 2; // the reader's places
    std::uint64_t former = 3;
};

// For the thread that writes. The eras of voices never fall.
void PutVoice(VoiceMailbox &mailbox, const PreparedVoice &voice, std::uint64_t era);
// For the thread that reads: the newest voice, which lives until the one after the next has been
// taken; null when there is none, or when it belongs to a later era.
const PreparedVoice *TakeVoice(VoiceMailbox &mailbox, std::uint64_t era);
// The voice that would be taken, or null: from any thread whether there is one, and while nobody
// writes what it is.
const PreparedVoice *WaitingVoice(const VoiceMailbox &mailbox);

} // namespace tonewright
