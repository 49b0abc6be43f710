// What the conformance test needs to know of the chimes, which have neither instrument nor page.
#include "drivers/family_facts.h"

namespace tonewright {

extern const FamilyFacts ChimesFacts;
const FamilyFacts ChimesFacts = {.id = 0x6D696863,
                                 .name = "Chimes",
                                 .bank = "chm",
                                 .voice = "ch1",
                                 .extra = "",
                                 .document = "Untitled.chm",
                                 .flags = 0,
                                 .picture = 0,
                                 .bankRows = 8,
                                 .idText = "chim",
                                 .isWhole = false,
                                 .payloadSize = 6,
                                 .extraSize = 0,
                                 .namePlace = 0,
                                 .filler = 0};

} // namespace tonewright
