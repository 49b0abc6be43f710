// The commands that print into PDFs, as their users see them.
#include "run_cli.h"

#include "database/local_time.h"
#include "database/test_catalogue.h"
#include "support/environment.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace tonewright {
namespace {

const TestFamily &Dx7 = TestFamilies[0];

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

bool Matches(const std::string &text, const std::string &pattern) {
    return std::regex_search(text, std::regex(pattern));
}

class CliPrint : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
        SetVariable("SOURCE_DATE_EPOCH", std::to_string(LocalTime(2026, 11, 14, 14, 5, 9)));
        std::filesystem::create_directories(home.path / ".config/Quillbrook");
    }
    void TearDown() override { RemoveVariable("SOURCE_DATE_EPOCH"); }

    // A call that fails and writes no file.
    void ExpectNoPrint(const std::vector<std::string> &arguments, const std::string &reason,
                       int status = 1) const {
        ExpectFailure(arguments, reason, status);
        EXPECT_FALSE(home.Holds("out.pdf"));
    }
    std::string Said(const std::vector<std::string> &command) const {
        std::vector<std::string> words = {"/usr/bin/env"};
        words.insert(words.end(), command.begin(), command.end());
        const auto result = RunProgram(words);
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        return result.output;
    }
    std::string Text() const { return Said({"pdftotext", "-layout", Out, "-"}); }
    std::string Facts() const { return Said({"pdfinfo", Out}); }
    void WriteSettings(const std::string &text) const {
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), text);
    }
    std::string Bank() const { return home.Write("My bank.syx", TestBank()); }
    // Three records in the order of neither name, source, date nor position.
    std::string Catalogue() const {
        TestBytes file = TestCatalogueHeader(Dx7, 3);
        const auto date = [](int day) {
            return static_cast<std::uint32_t>(LocalTime(2026, 11, day, 14, 5, 9));
        };
        for (const TestEntry &entry :
             {TestEntry{"middle", "c.syx", 4, date(3)}, TestEntry{"zebra", "b.syx", 5, date(1)},
              TestEntry{"ant", "d.syx", 3, date(2)}}) {
            const TestBytes record = TestRecord(Dx7, 0, entry);
            file.insert(file.end(), record.begin(), record.end());
        }
        return home.Write("Live.syx_db", file);
    }

    const TempFolder home;
    const std::string Out = home.File("out.pdf");
};

TEST_F(CliPrint, ABankGoesOntoOnePageOfA4) {
    ExpectDone({"print", Bank(), Out});
    const std::string text = Text(), facts = Facts();
    EXPECT_TRUE(Contains(text, "My bank.syx ( Yamaha DX7, TX7, Korg Volca FM )")) << text;
    EXPECT_TRUE(Contains(text, "printed on Sat Nov 14 2:05 PM 2026")) << text;
    for (const char *part : {"Voice 1", "VOICE 01", "Voice 32", "VOICE 32"}) {
        EXPECT_TRUE(Contains(text, part)) << part;
    }
    EXPECT_TRUE(Contains(facts, "Pages:           1\n")) << facts;
    EXPECT_TRUE(Contains(facts, "(A4)")) << facts;
    EXPECT_TRUE(Contains(facts, "Title:           My bank.syx\n")) << facts;
    EXPECT_TRUE(Contains(facts, "Creator:         Tonewright\n")) << facts;
}

TEST_F(CliPrint, AFileOfAnyPathIsReplacedWithoutABackup) {
    const std::string folder = home.File(std::string(200, 'd')), name(80, 'f');
    std::filesystem::create_directory(folder);
    const std::string bank = home.Write("a.syx", TestBank()), out = folder + "/" + name + ".pdf";
    ExpectDone({"print", bank, out});
    ExpectDone({"print", bank, out});
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
}

TEST_F(CliPrint, TheSizeOfThePaperMayBeLetter) {
    for (const char *paper : {"Letter", "letter"}) {
        ExpectDone({"print", Bank(), Out, "--paper", paper});
        EXPECT_TRUE(Contains(Facts(), "612 x 792 pts (letter)")) << Facts();
    }
    ExpectDone({"db", "print", Out, "--database", Catalogue(), "--paper=LETTER"});
    EXPECT_TRUE(Contains(Facts(), "612 x 792 pts (letter)")) << Facts();
    ExpectDone({"print", Bank(), Out, "--paper", "a4"});
    EXPECT_TRUE(Contains(Facts(), "(A4)")) << Facts();
}

TEST_F(CliPrint, APresentTimeThatIsNoneIsTheClocks) {
    SetVariable("SOURCE_DATE_EPOCH", "tomorrow");
    ExpectDone({"print", Bank(), Out});
    EXPECT_FALSE(Contains(Text(), " 1970"));
    EXPECT_TRUE(Contains(Text(), "printed on "));
}

TEST_F(CliPrint, AWrongCallWritesNothing) {
    const std::string bank = Bank(), catalogue = Catalogue();
    for (const char *paper : {"", "A5", "A4 "}) {
        const std::string reason = std::string(*paper ? paper : "") + (*paper ? ": " : "") +
                                   "not a size of paper: A4 and Letter are";
        ExpectNoPrint({"print", bank, Out, "--paper", paper}, reason, 2);
        ExpectNoPrint({"db", "print", Out, "--database", catalogue, "--paper", paper}, reason, 2);
    }
    ExpectNoPrint({"db", "print", Out, "--database", catalogue, "--sort", "size"},
                  "size: not an order: name, source, date and position are", 2);
    const std::string png = home.File("out.png");
    ExpectNoPrint({"print", bank, png},
                  png + ": the extension of the file to write must be \"pdf\"", 2);
    ExpectNoPrint({"db", "print", png, "--database", catalogue},
                  png + ": the extension of the file to write must be \"pdf\"", 2);
    EXPECT_FALSE(home.Holds("out.png"));
    EXPECT_EQ(Cli({"print", bank}).exitStatus, 2);
    EXPECT_EQ(Cli({"print", bank, Out, "--sort", "name"}).exitStatus, 2);
    EXPECT_EQ(Cli({"db", "print"}).exitStatus, 2);
    EXPECT_EQ(ReadTestFile(bank), TestBank());
}

TEST_F(CliPrint, ABankThatCannotBeReadIsTold) {
    const std::string none = home.File("none.syx");
    ExpectNoPrint({"print", none, Out}, none + ": not readable: No such file or directory");
}

TEST_F(CliPrint, WhereTheFileCannotBeWrittenTheReasonIsTold) {
    const std::string nowhere = home.File("no folder/out.pdf");
    ExpectNoPrint({"print", Bank(), nowhere},
                  nowhere + ": could not be written: No such file or directory");
    ExpectNoPrint({"db", "print", nowhere, "--database", Catalogue()},
                  nowhere + ": could not be written: No such file or directory");
}

TEST_F(CliPrint, ACatalogueIsPrintedInTheOrderOfItsFileOrAsItIsAsked) {
    const std::string catalogue = Catalogue();
    const TestBytes before = ReadTestFile(catalogue);
    const struct {
        std::vector<std::string> options;
        const char *first, *second, *third;
    } cases[] = {
        {{}, "1 +middle", "2 +zebra", "3 +ant"},
        {{"--sort", "name"}, "1 +ant", "2 +middle", "3 +zebra"},
        {{"--sort", "source"}, "1 +zebra", "2 +middle", "3 +ant"},
        {{"--sort", "date"}, "1 +zebra", "2 +ant", "3 +middle"},
        {{"--sort", "position"}, "1 +ant", "2 +middle", "3 +zebra"},
    };
    for (const auto &one : cases) {
        std::vector<std::string> call = {"db", "print", Out, "--database", catalogue};
        call.insert(call.end(), one.options.begin(), one.options.end());
        ExpectDone(call);
        const std::string text = Text();
        const auto line = [](const char *words) { return std::string("\n *") + words + " [^\n]*"; };
        EXPECT_TRUE(Matches(text, line(one.first) + line(one.second) + line(one.third))) << text;
    }
    EXPECT_TRUE(Contains(Text(), "Live for Yamaha DX7, TX7, Korg Volca FM"));
    EXPECT_TRUE(Contains(Text(), "Sun Nov 1 2:05:09 PM 2026"));
    EXPECT_TRUE(Contains(Text(), "Page 1"));
    EXPECT_EQ(ReadTestFile(catalogue), before);
}

TEST_F(CliPrint, TheFontsAreThoseOfTheSettings) {
    const std::string catalogue = Catalogue();
    WriteSettings("DatabaseItemFontSize = 2000\n");
    ExpectDone({"db", "print", Out, "--database", catalogue});
    // The second row of 10,000 units begins on the first page.
    EXPECT_TRUE(Contains(Facts(), "Pages:           2\n")) << Facts();
    ExpectDone({"print", Bank(), Out});
    EXPECT_TRUE(Contains(Facts(), "Pages:           1\n")) << Facts();
}

TEST_F(CliPrint, ACatalogueWithoutRecordsIsAFailure) {
    const std::string empty = home.Write("Empty.syx_db", TestCatalogue(Dx7, 0, 0));
    const std::string reason = empty + ": not printed: there are no records in it";
    ExpectNoPrint({"db", "print", Out, "--database", empty}, reason);
    // Nor are there any that could be read.
    TestBytes bad = TestCatalogue(Dx7, 2, 2);
    bad[152] = bad[152 + 446] = 0;
    home.Write("Empty.syx_db", bad);
    ExpectNoPrint({"db", "print", Out, "--database", empty}, reason);
}

TEST_F(CliPrint, ABadRecordIsLeftOut) {
    TestBytes bad = TestCatalogue(Dx7, 3, 3);
    bad[152 + 446] = 0;
    ExpectDone({"db", "print", Out, "--database", home.Write("Bad.syx_db", bad)});
    EXPECT_TRUE(Matches(Text(), "\n *1 +Name 0 [^\n]*\n *2 +Name 2 ")) << Text();
}

TEST_F(CliPrint, WhatIsNoCatalogueIsTold) {
    const std::string none = home.File("none.syx_db");
    ExpectNoPrint({"db", "print", Out, "--database", none},
                  none + ": not readable: No such file or directory");
}

} // namespace
} // namespace tonewright
