// Which MIDI table a program runs with.
#pragma once

namespace tonewright {

// True with TONEWRIGHT_INSTRUMENTS=1 in the environment.
bool BuiltinInstrumentsWanted();

// Makes TheMidi the table of the machine's real ports; with TONEWRIGHT_INSTRUMENTS=1 in the
// environment the built-in instruments are listed ahead of them, so that a real instrument of the
// same name is the one that is found.
void UseMidi();
// Back to a table without devices. Every stream is closed by then.
void EndMidi();

} // namespace tonewright
