// Open, save, save under a new name, and leave: the prompts and the order of state changes around a
// bank document.
#pragma once

#include <string>

namespace tonewright {

// The path that the next Open takes without asking; empty: it asks.
extern std::string PendingOpenPath;

// The path that a text of a command line or the history stands for: the text without its double
// quotes, which stand around paths; as it is where a file of just that name exists.
std::string UnquotedPath(const std::string &text);

// If the document is dirty, asks whether to save it; "yes" saves and goes on whether or not that
// worked, in careful mode when it worked. False: the user wants to stay.
bool AskToSave();

int RunOpen();
// A click on an item of the history (HistoryFirstItem and up): opens its document, or, with Shift
// or Ctrl held, removes or pins it.
int RunHistoryItem(int item);
int RunSave();
int RunSaveAs();
// Prints the voices of the list.
int RunPrint();
// Empties the list. 0 when the user wants to stay, else 1.
int RunClear();
int RunExit();
int RunCloseAtOnce();

} // namespace tonewright
