// Sends voices to a DX7, TX7 or Volca FM, in one direction only: nothing is asked and nothing
// awaited.
//
// Bank: the 4104-byte bulk dump, as in a file. Single voice, 163 bytes:
//   F0 43 00 00 01 1B | bytes 0 to 154 of the unpacked voice | checksum | F7
// A single voice carries its levels as they stand, so an operator that is switched off sounds; only
// the bank, which is packed, silences it.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_list.h"

#include <cstdint>

class QWidget;

namespace tonewright {

constexpr std::size_t Dx7VoiceDumpSize = 163;

// Operations of the DX7 row; see core/synth_driver.h. Both return 0 when the output does not open,
// else 1: whether the writes worked is not known.
int Dx7UploadBank(QWidget *window, VoiceList &list, MidiPorts ports);
int Dx7UploadVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                   int index, std::uint8_t flags);

} // namespace tonewright
