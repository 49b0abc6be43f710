// Single settings in the text of a file, by section and name.
#include "shell/single_setting.h"

#include "settings_fixture.h"

using namespace tonewright;

namespace {

struct SingleSetting : SettingsHome {
    std::string SingleText(const char *section, const char *name, const std::string &fallback) {
        return ReadSingleText(path.c_str(), section, name, fallback);
    }
    std::uint32_t SingleInteger(const char *section, const char *name, std::uint32_t fallback) {
        return ReadSingleInteger(path.c_str(), section, name, fallback);
    }
    bool WriteSingle(const char *section, const char *name, const std::string &value) {
        return WriteSingleText(path.c_str(), section, name, value);
    }
};

} // namespace

TEST_F(SingleSetting, AKeyIsReadFromItsSectionWithoutTheRest) {
    WriteTestText(path, ";comment\nTipFont01Size = 1\n[Other]\nTipFont01Size = 2\n"
                        "[Tonewright]\nTip = 3\nTipFont01Size = 20\nThemeCurrent = Slate Medium\n"
                        "[More]\nTipFont01Size = 4\n");
    EXPECT_EQ(SingleInteger("Tonewright", "TipFont01Size", 16), 20u);
    EXPECT_EQ(SingleText("Tonewright", "ThemeCurrent", "none"), "Slate Medium");
    EXPECT_EQ(SingleInteger("Other", "TipFont01Size", 16), 2u);
    EXPECT_EQ(ReadSingleInteger(path.c_str(), "More", "TipFont01Size", 16), 4u);
    EXPECT_EQ(TipFont01Size, 16u);
    EXPECT_EQ(ThemeCurrent, "");
}

TEST_F(SingleSetting, AKeyThatIsMissingGivesTheFallback) {
    EXPECT_EQ(SingleInteger("Tonewright", "TipFont01Size", 16), 16u); // no file
    WriteTestText(path, "[Tonewright]\nTipFont01SizeX = 20\nTip = 5\n;TipFont01Size = 4\n");
    EXPECT_EQ(SingleInteger("Tonewright", "TipFont01Size", 16), 16u);
    EXPECT_EQ(SingleText("Tonewright", "ThemeCurrent", "none"), "none");
    EXPECT_EQ(SingleText("Nowhere", "Tip", "none"), "none");
}

TEST_F(SingleSetting, ASingleKeyIsFoundWithoutRegardToCaseOrLineEnds) {
    WriteTestText(path, "[TONEWRIGHT]\r\n  tipfont01size=20\r\nThemeCurrent =\r\nOpenPath = a b ");
    EXPECT_EQ(SingleInteger("Tonewright", "TipFont01Size", 16), 20u);
    EXPECT_EQ(SingleText("Tonewright", "ThemeCurrent", "none"), "");
    EXPECT_EQ(SingleText("Tonewright", "OpenPath", "none"), "a b");
}

TEST_F(SingleSetting, ASingleTextIsAtMost260Bytes) {
    WriteTestText(path, "[Tonewright]\nThemeCurrent = " + std::string(1 << 20, 'x') + "\n");
    EXPECT_EQ(SingleText("Tonewright", "ThemeCurrent", ""), std::string(260, 'x'));
}

TEST_F(SingleSetting, WritingASingleKeyLeavesEveryOtherLineAsItIs) {
    const std::string front = ";c\r\n\n\xFF\xFE junk\n[Other]\nShowWelcomeWizard = 1\n"
                              "[Tonewright]\nMaxUndoLevel=7\n" +
                              std::string(1000, 'y') + "\n";
    const std::string back = "\n\nThemeCurrent = Slate\n[More]\nShowWelcomeWizard = 1\nno end";
    WriteTestText(path, front + "ShowWelcomeWizard   ==  1\n" + back);
    EXPECT_TRUE(WriteSingle("Tonewright", "ShowWelcomeWizard", "0"));
    EXPECT_EQ(ReadRawText(path), front + "ShowWelcomeWizard = 0\n" + back);
    EXPECT_EQ(SingleInteger("Tonewright", "ShowWelcomeWizard", 9), 0u);
    EXPECT_EQ(FilesOfMaker(), std::vector<std::string>{"Tonewright 17.ini"});
}

TEST_F(SingleSetting, ASingleKeyThatIsMissingIsAddedToTheEndOfItsSection) {
    WriteTestText(path, "[Tonewright]\nA = 1\n\n[More]\nB = 2\n");
    EXPECT_TRUE(WriteSingle("Tonewright", "ShowWelcomeWizard", "0"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\nA = 1\nShowWelcomeWizard = 0\n\n[More]\nB = 2\n");
    EXPECT_TRUE(WriteSingle("More", "C", "3"));
    EXPECT_EQ(ReadRawText(path),
              "[Tonewright]\nA = 1\nShowWelcomeWizard = 0\n\n[More]\nB = 2\nC = 3\n");
}

TEST_F(SingleSetting, ALineThatIsWrittenEndsAsTheFilesLinesDo) {
    WriteTestText(path, "[Tonewright]\r\nA = 1\r\n");
    EXPECT_TRUE(WriteSingle("Tonewright", "A", "2"));
    EXPECT_TRUE(WriteSingle("Tonewright", "B", "3"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\r\nA = 2\r\nB = 3\r\n");
    WriteTestText(path, "[Tonewright]\n[Last]\r");
    EXPECT_TRUE(WriteSingle("Last", "B", "3"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\n[Last]\r\nB = 3\n");
    EXPECT_TRUE(WriteSingle("Last", "B", "4"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\n[Last]\r\nB = 4\n");
}

TEST_F(SingleSetting, ALineThatIsWrittenIsReadAsOneLineWithItsEnd) {
    for (const std::string end : {"\n", "\r\n"}) {
        WriteTestText(path, "[Tonewright]" + end + "ThemeCurrent = 1" + end);
        EXPECT_TRUE(WriteSingle("Tonewright", "ThemeCurrent", std::string(300, 'x')));
        const std::size_t size = 259 - end.size() - std::string("ThemeCurrent = ").size();
        EXPECT_EQ(ReadRawText(path),
                  "[Tonewright]" + end + "ThemeCurrent = " + std::string(size, 'x') + end);
        AuditionCurrentOctave = 7;
        ConfigRead();
        EXPECT_EQ(AuditionCurrentOctave, 7u);
    }
}

TEST_F(SingleSetting, ASectionThatIsMissingIsAddedToTheEndOfTheFile) {
    WriteTestText(path, "A = 1\n[More]\nB = 2");
    EXPECT_TRUE(WriteSingle("Tonewright", "ShowWelcomeWizard", "0"));
    EXPECT_EQ(ReadRawText(path), "A = 1\n[More]\nB = 2\n[Tonewright]\nShowWelcomeWizard = 0\n");
}

TEST_F(SingleSetting, AFileThatIsMissingIsMade) {
    EXPECT_TRUE(WriteSingle("Tonewright", "ShowWelcomeWizard", "0"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\nShowWelcomeWizard = 0\n");
    WriteTestText(path, "");
    EXPECT_TRUE(WriteSingle("Tonewright", "ShowWelcomeWizard", ""));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\nShowWelcomeWizard = \n");
}

TEST_F(SingleSetting, ASingleKeyThatCannotBeWrittenIsReported) {
    EXPECT_FALSE(WriteSingleText(temp.Folder().c_str(), "Tonewright", "A", "0"));
    EXPECT_FALSE(WriteSingleText(temp.File("no/where.ini").c_str(), "Tonewright", "A", "0"));
    EXPECT_FALSE(WriteSingleText("", "Tonewright", "A", "0"));
    EXPECT_FALSE(temp.Holds("no"));
}

TEST_F(SingleSetting, OfTwoSectionsOfOneNameTheFirstCounts) {
    const std::string second = "[Other]\nC = 3\n[Tonewright]\nA = 4\nB = 5\n";
    WriteTestText(path, "[Tonewright]\nA = 1\n" + second);
    EXPECT_EQ(SingleInteger("Tonewright", "A", 9), 1u);
    EXPECT_EQ(SingleInteger("Tonewright", "B", 9), 9u);
    EXPECT_TRUE(WriteSingle("Tonewright", "A", "2"));
    EXPECT_TRUE(WriteSingle("Tonewright", "B", "6"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\nA = 2\nB = 6\n" + second);
    // One that follows at once is another section all the same.
    WriteTestText(path, "[Tonewright]\n[Tonewright]\nA = 4\n");
    EXPECT_EQ(SingleInteger("Tonewright", "A", 9), 9u);
    EXPECT_TRUE(WriteSingle("Tonewright", "A", "7"));
    EXPECT_EQ(ReadRawText(path), "[Tonewright]\nA = 7\n[Tonewright]\nA = 4\n");
}
