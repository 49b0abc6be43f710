// The Audition box: a piano keyboard of two octaves that plays a voice on the instrument.
#pragma once

#include "core/midi_ports.h"
#include "core/voice_list.h"
#include "core/voice_object.h"

class QWidget;

namespace tonewright {

// Sends `voice`, or the voice at `itemIndex` of `list` when it is nullptr, to the instrument of
// `driverId` and lets the user play it. `list` may be nullptr when a voice is given. Returns when
// the box has been closed by its button: 1, or 0 when there was no voice and no box opened.
int AuditionBox(QWidget *owner, VoiceList *list, const VoiceObject *voice, DriverId driverId,
                MidiPorts ports, int itemIndex);

} // namespace tonewright
