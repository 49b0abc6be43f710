// Reading the settings of the instruments' sound.
#include "midi/instrument_settings.h"

#include "common/settings.h"

#include <algorithm>

namespace tonewright {
namespace {

int Within(IntegerSettingValue setting, int lowest, int highest) {
    return static_cast<int>(
        std::clamp<IntegerSettingValue>(setting, static_cast<IntegerSettingValue>(lowest),
                                        static_cast<IntegerSettingValue>(highest)));
}

} // namespace

int InstrumentVolumeOfSetting() {
    return Within(InstrumentVolume, 0, HighestInstrumentVolume);
}

InstrumentSoundOptions InstrumentSoundOfSettings() {
    const double volume = static_cast<double>(InstrumentVolumeOfSetting());
    return {.device = InstrumentDevice,
            .volume = volume / HighestInstrumentVolume,
            .frames = Within(InstrumentBuffer, InstrumentBuffers.front(), InstrumentBuffers.back()),
            .polyphony =
                Within(InstrumentPolyphony, LowestInstrumentPolyphony, HighestInstrumentPolyphony)};
}

void FollowInstrumentSettings() {
    SetInstrumentSound(InstrumentSoundOfSettings());
}

} // namespace tonewright
