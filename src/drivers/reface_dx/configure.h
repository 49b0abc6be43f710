// What is done with the settings of a reface DX: they are read, shown and written back, kept in
// files and read from them, and sent again each time the instrument has been found.
#pragma once

#include "core/synth_settings.h"
#include "drivers/reface_dx/settings.h"

#include <functional>

class QWidget;

namespace tonewright {

// Shows the settings of a block and lets the user change them. True, the block as the user wants
// it, for OK.
using RefaceSettingsBox = std::function<bool(QWidget *window, SynthConfigBlock &block)>;
// Reads the settings, shows them in the box and sends them when it was accepted. The link stays
// open meanwhile, and nothing goes over it. 1 when the settings could be read; otherwise 0, after
// the message "Invalid system common." where the ports did open.
int ConfigureReface(QWidget *window, MidiPorts ports, const RefaceSettingsBox &box);

// What the buttons "Save As..." and "Open..." of the box do. Both keep the folder that the user
// chooses, save the program's settings on success, and show a message on failure.
//
// `collect` takes what the box shows into the block, after the questions about file and backup.
void SaveRefaceSettings(QWidget *window, SynthConfigBlock &block,
                        const std::function<void()> &collect);
// False when the user cancels. Otherwise the block is to be shown again: cleared, and filled as far
// as the file could be read.
bool OpenRefaceSettings(QWidget *window, SynthConfigBlock &block);

// AutoConfigure operation of the reface DX row: sends the settings of the file AutoConfig.crg in
// the folder of documents. 1, or 0 with no message when there is no such file, it cannot be read,
// or the port does not open.
int RefaceAutoConfigure(QWidget *window, int midiOut);

// As the command line reads, changes and writes them.
extern const SynthSettings RefaceSettings;

} // namespace tonewright
