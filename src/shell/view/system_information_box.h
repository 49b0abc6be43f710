// The box "System Information".
#pragma once

#include "shell/system_facts.h"

class QWidget;

namespace tonewright {

// Lists the facts about the machine, to which it adds those about screen and mouse, and about the
// program, and opens its folders. Dismiss with Ctrl puts the report on the clipboard. Returns when
// the box has been closed.
void ShowSystemInformation(QWidget *owner, SystemFacts facts);

} // namespace tonewright
