// Shows and reads the values of parameters by their rows.
#include "drivers/parameter_text.h"

#include "common/settings.h"
#include "common/text.h"
#include "drivers/frequency.h"
#include "drivers/value_text.h"

#include <algorithm>
#include <optional>

namespace tonewright {
namespace {

constexpr std::size_t Decimals = 2;
constexpr char Replacement = '?';

bool IsControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || (byte >= 0x7F && byte < 0xA0);
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool AreDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, IsDigit);
}

// What is shown counts an algorithm from 1.
int FirstOf(const VoiceParameter &row) {
    return row.kind == ParameterKind::Algorithm ? 1 : 0;
}

// The texts that stand for an item: "Sine (SIN)", "Sine" and "SIN".
bool IsItem(std::string_view item, std::string_view text) {
    if (EqualNoCase(item, text)) {
        return true;
    }
    const std::size_t open = item.rfind(" (");
    return open != std::string_view::npos && item.ends_with(')') &&
           (EqualNoCase(item.substr(0, open), text) ||
            EqualNoCase(item.substr(open + 2, item.size() - open - 3), text));
}

// Digit by digit, so that 1.15 is 115 hundredths.
ValueReading ReadHundredths(std::string_view text, int minimum, int maximum) {
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view decimals =
        point == std::string_view::npos ? "0" : text.substr(point + 1);
    if (AreDigits(whole) && AreDigits(decimals)) {
        if (decimals.size() > Decimals) {
            return {std::nullopt, std::string(text) + " has more than two decimals"};
        }
        std::string digits = std::string(whole) + std::string(decimals);
        digits.append(Decimals - decimals.size(), '0');
        const ValueReading hundredths = ReadWholeNumber(digits, minimum, maximum);
        if (hundredths.value) {
            return hundredths;
        }
    }
    return {std::nullopt, InWords(text) + " is no number from " + FrequencyText(minimum) + " to " +
                              FrequencyText(maximum)};
}

ValueReading ReadItem(const VoiceParameter &row, std::string_view text) {
    const std::vector<std::string> items = SplitList(row.items);
    for (std::size_t index = 0; index < items.size(); ++index) {
        if (IsItem(items[index], text)) {
            return {static_cast<int>(index), ""};
        }
    }
    if (const ValueReading index = ReadWholeNumber(text, row.minimum, row.maximum); index.value) {
        return index;
    }
    return {std::nullopt, NoneOf(text, items) + FormatText("; %d to %d", row.minimum, row.maximum)};
}

ValueReading ReadShown(const VoiceParameter &row, std::string_view text) {
    const int first = FirstOf(row);
    switch (row.kind) {
    case ParameterKind::Frequency:
        return ReadHundredths(text, row.minimum, row.maximum);
    case ParameterKind::List:
        return ReadItem(row, text);
    case ParameterKind::Check:
    case ParameterKind::OperatorBit:
        return ReadSwitch(text);
    default:
        ValueReading reading = ReadWholeNumber(text, row.minimum + first, row.maximum + first);
        if (reading.value) {
            *reading.value -= first;
        }
        return reading;
    }
}

std::string SetName(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                    std::string_view text) {
    const std::string name = Utf8ToLatin1(text.empty() ? NameForNone : text);
    if (!text.empty() && Latin1ToUtf8(name) != text) {
        return std::string(text) + " has characters that are not in Latin-1";
    }
    if (std::ranges::any_of(name, IsControl)) {
        return std::string(text) + " has control characters";
    }
    if (name.size() > family.nameSize) {
        return std::string(text) + FormatText(" has %zu characters, and %zu is the limit",
                                              name.size(), family.nameSize);
    }
    StoreShownName(family, row, voice, name);
    return "";
}

// How an operator of a bank is switched on: by its level, since there is no bit for it.
struct Switching {
    const VoiceParameter *enable = nullptr;
    bool isOn = false;
    int level = 0;
    std::string levelName;
};
// Of the operator that the parameter belongs to, when it is one of the two that have to do with it
// and the file is such a bank.
std::optional<Switching> SwitchingOf(const VoiceParameters &family, const NamedParameter &parameter,
                                     const VoiceObject &voice, VoiceFileKind kind) {
    const auto enable =
        std::ranges::find(family.operators, ParameterKind::OperatorBit, &VoiceParameter::kind);
    const auto level =
        std::ranges::find(family.operators, true, &VoiceParameter::tellsOperatorIsOn);
    if (kind != VoiceFileKind::Bank || enable == family.operators.end() ||
        level == family.operators.end() ||
        (parameter.row != &*enable && parameter.row != &*level)) {
        return std::nullopt;
    }
    return Switching{.enable = &*enable,
                     .isOn = ShownValue(family, *enable, voice, parameter.part) != 0,
                     .level = ShownValue(family, *level, voice, parameter.part),
                     .levelName = ParameterName({&*level, parameter.part})};
}

} // namespace

std::vector<NamedParameter> NamedParameters(const VoiceParameters &family) {
    std::vector<NamedParameter> parameters;
    for (int part = 0; part <= family.operatorCount; ++part) {
        for (const VoiceParameter &row : part == 0 ? family.voice : family.operators) {
            if (*row.name) {
                parameters.push_back({&row, part});
            }
        }
    }
    return parameters;
}

std::string ParameterName(const NamedParameter &parameter) {
    return parameter.part == 0 ? std::string(parameter.row->name)
                               : FormatText("operator%d.%s", parameter.part, parameter.row->name);
}

std::optional<NamedParameter> ParameterOfName(const VoiceParameters &family,
                                              std::string_view name) {
    const std::vector<NamedParameter> parameters = NamedParameters(family);
    const auto found = std::ranges::find(parameters, name, ParameterName);
    return found == parameters.end() ? std::nullopt : std::optional(*found);
}

std::string ParameterText(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice) {
    const VoiceParameter &row = *parameter.row;
    if (row.kind == ParameterKind::Name) {
        std::string name = ShownName(family, row, voice);
        std::ranges::replace_if(name, IsControl, Replacement);
        return Latin1ToUtf8(name);
    }
    const int shown = ShownValue(family, row, voice, parameter.part);
    if (row.IsCheck()) {
        return SwitchText(shown != 0);
    }
    if (row.kind == ParameterKind::Frequency) {
        return FrequencyText(shown);
    }
    if (row.kind == ParameterKind::List) {
        const std::vector<std::string> items = SplitList(row.items);
        const auto index = static_cast<std::size_t>(shown);
        if (index < items.size()) {
            return items[index];
        }
    }
    return std::to_string(shown + FirstOf(row));
}

std::string SetParameterText(const VoiceParameters &family, const NamedParameter &parameter,
                             VoiceObject &voice, std::string_view text, VoiceFileKind kind) {
    const VoiceParameter &row = *parameter.row;
    const bool isEmptyName = row.kind == ParameterKind::Name && text.empty();
    if (!isEmptyName && text == ParameterText(family, parameter, voice)) {
        return "";
    }
    if (row.kind == ParameterKind::Name) {
        return SetName(family, row, voice, text);
    }
    const ValueReading reading = ReadShown(row, text);
    if (!reading.value) {
        return reading.reason;
    }
    const int largest = (1 << row.packedBits) - 1 - BiasOf(row); // of a bank
    if (kind == VoiceFileKind::Bank && *reading.value > largest) {
        return std::string(text) + FormatText(" does not fit into a bank, which has room for %d to "
                                              "%d",
                                              row.minimum, largest);
    }
    StoreShownValue(family, row, voice, parameter.part, *reading.value);
    return "";
}

std::string ReasonNotKept(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice, VoiceFileKind kind) {
    const auto switching = SwitchingOf(family, parameter, voice, kind);
    if (!switching) {
        return "";
    }
    if (parameter.row == switching->enable && switching->isOn && switching->level == 0) {
        return "an operator with " + switching->levelName + " 0 is off in a bank";
    }
    if (parameter.row != switching->enable && !switching->isOn && switching->level != 0) {
        return "a bank keeps none with " + ParameterName({switching->enable, parameter.part}) +
               " off";
    }
    return "";
}

std::string RemarkOnValue(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice, VoiceFileKind kind) {
    const VoiceParameter &row = *parameter.row;
    if (row.kind == ParameterKind::Name) {
        return std::ranges::any_of(ShownName(family, row, voice), IsControl)
                   ? "as before, with the control characters shown as ?"
                   : "";
    }
    if (kind != VoiceFileKind::Bank) {
        return "";
    }
    const auto switching = SwitchingOf(family, parameter, voice, kind);
    if (switching && parameter.row == switching->enable && !switching->isOn &&
        switching->level != 0) {
        return FormatText(
            "a bank keeps no level of an operator that is off: %s is 0 in the stead of "
            "%d",
            switching->levelName.c_str(), switching->level);
    }
    const int shown = ShownValue(family, row, voice, parameter.part);
    const int bias = BiasOf(row);
    const int read = ((shown + bias) & ((1 << row.readBits) - 1)) - bias;
    return WholeDetune != 0 || row.readBits >= row.packedBits || read == shown
               ? ""
               : FormatText("a bank read without --whole-detune has %d in the stead of %d", read,
                            shown);
}

} // namespace tonewright
