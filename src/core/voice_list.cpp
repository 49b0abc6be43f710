// The rules of the voice list: those of a platform list box.
#include "core/voice_list.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tonewright {
namespace {

// The end of each change.
void Tell(const VoiceList &list, VoiceListChange change) {
    assert(!VoiceListFault(list));
    if (list.observer) {
        list.observer(change);
    }
}

bool HasRow(const VoiceList &list, int row) {
    return row >= 0 && row < ListCount(list);
}

int LimitTopRow(const VoiceList &list, int row) {
    const int last = std::max(0, ListCount(list) - std::max(1, list.visibleRows));
    return std::clamp(row, 0, last);
}

void PutTopRow(VoiceList &list, int row) {
    row = LimitTopRow(list, row);
    if (row != list.topRow) {
        list.topRow = row;
        Tell(list, VoiceListChange::TopRow);
    }
}

} // namespace

const char *VoiceListFault(const VoiceList &list) {
    if (list.selection != NoRow && !HasRow(list, list.selection)) {
        return "the selected row does not exist";
    }
    if (list.visibleRows < 0 || list.itemHeight < 1) {
        return "the measures of the view are none";
    }
    if (list.topRow != LimitTopRow(list, list.topRow)) {
        return "the top row leaves a gap";
    }
    return nullptr;
}

int ListCount(const VoiceList &list) {
    return static_cast<int>(list.items.size());
}

int ListAdd(VoiceList &list) {
    return ListInsert(list, ListCount(list));
}

int ListInsert(VoiceList &list, int row) {
    if (row < 0 || row > ListCount(list)) {
        return NoRow;
    }
    list.items.emplace(list.items.begin() + row);
    if (list.selection >= row) {
        ++list.selection;
    }
    Tell(list, VoiceListChange::Items);
    return row;
}

bool ListDelete(VoiceList &list, int row) {
    if (!HasRow(list, row)) {
        return false;
    }
    list.items.erase(list.items.begin() + row);
    if (list.selection == row) {
        list.selection = NoRow;
    } else if (list.selection > row) {
        --list.selection;
    }
    list.topRow = LimitTopRow(list, list.topRow);
    Tell(list, VoiceListChange::Items);
    return true;
}

void ListReset(VoiceList &list) {
    list.items.clear();
    list.selection = NoRow;
    list.topRow = 0;
    Tell(list, VoiceListChange::Items);
}

const VoiceObject *ListVoice(const VoiceList &list, int row) {
    if (!HasRow(list, row) || list.items[row].bytes.empty()) {
        return nullptr;
    }
    return &list.items[row];
}

bool ListSetVoice(VoiceList &list, int row, VoiceObject voice) {
    if (!HasRow(list, row)) {
        return false;
    }
    list.items[row] = std::move(voice);
    Tell(list, VoiceListChange::Voice);
    return true;
}

bool ListWriteVoice(VoiceList &list, int row, const std::function<void(VoiceObject &)> &write) {
    if (!ListVoice(list, row)) {
        return false;
    }
    write(list.items[row]);
    Tell(list, VoiceListChange::Voice);
    return true;
}

VoiceObject ListTakeVoice(VoiceList &list, int row) {
    VoiceObject voice;
    ListWriteVoice(list, row, [&voice](VoiceObject &own) { std::swap(voice, own); });
    return voice;
}

void ListSelect(VoiceList &list, int row) {
    if (!HasRow(list, row)) {
        row = NoRow;
    }
    list.selection = row;
    Tell(list, VoiceListChange::Selection);
    if (row == NoRow) {
        return;
    }
    if (row < list.topRow) {
        PutTopRow(list, row);
    } else if (list.visibleRows > 0 && row >= list.topRow + list.visibleRows) {
        PutTopRow(list, row - list.visibleRows + 1);
    }
}

void ListSetTopRow(VoiceList &list, int row) {
    PutTopRow(list, row);
}

void ListSetVisibleRows(VoiceList &list, int rows) {
    list.visibleRows = std::max(0, rows);
    PutTopRow(list, list.topRow);
    assert(!VoiceListFault(list));
}

void ListEnable(VoiceList &list, bool enabled) {
    list.enabled = enabled;
    Tell(list, VoiceListChange::State);
}

void ListSetRedraw(VoiceList &list, bool redraw) {
    list.redraw = redraw;
    Tell(list, VoiceListChange::State);
}

void ListSetItemHeight(VoiceList &list, int pixels) {
    list.itemHeight = std::max(1, pixels);
    Tell(list, VoiceListChange::State);
}

void FreeListBlocks(VoiceList &list) {
    for (int row = 0; row < ListCount(list); ++row) {
        ListTakeVoice(list, row);
    }
}

} // namespace tonewright
