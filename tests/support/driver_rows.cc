// Stands in for drivers/synth_driver_table.cpp in the test programs that name this file.
#include "support/driver_rows.h"

#include "drivers/dx7/driver.h"
#include "drivers/reface_dx/driver.h"

namespace tonewright {

SynthDriver Dx7Row = Dx7Driver;
SynthDriver RefaceRow = RefaceDriver;

constexpr const SynthDriver *Rows[] = {&Dx7Row, &RefaceRow};
const std::span<const SynthDriver *const> SynthDrivers = Rows;

void RestoreDriverRows() {
    Dx7Row = Dx7Driver;
    RefaceRow = RefaceDriver;
}

} // namespace tonewright
