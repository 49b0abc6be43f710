// What the conformance test needs to know of the reface DX.
#include "drivers/family_facts.h"
#include "support/family_names.h"

namespace tonewright {

extern const FamilyFacts RefaceFacts;
const FamilyFacts RefaceFacts = {.id = 0x52466478,
                                 .name = RefaceName,
                                 .bank = "srx",
                                 .voice = "sr1",
                                 .extra = "crg",
                                 .document = "Untitled.srx",
                                 .flags = 0x3D,
                                 .picture = 8501,
                                 .bankRows = 32,
                                 .idText = "xdFR",
                                 .isWhole = true,
                                 .payloadSize = 38,
                                 .extraSize = 112,
                                 .namePlace = 0,
                                 .filler = ' ',
                                 .instrument = BuiltinInstrument::Reface,
                                 .port = "Built-in reface DX"};

} // namespace tonewright
