// The command that lists the sound devices.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "common/audio_output.h"
#include "midi/midi_start.h"

#include <cmath>
#include <string>

namespace tonewright {

int CliSound(const CliCall &) {
    if (!InstrumentSoundAllowed()) {
        return TellFailure("", "no sound: TONEWRIGHT_SOUND=0 in the environment forbids it");
    }
    std::string why;
    const auto devices = TheAudioOutput.Devices(why);
    for (const AudioDevice &device : devices) {
        for (const std::string &field : {device.name, device.interface}) {
            Put(StandardOutput, FieldText(field));
            Put(StandardOutput, '\t');
        }
        PutNumber(StandardOutput, static_cast<unsigned long long>(std::llround(device.rate)));
        Put(StandardOutput, device.isDefault ? "\tyes\n" : "\tno\n");
    }
    return devices.empty() ? TellFailure("", "no sound: " + why) : ExitDone;
}

} // namespace tonewright
