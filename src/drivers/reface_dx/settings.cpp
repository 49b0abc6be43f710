// Shows the settings of a reface DX and takes them back.
#include "drivers/reface_dx/settings.h"

#include "drivers/value_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tonewright {
namespace {

constexpr std::uint8_t TransmitOff = 127;
constexpr int TransmitOffItem = 16;
constexpr int TransposeBias = 64;

constexpr const char *TransmitChannels =
    "Channel 1;Channel 2;Channel 3;Channel 4;Channel 5;Channel 6;Channel 7;Channel 8;Channel 9;"
    "Channel 10;Channel 11;Channel 12;Channel 13;Channel 14;Channel 15;Channel 16;Off";
constexpr const char *ReceiveChannels =
    "Channel 1;Channel 2;Channel 3;Channel 4;Channel 5;Channel 6;Channel 7;Channel 8;Channel 9;"
    "Channel 10;Channel 11;Channel 12;Channel 13;Channel 14;Channel 15;Channel 16;All";
constexpr const char *Pedals = "Yamaha FC3;Yamaha FC4/5";

using Kind = RefaceSettingKind;

// ---- master tune

constexpr double ConcertPitch = 440;    // Hz
constexpr double ConcertTuning = 102.4; // in cents
constexpr double CentsOfOctave = 1200;
constexpr double MasterTuneStep = 0.1; // Hz

std::uint16_t TuningIn(RefaceSystemConst system, std::size_t index) {
    unsigned tuning = 0;
    for (const std::uint8_t byte : system.subspan(index, 4)) {
        tuning = tuning << 4 | (byte & 15u);
    }
    return static_cast<std::uint16_t>(tuning);
}

void StoreTuning(std::uint16_t tuning, RefaceSystem system, std::size_t index) {
    for (std::size_t n = 0; n < 4; ++n) {
        system[index + n] = static_cast<std::uint8_t>(tuning >> (12 - 4 * n) & 15);
    }
}

// "440.0", whatever the locale is.
std::string OneDecimal(double frequency) {
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, frequency, std::chars_format::fixed, 1).ptr;
    return {text, end};
}

double LimitedMasterTune(double frequency) {
    return std::clamp(frequency, LowestMasterTune, HighestMasterTune);
}

// The number of a text as far as it matters: near the limits, where it is none of a frequency.
double FrequencyIn(std::string_view text) {
    constexpr double Beyond = 10; // Hz; more than any step
    return LimitedNumber(text, LowestMasterTune - Beyond, HighestMasterTune + Beyond,
                         LowestMasterTune - Beyond);
}

// ---- one control

void Show(const RefaceSettingRow &row, RefaceSystemConst system, RefaceControl &control) {
    const std::uint8_t byte = system[row.index];
    switch (row.kind) {
    case Kind::List:
    case Kind::TransmitChannel: {
        const bool isOff = row.kind == Kind::TransmitChannel && byte == TransmitOff;
        const int item = isOff ? TransmitOffItem : byte;
        control.item = item < static_cast<int>(SplitList(row.items).size()) ? item : -1;
        break;
    }
    case Kind::Switch:
        control.checked = control.checked || byte != 0;
        break;
    case Kind::Number:
        control.number = byte - row.bias;
        break;
    case Kind::Tempo:
        control.number = (byte & 127) << 7 | (system[row.index + 1] & 127);
        break;
    case Kind::MasterTune:
        control.text = MasterTuneText(TuningIn(system, row.index));
        break;
    }
}

void Collect(const RefaceSettingRow &row, const RefaceControl &control, RefaceSystem system) {
    std::uint8_t &byte = system[row.index];
    switch (row.kind) {
    case Kind::List:
        byte = static_cast<std::uint8_t>(std::max(control.item, 0));
        break;
    case Kind::TransmitChannel:
        byte = control.item >= TransmitOffItem
                   ? TransmitOff
                   : static_cast<std::uint8_t>(std::max(control.item, 0));
        break;
    case Kind::Switch:
        byte = control.checked;
        break;
    case Kind::Number:
        byte = static_cast<std::uint8_t>(control.number + row.bias);
        break;
    case Kind::Tempo:
        byte = static_cast<std::uint8_t>((control.number & 255) >> 7);
        system[row.index + 1] = static_cast<std::uint8_t>(control.number & 127);
        break;
    case Kind::MasterTune:
        StoreTuning(MasterTuneOf(control.text), system, row.index);
        break;
    }
}

// ---- words

std::string ReadItem(const RefaceSettingRow &row, std::string_view text, RefaceControl &control) {
    const std::vector<std::string> items = SplitList(row.items);
    const auto item =
        std::ranges::find_if(items, [text](const auto &each) { return EqualNoCase(each, text); });
    if (item == items.end()) {
        return NoneOf(text, items);
    }
    control.item = static_cast<int>(item - items.begin());
    return {};
}

// Whether a text is digits, or digits with one more behind a dot.
bool IsInTenths(std::string_view text) {
    const auto isNumber = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == part.npos;
    };
    const std::size_t dot = text.find('.');
    return dot == text.npos ? isNumber(text)
                            : isNumber(text.substr(0, dot)) && dot + 2 == text.size() &&
                                  isNumber(text.substr(dot + 1));
}

std::string ReadTune(std::string_view text, RefaceControl &control) {
    if (!IsInTenths(text)) {
        return InWords(text) + " is no number of Hz with one decimal";
    }
    const double frequency = ReadNumber(text);
    if (frequency < LowestMasterTune || frequency > HighestMasterTune) {
        return InWords(text) + " is no number from " + OneDecimal(LowestMasterTune) + " to " +
               OneDecimal(HighestMasterTune);
    }
    control.text = OneDecimal(frequency);
    return {};
}

// What the text says to the control of the row. Why it says nothing, in words.
std::string Read(const RefaceSettingRow &row, std::string_view text, RefaceControl &control) {
    switch (row.kind) {
    case Kind::List:
    case Kind::TransmitChannel:
        return ReadItem(row, text, control);
    case Kind::Switch: {
        const ValueReading reading = ReadSwitch(text);
        control.checked = reading.value.value_or(0) != 0;
        return reading.reason;
    }
    case Kind::Number:
    case Kind::Tempo: {
        const ValueReading reading = ReadWholeNumber(text, row.range.minimum, row.range.maximum);
        control.number = reading.value.value_or(0);
        return reading.reason;
    }
    case Kind::MasterTune:
        return ReadTune(text, control);
    }
    return {};
}

} // namespace

constexpr std::array<RefaceSettingRow, RefaceSettingCount> RefaceSettingRows = {{
    {.name = "transmitChannel",
     .control = 101,
     .label = "Transmit channel:",
     .kind = Kind::TransmitChannel,
     .index = 0,
     .items = TransmitChannels},
    {.name = "receiveChannel",
     .control = 102,
     .label = "Receive channel:",
     .kind = Kind::List,
     .index = 1,
     .items = ReceiveChannels},
    {.name = "masterTune",
     .control = 103,
     .label = "Master tune:",
     .kind = Kind::MasterTune,
     .index = 2},
    {.name = "localControl",
     .control = 104,
     .label = "Local control",
     .kind = Kind::Switch,
     .index = 6},
    {.name = "transpose",
     .control = 105,
     .label = "Transpose:",
     .kind = Kind::Number,
     .index = 7,
     .range = {.minimum = -12, .maximum = 12},
     .bias = TransposeBias},
    {.name = "tempo",
     .control = 106,
     .label = "Tempo:",
     .kind = Kind::Tempo,
     .index = 8,
     .range = {.minimum = 30, .maximum = 300, .start = 120}},
    {.name = "lcdContrast",
     .control = 107,
     .label = "LCD Contrast:",
     .kind = Kind::Number,
     .index = 10,
     .range = {.minimum = 0, .maximum = 63}},
    {.name = "sustainPedal",
     .control = 108,
     .label = "Sustain pedal:",
     .kind = Kind::List,
     .index = 11,
     .items = Pedals},
    {.name = "powerAutoOff",
     .control = 109,
     .label = "Power auto off",
     .kind = Kind::Switch,
     .index = 12},
    {.name = "speaker", .control = 110, .label = "Speaker", .kind = Kind::Switch, .index = 13},
    {.name = "midiControl",
     .control = 111,
     .label = "MIDI control",
     .kind = Kind::Switch,
     .index = 14},
}};

constexpr std::array<const char *, RefaceSettingCount> RefaceSettingNames = [] {
    std::array<const char *, RefaceSettingCount> names{};
    for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
        names[n] = RefaceSettingRows[n].name;
    }
    return names;
}();

void ShowRefaceSettings(RefaceControls &controls, RefaceSystemConst system) {
    for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
        Show(RefaceSettingRows[n], system, controls[n]);
    }
}

void CollectRefaceSettings(const RefaceControls &controls, RefaceSystem system) {
    for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
        Collect(RefaceSettingRows[n], controls[n], system);
    }
}

std::string MasterTuneText(std::uint16_t tuning) {
    return OneDecimal(ConcertPitch *
                      std::pow(2.0, (tuning / 10.0 - ConcertTuning) / CentsOfOctave));
}

std::uint16_t MasterTuneOf(std::string_view text) {
    double frequency = FrequencyIn(text);
    if (static_cast<int>(frequency * 10) % 2 != 0) {
        frequency -= MasterTuneStep;
    }
    const double octaves = std::log(LimitedMasterTune(frequency) / ConcertPitch) / std::log(2.0);
    return static_cast<std::uint16_t>((octaves * CentsOfOctave + ConcertTuning) * 10 + 0.5);
}

std::string StepMasterTune(std::string_view text, int step) {
    const double frequency = FrequencyIn(text);
    return OneDecimal(
        LimitedMasterTune(step > 0 ? frequency + MasterTuneStep : frequency - MasterTuneStep));
}

std::string RefaceSettingText(std::size_t setting, std::span<const std::uint8_t> system) {
    const RefaceSettingRow &row = RefaceSettingRows[setting];
    RefaceControl control;
    Show(row, system.first<RefaceSystemSize>(), control);
    switch (row.kind) {
    case Kind::List:
    case Kind::TransmitChannel:
        return control.item >= 0 ? SplitList(row.items)[static_cast<std::size_t>(control.item)]
                                 : std::to_string(system[row.index]);
    case Kind::Switch:
        return SwitchText(control.checked);
    case Kind::Number:
    case Kind::Tempo:
        return std::to_string(control.number);
    case Kind::MasterTune:
        return control.text;
    }
    return {};
}

std::string StoreRefaceSetting(std::size_t setting, std::string_view text,
                               std::span<std::uint8_t> system) {
    const RefaceSettingRow &row = RefaceSettingRows[setting];
    RefaceControl wanted;
    if (std::string fault = Read(row, text, wanted); !fault.empty()) {
        return fault;
    }
    std::array<std::uint8_t, RefaceSystemSize> kept;
    std::ranges::copy(system.first<RefaceSystemSize>(), kept.begin());
    Collect(row, wanted, kept);
    RefaceControl shown;
    Show(row, kept, shown);
    if (shown.number != wanted.number || shown.text != wanted.text) {
        return InWords(text) + " cannot be kept: it would become " +
               RefaceSettingText(setting, kept);
    }
    std::ranges::copy(kept, system.begin());
    return {};
}

} // namespace tonewright
