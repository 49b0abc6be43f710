// Which MIDI table a program runs with.
#pragma once

namespace tonewright {

// True with TONEWRIGHT_INSTRUMENTS=1 in the environment, and with the setting BuiltinInstruments.
bool BuiltinInstrumentsWanted();

// False with TONEWRIGHT_SOUND=0 in the environment: then no library of sound cards is used, and the
// built-in instruments are silent.
bool InstrumentSoundAllowed();

// Whether the built-in instruments, when they are there, are heard where that is allowed.
enum class InstrumentsAre { Silent, Heard };

// Makes TheMidi the table of the machine's real ports; when the built-in instruments are wanted
// they are listed ahead of them, so that a real instrument of the same name is the one that is
// found. At every look for devices they come or go as they are wanted then.
void UseMidi(InstrumentsAre instruments);
// Back to a table without devices, and silence. Every stream is closed by then.
void EndMidi();

} // namespace tonewright
