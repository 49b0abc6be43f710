// Whether the system says what its sound devices are.
#pragma once

namespace tonewright {

// False where PortAudio, asked for the devices, would end the program: it takes for granted that
// one of them is the default. So it is where libasound has come without its files of settings.
bool HasSoundConfiguration();

} // namespace tonewright
