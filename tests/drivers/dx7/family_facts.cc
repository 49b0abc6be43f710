// What the conformance test needs to know of the DX7 family.
#include "drivers/family_facts.h"
#include "support/family_names.h"

namespace tonewright {

extern const FamilyFacts Dx7Facts;
const FamilyFacts Dx7Facts = {.id = 0x44583779,
                              .name = Dx7Name,
                              .bank = "syx",
                              .voice = "sy1",
                              .extra = "TwcDx7",
                              .document = "Untitled.syx",
                              .flags = 0x02,
                              .picture = 8502,
                              .bankRows = 32,
                              .idText = "y7XD",
                              .isWhole = true,
                              .payloadSize = 156,
                              .extraSize = 0,
                              .namePlace = 145,
                              .filler = ' ',
                              .instrument = BuiltinInstrument::Dx7,
                              .port = "Built-in DX7"};

} // namespace tonewright
