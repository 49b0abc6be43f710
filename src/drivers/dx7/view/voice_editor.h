// The editor of a DX7 voice.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_object.h"

class QWidget;

namespace tonewright {

// Operation of the DX7 row; see core/synth_driver.h.
int Dx7EditVoice(QWidget *window, VoiceObject &voice, MidiPorts ports, int index);

} // namespace tonewright
