// Any sequence of calls on a voice list: it stays as it always is, and holds what a plain vector
// would hold.
#include "core/voice_list.h"
#include "drivers/dx7/voice_codec.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

VoiceObject VoiceOf(std::uint8_t mark) {
    return MakeVoiceObject(Dx7DriverId, std::span(&mark, 1));
}

// The same rows and the same selection, kept without a list box. Each row has a number of its own,
// by which the selected one is known wherever it moves.
struct Model {
    std::vector<int> rows; // numbers
    std::vector<VoiceObject> voices;
    int selected = 0; // number of the selected row, 0 for none
    int last = 0;     // number given last

    int Selection() const {
        const auto found = std::ranges::find(rows, selected);
        return found == rows.end() ? NoRow : static_cast<int>(found - rows.begin());
    }
};

void Step(VoiceList &list, Model &model, std::uint8_t kind, int row) {
    const bool exists = row >= 0 && row < static_cast<int>(model.rows.size());
    switch (kind % 12) {
    case 0:
    case 1: {
        const int at = kind % 12 == 0 ? ListCount(list) : row;
        const bool fits = at >= 0 && at <= ListCount(list);
        Demand(ListInsert(list, at) == (fits ? at : NoRow), "a row is inserted up to the end");
        if (fits) {
            model.rows.insert(model.rows.begin() + at, ++model.last);
            model.voices.insert(model.voices.begin() + at, VoiceObject{});
        }
        break;
    }
    case 2:
        Demand(ListDelete(list, row) == exists, "a row that exists is deleted");
        if (exists) {
            model.rows.erase(model.rows.begin() + row);
            model.voices.erase(model.voices.begin() + row);
        }
        break;
    case 3:
        ListSelect(list, row);
        model.selected = exists ? model.rows[row] : 0;
        break;
    case 4:
        ListSetTopRow(list, row);
        break;
    case 5:
        ListSetVisibleRows(list, row);
        break;
    case 6:
        Demand(ListSetVoice(list, row, VoiceOf(kind)) == exists, "a row takes a voice");
        if (exists) {
            model.voices[row] = VoiceOf(kind);
        }
        break;
    case 7: {
        const bool holds = exists && !model.voices[row].bytes.empty();
        Demand(ListWriteVoice(list, row, [kind](VoiceObject &voice) { voice = VoiceOf(kind); }) ==
                   holds,
               "a voice is written to");
        if (holds) {
            model.voices[row] = VoiceOf(kind);
        }
        break;
    }
    case 8: {
        const VoiceObject taken = ListTakeVoice(list, row);
        Demand(taken == (exists ? model.voices[row] : VoiceObject{}), "a voice is taken");
        if (exists) {
            model.voices[row] = {};
        }
        break;
    }
    case 9: {
        const int target = ListRowOfKey(list, static_cast<ListKey>(kind / 12 % 6));
        Demand((target == NoRow) == model.rows.empty(), "a key finds a row where there is one");
        ListSelect(list, target);
        model.selected = target == NoRow ? 0 : model.rows[target];
        break;
    }
    case 10:
        ListSetItemHeight(list, row);
        Demand(ListRowAt(list, {.x = 0, .y = row}, 1, 1000) < ListCount(list), "a row is hit");
        break;
    case 11:
        if (row == 0) {
            ListReset(list);
            model = {.rows = {}, .voices = {}, .selected = 0, .last = model.last};
        } else if (row == 1) {
            FreeListBlocks(list);
            std::ranges::fill(model.voices, VoiceObject{});
        }
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    VoiceList list;
    list.observer = [&list](ListChange) { DemandSoundList(list); };
    Model model;
    for (std::size_t at = 0; at + 1 < size; at += 2) {
        Step(list, model, data[at], static_cast<std::int8_t>(data[at + 1]));
        DemandSoundList(list);
        Demand(list.items == model.voices, "the rows hold their voices");
        Demand(list.selection == model.Selection(), "the selection moves with its row");
    }
    return 0;
}
