// Puts the MIDI table of a program together.
#include "midi/midi_start.h"

#include "midi/composite_api.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "midi/portmidi_api.h"

#include <cstdlib>
#include <string_view>

namespace tonewright {
namespace {

constexpr const char *InstrumentsVariable = "TONEWRIGHT_INSTRUMENTS";

} // namespace

bool BuiltinInstrumentsWanted() {
    const char *value = std::getenv(InstrumentsVariable);
    return value && std::string_view(value) == "1";
}

void UseMidi() {
    MidiApi ports = MakePortMidiApi();
    TheMidi = BuiltinInstrumentsWanted()
                  ? MakeCompositeApi(MakeBuiltinInstruments({.simulatedClock = false}), ports)
                  : ports;
}

void EndMidi() {
    TheMidi = {};
}

} // namespace tonewright
