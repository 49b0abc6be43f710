// The tables as printed on the instruments: carriers, then who modulates whom, then the feedback.
#include "synth/algorithms.h"

namespace tonewright {

namespace {

// A chain of characters such as "6>5>4 2>1" as bits; written once, at compile time.
struct Row {
    const char *carriers;
    const char *modulations;
    const char *feedback; // "6" or "4>6"; empty for none
};

// A bus has the number of the first operator that it modulates, from 1.
constexpr void LayBuses(Algorithm &algorithm) {
    for (int i = 0; i < MaxOperators; ++i) {
        algorithm.inputBus[i] = static_cast<std::uint8_t>(1 + i);
        for (int modulated = MaxOperators - 1; modulated >= 0; --modulated) {
            if ((algorithm.modulators[modulated] >> i & 1) != 0) {
                algorithm.outputBus[i] = static_cast<std::uint8_t>(1 + modulated);
            }
        }
    }
    for (int i = 0; i < MaxOperators; ++i) {
        for (int modulator = 0; modulator < MaxOperators; ++modulator) {
            if ((algorithm.modulators[i] >> modulator & 1) != 0) {
                algorithm.inputBus[i] = algorithm.outputBus[modulator];
            }
        }
    }
}

constexpr Algorithm Built(const Row &row) {
    Algorithm algorithm;
    for (const char *c = row.carriers; *c; ++c) {
        algorithm.carriers |= static_cast<std::uint8_t>(1 << (*c - '1'));
    }
    for (const char *c = row.modulations; *c; ++c) {
        if (*c == '>') {
            algorithm.modulators[c[1] - '1'] |= static_cast<std::uint8_t>(1 << (c[-1] - '1'));
        }
    }
    if (*row.feedback) {
        algorithm.feedbackFrom = row.feedback[0] - '1';
        algorithm.feedbackTo = (row.feedback[1] ? row.feedback[2] : row.feedback[0]) - '1';
    }
    LayBuses(algorithm);
    return algorithm;
}

template <std::size_t N> constexpr std::array<Algorithm, N> BuiltAll(const Row (&rows)[N]) {
    std::array<Algorithm, N> algorithms = {};
    for (std::size_t i = 0; i < N; ++i) {
        algorithms[i] = Built(rows[i]);
    }
    return algorithms;
}

constexpr Row SixRows[] = {
    {"13", "6>5>4>3 2>1", "6"},       // 1
    {"13", "6>5>4>3 2>1", "2"},       // 2
    {"14", "6>5>4 3>2>1", "6"},       // 3
    {"14", "6>5>4 3>2>1", "4>6"},     // 4
    {"135", "6>5 4>3 2>1", "6"},      // 5
    {"135", "6>5 4>3 2>1", "5>6"},    // 6
    {"13", "6>5>3 4>3 2>1", "6"},     // 7
    {"13", "6>5>3 4>3 2>1", "4"},     // 8
    {"13", "6>5>3 4>3 2>1", "2"},     // 9
    {"14", "6>4 5>4 3>2>1", "3"},     // 10
    {"14", "6>4 5>4 3>2>1", "6"},     // 11
    {"13", "6>3 5>3 4>3 2>1", "2"},   // 12
    {"13", "6>3 5>3 4>3 2>1", "6"},   // 13
    {"13", "6>4 5>4 4>3 2>1", "6"},   // 14
    {"13", "6>4 5>4 4>3 2>1", "2"},   // 15
    {"1", "6>5>1 4>3>1 2>1", "6"},    // 16
    {"1", "6>5>1 4>3>1 2>1", "2"},    // 17
    {"1", "6>5>4>1 3>1 2>1", "3"},    // 18
    {"145", "6>5 6>4 3>2>1", "6"},    // 19
    {"124", "6>4 5>4 3>2 3>1", "3"},  // 20
    {"1245", "6>5 6>4 3>2 3>1", "3"}, // 21
    {"1345", "6>5 6>4 6>3 2>1", "6"}, // 22
    {"1245", "6>5 6>4 3>2", "6"},     // 23
    {"12345", "6>5 6>4 6>3", "6"},    // 24
    {"12345", "6>5 6>4", "6"},        // 25
    {"124", "6>4 5>4 3>2", "6"},      // 26
    {"124", "6>4 5>4 3>2", "3"},      // 27
    {"136", "5>4>3 2>1", "5"},        // 28
    {"1235", "6>5 4>3", "6"},         // 29
    {"1236", "5>4>3", "5"},           // 30
    {"12345", "6>5", "6"},            // 31
    {"123456", "", "6"},              // 32
};

constexpr Row FourRows[] = {
    {"1", "4>3>2>1", ""},         // 1
    {"1", "4>2 3>2 2>1", ""},     // 2
    {"1", "3>2>1 4>1", ""},       // 3
    {"1", "4>3 4>2 3>1 2>1", ""}, // 4
    {"1", "4>1 3>1 2>1", ""},     // 5
    {"12", "4>3>2", ""},          // 6
    {"12", "4>3 3>2 3>1", ""},    // 7
    {"13", "2>1 4>3", ""},        // 8
    {"123", "4>1 4>2 4>3", ""},   // 9
    {"123", "4>2 4>3", ""},       // 10
    {"123", "4>3", ""},           // 11
    {"1234", "", ""},             // 12
};

constexpr auto SixTable = BuiltAll(SixRows);
constexpr auto FourTable = BuiltAll(FourRows);
static_assert(SixTable.size() == SixOperatorAlgorithms);
static_assert(FourTable.size() == FourOperatorAlgorithms);

} // namespace

const Algorithm &SixOperatorAlgorithm(int number) {
    return SixTable[number];
}

const Algorithm &FourOperatorAlgorithm(int number) {
    return FourTable[number];
}

} // namespace tonewright
