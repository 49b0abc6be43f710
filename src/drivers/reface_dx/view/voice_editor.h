// The editor of a reface DX voice.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_object.h"

class QWidget;

namespace tonewright {

// Operation of the reface DX row; see core/synth_driver.h.
int RefaceEditVoice(QWidget *window, VoiceObject &voice, MidiPorts ports, int index);

} // namespace tonewright
