// Any bytes as a table of named colours: every colour has a name, stands in its order, and comes
// back from the line that is written of it.
#include "common/colour.h"
#include "common/colour_table.h"
#include "common/text.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

ColourTable TableOf(std::string_view text) {
    ColourTable table;
    LineReader lines = LinesOf(text);
    ColourTableRead(lines, table);
    return table;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    ColourTable table = TableOf(text);
    Demand(table.items.size() == static_cast<std::size_t>(ListCount(table)), "a row for a colour");
    bool allShort = true;
    for (std::size_t row = 0; row < table.items.size(); ++row) {
        const NamedColour &item = table.items[row];
        Demand(!item.name.empty() && item.name.size() <= LineLimit, "a name fits in a line");
        Demand(item.name.find_first_of(std::string_view("=\0\n", 3)) == std::string::npos,
               "a name ends in front of the sign and at the line's end");
        Demand(item.colour <= 0xFFFFFF, "a colour has 24 bits");
        Demand(row == 0 || CompareText(table.items[row - 1].name, item.name) <= 0,
               "names are sorted");
        Demand(ReadHexColour(HexOfColour(item.colour)) == item.colour, "a number stays a colour");
        allShort = allShort && item.name.size() < 240;
    }
    if (allShort) {
        const ColourTable again = TableOf(ColourTableText(table));
        Demand(std::ranges::equal(again.items, table.items,
                                  [](const NamedColour &a, const NamedColour &b) {
                                      return a.name == b.name && a.colour == b.colour;
                                  }),
               "what is written is read again");
    }
    if (ListCount(table) > 0) {
        const NamedColour first = table.items.front();
        const int row = ColourTableAdd(table, first);
        Demand(table.items[row].name == first.name && ColourTableDelete(table, row),
               "what is added stands where it is said to");
    }
    return 0;
}
