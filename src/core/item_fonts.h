// The fonts of the main list, described so that reading a bank needs no window system; the views
// make real fonts of them.
#pragma once

#include <string>

namespace tonewright {

struct FontDescription {
    std::string family; // empty: no font
    int height = 0;     // height of the character cell (ascent plus descent) in pixels
    int weight = 0;     // 400 normal, 500 medium, 700 bold

    bool operator==(const FontDescription &) const = default;
};

struct ItemFonts {
    FontDescription title;
    FontDescription label;
    int itemHeight = 0; // pixels

    bool operator==(const ItemFonts &) const = default;
};

// Operation of both driver rows: title "TIMES NEW ROMAN" 28 bold, label "ARIAL" 14 medium, item
// height 48. Returns 1.
int MakeItemFonts(ItemFonts &fonts);

} // namespace tonewright
