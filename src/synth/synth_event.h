// What happens to an instrument that plays: a MIDI message of a channel without its channel, or
// another voice, which comes beside the event.
#pragma once

#include <cstdint>

namespace tonewright {

enum class SynthEventKind : std::uint8_t {
    NoteOn,       // number: note; value: velocity, 1 to 127
    NoteOff,      // number: note
    Controller,   // number: controller; value: 0 to 127. Mode messages (120 to 127) as well
    Bend,         // value: 0 to 16383, 8192 in the middle
    Pressure,     // of the whole keyboard; value: 0 to 127
    NewVoice,     // keys of the former one fade out
    ChangedVoice, // keys go on in it
};

struct SynthEvent {
    SynthEventKind kind = SynthEventKind::NoteOff;
    std::uint8_t number = 0;
    std::uint16_t value = 0;

    bool operator==(const SynthEvent &) const = default;
};

} // namespace tonewright
