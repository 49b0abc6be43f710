// Which key of the computer plays which key of the piano.
#include "midi/computer_keys.h"

#include <algorithm>
#include <iterator>

namespace tonewright {
namespace {

struct ComputerKey {
    std::uint32_t code; // of its place
    int letter;
    int pianoKey;
};

constexpr ComputerKey ComputerKeys[] = {
    {44, 'Z', 0},  {31, 'S', 1},  {45, 'X', 2},  {32, 'D', 3},  {46, 'C', 4},  {47, 'V', 5},
    {34, 'G', 6},  {48, 'B', 7},  {35, 'H', 8},  {49, 'N', 9},  {36, 'J', 10}, {50, 'M', 11},
    {51, ',', 12}, {38, 'L', 13}, {52, '.', 14}, {39, ';', 15}, {53, '/', 16},

    {16, 'Q', 12}, {3, '2', 13},  {17, 'W', 14}, {4, '3', 15},  {18, 'E', 16}, {19, 'R', 17},
    {6, '5', 18},  {20, 'T', 19}, {7, '6', 20},  {21, 'Y', 21}, {8, '7', 22},  {22, 'U', 23},
    {23, 'I', 24}, {10, '9', 25}, {24, 'O', 26}, {11, '0', 27}, {25, 'P', 28}, {26, '[', 29},
    {13, '=', 30}, {27, ']', 31},
};

template <typename Value> std::optional<int> PianoKeyOf(Value ComputerKey::*member, Value value) {
    const auto *key = std::ranges::find(ComputerKeys, value, member);
    return key == std::end(ComputerKeys) ? std::nullopt : std::optional(key->pianoKey);
}

} // namespace

std::optional<int> PianoKeyAtPlace(std::uint32_t code) {
    return PianoKeyOf(&ComputerKey::code, code);
}

std::optional<int> PianoKeyOfLetter(int letter) {
    return PianoKeyOf(&ComputerKey::letter, letter);
}

} // namespace tonewright
