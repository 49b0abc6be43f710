// The settings that the reface DX itself keeps: what its 15 bytes mean, how a box shows them and
// how they are taken back.
//
//   byte  0  transmit channel, 0 to 15, or 127 for off
//         1  receive channel, 0 to 15, or 16 for all
//         2  master tune, four bytes of four bits each, the highest ones first
//         6  local control
//         7  transpose + 64
//         8  tempo, two bytes of seven bits each, the higher ones first
//        10  contrast of the display
//        11  type of the sustain pedal
//        12  automatic power-off
//        13  speaker
//        14  MIDI control
//        15  bytes that are read and kept, and never sent
//
// The master tune is a number N of tenths of a cent; 1024 is 440.0 Hz.
#pragma once

#include "common/text.h"
#include "drivers/reface_dx/transfer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tonewright {

enum class RefaceSettingKind {
    List,            // the byte is the item
    TransmitChannel, // a list whose last item stands for 127
    Switch,
    Number, // plus a bias
    Tempo,
    MasterTune,
};

// One setting: a control of the box, and what it is called.
struct RefaceSettingRow {
    const char *name; // for the command line
    std::uint32_t control;
    const char *label; // as in the box, which calls the arrows so
    RefaceSettingKind kind;
    std::size_t index;      // its first byte
    SpinRange range = {};   // of Number and Tempo
    int bias = 0;           // of Number: the byte minus the number
    const char *items = ""; // of a list, separated by ";"
};
constexpr std::size_t RefaceSettingCount = 11;
extern const std::array<RefaceSettingRow, RefaceSettingCount> RefaceSettingRows;
extern const std::array<const char *, RefaceSettingCount> RefaceSettingNames;

// What a box works on. A file that is read clears all of it, the driver and the ports too.
struct SynthConfigBlock {
    DriverId driverId = 0;
    std::int32_t midiIn = 0;
    std::int32_t midiOut = 0;
    std::array<std::uint8_t, RefaceSystemSize> system = {};
};
static_assert(sizeof(SynthConfigBlock) == 44);

// What a control of the box holds, by the kind of its row; what it does not hold stays as here.
struct RefaceControl {
    int item = -1; // of a list; -1: none is selected
    int number = 0;
    bool checked = false;
    std::string text; // of the master tune, in Hz
    bool operator==(const RefaceControl &) const = default;
};
using RefaceControls = std::array<RefaceControl, RefaceSettingCount>;

// Shows settings in the controls. A switch that is on is checked, but one that is off leaves its
// box as it is. A byte that no item stands for selects none.
void ShowRefaceSettings(RefaceControls &controls, RefaceSystemConst system);
// Takes all controls back; bytes that have none stay. Of the tempo only the eight low bits are
// kept: 300 becomes 44.
void CollectRefaceSettings(const RefaceControls &controls, RefaceSystem system);

constexpr double LowestMasterTune = 414.8, HighestMasterTune = 466.8; // Hz, of the box
// The frequency of A as the box shows it, "440.0".
std::string MasterTuneText(std::uint16_t tuning);
// The tuning of a text, whose number is read as atof does and limited as above. An odd tenth of a
// Hz is taken down to the even one first.
std::uint16_t MasterTuneOf(std::string_view text);
// The text after one step of 0.1 Hz upwards, for a positive `step`, or downwards.
std::string StepMasterTune(std::string_view text, int step);

// A setting in words and numbers, and back; see core/synth_settings.h.
std::string RefaceSettingText(std::size_t setting, std::span<const std::uint8_t> system);
std::string StoreRefaceSetting(std::size_t setting, std::string_view text,
                               std::span<std::uint8_t> system);

} // namespace tonewright
