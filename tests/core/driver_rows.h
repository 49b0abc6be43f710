// The driver table of the core's tests: two rows whose operations record their calls. They carry
// the ids and extensions of the real rows.
#pragma once

#include "core/synth_driver.h"

#include <string>
#include <vector>

namespace tonewright {

constexpr DriverId FirstDriverId = MakeDriverId("y7XD");
constexpr DriverId SecondDriverId = MakeDriverId("xdFR");

extern SynthDriver FirstRow;
extern SynthDriver SecondRow;

// What the operations of both rows were called with, oldest first, such as "first SaveBank ...".
extern std::vector<std::string> Calls;
// What they answer.
extern int Answer;

// Fresh rows, no calls, and 1 for an answer.
void RestoreDriverRows();

} // namespace tonewright
