// Copies a whole list into one block and back.
#include "core/undo_level.h"

#include "core/dispatch.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

// Of the family that a voice belongs to; of a voice of an unknown one, as many as usual.
int RowsOfBank(const VoiceObject &voice) {
    const SynthDriver *driver = DriverOfId(HeaderOf(voice)->driverId);
    return driver ? driver->bankRows : UsualBankRows;
}

} // namespace

std::vector<std::uint8_t> MakeUndoLevel(QWidget *, const VoiceList &list) {
    const VoiceObject *first = ListVoice(list, 0);
    const std::size_t itemSize = first ? RecordSizeOf(*first) : 0;
    if (itemSize == 0) {
        return {};
    }
    const int rows = RowsOfBank(*first);
    // Every row is looked at before room is made, since one long voice would ask for a bank of its
    // length.
    for (int row = 0; row < rows; ++row) {
        const VoiceObject *voice = ListVoice(list, row);
        if (!voice || voice->bytes.size() < itemSize) {
            return {};
        }
    }
    std::vector<std::uint8_t> level(UndoLevelHeaderSize +
                                    static_cast<std::size_t>(rows) * itemSize);
    WriteLittle32(level, 0, UndoLevelMagic);
    WriteLittle32(level, 4, UndoLevelHeaderSize);
    WriteLittle32(level, 8, static_cast<std::uint32_t>(itemSize));
    WriteLittle32(level, 12, static_cast<std::uint32_t>(rows));
    WriteLittle32(level, 16, HeaderOf(*first)->driverId);
    WriteLittle32(level, 20, static_cast<std::uint32_t>(list.selection));
    WriteLittle32(level, 24, static_cast<std::uint32_t>(list.topRow));
    for (int row = 0; row < rows; ++row) {
        std::copy_n(ListVoice(list, row)->bytes.begin(), itemSize,
                    level.begin() + UndoLevelHeaderSize + row * itemSize);
    }
    return level;
}

bool RestoreUndoLevel(VoiceList &list, std::span<const std::uint8_t> level) {
    if (level.size() < UndoLevelHeaderSize || ReadLittle32(level, 0) != UndoLevelMagic) {
        return false;
    }
    const std::uint64_t offset = ReadLittle32(level, 4);
    const std::uint64_t itemSize = ReadLittle32(level, 8);
    const std::uint64_t itemCount = ReadLittle32(level, 12);
    if (itemSize == 0 || offset + itemSize * itemCount > level.size()) {
        return false;
    }
    std::vector<VoiceObject> voices;
    for (std::uint64_t item = 0; item < itemCount; ++item) {
        const auto bytes = level.subspan(offset + item * itemSize, itemSize);
        voices.push_back({.bytes = {bytes.begin(), bytes.end()}});
    }
    ListFill(list, std::move(voices));
    // Selecting scrolls the row into view, so the scroll position comes last.
    ListSelect(list, static_cast<int>(ReadLittle32(level, 20)));
    ListSetTopRow(list, static_cast<int>(ReadLittle32(level, 24)));
    return true;
}

} // namespace tonewright
