// Copies a list of records into one block and back.
#include "database/database_undo.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "core/undo_level.h"
#include "core/undo_store.h"
#include "database/record_sort.h"

#include <algorithm>

namespace tonewright {
namespace {

// Offsets in the head.
constexpr std::size_t Magic = 0;
constexpr std::size_t HeadSize = 4;
constexpr std::size_t RecordSize = 8;
constexpr std::size_t Count = 12;
constexpr std::size_t Driver = 16;
constexpr std::size_t Selection = 20;
constexpr std::size_t TopIndex = 24;
constexpr std::size_t SortCommand = 28;
constexpr std::size_t Flags = 32;
constexpr std::size_t Records = 36;

constexpr std::uint32_t FlagChanged = 1;

UndoStore Store;

// The order that comes back. That by date does not: it is taken for the one by name.
std::uint32_t SortCommandNow() {
    return DatabaseSortMode == SortByPosition || DatabaseSortMode == SortBySource ? DatabaseSortMode
                                                                                  : SortByName;
}

} // namespace

std::vector<std::uint8_t> DatabaseUndoBuild(const RecordList &list, bool changed) {
    if (ListCount(list) == 0) {
        return {};
    }
    const DatabaseRecord &first = list.items[0];
    const std::uint64_t size = RecordOwnSize(first);
    const auto isOther = [size](const DatabaseRecord &record) {
        return record.bytes.size() != size;
    };
    if (std::ranges::any_of(list.items, isOther)) {
        return {};
    }
    std::vector<std::uint8_t> level;
    level.reserve(Records + size * list.items.size());
    level.resize(Records);
    WriteLittle32(level, Magic, UndoLevelMagic);
    WriteLittle32(level, HeadSize, Records);
    WriteLittle32(level, RecordSize, static_cast<std::uint32_t>(size));
    WriteLittle32(level, Count, static_cast<std::uint32_t>(list.items.size()));
    WriteLittle32(level, Driver, RecordDriver(first));
    WriteLittle32(level, Selection, static_cast<std::uint32_t>(list.selection));
    WriteLittle32(level, TopIndex, static_cast<std::uint32_t>(list.topRow));
    WriteLittle32(level, SortCommand, SortCommandNow());
    WriteLittle32(level, Flags, changed ? FlagChanged : 0);
    for (const DatabaseRecord &record : list.items) {
        level.insert(level.end(), record.bytes.begin(), record.bytes.end());
    }
    return level;
}

int DatabaseUndoInit(QWidget *window) {
    if (MakeUndoStore(Store)) {
        return 1;
    }
    ShowMessage(window, "There has been an error initializing the Undo function.\n\nUndo will be "
                        "unavailable for this session of the Tonewright database.");
    return 0;
}

void DatabaseUndoEnd() {
    Store = {};
}

int DatabaseUndoPush(QWidget *window, const RecordList &list, bool changed) {
    if (ListCount(list) == 0) {
        return 1;
    }
    const bool isPushed =
        PushUndoLevel(window, Store, [&] { return DatabaseUndoBuild(list, changed); });
    ForgetPush(Store); // a level is as large as the catalogue, and none is taken back
    return isPushed;
}

int DatabaseUndoPop(QWidget *window, RecordList &list, std::uint32_t &changed) {
    const auto level = PopUndoLevel(window, Store).block;
    if (level.empty()) {
        return 0;
    }
    const std::size_t size = ReadLittle32(level, RecordSize);
    std::vector<DatabaseRecord> records(ReadLittle32(level, Count));
    auto bytes = level.begin() + Records;
    for (DatabaseRecord &record : records) {
        const auto end = bytes + static_cast<std::ptrdiff_t>(size);
        record.bytes.assign(bytes, end);
        bytes = end;
    }
    DatabaseSortMode = ReadLittle32(level, SortCommand);
    RecordListFill(list, std::move(records));
    ListSetTopRow(list, static_cast<int>(ReadLittle32(level, TopIndex)));
    ListSelect(list, static_cast<int>(ReadLittle32(level, Selection))); // in sight, at any rate
    changed = ReadLittle32(level, Flags);
    return 1;
}

bool DatabaseUndoAvailable() {
    return !Store.levels.empty();
}

void DatabaseUndoClear() {
    Store.levels.clear();
}

} // namespace tonewright
