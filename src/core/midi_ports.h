// The two MIDI ports of an instrument, as device indices, and what names them.
#pragma once

namespace tonewright {

constexpr int NoMidiDevice = -1;

struct MidiPorts {
    int in = NoMidiDevice;
    int out = NoMidiDevice;

    bool operator==(const MidiPorts &) const = default;
};

// Parts of the names of an input and an output; a port whose name contains its part is meant.
struct PortNames {
    const char *in = "";
    const char *out = "";
};

} // namespace tonewright
