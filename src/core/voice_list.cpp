// The voices in the rows of the list.
#include "core/voice_list.h"

#include <cassert>
#include <utility>

namespace tonewright {

namespace {

// The one place where the voice of a row becomes another.
void PutVoice(VoiceList &list, int row, const std::function<void(VoiceObject &)> &put) {
    put(list.items[row]);
    assert(!VoiceListFault(list));
    ListBoxTellItem(list, row);
}

} // namespace

const char *VoiceListFault(const VoiceList &list) {
    if (list.items.size() != static_cast<std::size_t>(list.count)) {
        return "the rows are not as many as the voices";
    }
    return ListBoxFault(list);
}

int ListAdd(VoiceList &list) {
    return ListInsert(list, ListCount(list));
}

int ListInsert(VoiceList &list, int row) {
    if (row < 0 || row > ListCount(list)) {
        return NoRow;
    }
    list.items.emplace(list.items.begin() + row);
    ListBoxInsert(list, row);
    assert(!VoiceListFault(list));
    return row;
}

bool ListDelete(VoiceList &list, int row) {
    if (!ListHasRow(list, row)) {
        return false;
    }
    list.items.erase(list.items.begin() + row);
    ListBoxDelete(list, row);
    assert(!VoiceListFault(list));
    return true;
}

void ListReset(VoiceList &list) {
    ListFill(list, {});
}

void ListFill(VoiceList &list, std::vector<VoiceObject> voices) {
    list.items = std::move(voices);
    ListBoxFill(list, static_cast<int>(list.items.size()));
    assert(!VoiceListFault(list));
}

const VoiceObject *ListVoice(const VoiceList &list, int row) {
    if (!ListHasRow(list, row) || list.items[row].bytes.empty()) {
        return nullptr;
    }
    return &list.items[row];
}

bool ListSetVoice(VoiceList &list, int row, VoiceObject voice) {
    if (!ListHasRow(list, row)) {
        return false;
    }
    PutVoice(list, row, [&voice](VoiceObject &own) { own = std::move(voice); });
    return true;
}

bool ListWriteVoice(VoiceList &list, int row, const std::function<void(VoiceObject &)> &write) {
    if (!ListVoice(list, row)) {
        return false;
    }
    PutVoice(list, row, write);
    return true;
}

VoiceObject ListTakeVoice(VoiceList &list, int row) {
    VoiceObject voice;
    ListWriteVoice(list, row, [&voice](VoiceObject &own) { voice = std::exchange(own, {}); });
    return voice;
}

void FreeListBlocks(VoiceList &list) {
    for (int row = 0; row < ListCount(list); ++row) {
        ListTakeVoice(list, row);
    }
}

} // namespace tonewright
