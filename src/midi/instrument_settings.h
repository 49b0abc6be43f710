// How the built-in instruments sound: the settings of it, each within its range.
#pragma once

#include "midi/instrument_sound.h"

#include <array>

namespace tonewright {

constexpr int HighestInstrumentVolume = 100; // from 0
constexpr int LowestInstrumentPolyphony = 8; // notes of each instrument
constexpr int HighestInstrumentPolyphony = 64;
inline constexpr std::array InstrumentBuffers = {128, 256, 512, 1024,
                                                 2048}; // frames; those to choose from

// The volume of the setting, limited to its range.
int InstrumentVolumeOfSetting();
// All settings as the sound takes them. A number beyond its range counts as the nearest one in it.
InstrumentSoundOptions InstrumentSoundOfSettings();
// Has the instruments sound as the settings say from now on.
void FollowInstrumentSettings();

} // namespace tonewright
