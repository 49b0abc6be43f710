// A locale of our own whose decimal point is a comma, since a machine need not have such a one.
#pragma once

#include "support/temp_folder.h"

#include <string>
#include <vector>

namespace tonewright {

// Numbers are written and read in it by printf, strtod and their like as long as it lives; the
// rest of the process's locale stays. Its constructor throws, and so fails the test, when the
// locale cannot be made.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale &) = delete;
    CommaLocale &operator=(const CommaLocale &) = delete;

    // What RunProgram is to be handed so that `words`, the first of which is looked up in PATH, run
    // in the locale.
    std::vector<std::string> Command(std::vector<std::string> words) const;

private:
    TempFolder folder;
    std::string former; // the process's locale of numbers
};

} // namespace tonewright
