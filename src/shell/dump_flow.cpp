// Asks for the file of a dump.
#include "shell/dump_flow.h"

#include "common/desktop.h"
#include "common/text.h"
#include "core/dispatch.h"
#include "shell/shell_window.h"

namespace tonewright {

int RunOpenAnyDump() {
    std::string folder;
    GetOpenFolder(folder);
    const auto chosen = ChooseAnyFile(TheShellWindow.window, folder);
    if (!chosen) {
        return 0;
    }
    if (IsPath(*chosen)) {
        SetOpenFolder(chosen->c_str());
    }
    if (TheShellWindow.ShowDumpBox) {
        TheShellWindow.ShowDumpBox(*chosen);
    }
    return 1;
}

} // namespace tonewright
