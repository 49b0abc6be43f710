// Printed pages held against the pictures in pages/, which somebody has looked at. What counts is
// how dark a page is around each pixel, and that may lie one pixel beside its place, so that the
// versions of the libraries that paint make no difference; a column or a line that has moved by two
// pixels, not quite a millimetre, is noticed.
//
// After a change that is meant, TONEWRIGHT_NEW_PAGES=1 in the environment writes the pictures anew.
#include "../local_time.h"
#include "../test_catalogue.h"

#include "database/view/print_painter.h"
#include "support/paths.h"
#include "support/run_program.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace tonewright {
namespace {

constexpr int PixelsPerInch = 60; // of the pictures
// Pages are painted larger than that, since a thin line has the width of a whole pixel.
constexpr int Reduction = 4;

// The greys of a page, 0 to 255, row by row.
struct Greys {
    int width = 0, height = 0;
    std::vector<int> values;

    int At(int x, int y) const { return values[static_cast<std::size_t>(y * width + x)]; }
    // Calls `visit` with what stands around a pixel and in it.
    template <typename Visit> void Around(int x, int y, Visit visit) const {
        for (int aroundY = std::max(0, y - 1); aroundY < std::min(height, y + 2); ++aroundY) {
            for (int aroundX = std::max(0, x - 1); aroundX < std::min(width, x + 2); ++aroundX) {
                visit(At(aroundX, aroundY));
            }
        }
    }
};

// Each pixel as the average of those around it.
Greys SoftGreysOf(const QImage &page) {
    Greys sharp{page.width(), page.height(), {}}, soft{page.width(), page.height(), {}};
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            sharp.values.push_back(qGray(page.pixel(x, y)));
        }
    }
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            int sum = 0, count = 0;
            sharp.Around(x, y, [&](int grey) {
                sum += grey;
                ++count;
            });
            soft.values.push_back(sum / count);
        }
    }
    return soft;
}

// The place of a pixel that is neither like the one in the same place of `other` nor lies between
// those around it.
std::optional<std::string> Stranger(const Greys &page, const Greys &other) {
    // Of 255. Between the libraries of Debian 12 and 13 it is 22; what has moved by two pixels, 49.
    constexpr int tolerance = 35;
    for (int y = 0; y < page.height; ++y) {
        for (int x = 0; x < page.width; ++x) {
            int darkest = 255, lightest = 0;
            other.Around(x, y, [&](int grey) {
                darkest = std::min(darkest, grey);
                lightest = std::max(lightest, grey);
            });
            if (page.At(x, y) < darkest - tolerance || page.At(x, y) > lightest + tolerance) {
                return "at " + std::to_string(x) + ", " + std::to_string(y);
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> Difference(const QImage &page, const QImage &stored) {
    if (page.size() != stored.size()) {
        return "in size";
    }
    const Greys greys = SoftGreysOf(page), storedGreys = SoftGreysOf(stored);
    const auto added = Stranger(greys, storedGreys);
    return added ? added : Stranger(storedGreys, greys);
}

class PrintedPages : public testing::Test {
protected:
    using Report = std::function<int(const PrintDevice &device)>;

    std::string Print(const Report &report, QPageSize::PageSizeId paper = QPageSize::A4) {
        const QByteArray pdf = PrintToPdf(paper, "title", report);
        return folder.WriteText("pages.pdf", pdf.toStdString());
    }
    std::vector<QImage> PagesOf(const std::string &pdf) {
        const std::string prefix = folder.File("page");
        const auto result =
            RunProgram({"/usr/bin/env", "pdftoppm", "-r", std::to_string(PixelsPerInch * Reduction),
                        "-gray", pdf, prefix});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        std::vector<std::string> names;
        for (const auto &file : std::filesystem::directory_iterator(folder.path)) {
            if (file.path().extension() == ".pgm") {
                names.push_back(file.path().string());
            }
        }
        std::ranges::sort(names);
        std::vector<QImage> pages;
        for (const std::string &name : names) {
            const QImage large(QString::fromStdString(name));
            pages.push_back(large
                                .scaled(large.size() / Reduction, Qt::IgnoreAspectRatio,
                                        Qt::SmoothTransformation)
                                .convertToFormat(QImage::Format_Grayscale8));
            std::filesystem::remove(name);
        }
        return pages;
    }
    static void ExpectStored(const QImage &page, const std::string &name) {
        const std::string path = SourceFile("tests/database/view/pages/" + name + ".png");
        if (std::getenv("TONEWRIGHT_NEW_PAGES")) {
            EXPECT_TRUE(page.save(QString::fromStdString(path), "PNG", 0));
        }
        const QImage stored(QString::fromStdString(path));
        ASSERT_FALSE(stored.isNull()) << path;
        const auto difference = Difference(page, stored);
        EXPECT_FALSE(difference) << name << " differs " << *difference;
    }

    // The first voices of a bank, each of another algorithm.
    static VoiceList Voices(int family, int count) {
        const TestFamily &test = TestFamilies[family];
        CurrentDriverId = SynthDrivers[static_cast<std::size_t>(family)]->id;
        VoiceList list;
        for (int index = 0; index < count; ++index) {
            TestBytes payload = TestPayloadOf(test, index);
            if (family == 0) {
                payload[134] = static_cast<std::uint8_t>(index); // the algorithm
            }
            ListAdd(list);
            ListSetVoice(list, index, TestVoiceWith(test, payload));
        }
        return list;
    }
    static Report VoiceReport(const VoiceList &list, const char *path = "/banks/bank.syx") {
        return [&list, path](const PrintDevice &device) {
            return PrintVoiceListReport(device, list, path, LocalTime(2026, 11, 14, 14, 5, 9));
        };
    }
    static RecordList Records(int family, int count) {
        const std::string names[] = {
            "Velvet Ep", "Br\xE4ss & Reeds", std::string(64, 'W'), "i",
            "A name of as many characters as the catalogue keeps of a one"};
        const std::string sources[] = {"factory.syx", std::string(64, 'm'), "a b.syx"};
        RecordList list;
        list.sorted = false;
        for (int index = 0; index < count; ++index) {
            const auto at = static_cast<std::size_t>(index);
            const TestEntry entry = {names[at % 5], sources[at % 3],
                                     static_cast<std::uint32_t>(index % 32),
                                     static_cast<std::uint32_t>(LocalTime(
                                         2026, 1 + index % 12, 1 + index % 28, index % 24, 5, 9))};
            const TestFamily &test = TestFamilies[family];
            RecordListAdd(list, {TestRecord(test, index % 32, entry)});
        }
        return list;
    }
    static Report RecordReport(const RecordList &list) {
        return [&list](const PrintDevice &device) {
            return PrintDatabaseReport(device, list, "Voices for Yamaha DX7, TX7, Korg Volca FM");
        };
    }
    static void SetFontSizes(std::uint32_t size) {
        DatabaseHeaderFontSize = DatabaseItemFontSize = DatabaseFooterFontSize = size;
    }

    const TempFolder folder;
};

// ---- the comparison itself

TEST_F(PrintedPages, WhatMovesOrIsMissingIsNoticed) {
    const RecordList list = Records(0, 40);
    const QImage page = PagesOf(Print(RecordReport(list))).at(0);
    EXPECT_FALSE(Difference(page, page));
    QImage blank = page;
    blank.fill(Qt::white);
    EXPECT_TRUE(Difference(blank, page));
    EXPECT_TRUE(Difference(page, blank));
    const auto moved = [&page](const QRect &area, int x, int y) {
        QImage other = page;
        QPainter painter(&other);
        painter.fillRect(area, Qt::white);
        painter.drawImage(area.topLeft() + QPoint(x, y), page.copy(area));
        painter.end();
        return other;
    };
    const QRect sources(200, 40, 154, 300), rule(0, 28, page.width(), 4), row(0, 60, 500, 6);
    EXPECT_FALSE(Difference(moved(sources, 0, 0), page));
    EXPECT_TRUE(Difference(moved(sources, 2, 0), page));
    EXPECT_TRUE(Difference(moved(sources, -2, 0), page));
    EXPECT_TRUE(Difference(moved(rule, 0, 2), page));
    EXPECT_TRUE(Difference(moved(row, page.width(), 0), page));
}

// ---- the voices

TEST_F(PrintedPages, AFullBankOfADx7) {
    const VoiceList list = Voices(0, 32);
    const auto pages = PagesOf(Print(VoiceReport(list)));
    ASSERT_EQ(pages.size(), 1u);
    ExpectStored(pages[0], "dx7-32-a4");
}

TEST_F(PrintedPages, AFullBankOfARefaceOnLetter) {
    const VoiceList list = Voices(1, 32);
    const auto pages = PagesOf(Print(VoiceReport(list, "/banks/bank.srx"), QPageSize::Letter));
    ASSERT_EQ(pages.size(), 1u);
    ExpectStored(pages[0], "reface-32-letter");
}

TEST_F(PrintedPages, PicturesOfAlgorithmsAreMadeOfLines) {
    for (const auto &[paper, family] : {std::pair(QPageSize::A4, 0), std::pair(QPageSize::A4, 1),
                                        std::pair(QPageSize::Letter, 1)}) {
        const VoiceList list = Voices(family, 32);
        EXPECT_LT(PrintToPdf(paper, "title", VoiceReport(list)).size(), 100'000) << family;
    }
}

TEST_F(PrintedPages, OneVoiceHasThePageForItself) {
    const VoiceList list = Voices(1, 1);
    const auto pages = PagesOf(Print(VoiceReport(list, "/banks/bank.srx")));
    ASSERT_EQ(pages.size(), 1u);
    ExpectStored(pages[0], "reface-1-a4");
}

TEST_F(PrintedPages, ALongTitleEndsInAnEllipsis) {
    const VoiceList list = Voices(0, 31);
    const std::string path = "/banks/" + std::string(60, 'm') + ".syx";
    const auto pages = PagesOf(Print(VoiceReport(list, path.c_str()), QPageSize::Letter));
    ASSERT_EQ(pages.size(), 1u);
    ExpectStored(pages[0], "dx7-31-letter");
}

TEST_F(PrintedPages, TheSecondCopyStandsALineLower) {
    const VoiceList list = Voices(0, 4);
    const Report report = VoiceReport(list);
    // A file holds one document: here the second one is a page of its own.
    const auto pages = PagesOf(Print([&report](const PrintDevice &device) {
        PrintDevice stack = device;
        int documents = 0;
        stack.copies = 2;
        stack.isFile = false;
        stack.StartDocument = [&] {
            return ++documents == 1 ? device.StartDocument() : device.NextPage();
        };
        stack.EndDocument = [] {};
        const int printed = report(stack);
        device.EndDocument();
        return printed;
    }));
    ASSERT_EQ(pages.size(), 2u);
    ExpectStored(pages[0], "dx7-4-a4");
    ExpectStored(pages[1], "dx7-4-a4-second-copy");
}

// ---- the catalogue

TEST_F(PrintedPages, ACatalogueOfThreePages) {
    const RecordList list = Records(0, 230);
    const auto pages = PagesOf(Print(RecordReport(list)));
    ASSERT_EQ(pages.size(), 3u);
    ExpectStored(pages[0], "catalogue-a4-1");
    ExpectStored(pages[2], "catalogue-a4-3");
}

TEST_F(PrintedPages, ACatalogueOnLetter) {
    const RecordList list = Records(1, 7);
    const auto pages = PagesOf(Print(RecordReport(list), QPageSize::Letter));
    ASSERT_EQ(pages.size(), 1u);
    ExpectStored(pages[0], "catalogue-letter");
}

TEST_F(PrintedPages, ACatalogueWithoutRecordsHasNoPage) {
    const RecordList list = Records(0, 0);
    EXPECT_TRUE(PrintToPdf(QPageSize::A4, "title", RecordReport(list)).isEmpty());
}

TEST_F(PrintedPages, LargeFontsGiveEachRowAPage) {
    const RecordList list = Records(0, 2);
    SetFontSizes(500);
    const auto pages = PagesOf(Print(RecordReport(list)));
    ASSERT_EQ(pages.size(), 2u);
    ExpectStored(pages[1], "catalogue-large-fonts");
}

TEST_F(PrintedPages, FontsOfAnySizeAndNameEndThePage) {
    const RecordList list = Records(0, 3);
    for (const std::uint32_t size : {1'001u, 65'536u, 2'147'483'648u, 4'294'967'295u}) {
        SetFontSizes(size);
        EXPECT_EQ(PagesOf(Print(RecordReport(list))).size(), 3u) << size;
    }
    SetFontSizes(0);
    DatabaseHeaderFontName = "no such family";
    DatabaseItemFontName = DatabaseFooterFontName = "";
    EXPECT_EQ(PagesOf(Print(RecordReport(list))).size(), 1u);
}

// ---- blanks

// The left and right ends of the words of a page, in points.
struct Word {
    double left, right;
    QString text;
};
std::vector<Word> WordsOf(const std::string &pdf) {
    const auto result = RunProgram({"/usr/bin/env", "pdftotext", "-bbox", pdf, "-"});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    // <word xMin="55.1" yMin="44.7" xMax="58.9" yMax="53.2">1</word>
    static const QRegularExpression pattern(
        "<word xMin=.([0-9.]+). yMin=.[0-9.]+. xMax=.([0-9.]+). yMax=.[0-9.]+.>([^<]*)<");
    std::vector<Word> words;
    auto found = pattern.globalMatch(QString::fromStdString(result.output));
    while (found.hasNext()) {
        const auto match = found.next();
        words.push_back(
            {match.captured(1).toDouble(), match.captured(2).toDouble(), match.captured(3)});
    }
    return words;
}

TEST_F(PrintedPages, TheBlanksBehindANumberKeepItFromTheName) {
    const RecordList list = Records(0, 1);
    const auto words = WordsOf(Print(RecordReport(list)));
    const auto number = std::ranges::find(words, QStringLiteral("1"), &Word::text);
    ASSERT_NE(number, words.end());
    // The column ends at 752 units of a 1200th of an inch inside a margin of 10 points, and two
    // blanks of the font are 2 * 0.278 * 113 units wide.
    EXPECT_NEAR(number->right, 10 + 752 * 0.06 - 63 * 0.06, 0.5);
    EXPECT_NEAR(std::next(number)->left, 10 + 752 * 0.06, 0.5);
}

} // namespace
} // namespace tonewright
