// The keys of the computer as two keyboards of a piano, the way trackers have them: the lowest row
// of letters has the white keys from C on and the row above it their black keys; an octave higher
// do the same the row of the Q and the digits above it.
#pragma once

#include <cstdint>
#include <optional>

namespace tonewright {

// The piano's key, from 0, the C of the Z, of the key at a place of the board; nothing for one that
// plays none. `code`: the number that a PC keyboard gives the place whatever is printed on it: 44
// for the leftmost letter of the lowest row.
std::optional<int> PianoKeyAtPlace(std::uint32_t code);
// The same by what a keyboard of the United States has printed on the key, for where no place is
// told: 'Z', ';', '2'.
std::optional<int> PianoKeyOfLetter(int letter);

} // namespace tonewright
