// Makes the events that carry an instrument's answers, well-behaved or with the faults that are
// switched on.
#pragma once

#include "midi/instruments/builtin_instruments.h"
#include "midi/instruments/instrument.h"

#include <cstdint>
#include <vector>

namespace tonewright {

struct AnswerEvent {
    std::uint32_t message = 0;
    int bytes = 0;            // of the word that are sent over the line
    int waitMilliseconds = 0; // after the event before it was read
};

// `faults` counts down as its comments say.
std::vector<AnswerEvent> EventsOfAnswers(InstrumentFaults &faults, std::vector<Answer> answers);

} // namespace tonewright
