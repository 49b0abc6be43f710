// The window of the editor of a voice: a sheet of pages with OK, Cancel, "Audition..." and Help.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_object.h"

class QWidget;

namespace tonewright {

struct VoicePagesLook;

// Opens the sheet over a copy of `voice`, which stands in row `index` of its list, and returns when
// it is closed: 1 when OK was pressed, and `voice` is what was edited; else 0, also after a message
// that `voice` is no whole one of the family.
int ShowVoiceSheet(QWidget *window, const VoicePagesLook &look, DriverId driverId,
                   VoiceObject &voice, MidiPorts ports, int index);

} // namespace tonewright
