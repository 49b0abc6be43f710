// Plays the sounds of events. The caller never waits: a worker thread opens the device and feeds
// it. Without a device nothing happens, and nothing is reported.
#pragma once

#include "common/sound_file.h"

#include <cstdint>
#include <functional>
#include <span>

namespace tonewright {

// The sound output of a platform: one stream at a time, its calls made on one thread only. No call
// but Open and Close may take longer than a few hundredths of a second.
struct SoundDevice {
    // Opens the stream. False when there is no device or it cannot play the format.
    std::function<bool(const SoundFormat &format)> Open;
    // Takes as many whole frames as there is room for, after waiting a little for room. The number
    // of bytes taken, or -1 on failure.
    std::function<std::ptrdiff_t(std::span<const std::uint8_t> frames)> Write;
    // True as long as frames that were taken are still to be heard; starts them if need be.
    std::function<bool()> Playing;
    // Falls silent at once.
    std::function<void()> Close;
};

// The output of this machine.
SoundDevice PlatformSoundDevice();
// The output in use: the machine's, or a test's.
extern SoundDevice TheSoundDevice;

// Starts playing a sound file in place of what is playing, and returns at once. False when the file
// is missing or is no sound; whether there is a device to hear it on is found out later.
bool PlaySoundFile(const char *path);

// Falls silent and ends the worker thread. A device that does not answer is left behind after a
// second. The next sound starts a thread again.
void StopSounds();

} // namespace tonewright
