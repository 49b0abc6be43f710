// The box "Built-in Instruments".
#pragma once

class QWidget;

namespace tonewright {

// Lets the user switch the built-in instruments on and choose how they are heard; OK takes the
// choices (AcceptInstrumentsChoice) once the box is gone. Returns when it has been closed.
void ShowInstrumentsBox(QWidget *owner);

} // namespace tonewright
