// What the box "Select Synthesizer" shows and decides: which family of instruments, which ports,
// which channel. Texts of ports are bytes as the MIDI layer gives them.
#pragma once

#include "core/voice_object.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

// What the box shows at first and changes; none of the pointers is null.
struct SelectParams {
    DriverId *driverId = nullptr;  // becomes that of the family; as it was for "Unknown"
    std::string *name = nullptr;   // display name of the family
    std::string *midiIn = nullptr; // names of the ports
    std::string *midiOut = nullptr;
    std::uint32_t *autodetect = nullptr;  // 0 or 1; read, anything but 0 is yes
    std::uint32_t *midiChannel = nullptr; // 1 to 16
};
// The program-wide variables.
SelectParams CurrentSelectParams();

constexpr int NoItem = -1;

// A drop-down list; `selected` is NoItem while it is empty.
struct ItemChoice {
    std::vector<std::string> items;
    int selected = NoItem;
};

// The state of the open box.
struct SynthSelection {
    ItemChoice synths; // "Unknown" and the families
    ItemChoice inputs; // names of MIDI devices, in their order
    ItemChoice outputs;
    bool detect = false;
    bool detectEnabled = true;
    int midiChannel = 1; // 1 to 16
};

// The item that is `text`, or else the first one that begins with it, without regard to case; the
// first item when there is none, NoItem in an empty list.
int FindItem(const std::vector<std::string> &items, const std::string &text);

// The state of a box that opens: the families, the MIDI devices as they are numbered now, and what
// `params` points to, chosen as by FindItem. Changes nothing.
SynthSelection OpenSynthSelection(const SelectParams &params);
// A family was chosen: detection can be switched where the family has it. "Unknown" leaves that as
// it is.
void SynthChosen(SynthSelection &selection);
// OK: asks about unsaved changes and empties the list; then stores the choices. 0 when the user
// wants to stay, and nothing is stored; else 1.
int AcceptSynthSelection(const SynthSelection &selection, const SelectParams &params);

} // namespace tonewright
