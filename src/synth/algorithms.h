// How the operators of a voice are joined: a row for each algorithm.
#pragma once

#include <array>
#include <cstdint>

namespace tonewright {

constexpr int MaxOperators = 6;

// Sets of operators are bits: bit 0 is operator 1. A modulator has a higher number than what it
// modulates, but for the feedback.
struct Algorithm {
    std::array<std::uint8_t, MaxOperators> modulators = {}; // by the operator that they modulate
    std::uint8_t carriers = 0;
    // The output of the operator `feedbackFrom` modulates `feedbackTo`, the same one or the begin
    // of its chain; counted from 0. (With four operators each one feeds back by itself.)
    int feedbackFrom = 0;
    int feedbackTo = 0;
    // What modulates the same operators, or is heard, is added up on one bus: by operator, the bus
    // that it adds to and the one that modulates it, on which there is nothing for a begin.
    std::array<std::uint8_t, MaxOperators> outputBus = {};
    std::array<std::uint8_t, MaxOperators> inputBus = {};
};

constexpr int HeardBus = 0;
constexpr int BusCount = 1 + MaxOperators;

constexpr int SixOperatorAlgorithms = 32;
constexpr int FourOperatorAlgorithms = 12;

const Algorithm &SixOperatorAlgorithm(int number);  // 0 to 31
const Algorithm &FourOperatorAlgorithm(int number); // 0 to 11

} // namespace tonewright
