// The sound card as an instrument needs it: it asks for frames at a steady pace, and what it gets
// is heard a few milliseconds later. (Sounds of events take another way, common/sound.h.)
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tonewright {

struct AudioDevice {
    std::string name;           // UTF-8; what AudioRequest names it by
    std::string interface = {}; // of the system: "ALSA"
    double rate = 0.0;          // that it prefers, in frames a second
    bool isDefault = false;
};

struct AudioRequest {
    std::string device;    // its name; empty for the system's default
    double rate = 48000.0; // frames a second
    int frames = 256;      // that are asked for at once
};

// What a stream has come to be.
struct AudioStream {
    double rate = 0.0;
    double latency = 0.0; // seconds from a frame to the ear, as the device tells
};

// Fills `count` frames of both sides, interleaved, -1 to 1. On a thread that must not wait: it
// allocates, frees, locks, prints and opens nothing.
using FillFrames = void (*)(void *context, float *frames, int count);

// One stream at a time. Calls are made on one thread only, which may have to wait for seconds.
struct AudioOutput {
    // The devices that play two sides. None, and why in words without a full stop, when there are
    // none.
    std::function<std::vector<AudioDevice>(std::string &why)> Devices;
    // Opens a stream, which does not run yet: at the rate that was asked for, or that the device
    // prefers. A device of that name that is not there is replaced by the default. False, and why
    // in words without a full stop, when it cannot be opened.
    std::function<bool(const AudioRequest &request, AudioStream &stream, std::string &why)> Open;
    // Begins to ask for frames. False, and why, when it cannot.
    std::function<bool(FillFrames fill, void *context, std::string &why)> Start;
    // False when the device no longer asks for frames: it was unplugged, or fails.
    std::function<bool()> Runs;
    // Asks for no more frames when it returns, and gives everything back. Also of a stream that
    // was not started or not opened.
    std::function<void()> Close;
};

// The output of this machine.
AudioOutput PlatformAudioOutput();
// The output in use: the machine's, or a test's.
extern AudioOutput TheAudioOutput;

} // namespace tonewright
