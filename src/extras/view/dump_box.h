// The window "Open Any Dump": what a file holds, and its voices for the list.
#pragma once

#include <string>

class QWidget;

namespace tonewright {

// Reads the file, with a sign of life and a way to cancel, shows its dumps and voices and hands
// those that the user picks on to the list (extras/dump_contents). `path`: UTF-8. Returns when the
// window has been closed.
void ShowDumpBox(QWidget *owner, const std::string &path);

} // namespace tonewright
