// The driver table: the one place where the families are listed.
#include "core/synth_driver.h"
#include "drivers/dx7/driver.h"
#include "drivers/reface_dx/driver.h"

namespace tonewright {

const std::array<const SynthDriver *, SynthDriverCount> SynthDrivers = {&Dx7Driver,
                                                                        &RefaceDxDriver};

} // namespace tonewright
