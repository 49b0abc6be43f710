// The main window as the engine of the shell sees it.
#include "shell/shell_window.h"

#include "common/desktop.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/list_source.h"

namespace tonewright {

ShellWindow TheShellWindow;

void RefreshStatus() {
    const std::string title = SynthTitle(CurrentDriverId, SynthFirmware), source = SourceOfList();
    SetStatusText(TheShellWindow.window, source.empty() ? title : "From " + source + " - " + title);
}

void RefreshTitle() {
    if (TheShellWindow.SetTitle) {
        const std::string program = LoadProgramString(109);
        TheShellWindow.SetTitle(
            FormatText("%s [ %s ]", program.c_str(), FileNameOfPath(CurrentDocumentPath.c_str())));
    }
}

void RepaintList() {
    if (TheShellWindow.RepaintList) {
        TheShellWindow.RepaintList();
    }
}

} // namespace tonewright
