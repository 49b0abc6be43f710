// Keeps the libraries below the MIDI ports from writing to the terminal.
#pragma once

namespace tonewright {

// To be called before the first look at the ports.
void KeepMidiLibraryQuiet();

} // namespace tonewright
