// What stands where on the pages of the two printed reports, in device units: the bank's voices
// with a cell for each, and the catalogue as a table. A page is a list of texts and rules, made of
// the size of the page and the heights of its fonts, so that it looks the same on every device.
//
//   0  m                                                                 W
//   |  | heading                                        (voices: printed on ...) |
//   |  |-------------------------------------------------------|
//   |  |    1  | BRASS 1      | Factory bank.syx | Sat Nov 14 ...|  0|
//   |  |-------------------------------------------------------|
//   |  |                         Page 1                                |
//
// Every length is a share of the width without the left margin, cut to a whole number.
#pragma once

#include "common/geometry.h"
#include "core/item_fonts.h"
#include "core/synth_driver.h"
#include "database/record_list.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright {

struct PageMetrics {
    int width = 0, height = 0; // of the printable area, from whose corner all places count
    int left = 0;              // margin
    int usable = 0;            // width without the margin
    int inset = 0;             // unit of the space around headings, at least 1
};
// `width` and `height`: 0 to 10,000,000.
PageMetrics MetricsOfPage(int width, int height);

enum class TextSide { Left, Right, Centre };

// One line of text. The box is as high as the lines of its font; a text that is wider ends in an
// ellipsis, and blanks at either end of it count.
struct PageText {
    Rectangle box;
    TextSide side = TextSide::Left;
    std::size_t font = 0; // of the page's fonts
    std::string text;     // UTF-8
    bool operator==(const PageText &) const = default;
};

// A horizontal black line, half of whose width lies above `y`.
struct PageRule {
    int left = 0, right = 0, y = 0;
    int width = 0; // 0: as thin as the device can
    bool operator==(const PageRule &) const = default;
};

struct PrintedPage {
    std::vector<FontDescription> fonts; // an empty family is that of the device
    std::vector<PageText> texts;
    std::vector<PageRule> rules;
};

// ---- the voices of a bank, always on one page

struct VoiceListFonts {
    FontDescription title, label;
};
VoiceListFonts FontsOfVoiceList(const PageMetrics &metrics);

// The title of the page: name of the document and of the instrument.
std::string VoiceListTitle(const char *documentPath, const char *instrument);

// The heading at `top`, `titleHeight` being the height of a line of the title. `time`: seconds
// since 1970, of the words "printed on".
PrintedPage VoiceListPage(const PageMetrics &metrics, int top, int titleHeight,
                          const std::string &title, std::int64_t time);
// The cell of a voice among `count` on a page whose cells begin at `top`.
PrintCell VoiceListCell(const PageMetrics &metrics, int top, int index, int count);

// ---- the records of a catalogue

// As the settings have them. Sizes are thousandths of the usable width; no font is higher than
// 10,000 units.
struct DatabaseFonts {
    FontDescription heading, item, footer;
};
DatabaseFonts FontsOfDatabase(const PageMetrics &metrics);

// Heights of a line of each of them, as the device measures it.
struct DatabaseLineHeights {
    int heading = 0, item = 0, footer = 0;
};

// The heading of its pages: name of the catalogue and of the instrument.
std::string DatabaseHeading(const std::string &name, const char *instrument);

// The page of a number, from 1, with the rows from `row` on, which becomes the first one of the
// next page, or the count. One row is taken in any case, however high the fonts are; one that
// cannot be read is passed over. `row` is a row of the list.
PrintedPage DatabasePage(const PageMetrics &metrics, const DatabaseLineHeights &heights,
                         const RecordList &list, int &row, const std::string &heading, int number);

} // namespace tonewright
