// The arithmetic of the printed pages.
#include "database/page_layout.h"

#include "common/file_time.h"
#include "common/settings.h"
#include "common/text.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr int FontWeight = 500, TitleWeight = 700;
constexpr std::int64_t LargestFontHeight = 10'000; // beyond it no device has a line

// `parts` of `whole` parts of a length.
int Share(int length, std::int64_t parts, int whole) {
    return static_cast<int>(length * parts / whole);
}

int PerMille(const PageMetrics &metrics, std::int64_t parts) {
    return Share(metrics.usable, parts, 1000);
}

int PerCent(const PageMetrics &metrics, std::int64_t parts) {
    return Share(metrics.usable, parts, 100);
}

FontDescription FontOfSize(const PageMetrics &metrics, const std::string &family,
                           std::uint32_t size, int weight = FontWeight) {
    const std::int64_t height = std::int64_t{metrics.usable} * size / 1000;
    return {.family = family,
            .height = static_cast<int>(std::min(height, LargestFontHeight)),
            .weight = weight};
}

// Where the heading of either report stands.
Rectangle HeadingBox(const PageMetrics &metrics, int top, int textHeight) {
    return {.left = metrics.left + 6 * metrics.inset,
            .top = top,
            .right = metrics.width - 12 * metrics.inset,
            .bottom = top + textHeight};
}

// ---- the table of the catalogue

struct Column {
    int perCent; // of the usable width
    TextSide side;
    std::string (*text)(const DatabaseFields &fields, int row);
};
constexpr Column Columns[] = {
    {3, TextSide::Right,
     [](const DatabaseFields &, int row) { return FormatText("%d  ", row + 1); }},
    {34, TextSide::Left,
     [](const DatabaseFields &fields, int) { return Latin1ToUtf8(fields.name); }},
    {34, TextSide::Left,
     [](const DatabaseFields &fields, int) { return Latin1ToUtf8(fields.source); }},
    {18, TextSide::Left,
     [](const DatabaseFields &fields, int) { return FormatTime(fields.date, 0); }},
    {3, TextSide::Right,
     [](const DatabaseFields &fields, int) {
         return FormatText("  %d", static_cast<std::int32_t>(fields.position)); // from 0
     }},
};
constexpr int PerCentOfColumns = 92;

// The fonts of a page of the catalogue, in their order there.
enum DatabaseFontPlace : std::size_t { HeadingFont, ItemFont, FooterFont };

void AddRow(PrintedPage &page, const PageMetrics &metrics, const DatabaseFields &fields, int row,
            int top, int height) {
    int left = metrics.left;
    for (const Column &column : Columns) {
        const int right = left + PerCent(metrics, column.perCent);
        page.texts.push_back({.box = {left, top, right, top + height},
                              .side = column.side,
                              .font = ItemFont,
                              .text = column.text(fields, row)});
        left = right;
    }
}

} // namespace

PageMetrics MetricsOfPage(int width, int height) {
    PageMetrics metrics{.width = width, .height = height};
    metrics.left = Share(width, 50, 1000);
    metrics.usable = width - metrics.left;
    metrics.inset = std::max(1, Share(metrics.usable / 2, 3, 1000));
    return metrics;
}

VoiceListFonts FontsOfVoiceList(const PageMetrics &metrics) {
    return {.title = FontOfSize(metrics, "ARIAL", 32, TitleWeight),
            .label = FontOfSize(metrics, "ARIAL", 12)};
}

std::string VoiceListTitle(const char *documentPath, const char *instrument) {
    return std::string(FileNameOfPath(documentPath)) + " ( " + instrument + " )";
}

PrintedPage VoiceListPage(const PageMetrics &metrics, int top, int titleHeight,
                          const std::string &title, std::int64_t time) {
    const VoiceListFonts fonts = FontsOfVoiceList(metrics);
    const Rectangle box = HeadingBox(metrics, top, titleHeight);
    return {.fonts = {fonts.title, fonts.label},
            .texts = {{.box = box, .side = TextSide::Left, .font = 0, .text = title},
                      {.box = box,
                       .side = TextSide::Right,
                       .font = 1,
                       .text = "printed on " + FormatTime(time, FormatTimeShort)}},
            .rules = {}};
}

PrintCell VoiceListCell(const PageMetrics &metrics, int top, int index, int count) {
    const VoiceListFonts fonts = FontsOfVoiceList(metrics);
    return {.index = index,
            .pageWidth = metrics.usable,
            .pageHeight = metrics.height - top,
            .left = metrics.left,
            .top = top,
            .voicesOnPage = count,
            .titleFontHeight = fonts.title.height,
            .labelFontHeight = fonts.label.height};
}

DatabaseFonts FontsOfDatabase(const PageMetrics &metrics) {
    return {.heading = FontOfSize(metrics, DatabaseHeaderFontName, DatabaseHeaderFontSize),
            .item = FontOfSize(metrics, DatabaseItemFontName, DatabaseItemFontSize),
            .footer = FontOfSize(metrics, DatabaseFooterFontName, DatabaseFooterFontSize)};
}

std::string DatabaseHeading(const std::string &name, const char *instrument) {
    return name + " for " + instrument;
}

PrintedPage DatabasePage(const PageMetrics &metrics, const DatabaseLineHeights &heights,
                         const RecordList &list, int &row, const std::string &heading, int number) {
    const DatabaseFonts fonts = FontsOfDatabase(metrics);
    const int line = PerMille(metrics, 4); // width of the rules, and unit of the gaps
    const int tableRight = metrics.left + PerCent(metrics, PerCentOfColumns);
    const int end = metrics.height - 4 * fonts.footer.height - PerMille(metrics, 9); // of the rows
    const int rowHeight = std::max(1, heights.item);
    PrintedPage page{.fonts = {fonts.heading, fonts.item, fonts.footer}, .texts = {}, .rules = {}};
    const auto addRule = [&](int y) {
        page.rules.push_back({.left = metrics.left, .right = tableRight, .y = y, .width = line});
    };

    page.texts.push_back({.box = HeadingBox(metrics, 0, heights.heading),
                          .side = TextSide::Left,
                          .font = HeadingFont,
                          .text = heading});
    addRule(heights.heading + 4 * line);
    int y = heights.heading + 8 * line;
    do {
        const DatabaseRecord *record = ListRecord(list, row);
        if (const auto fields = record ? RecordFields(*record) : std::nullopt) {
            AddRow(page, metrics, *fields, row, y, rowHeight);
            y += rowHeight;
        }
        ++row;
    } while (y < end && ListHasRow(list, row));
    addRule(end + 4 * line);
    page.texts.push_back({.box = {.left = metrics.left,
                                  .top = end + 8 * line,
                                  .right = metrics.width,
                                  .bottom = end + 8 * line + heights.footer},
                          .side = TextSide::Centre,
                          .font = FooterFont,
                          .text = FormatText("Page %d", number)});
    return page;
}

} // namespace tonewright
