// The parameters of a voice as texts: how each is named, shown and read by people and scripts.
#pragma once

#include "core/voice_file.h"
#include "drivers/voice_parameters.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

// A parameter of a voice: a row that has a name, and the part of the voice that it is one of.
struct NamedParameter {
    const VoiceParameter *row = nullptr;
    int part = 0; // 0: the voice, 1 to operatorCount: that operator

    friend bool operator==(const NamedParameter &, const NamedParameter &) = default;
};

// All of a family's, in the order of its rows: the voice's, then those of each operator.
std::vector<NamedParameter> NamedParameters(const VoiceParameters &family);
// "algorithm", "operator1.frequency".
std::string ParameterName(const NamedParameter &parameter);
// The parameter of that name, in these letters; nothing when the family has none.
std::optional<NamedParameter> ParameterOfName(const VoiceParameters &family, std::string_view name);

// The value in a whole voice of the family, UTF-8: a name with each control character replaced by
// "?", "on" or "off", an algorithm from 1, a frequency with two decimals, the item of a list. A
// value that has no item shows as its number, and one out of range as it is.
std::string ParameterText(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice);

// Gives the parameter the value that a text stands for, and returns no text; or leaves the voice as
// it was and returns in words why the text stands for none, or for one that files of this kind have
// no room for.
//
// What ParameterText shows of the voice is always taken and changes no byte, but for an empty name.
// A list takes its item, the part of it in front of or within the parentheses, or its index from 0;
// "on" and "off" may be yes and no or 1 and 0; letters in either case. A frequency has at most two
// decimals. A name has at most the family's nameSize characters, all in Latin-1 and none a control
// character; zero bytes follow it, and an empty one is NameForNone.
std::string SetParameterText(const VoiceParameters &family, const NamedParameter &parameter,
                             VoiceObject &voice, std::string_view text, VoiceFileKind kind);

// Why files of this kind would not keep the value that the parameter has beside the others of the
// voice, in words; empty when they do. A bank has no bits for which operators are switched on.
std::string ReasonNotKept(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice, VoiceFileKind kind);

// What whoever has just given the parameter this value may not know of it, in words; empty when
// there is nothing: that a bank read without WholeDetune, while that is off, has another one, that
// a bank loses the level of an operator that is off, and that a name, which can be given no control
// characters, still holds those that it had.
std::string RemarkOnValue(const VoiceParameters &family, const NamedParameter &parameter,
                          const VoiceObject &voice, VoiceFileKind kind);

} // namespace tonewright
