// How voices lie in the memory of a reface DX.
#pragma once

#include "core/instrument_memory.h"

namespace tonewright {

extern const InstrumentMemory RefaceMemories[1];

} // namespace tonewright
