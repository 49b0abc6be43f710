// The faults of the built-in instruments, and the events that carry an instrument's answers,
// well-behaved or with the faults that are switched on.
#pragma once

#include <cstdint>
#include <vector>

namespace tonewright {

struct Answer;

// Faults that can be switched on, each for one instrument. An answer is one message: a voice is
// answered with seven, header, common block, four operators and footer. Counters count down as
// answers are sent.
struct InstrumentFaults {
    // Which answers the other faults touch, but for silentAfterMessages and blockOrder: the first
    // `goodMessages` come as they should, then `faultyMessages` are touched (-1: all).
    int goodMessages = 0;
    int faultyMessages = -1;
    bool silent = false;          // answers nothing
    int silentAfterMessages = -1; // falls silent after so many answers; -1: never
    // The event `lateEvent` of each answer comes this much after the event before it was read, or
    // after the request when nothing is under way.
    int lateByMilliseconds = 0;
    int lateEvent = 0;
    bool noteBeforeReply = false;          // the note-on 90 3C 40 in front of each answer
    bool activeSensingBeforeReply = false; // FE in front of each answer
    // The same inside each answer, behind its first `strayPlace` events of four bytes; behind its
    // last one when it has fewer.
    bool noteInReply = false;
    bool activeSensingInReply = false;
    int strayPlace = 1;
    std::vector<int> blockOrder = {}; // order of the voice blocks: 0 common, 1 to 4 operators;
                                      // empty: as a real one sends them; a block may come twice,
                                      // or not at all
    bool operatorNumberAboveThree =
        false;                    // the fourth operator calls itself 14, its checksum right
    bool byteFiveNonzero = false; // byte 5 of dumps, the high half of their count, is 01
    bool cutMessages = false;     // answers end without their last four bytes
    bool corruptChecksum = false;
    bool inputDoesNotOpen = false; // as seen by the program
    bool outputDoesNotOpen = false;
    int failWrite =
        -1; // the n-th write (from 0) since the output was opened fails, and is not heard
    bool twin = false; // listed twice, under the same name; the second pair of ports comes last
};

struct AnswerEvent {
    std::uint32_t message = 0;
    int bytes = 0;            // of the word that are sent over the line
    int waitMilliseconds = 0; // after the event before it was read
};

// `faults` counts down as its comments say.
std::vector<AnswerEvent> EventsOfAnswers(InstrumentFaults &faults, std::vector<Answer> answers);

} // namespace tonewright
