// What the box "Built-in instruments" shows and does: whether the built-in instruments are among
// the MIDI devices, and how they are heard.
#pragma once

#include "common/audio_output.h"

#include <string>
#include <vector>

namespace tonewright {

// The choices in the box.
struct InstrumentsChoice {
    bool wanted = false;
    std::string device; // name; empty for the system's default
    int volume = 0;     // 0 to 100
    int buffer = 0;     // frames
    int polyphony = 0;  // notes of each instrument

    bool operator==(const InstrumentsChoice &) const = default;
};

// What the settings say, each within its range.
InstrumentsChoice CurrentInstrumentsChoice();
// OK: the settings become the choices, at once and for the coming starts; those that were not
// changed are not written. Where the instruments come or go, the program looks for devices, and
// where they come it offers to have auditions play the voice that was sent.
void AcceptInstrumentsChoice(const InstrumentsChoice &choice);

// The names to choose from and which one is chosen: the system's default, the devices that there
// are, and the chosen one, also while it is not there: "Phones (not found)" once they have been
// looked for (`searched`).
struct DeviceRow {
    std::string name; // empty for the system's default
    std::string text;
};
std::vector<DeviceRow> DeviceRows(const std::vector<AudioDevice> &devices,
                                  const std::string &chosen, bool searched);
// The buffers to choose from, and the one of the setting where it is another; in rising order.
std::vector<int> BufferRows(int chosen);
// "256 frames (5.3 ms)"
std::string BufferText(int frames);

// Shows the box. 1.
int RunInstruments();

} // namespace tonewright
