// The variables of core/current.h, with their values at start.
#include "core/current.h"

namespace tonewright {

DriverId CurrentDriverId = NoDriverId;
std::string CurrentDocumentPath = "Untitled.Twl";
VoiceList MainList;
ItemFonts MainItemFonts;
int MidiInPort = -1;
int MidiOutPort = -1;
std::uint32_t SynthFirmware = 0;

} // namespace tonewright
