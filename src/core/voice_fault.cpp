// Holds the voices of a list against a family.
#include "core/voice_fault.h"

namespace tonewright {

VoiceFault VoiceFaultOf(const VoiceObject *voice, const SynthDriver &family) {
    if (!voice) {
        return VoiceFault::Missing;
    }
    const auto header = HeaderOf(*voice);
    if (header && header->driverId != family.id) {
        return VoiceFault::OtherFamily;
    }
    const bool isWhole =
        PayloadOf(*voice) && (!family.bankFormat || family.bankFormat->canBeSent(voice));
    return isWhole ? VoiceFault::None : VoiceFault::Incomplete;
}

VoiceFault FileFaultOf(const VoiceObject *voice, const SynthDriver &family) {
    const VoiceFault fault = VoiceFaultOf(voice, family);
    const VoiceFileFormat *format = family.bankFormat;
    if (fault != VoiceFault::None || !format) {
        return fault;
    }
    const bool isKept = format->canBeWritten(voice) && (!format->isKept || format->isKept(voice));
    return isKept ? VoiceFault::None : VoiceFault::NotKept;
}

BankFault BankFaultOf(const VoiceList &list, const SynthDriver &family,
                      VoiceFault (*faultOf)(const VoiceObject *voice, const SynthDriver &family)) {
    for (int row = 0; row < family.bankRows; ++row) {
        if (const VoiceFault fault = faultOf(ListVoice(list, row), family);
            fault != VoiceFault::None) {
            return {fault, row};
        }
    }
    return {};
}

std::string PlacesOf(int first, int last, const std::function<bool(int row)> &isMeant) {
    std::string places;
    for (int row = first; row <= last; ++row) {
        if (isMeant(row)) {
            places += (places.empty() ? "" : ", ") + std::to_string(row + 1);
        }
    }
    return places;
}

std::string PlacesNotReceived(const VoiceList &list, const VoiceFileFormat &format) {
    return PlacesOf(0, ListCount(list) - 1,
                    [&](int row) { return !format.cameWhole(ListVoice(list, row)); });
}

} // namespace tonewright
