// Puts the MIDI table of a program together.
#include "midi/midi_start.h"

#include "common/settings.h"
#include "midi/composite_api.h"
#include "midi/instrument_settings.h"
#include "midi/instrument_sound.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "midi/portmidi_api.h"

#include <cstdlib>
#include <memory>
#include <string_view>

namespace tonewright {
namespace {

constexpr const char *InstrumentsVariable = "TONEWRIGHT_INSTRUMENTS";
constexpr const char *SoundVariable = "TONEWRIGHT_SOUND";

bool VariableIs(const char *name, std::string_view meant) {
    const char *value = std::getenv(name);
    return value && value == meant;
}

// The table of the instruments, who are there as long as they were wanted when somebody looked.
MidiApi WantedInstruments(const InstrumentListener &listener) {
    MidiApi api = MakeBuiltinInstruments({.simulatedClock = false, .listener = listener});
    const auto wanted = std::make_shared<bool>(BuiltinInstrumentsWanted());
    api.Pm_CountDevices = [wanted, count = api.Pm_CountDevices] { return *wanted ? count() : 0; };
    api.RescanDevices = [wanted] {
        if (OpenBuiltinStreams() == 0) {
            *wanted = BuiltinInstrumentsWanted();
        }
    };
    return api;
}

} // namespace

bool BuiltinInstrumentsWanted() {
    return VariableIs(InstrumentsVariable, "1") || BuiltinInstruments != 0;
}

bool InstrumentSoundAllowed() {
    return !VariableIs(SoundVariable, "0");
}

void UseMidi(InstrumentsAre instruments) {
    const bool isHeard = instruments == InstrumentsAre::Heard && InstrumentSoundAllowed();
    if (isHeard) {
        FollowInstrumentSettings();
    }
    TheMidi = MakeCompositeApi(
        WantedInstruments(isHeard ? InstrumentSound() : InstrumentListener()), MakePortMidiApi());
}

void EndMidi() {
    TheMidi = {};
    EndInstrumentSound();
}

} // namespace tonewright
