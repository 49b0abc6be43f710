// In a program that was built without PortAudio no sound card is to be had.
#include "common/audio_output.h"

namespace tonewright {
namespace {

bool SayWhy(std::string &why) {
    why = "this program was built without PortAudio, the library that it plays sounds by";
    return false;
}

} // namespace

AudioOutput PlatformAudioOutput() {
    return {
        .Devices =
            [](std::string &why) {
                SayWhy(why);
                return std::vector<AudioDevice>();
            },
        .Open = [](const AudioRequest &, AudioStream &, std::string &why) { return SayWhy(why); },
        .Start = [](FillFrames, void *, std::string &why) { return SayWhy(why); },
        .Runs = [] { return false; },
        .Close = [] {},
    };
}

} // namespace tonewright
