// The fonts of the main list, the same for every family.
#include "core/item_fonts.h"

namespace tonewright {

int MakeItemFonts(ItemFonts &fonts) {
    fonts.title = {.family = "TIMES NEW ROMAN", .height = 28, .weight = 700};
    fonts.label = {.family = "ARIAL", .height = 14, .weight = 500};
    fonts.itemHeight = 48;
    return 1;
}

} // namespace tonewright
