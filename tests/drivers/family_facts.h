// What the tests of every family know of it: each family's folder supplies its own.
#pragma once

#include "core/voice_object.h"
#include "midi/instruments/builtin_instruments.h"

#include <cstddef>
#include <cstdint>

namespace tonewright {

struct FamilyFacts {
    // As in the row.
    DriverId id;
    const char *name, *bank, *voice, *extra, *document;
    std::uint32_t flags, picture;
    // Of a voice block.
    std::size_t payloadSize, extraSize, namePlace;
    // The built-in instrument that takes its transfers, and the name of its ports.
    BuiltinInstrument instrument;
    const char *port;
};

} // namespace tonewright
