// The box "MIDI Devices".
#pragma once

class QWidget;

namespace tonewright {

// Lists the devices that the MIDI layer offers; nothing can be chosen. Returns when the box has
// been closed.
void ShowMidiDevices(QWidget *owner);

} // namespace tonewright
