// Keeps the libraries below MIDI ports and sound cards from writing to the terminal.
#pragma once

namespace tonewright {

// libasound, such as that there is no sequencer. To be called before its first use.
void KeepAlsaQuiet();
// The JACK that a library has brought along, such as that no server runs; nothing without one. To
// be called before that library looks for the server.
void KeepJackQuiet();

} // namespace tonewright
