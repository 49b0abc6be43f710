// How voices lie in the memory of a DX7 and of a Volca FM.
#pragma once

#include "core/instrument_memory.h"

namespace tonewright {

extern const InstrumentMemory Dx7Memories[2];

} // namespace tonewright
