// The variables of core/current.h, with their values at start.
#include "core/current.h"

namespace tonewright {

DriverId CurrentDriverId = NoDriverId;
std::string CurrentDocumentPath = "Untitled.Twl";
std::int64_t CurrentDocumentTime = 0;
VoiceList MainList;
ItemFonts MainItemFonts;
int MidiInPort = NoMidiDevice;
int MidiOutPort = NoMidiDevice;
std::uint32_t SynthFirmware = 0;

MidiPorts CurrentMidiPorts() {
    return {MidiInPort, MidiOutPort};
}

} // namespace tonewright
