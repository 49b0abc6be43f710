// The short messages that the program sends: status, then one or two data bytes below 80. A status
// stands here as on channel 1; OnCurrentChannel puts it on the one that is in use.
#pragma once

#include "midi/midi_api.h"

#include <cstdint>

namespace tonewright {

constexpr std::uint8_t NoteOff = 0x80; // note, velocity
constexpr std::uint8_t NoteOn = 0x90;
constexpr std::uint8_t ControlChange = 0xB0; // controller, value
constexpr std::uint8_t ProgramChange = 0xC0; // program from 0

// Controllers.
constexpr std::uint8_t AllSoundOff = 0x78; // 120
constexpr std::uint8_t OmniOff = 0x7C;     // 124
constexpr std::uint8_t OmniOn = 0x7D;      // 125

// 1 to 16: the channel of this run of the program, whatever the user's settings say. 0: theirs.
extern std::uint32_t ChannelOfThisRun;

// `status` on ChannelOfThisRun, or else on CurrentMidiChannel; of a channel outside 1 to 16 the low
// four bits count.
std::uint8_t OnCurrentChannel(std::uint8_t status);

// Selects the last program and then the first, on the same channel: so the program changes in any
// case, and the instrument takes up the first one anew. Failures are not told.
void SelectLastThenFirstProgram(MidiStream output);

} // namespace tonewright
