// Keeps the levels of undo, and tells the Undo command whether there is one.
#include "shell/undo.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "core/dispatch.h"
#include "core/undo_level.h"
#include "shell/command_state.h"
#include "shell/list_origin.h"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

constexpr std::uint32_t MaxStoreSize = 65536;

struct UndoLevel {
    std::vector<std::uint8_t> block;
    int origin = 0; // MainListOrigin
};

struct UndoStore {
    std::size_t capacity = 0; // levels; 0: there is no store
    std::vector<UndoLevel> levels;
    // Of the last push.
    bool hasPushed = false;
    std::optional<UndoLevel> displaced;
};
UndoStore Store;

void FollowUndo() {
    SetRule(CommandRule::UndoLevelThere, UndoAvailable());
}

} // namespace

int UndoInit(QWidget *window) {
    Store = {};
    FollowUndo();
    if (MaxUndoLevel < 1 || MaxUndoLevel > MaxStoreSize) {
        ShowMessage(window, "There has been an error initializing the Undo function.\n\nUndo will "
                            "be unavailable for this session of Tonewright.");
        return 0;
    }
    Store.capacity = MaxUndoLevel;
    return 1;
}

int UndoEnd() {
    Store = {};
    FollowUndo();
    return 1;
}

int UndoPush(QWidget *window, const VoiceList &list) {
    Store.hasPushed = false;
    Store.displaced.reset();
    if (ListCount(list) == 0) {
        return 1;
    }
    if (Store.capacity == 0) {
        ShowMessage(window, "No undo level could be created.");
        return 0;
    }
    if (Store.levels.size() >= Store.capacity) {
        Store.displaced = std::move(Store.levels.front());
        Store.levels.erase(Store.levels.begin());
    }
    const SynthDriver *driver = CurrentDriver();
    std::vector<std::uint8_t> level;
    if (driver && driver->MakeUndoLevel) {
        level = driver->MakeUndoLevel(window, list);
    }
    if (level.empty()) {
        FollowUndo(); // the oldest level may have been the only one
        ShowMessage(window, "There has been an error building this undo level.");
        return 0;
    }
    Store.levels.push_back({.block = std::move(level), .origin = MainListOrigin});
    Store.hasPushed = true;
    FollowUndo();
    return 1;
}

void UndoTakeBack() {
    if (std::exchange(Store.hasPushed, false)) {
        Store.levels.pop_back();
    }
    if (Store.displaced) {
        Store.levels.insert(Store.levels.begin(), std::move(*Store.displaced));
        Store.displaced.reset();
    }
    FollowUndo();
}

int UndoPop(QWidget *window, VoiceList &list) {
    if (Store.levels.empty()) {
        ShowMessage(window, "No undo level is available.");
        return 0;
    }
    RestoreUndoLevel(list, Store.levels.back().block);
    MainListOrigin = Store.levels.back().origin;
    Store.levels.pop_back();
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

} // namespace tonewright
