// Open, Save, Save as, Clear, the history, and the ways out.
#include "shell/documents.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/careful.h"
#include "shell/command_state.h"
#include "shell/history.h"
#include "shell/list_origin.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <cerrno>
#include <cstdint>
#include <utility>

namespace tonewright {
namespace {

QWidget *Window() {
    return TheShellWindow.window;
}

// The end that Save and Save as have in common.
int SaveToCurrentPath() {
    errno = 0;
    if (!SaveDocument(Window(), MainList, CurrentDocumentPath.c_str())) {
        const int reason = errno;
        ShowMessage(Window(),
                    CarefulWriteFailure(LoadProgramString(108), CurrentDocumentPath, reason));
        return 0;
    }
    TheDocumentFile = LookAtDocumentFile(CurrentDocumentPath);
    HistoryAdd(Window(), CurrentDocumentPath, -1);
    PlayEventSound(DefaultEventSound);
    MainListState.dirty = false;
    return 1;
}

// Save as, once it is settled that the list can be saved.
int SaveUnderNewName() {
    const std::string proposal =
        ReplaceExtension(CurrentDocumentPath, BankExtension(CurrentDriverId));
    const auto chosen = ChooseSaveFile(Window(), proposal, CurrentDriverId);
    if (!chosen) {
        return 0;
    }
    if (!IsPath(*chosen)) {
        ShowMessage(Window(), CarefulWriteFailure(LoadProgramString(108), *chosen, ENAMETOOLONG));
        return 0;
    }
    switch (CarefulSaveAsWay(Window(), *chosen)) {
    case SaveWay::Replace:
        break;
    case SaveWay::SaveAs:
        return SaveUnderNewName();
    case SaveWay::Stay:
        return 0;
    }
    SetOpenFolder(chosen->c_str());
    CurrentDocumentPath = *chosen;
    TheDocumentFile = DocumentFileBeforeSave(*chosen);
    RefreshTitle();
    return SaveToCurrentPath();
}

} // namespace

std::string PendingOpenPath;

std::string UnquotedPath(const std::string &text) {
    return FileExists(text.c_str()) ? text : StripQuotes(text.c_str());
}

bool AskToSave() {
    if (!MainListState.dirty || CarefulHasNothingToSave()) {
        return true;
    }
    const int answer = AskYesNoCancel(Window(), LoadProgramString(111));
    if (answer == ResultYes) {
        return RunSave() || CarefulGoesOnUnsaved();
    }
    return answer == ResultNo;
}

int RunOpen() {
    if (!CarefulKeepsUndoUntilOpened()) {
        UndoClear();
    }
    if (!AskToSave()) {
        CarefulForgetPath(PendingOpenPath);
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
            ShowMessage(Window(), CarefulReadFailure(LoadProgramString(110), *chosen));
            return 0;
        }
        path = *chosen;
    } else {
        path = CutText(UnquotedPath(PendingOpenPath), PathLimit);
    }
    PendingOpenPath.clear();

    // The name changes before the file is read, and stays when it cannot be.
    SetOpenFolder(path.c_str());
    RecentDocumentPath = path;
    CurrentDocumentPath = path;
    RefreshTitle();
    BeginListOrigin();
    DocumentFile file = LookAtDocumentFile(path);
    TheDocumentFile = {};
    std::int64_t time = 0;
    if (!OpenDocument(Window(), MainList, path.c_str(), &CurrentDriverId, &time)) {
        ShowMessage(Window(), CarefulReadFailure(LoadProgramString(110), path));
        return 0;
    }
    UndoClear();
    CurrentDocumentTime = time;
    TheDocumentFile = std::move(file);
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
    if (CarefulRefusesToSave(Window())) {
        return 0;
    }
    // Every driver has a default name, and only that is asked about. "Untitled.Twl", which stands
    // in for it where there is no driver, is a name like any other.
    if (CurrentDriver() && EqualNoCase(CurrentDocumentPath, DefaultDocumentName())) {
        return SaveUnderNewName();
    }
    switch (CarefulSaveWay(Window())) {
    case SaveWay::Replace:
        return SaveToCurrentPath();
    case SaveWay::SaveAs:
        return SaveUnderNewName();
    case SaveWay::Stay:
        break;
    }
    return 0;
}

int RunSaveAs() {
    return CarefulRefusesToSave(Window()) ? 0 : SaveUnderNewName();
}

int RunPrint() {
    return TheShellWindow.PrintList ? TheShellWindow.PrintList() : 0;
}

int RunClear() {
    if (!AskToSave()) {
        return 0;
    }
    FreeListBlocks(MainList);
    MainItemFonts = {};
    ListReset(MainList);
    BeginListOrigin();
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
