// Levels of undo, oldest first: each a block that holds a copy of a whole list, and a number that
// its owner keeps beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

class QWidget;

namespace tonewright {

struct UndoLevel {
    std::vector<std::uint8_t> block; // none: no level
    int note = 0;
};

struct UndoStore {
    std::size_t capacity = 0; // levels; 0: there is no store
    std::vector<UndoLevel> levels;
    // Of the last push: whether it made the newest level, and the level that gave way.
    bool hasPushed = false;
    std::optional<UndoLevel> displaced;
};

// Makes an empty store for MaxUndoLevel levels. False, and there is no store, when that lies
// outside 1 to 65,536.
bool MakeUndoStore(UndoStore &store);

// Keeps the block that `make` gives, with a note, once the oldest one has given way in a full
// store. False after a message when there is no store, and when `make` gives none.
bool PushUndoLevel(QWidget *window, UndoStore &store,
                   const std::function<std::vector<std::uint8_t>()> &make, int note = 0);

// Undoes the last push, after which nothing else has happened to the store: its level goes, and the
// one that gave way for it is back.
void TakeBackUndoLevel(UndoStore &store);
// From now on there is no last push.
void ForgetPush(UndoStore &store);

// Takes the newest level out. One without a block after a message when there is none.
UndoLevel PopUndoLevel(QWidget *window, UndoStore &store);

} // namespace tonewright
