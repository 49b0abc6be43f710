// Open, Save, Save as, Clear, the history, and the ways out.
#include "shell/documents.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_state.h"
#include "shell/history.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <cstdint>

namespace tonewright {
namespace {

QWidget *Window() {
    return TheShellWindow.window;
}

// The end that Save and Save as have in common.
int SaveToCurrentPath() {
    if (!SaveDocument(Window(), MainList, CurrentDocumentPath.c_str())) {
        ShowMessage(Window(), LoadProgramString(108));
        return 0;
    }
    HistoryAdd(Window(), CurrentDocumentPath, -1);
    PlayEventSound(DefaultEventSound);
    MainListState.dirty = false;
    return 1;
}

} // namespace

std::string PendingOpenPath;

bool AskToSave() {
    if (!MainListState.dirty) {
        return true;
    }
    const int answer = AskYesNoCancel(Window(), LoadProgramString(111));
    if (answer == ResultYes) {
        RunSave();
    }
    return answer == ResultYes || answer == ResultNo;
}

int RunOpen() {
    UndoClear();
    if (!AskToSave()) {
        return 0;
    }
    std::string path;
    GetOpenFolder(path);
    if (PendingOpenPath.empty()) {
        const auto chosen = ChooseOpenFile(Window(), path, CurrentDriverId);
        if (!chosen) {
            RefreshCopy();
            return 0;
        }
        if (!IsPath(*chosen)) {
            ShowMessage(Window(), LoadProgramString(110));
            return 0;
        }
        path = *chosen;
    } else {
        path = CutText(StripQuotes(PendingOpenPath.c_str()), PathLimit);
    }
    PendingOpenPath.clear();

    // The name changes before the file is read, and stays when it cannot be.
    SetOpenFolder(path.c_str());
    RecentDocumentPath = path;
    CurrentDocumentPath = path;
    RefreshTitle();
    std::int64_t time = 0;
    if (!OpenDocument(Window(), MainList, path.c_str(), &CurrentDriverId, &time)) {
        ShowMessage(Window(), LoadProgramString(110));
        return 0;
    }
    HistoryAdd(Window(), path, -1);
    RefreshStatus();
    RefreshCopy();
    RepaintList();
    PlayEventSound(DefaultEventSound);
    MainListState.dirty = false;
    return 1;
}

int RunHistoryItem(int item) {
    std::string path;
    if (!HistoryPick(path, item - HistoryFirstItem)) {
        return 0;
    }
    PendingOpenPath = path;
    return RunOpen();
}

int RunSave() {
    // Every driver has a default name, and only that is asked about. "Untitled.Twl", which stands
    // in for it where there is no driver, is a name like any other.
    if (CurrentDriver() && EqualNoCase(CurrentDocumentPath, DefaultDocumentName())) {
        return RunSaveAs();
    }
    return SaveToCurrentPath();
}

int RunSaveAs() {
    const std::string proposal =
        ReplaceExtension(CurrentDocumentPath, BankExtension(CurrentDriverId));
    const auto chosen = ChooseSaveFile(Window(), proposal, CurrentDriverId);
    if (!chosen) {
        return 0;
    }
    if (!IsPath(*chosen)) {
        ShowMessage(Window(), LoadProgramString(108));
        return 0;
    }
    SetOpenFolder(chosen->c_str());
    CurrentDocumentPath = *chosen;
    RefreshTitle();
    return SaveToCurrentPath();
}

int RunClear() {
    if (!AskToSave()) {
        return 0;
    }
    FreeListBlocks(MainList);
    MainItemFonts = {};
    ListReset(MainList);
    return 1;
}

int RunExit() {
    if (!AskToSave()) {
        return 0;
    }
    return RunCloseAtOnce();
}

int RunCloseAtOnce() {
    if (TheShellWindow.Close) {
        TheShellWindow.Close();
    }
    return 1;
}

} // namespace tonewright
