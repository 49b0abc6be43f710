// What the tests of every family know of it: each family's folder supplies its own.
#pragma once

#include "core/voice_object.h"
#include "midi/instruments/builtin_instruments.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tonewright {

struct FamilyFacts {
    // As in the row; by hand, so that the row is held against something. Names that other tests
    // expect too stand in support/family_names.h.
    DriverId id;
    const char *name, *bank, *voice, *extra, *document;
    std::uint32_t flags, picture;
    int bankRows;
    const char *idText; // the characters of the id from its low byte up
    // The family has all operations of files, list, page and instrument; one that is not whole may
    // leave any of them out.
    bool isWhole;
    // Of a voice block; `filler` is a byte that a voice may hold everywhere but in its name.
    std::size_t payloadSize, extraSize, namePlace;
    std::uint8_t filler;
    // The built-in instrument that takes its transfers, and the name of its ports; none otherwise.
    std::optional<BuiltinInstrument> instrument = {};
    const char *port = "";
};

} // namespace tonewright
