// The MIDI devices that are there: the search for those that were plugged in or out, and what the
// box "MIDI Devices" lists. Texts are bytes as the MIDI layer gives them.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

// Looks for MIDI devices that were plugged in or out. They are numbered anew, and MidiInPort and
// MidiOutPort follow theirs, or become -1 when it is gone.
void RescanDevicesKeepingPorts();

// "index: interface, name (input) (output)" of every MIDI device, in the order of their numbers;
// each row at most 260 bytes.
std::vector<std::string> MidiDeviceRows();

} // namespace tonewright
