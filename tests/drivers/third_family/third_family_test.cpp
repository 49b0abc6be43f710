// A third family, which is one folder and one line: it opens, shows, undoes, copies, judges and
// saves through the window and the command line, neither of which knows of it.
#include "common/platform.h"
#include "common/text.h"
#include "shell/view/window_fixture.h"
#include "support/run_program.h"

#include <algorithm>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

std::vector<std::uint8_t> Bank() {
    const std::string text = "CHIM"
                             "Ding\1."
                             "Dong\2."
                             "Bim \3."
                             "Bam \4."
                             "Bum \5."
                             "Klng\6."
                             "Toll\7."
                             "Peal\x8.";
    return {text.begin(), text.end()};
}

class ThirdFamily : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        path = home.Write("tower.chm", Bank());
        PendingOpenPath = path;
        ASSERT_EQ(RunCommand(CommandOpen), 1);
    }
    // The pixels of the picture that the family paints of a voice.
    int RedPixels(int row) {
        const QImage image = Viewport()->grab(list->RowRectangle(row)).toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += image.pixelColor(x, y) == QColor(Qt::red);
            }
        }
        return count;
    }
    std::string path;
};

TEST_F(ThirdFamily, OpensAndShowsItsVoices) {
    EXPECT_EQ(CurrentDriverId, MakeDriverId("chim"));
    EXPECT_EQ(Names(0, 7), (Strings{"Ding", "Dong", "Bim", "Bam", "Bum", "Klng", "Toll", "Peal"}));
    EXPECT_EQ(ListCount(MainList), 8);
    EXPECT_EQ(RedPixels(1), 400);
    EXPECT_STREQ(SynthTitle(CurrentDriverId, 0), "Chimes");
}

TEST_F(ThirdFamily, CopiesAndUndoesABankOfItsOwnLength) {
    ClickRow(1);
    EXPECT_EQ(RunCommand(CommandCopy), 1);
    ClickRow(6);
    EXPECT_EQ(RunCommand(CommandPaste), 1);
    EXPECT_EQ(NameAt(6), "Dong");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(ListCount(MainList), 8);
    EXPECT_EQ(NameAt(6), "Toll");
}

TEST_F(ThirdFamily, MovesAndSavesItsVoices) {
    DragRow(1, 0);
    EXPECT_EQ(Names(0, 2), (Strings{"Dong", "Ding", "Bim"}));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    auto expected = Bank();
    std::swap_ranges(expected.begin() + 4, expected.begin() + 10, expected.begin() + 10);
    EXPECT_EQ(ReadTestFile(path), expected);
}

TEST_F(ThirdFamily, AsksBeforeItOpensADamagedBank) {
    auto bank = Bank();
    bank[8] = 10;
    PendingOpenPath = home.Write("damaged.chm", bank);
    desktop.ExpectYesNo("Damaged?", ResultYes);
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(NameAt(0), "Ding");
}

struct ThirdFamilyCli : testing::Test {
    TempFolder folder;

    static ProgramResult Run(std::vector<std::string> words) {
        words.insert(words.begin(), FolderOfPath(PlatformExecutablePath()) + "/third_family-cli");
        return RunProgram(words);
    }
};

TEST_F(ThirdFamilyCli, ListsAndJudgesItsFiles) {
    auto damaged = Bank(), cut = Bank();
    damaged[8] = 10;
    cut.pop_back();
    const std::string good = folder.Write("good.chm", Bank()),
                      bad = folder.Write("bad.chm", damaged), tail = folder.Write("cut.CHM", cut);
    const ProgramResult result = Run({"check", good, bad, tail});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, good + "\tok\t8\n" + bad + "\tdamaged\ta tune that nobody can play\n" +
                                 tail + "\trefused\t51 bytes instead of 52\n");
    EXPECT_EQ(Run({"list", good}).output, "1\tDing\t2\n2\tDong\t3\n3\tBim\t4\n4\tBam\t5\n"
                                          "5\tBum\t6\n6\tKlng\t7\n7\tToll\t8\n8\tPeal\t9\n");
    EXPECT_NE(Run({"check", "a.xyz"}).output.find("(syx, sy1, srx, sr1, chm, ch1)"),
              std::string::npos);
}

TEST_F(ThirdFamilyCli, SavesExportsAndImports) {
    const std::string bank = folder.Write("in.chm", Bank());
    const std::string voice = folder.File("voice.ch1"), out = folder.File("out.chm");
    EXPECT_EQ(Run({"save", bank, out}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(out), Bank());
    EXPECT_EQ(Run({"export", bank, "2", voice}).exitStatus, 0);
    EXPECT_EQ(ReadTestText(voice), "CHI1Dong\2.");
    EXPECT_EQ(Run({"import", bank, "8", voice, out}).exitStatus, 0);
    auto expected = Bank();
    std::copy_n(expected.begin() + 10, 6, expected.begin() + 46);
    EXPECT_EQ(ReadTestFile(out), expected);
}

TEST_F(ThirdFamilyCli, HasNoParametersToShowOrEditWhereItsRowNamesNone) {
    const std::string bank = folder.Write("bells.chm", Bank());
    for (const std::vector<std::string> &words :
         {std::vector<std::string>{"show", bank, "1"}, {"edit", bank, "1", "name=Dong", bank}}) {
        const ProgramResult result = Run(words);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.ends_with(" are not known\n")) << result.errors;
        EXPECT_EQ(ReadTestFile(bank), Bank());
    }
}

TEST_F(ThirdFamilyCli, IsNotRenderedWithoutABuiltInInstrument) {
    const ProgramResult result =
        Run({"render", folder.Write("in.chm", Bank()), "1", folder.File("out.wav")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: Chimes: there is no built-in instrument that plays "
                             "its voices\n");
    EXPECT_FALSE(folder.Holds("out.wav"));
}

TEST_F(ThirdFamilyCli, IsNotSentWhereItHasNoTransfer) {
    const std::string bank = folder.Write("in.chm", Bank());
    const ProgramResult result = Run({"upload", bank});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_NE(result.errors.find("the Chimes"), std::string::npos) << result.errors;
}

} // namespace
} // namespace tonewright
