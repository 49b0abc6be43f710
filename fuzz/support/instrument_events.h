// What every event that a built-in instrument tells of keeps to.
#pragma once

#include "support/fuzz_support.h"
#include "synth/synth_event.h"

namespace tonewright {

inline void DemandSoundEvent(const SynthEvent &event) {
    Demand(event.number < 128, "a key or a controller has seven bits");
    switch (event.kind) {
    case SynthEventKind::NoteOn:
        Demand(event.value > 0 && event.value < 128, "a key that goes down has a velocity");
        break;
    case SynthEventKind::Controller:
    case SynthEventKind::Pressure:
        Demand(event.value < 128, "a controller has seven bits");
        break;
    case SynthEventKind::Bend:
        Demand(event.value < 16384, "a bend has fourteen bits");
        break;
    case SynthEventKind::NoteOff:
    case SynthEventKind::NewVoice:
    case SynthEventKind::ChangedVoice:
        Demand(event.value == 0, "others have no value");
        break;
    default:
        Demand(false, "an event is one of its kinds");
    }
}

} // namespace tonewright
