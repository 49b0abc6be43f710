#include "synth/voice_mailbox.h"

#include <utility>

namespace tonewright {

namespace {

constexpr std::uint64_t Place = 3;
constexpr std::uint64_t NotTaken = 4;
constexpr int EraShift = 3;

} // namespace

void PutVoice(VoiceMailbox &mailbox, const PreparedVoice &voice, std::uint64_t era) {
    mailbox.voices[mailbox.writing] = voice;
    const std::uint64_t put = era << EraShift | NotTaken | mailbox.writing;
    mailbox.writing = mailbox.underWay.exchange(put, std::memory_order_acq_rel) & Place;
}

const PreparedVoice *TakeVoice(VoiceMailbox &mailbox, std::uint64_t era) {
    std::uint64_t seen = mailbox.underWay.load(std::memory_order_acquire);
    // Another turn only when the writer has put another one meanwhile.
    while ((seen & NotTaken) != 0 && seen >> EraShift <= era) {
        const std::uint64_t given = (seen & ~(NotTaken | Place)) | mailbox.former;
        if (mailbox.underWay.compare_exchange_weak(seen, given, std::memory_order_acq_rel)) {
            mailbox.former = std::exchange(mailbox.newest, seen & Place);
            return &mailbox.voices[mailbox.newest];
        }
    }
    return nullptr;
}

const PreparedVoice *WaitingVoice(const VoiceMailbox &mailbox) {
    const std::uint64_t seen = mailbox.underWay.load(std::memory_order_acquire);
    return (seen & NotTaken) != 0 ? &mailbox.voices[seen & Place] : nullptr;
}

} // namespace tonewright
