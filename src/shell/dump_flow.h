// The command "Open any dump".
#pragma once

namespace tonewright {

// Asks for a file of any kind, and shows what dumps it holds (extras/view/dump_box). 0 when the
// user wants none.
int RunOpenAnyDump();

} // namespace tonewright
