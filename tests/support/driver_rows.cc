// Stands in for drivers/synth_driver_table.cpp in the test programs that name this file.
#include "support/driver_rows.h"

namespace tonewright {

#define FAMILY(name)                                                                               \
    extern const SynthDriver name##Driver;                                                         \
    SynthDriver name##Row = name##Driver;
#include "drivers/families.inc"
#undef FAMILY

constexpr const SynthDriver *Rows[] = {
#define FAMILY(name) &name##Row,
#include "drivers/families.inc"
#undef FAMILY
};
const std::span<const SynthDriver *const> SynthDrivers = Rows;

void RestoreDriverRows() {
#define FAMILY(name) name##Row = name##Driver;
#include "drivers/families.inc"
#undef FAMILY
}

} // namespace tonewright
