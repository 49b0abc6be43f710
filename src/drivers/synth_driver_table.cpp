// The driver table: the one place where the families are listed.
#include "core/synth_driver.h"

namespace tonewright {

#define FAMILY(name) extern const SynthDriver name##Driver;
#include "drivers/families.inc"
#undef FAMILY

namespace {

constexpr const SynthDriver *Rows[] = {
#define FAMILY(name) &name##Driver,
#include "drivers/families.inc"
#undef FAMILY
};

} // namespace

constinit const std::span<const SynthDriver *const> SynthDrivers = Rows;

} // namespace tonewright
