// The main window as the engine of the shell sees it.
#include "shell/shell_window.h"

namespace tonewright {

ShellWindow TheShellWindow;

} // namespace tonewright
