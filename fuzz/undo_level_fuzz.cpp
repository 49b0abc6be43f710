// Any bytes as a level of undo: what is restored is what stands in it, what is refused leaves the
// list alone, and a level made of what was restored restores the same.
#include "core/synth_driver.h"
#include "core/undo_level.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

void Restore(std::span<const std::uint8_t> level) {
    VoiceList list;
    list.visibleRows = 8;
    ListSetVoice(list, ListAdd(list), VoiceObject{{1, 2, 3}});
    const std::vector<VoiceObject> before = list.items;
    if (!RestoreUndoLevel(list, level)) {
        Demand(list.items == before, "a refused level leaves the list alone");
        return;
    }
    const std::size_t offset = ReadLittle32(level, 4);
    const std::size_t itemSize = ReadLittle32(level, 8);
    Demand(list.items.size() == ReadLittle32(level, 12), "every item has a row");
    for (std::size_t row = 0; row < list.items.size(); ++row) {
        Demand(std::ranges::equal(list.items[row].bytes,
                                  level.subspan(offset + row * itemSize, itemSize)),
               "an item is kept as it stands");
    }
    const int count = ListCount(list);
    Demand(list.selection >= NoRow && list.selection < std::max(count, 1), "a row or none");
    Demand(list.topRow >= 0 && list.topRow <= std::max(0, count - list.visibleRows),
           "the scroll position lies in the list");

    const auto made = MakeUndoLevel(nullptr, list);
    if (made.empty()) {
        return;
    }
    VoiceList again;
    again.visibleRows = list.visibleRows;
    Demand(RestoreUndoLevel(again, made), "a level that was made is one");
    Demand(again.selection == list.selection && again.topRow == list.topRow, "place and selection");
    for (int row = 0; row < UsualBankRows; ++row) {
        const auto &whole = list.items[static_cast<std::size_t>(row)].bytes;
        const auto &kept = again.items[static_cast<std::size_t>(row)].bytes;
        Demand(kept.size() <= whole.size() && std::equal(kept.begin(), kept.end(), whole.begin()),
               "an item begins as it was");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    Restore(input);

    // The same bytes as the items behind a right header: the first is the size of each of the 32,
    // the next two are selection and scroll position.
    if (size < 3) {
        return 0;
    }
    const std::size_t itemSize = std::size_t{data[0]} + 1;
    std::vector<std::uint8_t> level(UndoLevelHeaderSize + UsualBankRows * itemSize);
    WriteLittle32(level, 0, UndoLevelMagic);
    WriteLittle32(level, 4, UndoLevelHeaderSize);
    WriteLittle32(level, 8, static_cast<std::uint32_t>(itemSize));
    WriteLittle32(level, 12, UsualBankRows);
    WriteLittle32(level, 20, static_cast<std::uint32_t>(static_cast<std::int8_t>(data[1])));
    WriteLittle32(level, 24, static_cast<std::uint32_t>(static_cast<std::int8_t>(data[2])));
    const auto items = input.subspan(3);
    std::ranges::copy(items.first(std::min(items.size(), level.size() - UndoLevelHeaderSize)),
                      level.begin() + UndoLevelHeaderSize);
    Restore(level);
    return 0;
}
