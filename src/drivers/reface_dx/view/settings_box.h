// The box of the reface DX's own settings, "Configure DX Reface".
#pragma once

#include "core/midi_ports.h"
#include "drivers/reface_dx/settings.h"

class QWidget;

namespace tonewright {

// Shows the settings of a block in the box; see ConfigureReface for the result.
bool RunRefaceSettingsBox(QWidget *owner, SynthConfigBlock &block);

// ConfigureSynth operation of the reface DX row: ConfigureReface with this box.
int RefaceConfigureSynth(QWidget *window, MidiPorts ports);

} // namespace tonewright
