// Open, save and save under a new name: the prompts and the order of state changes around a bank
// document.
#pragma once

#include <string>

namespace tonewright {

// The path that the next Open takes without asking; empty: it asks.
extern std::string PendingOpenPath;

int RunOpen();
int RunSave();
int RunSaveAs();
// Empties the list. 0 when the user wants to stay, else 1.
int RunClear();
int RunExit();
int RunCloseAtOnce();

} // namespace tonewright
