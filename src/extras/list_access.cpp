// The record through which the extras reach the main list, and what is asked before they do.
#include "extras/list_access.h"

#include "common/desktop.h"

#include <algorithm>

namespace tonewright {

ListAccess TheListAccess;

bool MayTakeHighBytes(QWidget *owner, std::span<const KeptVoice> voices) {
    const auto high = std::ranges::count_if(
        voices, [](const KeptVoice &voice) { return HighBytesOf(voice.Voice()) != 0; });
    return high == 0 ||
           AskYesNo(owner, (high == 1 ? "One of these voices has"
                                      : std::to_string(high) + " of these voices have") +
                               std::string(" bytes above 7F, which no instrument sends or takes. "
                                           "The file is probably damaged there.\n\nDo you wish to "
                                           "take them all the same?")) == ResultYes;
}

} // namespace tonewright
