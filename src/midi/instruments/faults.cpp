// Makes the events that carry an instrument's answers, well-behaved or with the faults that are
// switched on.
#include "midi/instruments/faults.h"

#include "midi/instruments/instrument.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <span>

namespace tonewright {

namespace {

constexpr std::uint32_t NoteOn = 0x00403C90; // C3 on channel 1
constexpr std::uint32_t ActiveSensing = 0xFE;
constexpr std::size_t CountHighPlace = 5;
constexpr std::size_t ModelPlace = 7; // where a block's sum begins
constexpr std::size_t OperatorPlace = 9;
constexpr std::uint8_t WrongOperator = 0x14;
constexpr int LastOperatorBlock = 4;
constexpr std::ptrdiff_t BytesCut = 4;

// The blocks of a voice in another order; header and footer stay where they are.
std::vector<Answer> InOrder(std::vector<Answer> answers, const std::vector<int> &order) {
    const auto isBlock = [](const Answer &answer) { return answer.voiceBlock >= 0; };
    const auto first = std::ranges::find_if(answers, isBlock);
    if (order.empty() || first == answers.end()) {
        return answers;
    }
    std::vector<Answer> result(answers.begin(), first);
    for (const int block : order) {
        const auto found = std::ranges::find(answers, block, &Answer::voiceBlock);
        if (block >= 0 && found != answers.end()) {
            result.push_back(*found);
        }
    }
    std::copy_if(first, answers.end(), std::back_inserter(result), std::not_fn(isBlock));
    return result;
}

void FixSum(std::vector<std::uint8_t> &bytes) {
    const auto summed = std::span(bytes).subspan(ModelPlace, bytes.size() - ModelPlace - 2);
    const unsigned sum = std::accumulate(summed.begin(), summed.end(), 0u);
    bytes[bytes.size() - 2] = static_cast<std::uint8_t>((128 - sum % 128) % 128);
}

void SpoilBytes(const InstrumentFaults &faults, Answer &answer) {
    auto &bytes = answer.bytes;
    if (faults.operatorNumberAboveThree && answer.voiceBlock == LastOperatorBlock) {
        bytes[OperatorPlace] = WrongOperator;
        FixSum(bytes);
    }
    if (faults.byteFiveNonzero && answer.hasChecksum) {
        bytes[CountHighPlace] = 1;
    }
    if (faults.corruptChecksum && answer.hasChecksum) {
        bytes[bytes.size() - 2] ^= 1;
    }
    if (faults.cutMessages) {
        bytes.erase(bytes.end() - std::min(std::ssize(bytes), BytesCut), bytes.end());
    }
}

// Four bytes an event, lowest first; the last event is filled with zeros.
std::vector<AnswerEvent> Pack(std::span<const std::uint8_t> bytes) {
    std::vector<AnswerEvent> events;
    events.reserve(bytes.size() / 4 + 1);
    for (std::size_t place = 0; place < bytes.size(); place += 4) {
        AnswerEvent event;
        for (const std::uint8_t byte :
             bytes.subspan(place).first(std::min<std::size_t>(4, bytes.size() - place))) {
            event.message |= static_cast<std::uint32_t>(byte) << (8 * event.bytes);
            ++event.bytes;
        }
        events.push_back(event);
    }
    return events;
}

void SpoilEvents(const InstrumentFaults &faults, std::vector<AnswerEvent> &events) {
    const AnswerEvent note = {.message = NoteOn, .bytes = 3};
    const AnswerEvent activeSensing = {.message = ActiveSensing, .bytes = 1};
    const auto place = std::clamp<std::ptrdiff_t>(faults.strayPlace, 0, std::ssize(events));
    if (faults.activeSensingInReply) {
        events.insert(events.begin() + place, activeSensing);
    }
    if (faults.noteInReply) {
        events.insert(events.begin() + place, note);
    }
    if (faults.activeSensingBeforeReply) {
        events.insert(events.begin(), activeSensing);
    }
    if (faults.noteBeforeReply) {
        events.insert(events.begin(), note);
    }
    if (faults.lateEvent >= 0 && static_cast<std::size_t>(faults.lateEvent) < events.size()) {
        events[static_cast<std::size_t>(faults.lateEvent)].waitMilliseconds =
            std::max(0, faults.lateByMilliseconds);
    }
}

bool CountDown(int &left) {
    if (left > 0) {
        --left;
        return true;
    }
    return false;
}

} // namespace

std::vector<AnswerEvent> EventsOfAnswers(InstrumentFaults &faults, std::vector<Answer> answers) {
    std::vector<AnswerEvent> result;
    for (Answer &answer : InOrder(std::move(answers), faults.blockOrder)) {
        if (faults.silentAfterMessages >= 0 && !CountDown(faults.silentAfterMessages)) {
            continue;
        }
        const bool isFaulty = !CountDown(faults.goodMessages) &&
                              (faults.faultyMessages < 0 || CountDown(faults.faultyMessages));
        if (isFaulty && faults.silent) {
            continue;
        }
        if (isFaulty) {
            SpoilBytes(faults, answer);
        }
        std::vector<AnswerEvent> events = Pack(answer.bytes);
        if (isFaulty) {
            SpoilEvents(faults, events);
        }
        result.insert(result.end(), events.begin(), events.end());
    }
    return result;
}

} // namespace tonewright
