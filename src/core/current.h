// What instrument and what document are current.
#pragma once

#include "core/item_fonts.h"
#include "core/midi_ports.h"
#include "core/voice_list.h"
#include "core/voice_object.h"

#include <cstdint>
#include <string>

namespace tonewright {

// The one variable that selects the driver row; "????" while no driver has been chosen.
extern DriverId CurrentDriverId;

// Full path of the open document, or "Untitled.Twl" at start. UTF-8, at most 260 bytes.
extern std::string CurrentDocumentPath;

// When the document that was opened last had been changed, in seconds since 1970; 0 as long
// as none has been opened.
extern std::int64_t CurrentDocumentTime;

// The voices of the open document and the fonts of the list that shows them.
extern VoiceList MainList;
extern ItemFonts MainItemFonts;

// Ports of the current instrument as PortMidi device indices, -1 for none. Found anew by each
// discovery, never stored in a file.
extern int MidiInPort;
extern int MidiOutPort;
MidiPorts CurrentMidiPorts();

// Version word of the instrument: four decimal digits, one per byte, high byte first; 0: unknown.
extern std::uint32_t SynthFirmware;

} // namespace tonewright
