// Whether the rows of a list hold whole voices of a family, as its banks and instruments want them.
#pragma once

#include "core/synth_driver.h"

#include <functional>
#include <string>

namespace tonewright {

enum class VoiceFault {
    None,
    Missing,     // there is no voice
    OtherFamily, // or one of no family
    Incomplete,  // not all of it is there
    NotKept,     // it is whole, and a file of the family would not keep all of it
};
// For an instrument of the family.
VoiceFault VoiceFaultOf(const VoiceObject *voice, const SynthDriver &family);
// For a file of the family: the same, or NotKept.
VoiceFault FileFaultOf(const VoiceObject *voice, const SynthDriver &family);

struct BankFault {
    VoiceFault fault = VoiceFault::None;
    int row = NoRow; // the first one with a fault, from 0
};
// Of the rows that a bank of the family has, each by one of the functions above; what stands behind
// them does not count.
BankFault BankFaultOf(const VoiceList &list, const SynthDriver &family,
                      VoiceFault (*faultOf)(const VoiceObject *voice, const SynthDriver &family));

// The places (from 1) of those rows from `first` to `last` that are meant: "1, 4, 9".
std::string PlacesOf(int first, int last, const std::function<bool(int row)> &isMeant);
// The places of voices that did not come whole in a download into the list: empty when
// all did. Of a format that knows what came whole.
std::string PlacesNotReceived(const VoiceList &list, const VoiceFileFormat &format);

} // namespace tonewright
