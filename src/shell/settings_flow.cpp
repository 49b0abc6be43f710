// Runs the sheet of settings and brings the window up to date behind it.
#include "shell/settings_flow.h"

#include "common/desktop.h"
#include "common/strings.h"
#include "shell/command_queue.h"
#include "shell/documents.h"
#include "shell/shell_window.h"

namespace tonewright {
namespace {

void CallIfThere(const std::function<void()> &member) {
    if (member) {
        member();
    }
}

} // namespace

bool RestartNeeded = false;

int RunSettings() {
    CallIfThere(TheShellWindow.ShowSettings);
    CallIfThere(TheShellWindow.DropBackground);
    RefreshTitle();
    CallIfThere(TheShellWindow.RepaintWindow);
    CallIfThere(TheShellWindow.RepaintTools);
    if (RestartNeeded) {
        ShowMessage(TheShellWindow.window, LoadProgramString(142));
        Post([] { RunExit(); });
    }
    return 1;
}

} // namespace tonewright
