// The numbers of the printed pages, worked out by hand for A4 at 1200 dots an inch (9583 by 13699
// units inside its margins) and for devices that no printer has.
#include "database/page_layout.h"

#include "local_time.h"
#include "test_catalogue.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

constexpr int A4Width = 9583, A4Height = 13699;

DatabaseRecord RecordOf(const TestEntry &entry) {
    return {TestRecord(TestFamilies[0], 0, entry)};
}

// In the order in which they were added.
RecordList ListOf(int count) {
    RecordList list;
    list.sorted = false;
    for (int index = 0; index < count; ++index) {
        RecordListAdd(list, {TestRecordAt(TestFamilies[0], index)});
    }
    return list;
}

// What is written on a page in the first column of its rows.
std::vector<std::string> NumbersOn(const PrintedPage &page) {
    std::vector<std::string> numbers;
    for (const PageText &text : page.texts) {
        if (text.font == 1 && text.box.left == page.rules[0].left) {
            numbers.push_back(text.text);
        }
    }
    return numbers;
}

// ---- the page

TEST(PageMetrics, AMarginOfATwentiethAndAUnitOfThreeThousandthsOfHalfTheRest) {
    const PageMetrics a4 = MetricsOfPage(A4Width, A4Height);
    EXPECT_EQ(a4.width, 9583);
    EXPECT_EQ(a4.height, 13699);
    EXPECT_EQ(a4.left, 479); // of 479.15
    EXPECT_EQ(a4.usable, 9104);
    EXPECT_EQ(a4.inset, 13); // of 13.656
    const PageMetrics letter = MetricsOfPage(9866, 12866);
    EXPECT_EQ(letter.left, 493); // of 493.3
    EXPECT_EQ(letter.usable, 9373);
    EXPECT_EQ(letter.inset, 14); // of 4686 * 3 / 1000
}

TEST(PageMetrics, TheUnitIsCutTwiceAndNeverBelowOne) {
    const auto insetOf = [](int width) { return MetricsOfPage(width, 100).inset; };
    EXPECT_EQ(insetOf(0), 1);
    EXPECT_EQ(insetOf(600), 1);  // 570 / 2 * 3 is below 1000
    EXPECT_EQ(insetOf(1403), 1); // 1333 / 2 * 3 = 1998
    EXPECT_EQ(insetOf(1404), 2); // 1334 / 2 * 3 = 2001
    EXPECT_EQ(MetricsOfPage(0, 0).usable, 0);
}

TEST(PageMetrics, AWidePageDoesNotOverflow) {
    const PageMetrics page = MetricsOfPage(10'000'000, 10'000'000);
    EXPECT_EQ(page.left, 500'000);
    EXPECT_EQ(page.usable, 9'500'000);
    EXPECT_EQ(page.inset, 14'250);
}

// ---- the voices

TEST(VoiceListPage, TitleAndTimeStandInTheSameBox) {
    const PageMetrics metrics = MetricsOfPage(A4Width, A4Height);
    const PrintedPage page =
        VoiceListPage(metrics, 0, 290, "bank.syx ( DX7 )", LocalTime(2026, 11, 14, 14, 5, 9));
    const std::vector<FontDescription> fonts = {{"ARIAL", 291, 700}, {"ARIAL", 109, 500}};
    EXPECT_EQ(page.fonts, fonts);
    const Rectangle box = {557, 0, 9427, 290};
    const std::vector<PageText> texts = {
        {box, TextSide::Left, 0, "bank.syx ( DX7 )"},
        {box, TextSide::Right, 1, "printed on Sat Nov 14 2:05 PM 2026"},
    };
    EXPECT_EQ(page.texts, texts);
    EXPECT_TRUE(page.rules.empty());
}

TEST(VoiceListPage, ItBeginsWhereItIsTold) {
    const PrintedPage page = VoiceListPage(MetricsOfPage(A4Width, A4Height), 580, 290, "", 0);
    for (const PageText &text : page.texts) {
        EXPECT_EQ(text.box.top, 580);
        EXPECT_EQ(text.box.bottom, 870);
    }
}

TEST(VoiceListPage, TheTitleNamesTheFileAndTheInstrument) {
    EXPECT_EQ(VoiceListTitle("/a b/c.d/Bank 1.syx", "Yamaha DX7, TX7, Korg Volca FM"),
              "Bank 1.syx ( Yamaha DX7, TX7, Korg Volca FM )");
}

TEST(VoiceListPage, ACellKnowsThePageBelowTheTitle) {
    const PrintCell cell = VoiceListCell(MetricsOfPage(A4Width, A4Height), 290, 7, 32);
    EXPECT_EQ(cell.index, 7);
    EXPECT_EQ(cell.voicesOnPage, 32);
    EXPECT_EQ(cell.pageWidth, 9104);
    EXPECT_EQ(cell.pageHeight, 13409);
    EXPECT_EQ(cell.left, 479);
    EXPECT_EQ(cell.top, 290);
    EXPECT_EQ(cell.titleFontHeight, 291);
    EXPECT_EQ(cell.labelFontHeight, 109);
}

// ---- the catalogue

// Heights of lines that differ from those of the fonts, as they do on a device.
constexpr DatabaseLineHeights A4Lines = {.heading = 290, .item = 126, .footer = 144};

PrintedPage A4Page(const RecordList &list, int &row, int number = 1) {
    return DatabasePage(MetricsOfPage(A4Width, A4Height), A4Lines, list, row, "Voices for DX7",
                        number);
}

TEST(DatabasePage, ARowIsFiveCells) {
    RecordList list;
    RecordListAdd(list, RecordOf({"BRASS \xE9", "Bank & b.syx", 31,
                                  static_cast<std::uint32_t>(LocalTime(2026, 11, 14, 14, 5, 9))}));
    int row = 0;
    const PrintedPage page = A4Page(list, row);
    EXPECT_EQ(row, 1);
    const std::vector<FontDescription> fonts = {
        {"Arial", 291, 500}, {"Arial", 127, 500}, {"Arial", 145, 500}};
    EXPECT_EQ(page.fonts, fonts);
    const std::vector<PageText> texts = {
        {{557, 0, 9427, 290}, TextSide::Left, 0, "Voices for DX7"},
        {{479, 578, 752, 704}, TextSide::Right, 1, "1  "},
        {{752, 578, 3847, 704}, TextSide::Left, 1, "BRASS \u00E9"},
        {{3847, 578, 6942, 704}, TextSide::Left, 1, "Bank & b.syx"},
        {{6942, 578, 8580, 704}, TextSide::Left, 1, "Sat Nov 14 2:05:09 PM 2026"},
        {{8580, 578, 8853, 704}, TextSide::Right, 1, "  31"},
        {{479, 13326, 9583, 13470}, TextSide::Centre, 2, "Page 1"},
    };
    EXPECT_EQ(page.texts, texts);
    const std::vector<PageRule> rules = {{479, 8854, 434, 36}, {479, 8854, 13182, 36}};
    EXPECT_EQ(page.rules, rules);
}

TEST(DatabasePage, SharesThatComeOutEvenAreWhole) {
    const RecordList list = ListOf(1);
    const PageMetrics metrics = MetricsOfPage(1052, 1000);
    EXPECT_EQ(metrics.left, 52);
    EXPECT_EQ(metrics.usable, 1000);
    EXPECT_EQ(metrics.inset, 1);
    EXPECT_EQ(FontsOfVoiceList(metrics).title.height, 32);
    EXPECT_EQ(FontsOfVoiceList(metrics).label.height, 12);
    int row = 0;
    const PrintedPage page =
        DatabasePage(metrics, {.heading = 30, .item = 10, .footer = 10}, list, row, "", 1);
    // 1000 - 4 * 16 - 9 = 927
    const std::vector<PageRule> rules = {{52, 972, 46, 4}, {52, 972, 943, 4}};
    EXPECT_EQ(page.rules, rules);
    EXPECT_EQ(page.texts[1].box, (Rectangle{52, 62, 82, 72}));
    EXPECT_EQ(page.texts[4].box, (Rectangle{762, 62, 942, 72}));
    EXPECT_EQ(page.texts[5].box, (Rectangle{942, 62, 972, 72}));
}

TEST(DatabasePage, PositionsArePrintedAsTheyAreStored) {
    RecordList list;
    list.sorted = false;
    for (const std::uint32_t position : {0u, 31u, 0xFFFFFFFFu}) {
        RecordListAdd(list, RecordOf({"a", "b", position, 0}));
    }
    int row = 0;
    const PrintedPage page = A4Page(list, row);
    EXPECT_EQ(page.texts[5].text, "  0");
    EXPECT_EQ(page.texts[10].text, "  31");
    EXPECT_EQ(page.texts[15].text, "  -1");
}

TEST(DatabasePage, RowsGoOnWhileTheyBeginAboveTheLimit) {
    // From 578 up to 13038, 126 each: the 99th begins at 12926 and the 100th would at 13052.
    for (const int count : {98, 99, 100, 198, 199}) {
        const RecordList list = ListOf(count);
        int row = 0;
        const std::vector<std::string> numbers = NumbersOn(A4Page(list, row));
        EXPECT_EQ(numbers.size(), static_cast<std::size_t>(std::min(count, 99))) << count;
        EXPECT_EQ(row, std::min(count, 99)) << count;
    }
    const RecordList list = ListOf(199);
    int row = 99;
    PrintedPage page = A4Page(list, row, 2);
    EXPECT_EQ(row, 198);
    EXPECT_EQ(NumbersOn(page).front(), "100  ");
    EXPECT_EQ(page.texts[1].box.top, 578);
    EXPECT_EQ(page.texts.back().text, "Page 2");
    page = A4Page(list, row, 3);
    EXPECT_EQ(row, 199);
    EXPECT_EQ(NumbersOn(page), std::vector<std::string>{"199  "});
}

TEST(DatabasePage, ARowThatBeginsAtTheLimitIsOneOfTheNextPage) {
    const RecordList list = ListOf(3);
    // The limit is 1000 - 4 * 15 - 8 = 932, the rows begin at 22 + 8 * 3 = 46 and are 443 high.
    const PageMetrics metrics = MetricsOfPage(1000, 1000);
    int row = 0;
    DatabasePage(metrics, {.heading = 22, .item = 443, .footer = 10}, list, row, "", 1);
    EXPECT_EQ(row, 2);
    row = 0;
    DatabasePage(metrics, {.heading = 23, .item = 442, .footer = 10}, list, row, "", 1);
    EXPECT_EQ(row, 3); // from 47 on: the third one begins at 931
}

TEST(DatabasePage, ARecordThatCannotBeReadTakesNoRow) {
    RecordList list = ListOf(3);
    RecordListPut(list, 1, DatabaseRecord{{1, 2, 3}});
    int row = 0;
    const PrintedPage page = A4Page(list, row);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(NumbersOn(page), (std::vector<std::string>{"1  ", "3  "}));
    EXPECT_EQ(page.texts[6].box.top, 704); // right below the first row
}

TEST(DatabasePage, FontsTooLargeForThePageLeaveOneRowOnEach) {
    const RecordList list = ListOf(2);
    const PageMetrics metrics = MetricsOfPage(A4Width, A4Height);
    DatabaseItemFontSize = DatabaseFooterFontSize = DatabaseHeaderFontSize = 4'294'967'295;
    const DatabaseFonts fonts = FontsOfDatabase(metrics);
    EXPECT_EQ(fonts.heading.height, 10'000);
    EXPECT_EQ(fonts.item.height, 10'000);
    EXPECT_EQ(fonts.footer.height, 10'000);
    const DatabaseLineHeights lines = {.heading = 10'000, .item = 10'000, .footer = 10'000};
    int row = 0;
    PrintedPage page = DatabasePage(metrics, lines, list, row, "", 1);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(NumbersOn(page), std::vector<std::string>{"1  "});
    EXPECT_EQ(page.rules[1].y, 13699 - 40'000 - 81 + 144);
    page = DatabasePage(metrics, lines, list, row, "", 2);
    EXPECT_EQ(row, 2);
    EXPECT_EQ(NumbersOn(page), std::vector<std::string>{"2  "});
}

TEST(DatabasePage, FontsOfNoHeightEndThePageAllTheSame) {
    const RecordList list = ListOf(900);
    DatabaseItemFontSize = DatabaseFooterFontSize = DatabaseHeaderFontSize = 0;
    const PageMetrics metrics = MetricsOfPage(1000, 800);
    EXPECT_EQ(FontsOfDatabase(metrics).item.height, 0);
    int row = 0;
    DatabasePage(metrics, {.heading = 0, .item = 0, .footer = 0}, list, row, "", 1);
    EXPECT_EQ(row, 800 - 8 - 24); // a row for each unit from 24 to the limit of 792
}

TEST(DatabasePage, FontsAreThoseOfTheSettings) {
    DatabaseHeaderFontName = "A";
    DatabaseItemFontName = "";
    DatabaseFooterFontName = "C";
    DatabaseHeaderFontSize = 1;
    DatabaseItemFontSize = 2;
    DatabaseFooterFontSize = 3;
    const DatabaseFonts fonts = FontsOfDatabase(MetricsOfPage(A4Width, A4Height));
    EXPECT_EQ(fonts.heading, (FontDescription{"A", 9, 500}));
    EXPECT_EQ(fonts.item, (FontDescription{"", 18, 500}));
    EXPECT_EQ(fonts.footer, (FontDescription{"C", 27, 500}));
}

TEST(DatabasePage, APageWithoutRoomHasItsFirstRow) {
    const RecordList list = ListOf(2);
    int row = 0;
    const PrintedPage page =
        DatabasePage(MetricsOfPage(0, 0), {.heading = 1, .item = 1, .footer = 1}, list, row, "", 1);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(page.texts.size(), 7u);
}

} // namespace
} // namespace tonewright
