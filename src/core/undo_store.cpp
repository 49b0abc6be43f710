// Keeps a number of levels of undo.
#include "core/undo_store.h"

#include "common/desktop.h"
#include "common/settings.h"

#include <utility>

namespace tonewright {

bool MakeUndoStore(UndoStore &store) {
    constexpr std::uint32_t MaxStoreSize = 65536;
    store = {};
    if (MaxUndoLevel < 1 || MaxUndoLevel > MaxStoreSize) {
        return false;
    }
    store.capacity = MaxUndoLevel;
    return true;
}

bool PushUndoLevel(QWidget *window, UndoStore &store,
                   const std::function<std::vector<std::uint8_t>()> &make, int note) {
    ForgetPush(store);
    if (store.capacity == 0) {
        ShowMessage(window, "No undo level could be created.");
        return false;
    }
    if (store.levels.size() >= store.capacity) {
        store.displaced = std::move(store.levels.front());
        store.levels.erase(store.levels.begin());
    }
    std::vector<std::uint8_t> block = make();
    if (block.empty()) {
        ShowMessage(window, "There has been an error building this undo level.");
        return false;
    }
    store.levels.push_back({std::move(block), note});
    store.hasPushed = true;
    return true;
}

void TakeBackUndoLevel(UndoStore &store) {
    if (store.hasPushed) {
        store.levels.pop_back();
    }
    if (store.displaced) {
        store.levels.insert(store.levels.begin(), std::move(*store.displaced));
    }
    ForgetPush(store);
}

void ForgetPush(UndoStore &store) {
    store.hasPushed = false;
    store.displaced.reset();
}

UndoLevel PopUndoLevel(QWidget *window, UndoStore &store) {
    if (store.levels.empty()) {
        ShowMessage(window, "No undo level is available.");
        return {};
    }
    ForgetPush(store);
    UndoLevel level = std::move(store.levels.back());
    store.levels.pop_back();
    return level;
}

} // namespace tonewright
