// Jobs, copies and pages of the printed reports, on a device that writes down what is asked of it
// and refuses what the test tells it to.
#include "database/print_report.h"

#include "test_catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace tonewright {
namespace {

// A device of 1000 by 1400 units, whose lines are as high as their fonts: the title 30 (of 950 * 32
// / 1000), the items of the catalogue 13, and 99 of them on a page.
struct PaperStack {
    std::vector<std::string> calls;  // "document", "page", "end"
    std::vector<PrintedPage> pages;  // that were drawn
    std::vector<PrintCell> cells;    // in which voices were drawn
    std::vector<VoiceObject> voices; // those
    std::set<int> refusedDocuments;  // counted from 1
    std::set<int> refusedPages;      // of those after the first one of a document, from 1
    int documentsAsked = 0, pagesAsked = 0;
    PrintDevice device;

    PaperStack() {
        device.width = 1000;
        device.height = 1400;
        device.LineHeight = [](const FontDescription &font) { return font.height; };
        device.StartDocument = [this] {
            calls.push_back("document");
            return !refusedDocuments.contains(++documentsAsked);
        };
        device.NextPage = [this] {
            calls.push_back("page");
            return !refusedPages.contains(++pagesAsked);
        };
        device.EndDocument = [this] { calls.push_back("end"); };
        device.DrawPage = [this](const PrintedPage &page) { pages.push_back(page); };
        device.DrawVoice = [this](const VoiceObject &voice, const PrintCell &cell) {
            voices.push_back(voice);
            cells.push_back(cell);
        };
    }
    PaperStack(const PaperStack &) = delete;
};

using Calls = std::vector<std::string>;

VoiceList VoicesOf(int count) {
    VoiceList list;
    for (int index = 0; index < count; ++index) {
        ListAdd(list);
        ListSetVoice(list, index, TestVoiceOf(TestFamilies[0], index));
    }
    return list;
}

RecordList RecordsOf(int count) {
    RecordList list;
    list.sorted = false;
    for (int index = 0; index < count; ++index) {
        RecordListAdd(list, {TestRecordAt(TestFamilies[0], index)});
    }
    return list;
}

// ---- the voices

TEST(PrintVoiceListReport, EveryVoiceIsDrawnOnTheOnePage) {
    CurrentDriverId = SynthDrivers[0]->id;
    for (const int count : {0, 1, 31, 32, 33}) {
        PaperStack paper;
        EXPECT_EQ(PrintVoiceListReport(paper.device, VoicesOf(count), "/a/b.syx", 0), 1);
        EXPECT_EQ(paper.calls, (Calls{"document", "end"})) << count;
        ASSERT_EQ(paper.cells.size(), static_cast<std::size_t>(count));
        for (int index = 0; index < count; ++index) {
            const PrintCell &cell = paper.cells[static_cast<std::size_t>(index)];
            EXPECT_EQ(cell.index, index);
            EXPECT_EQ(cell.voicesOnPage, count);
            EXPECT_EQ(cell.top, 30);
            EXPECT_EQ(cell.pageHeight, 1370);
            EXPECT_TRUE(paper.voices[static_cast<std::size_t>(index)] ==
                        TestVoiceOf(TestFamilies[0], index));
        }
        EXPECT_EQ(paper.pages.at(0).texts.at(0).text, "b.syx ( Yamaha DX7, TX7, Korg Volca FM )");
    }
}

TEST(PrintVoiceListReport, ARowWithoutAVoiceKeepsItsPlace) {
    VoiceList list = VoicesOf(3);
    ListTakeVoice(list, 1);
    PaperStack paper;
    PrintVoiceListReport(paper.device, list, "a", 0);
    ASSERT_EQ(paper.cells.size(), 2u);
    EXPECT_EQ(paper.cells[1].index, 2);
    EXPECT_EQ(paper.cells[1].voicesOnPage, 3);
}

TEST(PrintVoiceListReport, EachFurtherCopyIsADocumentThatBeginsALineLower) {
    PaperStack paper;
    paper.device.copies = 3;
    EXPECT_EQ(PrintVoiceListReport(paper.device, VoicesOf(1), "a", 0), 3);
    EXPECT_EQ(paper.calls, (Calls{"document", "end", "document", "end", "document", "end"}));
    for (const int copy : {0, 1, 2}) {
        const auto at = static_cast<std::size_t>(copy);
        EXPECT_EQ(paper.pages.at(at).texts[0].box.top, 30 * copy);
        EXPECT_EQ(paper.cells.at(at).top, 30 * copy + 30);
        EXPECT_EQ(paper.cells[at].pageHeight, 1370 - 30 * copy);
    }
}

TEST(PrintVoiceListReport, ACopyThatCannotBeStartedIsPassedOver) {
    PaperStack paper;
    paper.device.copies = 3;
    paper.refusedDocuments = {2};
    EXPECT_EQ(PrintVoiceListReport(paper.device, VoicesOf(1), "a", 0), 2);
    EXPECT_EQ(paper.calls, (Calls{"document", "end", "document", "document", "end"}));
    ASSERT_EQ(paper.pages.size(), 2u);
    EXPECT_EQ(paper.pages[1].texts[0].box.top, 30); // nothing was written on the one between
}

TEST(PrintVoiceListReport, AFileIsWrittenOnce) {
    PaperStack paper;
    paper.device.copies = 3;
    paper.device.isFile = true;
    EXPECT_EQ(PrintVoiceListReport(paper.device, VoicesOf(1), "a", 0), 1);
    EXPECT_EQ(paper.calls, (Calls{"document", "end"}));
}

TEST(PrintVoiceListReport, WithoutAnInstrumentTheTitleNamesNone) {
    PaperStack paper;
    PrintVoiceListReport(paper.device, VoicesOf(0), "a.syx", 0);
    EXPECT_EQ(paper.pages.at(0).texts.at(0).text, "a.syx (  )");
}

TEST(PrintVoiceListReport, CopiesWithoutEndDoNotOverflow) {
    PaperStack paper;
    paper.device.copies = 2'147'483'647;
    paper.device.LineHeight = [](const FontDescription &) { return 10'000; };
    EXPECT_EQ(PrintVoiceListReport(paper.device, VoicesOf(0), "a", 0), 9999);
    EXPECT_EQ(paper.pages.back().texts[0].box.top, 99'980'000);
}

// ---- the catalogue

TEST(PrintDatabaseReport, AsManyPagesAsTheRecordsNeed) {
    // The rows begin at 30 + 8 * 3 = 54, and the last one above 1400 - 4 * 15 - 8 = 1332.
    const int rows = (1332 - 54 + 12) / 13;
    ASSERT_EQ(rows, 99);
    const struct {
        int records;
        Calls calls;
    } cases[] = {
        {1, {"document", "end"}},
        {99, {"document", "end"}},
        {100, {"document", "page", "end"}},
        {250, {"document", "page", "page", "end"}},
    };
    for (const auto &one : cases) {
        PaperStack paper;
        EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(one.records), "V for D"),
                  static_cast<int>(one.calls.size()) - 1);
        EXPECT_EQ(paper.calls, one.calls) << one.records;
        for (std::size_t page = 0; page < paper.pages.size(); ++page) {
            EXPECT_EQ(paper.pages[page].texts.front().text, "V for D");
            EXPECT_EQ(paper.pages[page].texts.back().text, "Page " + std::to_string(page + 1));
            EXPECT_EQ(paper.pages[page].texts[1].text, std::to_string(99 * page + 1) + "  ");
        }
    }
}

TEST(PrintDatabaseReport, WithoutRecordsThereIsNoJob) {
    PaperStack paper;
    paper.device.copies = 2;
    EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(0), "a"), 0);
    EXPECT_TRUE(paper.calls.empty());
}

TEST(PrintDatabaseReport, TheFirstCopyHoldsAllPages) {
    for (const bool isFile : {false, true}) {
        PaperStack paper;
        paper.device.copies = 2;
        paper.device.isFile = isFile;
        EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(100), "a"), 2);
        EXPECT_EQ(paper.calls, (Calls{"document", "page", "end"}));
    }
}

TEST(PrintDatabaseReport, ACopyThatCannotBeStartedLeavesThePagesToTheNextOne) {
    PaperStack paper;
    paper.device.copies = 3;
    paper.refusedDocuments = {1};
    EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(1), "a"), 1);
    EXPECT_EQ(paper.calls, (Calls{"document", "document", "end"}));
    EXPECT_EQ(paper.pages.at(0).texts.back().text, "Page 1");
}

TEST(PrintDatabaseReport, APageThatCannotBeStartedEndsTheReport) {
    PaperStack paper;
    paper.device.copies = 2;
    paper.refusedPages = {2};
    EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(1000), "a"), 2);
    EXPECT_EQ(paper.calls, (Calls{"document", "page", "page", "end"}));
    EXPECT_EQ(paper.pages.size(), 2u);
}

TEST(PrintDatabaseReport, NoPrinterAtAllEndsItToo) {
    PaperStack paper;
    paper.device.copies = 2;
    paper.refusedDocuments = {1, 2};
    EXPECT_EQ(PrintDatabaseReport(paper.device, RecordsOf(5), "a"), 0);
    EXPECT_EQ(paper.calls, (Calls{"document", "document"}));
}

// ---- the printer and the file that are offered

TEST(PrinterToOffer, TheSystemsOwnGoesBeforeTheSettings) {
    EXPECT_EQ(PrinterToOffer("Mine,winspool,LPT1", {"First", "Mine"}, "Default"), "Default");
    EXPECT_EQ(PrinterToOffer("Mine,winspool,LPT1", {"First", "Mine"}, ""), "Mine");
    EXPECT_EQ(PrinterToOffer("Mine", {"First"}, ""), "Mine");
    EXPECT_EQ(PrinterToOffer("", {"First", "Second"}, ""), "First");
    EXPECT_EQ(PrinterToOffer(",x", {"First", "Second"}, ""), "First");
    EXPECT_EQ(PrinterToOffer("", {}, ""), "");
}

TEST(PrinterToOffer, NamesHaveRoomForSoMuch) {
    const std::string name31(31, 'a'), name32(32, 'b'), name33(33, 'c');
    EXPECT_EQ(PrinterToOffer("", {"First"}, name31), name31);
    EXPECT_EQ(PrinterToOffer("", {"First"}, name32), "First");
    EXPECT_EQ(PrinterToOffer(name32, {"First"}, ""), name32);
    EXPECT_EQ(PrinterToOffer(name33, {"First"}, ""), std::string(32, 'c'));
}

TEST(ProposedFile, ItStandsInTheFolderOfExports) {
    OpenExportPath = "/exports/";
    EXPECT_EQ(ProposedVoiceListFile("/banks/My bank.syx"), "/exports/My bank.pdf");
    EXPECT_EQ(ProposedVoiceListFile("bank"), "/exports/bank.pdf");
    EXPECT_EQ(ProposedDatabaseFile("Voices for Yamaha DX7"), "/exports/Voices.pdf");
    EXPECT_EQ(ProposedDatabaseFile("Gifts for Anna for Yamaha DX7"), "/exports/Gifts for Anna.pdf");
    EXPECT_EQ(ProposedDatabaseFile("1.2"), "/exports/1.2.pdf");
}

} // namespace
} // namespace tonewright
