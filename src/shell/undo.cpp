// Keeps the levels of undo, and tells the Undo command whether there is one.
#include "shell/undo.h"

#include "common/desktop.h"
#include "core/dispatch.h"
#include "core/undo_level.h"
#include "core/undo_store.h"
#include "shell/command_state.h"
#include "shell/list_origin.h"
#include "shell/list_source.h"

#include <cstdint>
#include <vector>

namespace tonewright {
namespace {

UndoStore Store;

void FollowUndo() {
    SetRule(CommandRule::UndoLevelThere, UndoAvailable());
}

} // namespace

int UndoInit(QWidget *window) {
    const bool isMade = MakeUndoStore(Store);
    FollowUndo();
    if (!isMade) {
        ShowMessage(window, "There has been an error initializing the Undo function.\n\nUndo will "
                            "be unavailable for this session of Tonewright.");
    }
    return isMade;
}

int UndoEnd() {
    Store = {};
    ForgetListSources();
    FollowUndo();
    return 1;
}

int UndoPush(QWidget *window, const VoiceList &list) {
    if (ListCount(list) == 0) {
        ForgetPush(Store);
        return 1;
    }
    const auto make = [&]() -> std::vector<std::uint8_t> {
        const SynthDriver *driver = CurrentDriver();
        return driver && driver->MakeUndoLevel ? driver->MakeUndoLevel(window, list)
                                               : std::vector<std::uint8_t>();
    };
    const bool isPushed = PushUndoLevel(window, Store, make, MainListOrigin);
    FollowUndo(); // also without one: the oldest level may have been the only one
    return isPushed;
}

void UndoTakeBack() {
    TakeBackUndoLevel(Store);
    FollowUndo();
}

int UndoPop(QWidget *window, VoiceList &list) {
    const UndoLevel level = PopUndoLevel(window, Store);
    if (level.block.empty()) {
        return 0;
    }
    RestoreUndoLevel(list, level.block);
    MainListOrigin = level.note;
    FollowUndo();
    return 1;
}

int UndoClear() {
    Store.levels.clear();
    FollowUndo();
    return Store.capacity != 0;
}

bool UndoAvailable() {
    return !Store.levels.empty();
}

int UndoCount() {
    return static_cast<int>(Store.levels.size());
}

int UndoOldestOrigin() {
    return Store.levels.empty() ? MainListOrigin : Store.levels.front().note;
}

} // namespace tonewright
