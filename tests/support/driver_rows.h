// A driver table for tests: changeable copies of the real rows, so that a test can put an operation
// of its own into one of them. The rest of the program sees them as the table.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// Of each family, NAMERow.
#define FAMILY(name) extern SynthDriver name##Row;
#include "drivers/families.inc"
#undef FAMILY

// Makes all rows equal to the real ones again.
void RestoreDriverRows();

} // namespace tonewright
