// Stands in for drivers/synth_driver_table.cpp in the test programs that name this file.
#include "support/driver_rows.h"

#include "drivers/dx7/driver.h"
#include "drivers/reface_dx/driver.h"

namespace tonewright {

SynthDriver Dx7Row = Dx7Driver;
SynthDriver RefaceDxRow = RefaceDxDriver;

const std::array<const SynthDriver *, SynthDriverCount> SynthDrivers = {&Dx7Row, &RefaceDxRow};

void RestoreDriverRows() {
    Dx7Row = Dx7Driver;
    RefaceDxRow = RefaceDxDriver;
}

} // namespace tonewright
