// The box "Select Synthesizer".
#pragma once

#include "shell/synth_selection.h"

class QWidget;

namespace tonewright {

// Lets the user choose the family of instruments, its ports and its channel. 1 when OK has stored
// the choices (the list of voices is then empty), 0 when the box was cancelled.
int SelectSynthesizer(QWidget *owner, const SelectParams &params);

} // namespace tonewright
