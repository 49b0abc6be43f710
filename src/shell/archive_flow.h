// The archive's window, and its voices where they are dropped on the main list.
#pragma once

#include <cstdint>
#include <vector>

namespace tonewright {

// Shows the window. 1.
int RunArchive();

// Puts voices that were dropped on a row of the main list there and into the rows below it; in an
// empty list they become a new bank. Bytes that are no voices (extras/voice_parcel.h) do nothing.
void DropArchiveVoices(int row, const std::vector<std::uint8_t> &parcel);

} // namespace tonewright
