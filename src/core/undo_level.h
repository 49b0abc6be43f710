// One level of undo: a block that holds a copy of a whole list.
//
//   offset  0  magic        "DMeM" (0x4D654D44)
//           4  headerSize   36
//           8  itemSize     bytes of one item
//          12  itemCount    voices of a bank: the bankRows of the family
//          16  driverId     of the first voice
//          20  selectedRow  -1 for none
//          24  topRow
//          28  reserved     8 bytes of zero
//          36  itemCount items of itemSize bytes, each a whole voice block
//
// All fields are 32 bits, little-endian.
#pragma once

#include "core/voice_list.h"

#include <cstdint>
#include <span>
#include <vector>

class QWidget;

namespace tonewright {

constexpr std::uint32_t UndoLevelMagic = 0x4D654D44;
constexpr std::size_t UndoLevelHeaderSize = 36;

// MakeUndoLevel of every family: the block for the list as it stands, its items as long as the
// first row's voice and as many as a bank of that voice's family has. Empty when any of these rows
// has no voice, the first one is no voice block, or one is shorter than the first.
std::vector<std::uint8_t> MakeUndoLevel(QWidget *window, const VoiceList &list);

// Puts the list back as the block tells: rows, scroll position and selection. False, and the list
// untouched, when the block is no level of undo.
bool RestoreUndoLevel(VoiceList &list, std::span<const std::uint8_t> level);

} // namespace tonewright
