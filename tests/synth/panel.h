// An algorithm as an instrument prints it, written by hand for the tests that measure the engine's.
#pragma once

#include <string>

namespace tonewright {

struct PrintedAlgorithm {
    std::string carriers;    // the operators that are heard: "13"
    std::string modulations; // who modulates whom: "65 53 21"
    std::string feedback;    // one operator, or the end and the begin of a chain; none with four
};

inline unsigned OperatorBit(char number) {
    return 1u << (number - '1');
}

// Whether a way leads from operator `from` to one that is heard, over enabled operators.
inline bool IsHeard(const PrintedAlgorithm &printed, char from, unsigned enabled) {
    if ((enabled & OperatorBit(from)) == 0) {
        return false;
    }
    if (printed.carriers.find(from) != std::string::npos) {
        return true;
    }
    for (std::size_t i = 0; i + 1 < printed.modulations.size(); i += 3) {
        if (printed.modulations[i] == from &&
            IsHeard(printed, printed.modulations[i + 1], enabled)) {
            return true;
        }
    }
    return false;
}

} // namespace tonewright
