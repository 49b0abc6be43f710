// The table of settings, and the file that keeps them.
#include "shell/settings_file.h"

#include "common/platform.h"
#include "settings_fixture.h"
#include "shell/single_setting.h"
#include "shell/start_up.h"
#include "shell/undo.h"
#include "support/scripted_desktop.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <random>

using namespace tonewright;

namespace {

using SettingsFile = SettingsHome;

// A line has at most 259 bytes with its end, which is longer on Windows.
const std::size_t LineEndSize = PlatformLines("\n").size();

constexpr std::uint32_t B = 0x1, T = 0x2, I = 0x4, List = 0x10, Spin = 0x40, WriteOnly = 0x100,
                        Restart = 0x8000;

struct Row {
    const char *name;
    std::uint32_t flags;
    const char *value; // the default as it stands in the file; null: the day of the build
    std::uint32_t control;
};

// The whole table, in its order.
const Row Rows[] = {
    {"ApplicationPath", T | WriteOnly, "", 0},
    {"AuditionCurrentOctave", I, "5", 0},
    {"AuditionCurrentVelocity", I, "100", 0},
    {"BuildDate", T | WriteOnly, nullptr, 0},
    {"ColourTableFile", T, "TNWRGT.CCL", 0},
    {"CreateBackups", B, "1", 139},
    {"CurrentMidiChannel", I | Spin, "1", 118},
    {"DatabaseCurrentName", T, "Voices", 0},
    {"DatabaseFooterFontName", T, "Arial", 0},
    {"DatabaseFooterFontSize", I, "16", 0},
    {"DatabaseHeaderFontName", T, "Arial", 0},
    {"DatabaseHeaderFontSize", I, "32", 0},
    {"DatabaseItemFontName", T, "Arial", 0},
    {"DatabaseItemFontSize", I, "14", 0},
    {"DatabaseMakePrettyNames", B, "1", 114},
    {"DatabaseManFieldDelay", I, "600", 0},
    {"DatabaseNoDuplicates", B, "1", 116},
    {"DatabaseSortMode", I, "107", 0},
    {"DefaultPrinterName", T, "", 0},
    {"DialogUpdateTime", I, "250", 0},
    {"DocumentBrowserFlags", I, "127", 0},
    {"DocumentBrowserPath", T, "", 0},
    {"DownloadOnOpen", B, "0", 112},
    {"FileMenuRange", I, "10", 0},
    {"FileTipDelay", I, "500", 0},
    {"FileTipShow", B, "1", 117},
    {"FileWindowX", I, "0", 0},
    {"FileWindowY", I, "0", 0},
    {"ImageFileOpenIndex", I, "0", 0},
    {"LastTipDate", I, "0", 0},
    {"MaxUndoLevel", I | Spin | Restart, "3", 141},
    {"MiddleButtonAudition", B, "1", 146},
    {"OpenExportPath", T, "", 0},
    {"OpenImportPath", T, "", 0},
    {"OpenPath", T, "", 0},
    {"OpenRecentDocument", B, "0", 140},
    {"PatchLevel", I | WriteOnly, "1", 0},
    {"RecentDocumentPath", T, "", 0},
    {"RememberFileHistoryCount", I | Spin | Restart, "10", 144},
    {"RememberFileHistoryCover", B | Restart, "1", 145},
    {"RememberFileHistoryEnable", B | Restart, "1", 143},
    {"RememberFileHistorySize", I, "48", 0},
    {"SelectKeyboardAutodetect", B, "1", 0},
    {"SelectKeyboardMidiIn", T, "", 0},
    {"SelectKeyboardMidiOut", T, "", 0},
    {"SelectKeyboardName", T, "", 0},
    {"SetupPageIndex", I, "0", 0},
    {"ShowDriverMessage", B, "1", 0},
    {"ShowStartupWindow", B, "1", 105},
    {"ShowTipOfTheDay", B, "1", 133},
    {"SoftButtons", I | List, "1", 134},
    {"StartMonday", B, "0", 0},
    {"SysexWait", I, "1500", 0},
    {"TipFont01Size", I, "16", 0},
    {"TipOfTheDay", I, "0", 0},
    {"ThemeCurrent", T, "", 0},
    {"VerboseRightClickMenu", B, "1", 113},
    {"VersionNumber", I | WriteOnly, "544", 0},
    {"VoiceEditPage", I, "0", 0},
    {"WarnDatabaseChanged", B, "1", 115},
    {"WarnShowManual", B, "1", 108},
    {"ShowWelcomeWizard", B, "1", 0},
};

const std::string Header = ";Tonewright configuration file\n"
                           ";Edit this at your own risk\n"
                           ";Tonewright 17.0a revision 1\n"
                           ";Last updated ";

} // namespace

TEST_F(SettingsFile, TheTableHasEveryKeyInItsOrderWithItsTypeAndControl) {
    ASSERT_EQ(ProgramSettings.rows.size(), std::size(Rows));
    for (std::size_t i = 0; i < std::size(Rows); ++i) {
        EXPECT_STREQ(ProgramSettings.rows[i].name, Rows[i].name);
        EXPECT_EQ(ProgramSettings.rows[i].flags, Rows[i].flags) << Rows[i].name;
        EXPECT_EQ(ProgramSettings.rows[i].control, Rows[i].control) << Rows[i].name;
        EXPECT_EQ(std::get<const SettingChoice *>(ProgramSettings.rows[i].items), nullptr)
            << Rows[i].name;
        const bool text = (Rows[i].flags & T) != 0;
        EXPECT_EQ(std::holds_alternative<std::string *>(ProgramSettings.rows[i].value), text)
            << Rows[i].name;
    }
}

TEST_F(SettingsFile, TheFirstWriteCreatesTheFileWithAllKeysAndTheirDefaults) {
    ConfigRead(); // no file: no change
    const std::time_t before = std::time(nullptr);
    ConfigWrite();
    const std::time_t after = std::time(nullptr);
    const std::string text = ReadTestText(path);
    ASSERT_TRUE(text.starts_with(Header));
    const std::string stamp = text.substr(Header.size(), 24);
    bool stampIsNow = false;
    for (std::time_t time = before; time <= after; ++time) {
        stampIsNow = stampIsNow || std::string(std::ctime(&time)).substr(0, 24) == stamp;
    }
    EXPECT_TRUE(stampIsNow) << stamp;
    std::string expected = "\n;\n[Tonewright]\n";
    for (const Row &row : Rows) {
        expected += std::string(row.name) + " = " + (row.value ? row.value : BuildDate) + "\n";
    }
    EXPECT_EQ(text.substr(Header.size() + 24), expected);
    EXPECT_EQ(FilesOfMaker(), std::vector<std::string>{"Tonewright 17.ini"});
}

TEST_F(SettingsFile, WhatIsWrittenIsReadAgain) {
    MaxUndoLevel = 7;
    CreateBackups = 0;
    LastTipDate = 0x0B1607EA;
    OpenPath = "/home/J\xC3\xBCrgen/My banks/";
    SelectKeyboardMidiIn = "reface DX MIDI 1 = in";
    ThemeCurrent = "";
    ConfigWrite();
    MaxUndoLevel = 1;
    CreateBackups = 1;
    LastTipDate = 0;
    OpenPath = SelectKeyboardMidiIn = ThemeCurrent = "x";
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 7u);
    EXPECT_EQ(CreateBackups, 0u);
    EXPECT_EQ(LastTipDate, 0x0B1607EAu);
    EXPECT_EQ(OpenPath, "/home/J\xC3\xBCrgen/My banks/");
    EXPECT_EQ(SelectKeyboardMidiIn, "reface DX MIDI 1 = in");
    EXPECT_EQ(ThemeCurrent, "");
}

TEST_F(SettingsFile, AnAbsentFileLeavesTheDefaults) {
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
    EXPECT_EQ(ColourTableFile, "TNWRGT.CCL");
    EXPECT_TRUE(FilesOfMaker().empty());
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, path.c_str()), 0);
}

TEST_F(SettingsFile, AFolderKeyKeepsItsDefaultWhenItIsAbsentAndLosesItToAnEmptyText) {
    PlatformFolders.documents = "/home/me/Documents";
    FillDefaultFolders();
    Read("OpenImportPath = \nOpenExportPath = /elsewhere/\n");
    const std::string separator(1, PathSeparator);
    EXPECT_EQ(OpenPath,
              "/home/me/Documents" + separator + "My Tonewright 17 Documents" + separator);
    EXPECT_EQ(OpenImportPath, "");
    EXPECT_EQ(OpenExportPath, "/elsewhere/");
}

TEST_F(SettingsFile, BlanksAndEqualSignsAreSkippedInAnyNumber) {
    Read("MaxUndoLevel=7\n");
    EXPECT_EQ(MaxUndoLevel, 7u);
    Read("MaxUndoLevel   ==  8\n");
    EXPECT_EQ(MaxUndoLevel, 8u);
    Read("MaxUndoLevel 9\n");
    EXPECT_EQ(MaxUndoLevel, 9u);
    Read("DatabaseCurrentName  ====   Basses = low  \n");
    EXPECT_EQ(DatabaseCurrentName, "Basses = low  ");
    Read("DatabaseCurrentName = = low\n"); // blanks, equal signs, blanks: then the value begins
    EXPECT_EQ(DatabaseCurrentName, "= low");
}

TEST_F(SettingsFile, AShortenedKeySetsTheFirstKeyWithThatBeginning) {
    Read("Max = 5\n");
    EXPECT_EQ(MaxUndoLevel, 5u);
    Read("Database = Pads\n");
    EXPECT_EQ(DatabaseCurrentName, "Pads");
    Read("D = Strings\n");
    EXPECT_EQ(DatabaseCurrentName, "Strings");
    EXPECT_EQ(DatabaseFooterFontName, "Arial");
}

TEST_F(SettingsFile, AKeyIsMatchedWithItsCaseAndNotWhenItIsLonger) {
    Read("maxundolevel = 5\nMaxUndoLevels = 6\n");
    EXPECT_EQ(MaxUndoLevel, 3u);
}

TEST_F(SettingsFile, WriteOnlyKeysAreNotReadBack) {
    Read("Version = 3\nVersionNumber = 4\nPatchLevel = 5\nBuildDate = long ago\n"
         "ApplicationPath = /elsewhere/\n");
    EXPECT_EQ(VersionNumber, 544u);
    EXPECT_EQ(PatchLevel, 1u);
    EXPECT_NE(BuildDate, "long ago");
    EXPECT_EQ(ApplicationPath, "");
    // "A" is not the write-only ApplicationPath but the row behind it.
    Read("A = 2\n");
    EXPECT_EQ(AuditionCurrentOctave, 2u);
}

TEST_F(SettingsFile, CommentsAndSectionsAndUnknownKeysAreIgnored) {
    Read(";MaxUndoLevel = 9\n[Tonewright]\n[Max] = 4\nUnknown = 7\n");
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
}

TEST_F(SettingsFile, TheReaderDoesNotLookAtSections) {
    Read("MaxUndoLevel = 4\n[Somewhere else]\nSoftButtons = 2\n");
    EXPECT_EQ(MaxUndoLevel, 4u);
    EXPECT_EQ(SoftButtons, 2u);
}

TEST_F(SettingsFile, ABoolThatReadsYesIs0) {
    Read("CreateBackups = yes\nFileTipShow = 2\n");
    EXPECT_EQ(CreateBackups, 0u);
    EXPECT_EQ(FileTipShow, 2u);
}

TEST_F(SettingsFile, AnEmptyLineSetsTheOctaveTo0) {
    Read("MaxUndoLevel = 4\n\n");
    EXPECT_EQ(AuditionCurrentOctave, 0u);
    AuditionCurrentOctave = 5;
    Read("\tMaxUndoLevel = 9\n"); // the line ends at its control character
    EXPECT_EQ(AuditionCurrentOctave, 0u);
    EXPECT_EQ(MaxUndoLevel, 4u);
    AuditionCurrentOctave = 5;
    Read("\r\n");
    EXPECT_EQ(AuditionCurrentOctave, 0u);
    Read("= 6\n");
    EXPECT_EQ(AuditionCurrentOctave, 6u);
    AuditionCurrentOctave = 5;
    Read(" MaxUndoLevel = 7\n"); // a blank ends the key before it has begun
    EXPECT_EQ(AuditionCurrentOctave, 0u);
    EXPECT_EQ(MaxUndoLevel, 4u);
}

TEST_F(SettingsFile, AnEmptyFileOrOneWithoutALastLineEndChangesNothingElse) {
    Read("");
    EXPECT_EQ(AuditionCurrentOctave, 5u);
    Read("MaxUndoLevel = 6");
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
}

TEST_F(SettingsFile, AControlCharacterEndsAValue) {
    Read("DatabaseCurrentName = Basses\tand more\nThemeCurrent = Slate\x01Medium\n");
    EXPECT_EQ(DatabaseCurrentName, "Basses");
    EXPECT_EQ(ThemeCurrent, "Slate");
    Read("DatabaseCurrentName\t= Pads\n"); // the key stands alone
    EXPECT_EQ(DatabaseCurrentName, "");
}

TEST_F(SettingsFile, LinesMayEndInCarriageReturns) {
    Read(";Tonewright\r\n[Tonewright]\r\nMaxUndoLevel = 6\r\nThemeCurrent = Slate\r\n");
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_EQ(ThemeCurrent, "Slate");
    EXPECT_EQ(AuditionCurrentOctave, 5u);
}

TEST_F(SettingsFile, AZeroByteEndsAValueAndNotTheFile) {
    Read(std::string("ThemeCurrent = Slate\0Medium\nMaxUndoLevel = 6\n", 44));
    EXPECT_EQ(ThemeCurrent, "Slate");
    EXPECT_EQ(MaxUndoLevel, 6u);
}

TEST_F(SettingsFile, BytesAbove7FBelongToAValue) {
    Read("ThemeCurrent = \xC3\xA9t\xC3\xA9\nSelectKeyboardName = \xE9\xFF\n");
    EXPECT_EQ(ThemeCurrent, "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(SelectKeyboardName, "\xE9\xFF");
}

TEST_F(SettingsFile, AValueOutsideItsRangeIsKeptAsItStands) {
    Read("MaxUndoLevel = 1000\nCurrentMidiChannel = 99\nSoftButtons = 77\n");
    EXPECT_EQ(MaxUndoLevel, 1000u);
    EXPECT_EQ(CurrentMidiChannel, 99u);
    EXPECT_EQ(SoftButtons, 77u);
}

TEST_F(SettingsFile, IntegersAreKeptModulo2To32) {
    Read("MaxUndoLevel = -5\nTipOfTheDay = 4294967303\nSetupPageIndex = "
         "18446744073709551619\nVoiceEditPage = 2147483648\nFileWindowX = +4x\n");
    EXPECT_EQ(MaxUndoLevel, 4294967291u);
    EXPECT_EQ(TipOfTheDay, 7u);
    EXPECT_EQ(SetupPageIndex, 3u);
    EXPECT_EQ(VoiceEditPage, 2147483648u);
    EXPECT_EQ(FileWindowX, 4u);
    ConfigWrite();
    EXPECT_EQ(LineOf(ReadTestText(path), "MaxUndoLevel"), "MaxUndoLevel = 4294967291");
}

TEST_F(SettingsFile, OfTwoLinesWithOneKeyTheLaterCounts) {
    Read("MaxUndoLevel = 5\nMaxUndoLevel = 6\n");
    EXPECT_EQ(MaxUndoLevel, 6u);
}

TEST_F(SettingsFile, ALineOf259BytesIsReadWhole) {
    // "ThemeCurrent = " is 15 bytes, the line end one.
    const std::string value(243, 'x');
    Read("ThemeCurrent = " + value + "\nMaxUndoLevel = 6\n");
    EXPECT_EQ(ThemeCurrent, value);
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
}

TEST_F(SettingsFile, TheLineEndThatNoLongerFitsIsAnEmptyLine) {
    const std::string value(244, 'x');
    Read("ThemeCurrent = " + value + "\nMaxUndoLevel = 6\n");
    EXPECT_EQ(ThemeCurrent, value);
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_EQ(AuditionCurrentOctave, 0u);
}

TEST_F(SettingsFile, ALongerLineGoesOnAsTheNextLine) {
    Read("ThemeCurrent = " + std::string(244, 'x') + "MaxUndoLevel = 6\n");
    EXPECT_EQ(ThemeCurrent, std::string(244, 'x'));
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
}

TEST_F(SettingsFile, ALongCommentGoesOnAsALineThatIsNone) {
    Read(";" + std::string(258, 'x') + "MaxUndoLevel = 6\n");
    EXPECT_EQ(MaxUndoLevel, 6u);
}

TEST_F(SettingsFile, ALongLineIsNotCutInsideACharacter) {
    // The two bytes of the last character would be the 259th and the 260th.
    Read("ThemeCurrent = " + std::string(243, 'x') + "\xC3\xA9\nMaxUndoLevel = 6\n");
    EXPECT_EQ(ThemeCurrent, std::string(243, 'x'));
    EXPECT_EQ(MaxUndoLevel, 6u);
}

TEST_F(SettingsFile, ATextOfAMegabyteKeepsWhatALineHolds) {
    Read("ThemeCurrent = " + std::string(1 << 20, 'x') + "\nMaxUndoLevel = 6\n");
    EXPECT_EQ(ThemeCurrent, std::string(244, 'x'));
    EXPECT_EQ(MaxUndoLevel, 6u);
}

TEST_F(SettingsFile, ATextIsWrittenCutSoThatItsLineHasAtMost258Bytes) {
    ThemeCurrent = std::string(1 << 20, 'x');
    SelectKeyboardName = std::string(236, 'y') + "\xC3\xA9";
    SelectKeyboardMidiIn = std::string(234, 'z') + "\xC3\xA9" + "more";
    ConfigWrite();
    const std::string text = ReadTestText(path);
    EXPECT_EQ(LineOf(text, "ThemeCurrent"),
              "ThemeCurrent = " + std::string(244 - LineEndSize, 'x'));
    // Not inside a character.
    EXPECT_EQ(LineOf(text, "SelectKeyboardName"), "SelectKeyboardName = " + std::string(236, 'y'));
    EXPECT_EQ(LineOf(text, "SelectKeyboardMidiIn"),
              "SelectKeyboardMidiIn = " + std::string(234, 'z'));
}

TEST_F(SettingsFile, ALongPathChangesNoOtherSettingAtTheNextStart) {
    AuditionCurrentOctave = 7;
    for (std::string *value : {&RecentDocumentPath, &OpenPath, &OpenExportPath, &ThemeCurrent}) {
        for (const std::size_t size :
             {237u, 238u, 239u, 240u, 243u, 244u, 245u, 247u, 248u, 260u}) {
            *value = std::string(size, 'p');
            ConfigWrite();
            ConfigRead();
            EXPECT_EQ(AuditionCurrentOctave, 7u) << size;
            EXPECT_EQ(*value, std::string(value->size(), 'p'));
            EXPECT_GE(value->size(), 236u);
            AuditionCurrentOctave = 7;
        }
    }
}

TEST_F(SettingsFile, WhatStandsInTheFileIsNotToBeWrittenAgain) {
    EXPECT_FALSE(ConfigIsWritten()); // there is none
    ConfigWrite();
    EXPECT_TRUE(ConfigIsWritten());
    MaxUndoLevel = 6;
    EXPECT_FALSE(ConfigIsWritten());
    MaxUndoLevel = 3;
    EXPECT_TRUE(ConfigIsWritten());
    std::string text = ReadRawText(path);
    WriteTestText(path, "; another heading\n" + text.substr(text.find("[Tonewright]")));
    EXPECT_TRUE(ConfigIsWritten());
    WriteTestText(path, text + "MaxUndoLevel = 3\n");
    EXPECT_FALSE(ConfigIsWritten());
}

TEST_F(SettingsFile, ATextWithALineEndMakesNoLineOfItsOwn) {
    RecentDocumentPath = "/banks/a\nMaxUndoLevel = 99";
    ConfigWrite();
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(RecentDocumentPath, "/banks/a");
}

TEST_F(SettingsFile, ManyLinesAndOneVeryLongLineAreReadInTimeThatGrowsWithTheFile) {
    const auto start = std::chrono::steady_clock::now();
    Read(std::string(10 << 20, 'x') + "\n" + std::string(2 << 20, '\n') + "MaxUndoLevel = 6\n");
    EXPECT_EQ(MaxUndoLevel, 6u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SettingsFile, RandomBytesAreReadWithoutHarm) {
    std::mt19937 random(17);
    for (int run = 0; run < 50; ++run) {
        std::string text(4096, '\0');
        for (char &character : text) {
            character = static_cast<char>(random());
        }
        Read(text);
    }
    for (const ConfigKey &row : ProgramSettings.rows) {
        if (std::string *const *text = std::get_if<std::string *>(&row.value)) {
            EXPECT_LE((*text)->size(), SettingTextLimit);
        }
    }
}

TEST_F(SettingsFile, AFolderInPlaceOfTheFileGivesDefaultsAndLosesTheChanges) {
    std::filesystem::create_directory(path);
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 3u);
    ConfigWrite();
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_TRUE(FilesOfMaker().empty());
}

TEST_F(SettingsFile, AnyFileCanBeReadByItsPath) {
    EXPECT_EQ(ReadSettingsFile(ProgramSettings,
                               temp.WriteText("other.ini", "MaxUndoLevel = 11\n").c_str()),
              1);
    EXPECT_EQ(MaxUndoLevel, 11u);
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, temp.Folder().c_str()), 0);
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, ""), 0);
}

TEST_F(SettingsFile, WritingMakesNoFolder) {
    std::filesystem::remove_all(temp.path / "app");
    ConfigWrite();
    EXPECT_FALSE(temp.Holds("app"));
    PlatformFolders.applicationData.clear();
    EXPECT_EQ(SettingsFilePath(ProgramSettings), "");
    ConfigWrite();
    ConfigRead();
}

TEST_F(SettingsFile, ThreeWritesInARowLeaveTheFileAndTwoBackups) {
    CreateBackups = 0; // counts for documents only
    for (MaxUndoLevel = 10; MaxUndoLevel < 13; ++MaxUndoLevel) {
        ConfigWrite();
    }
    EXPECT_EQ(LineOf(ReadTestText(path), "MaxUndoLevel"), "MaxUndoLevel = 12");
    EXPECT_EQ(LineOf(ReadTestText(backup), "MaxUndoLevel"), "MaxUndoLevel = 11");
    EXPECT_EQ(LineOf(ReadTestText(older), "MaxUndoLevel"), "MaxUndoLevel = 10");
    ConfigWrite();
    EXPECT_EQ(LineOf(ReadTestText(path), "MaxUndoLevel"), "MaxUndoLevel = 13");
    EXPECT_EQ(LineOf(ReadTestText(backup), "MaxUndoLevel"), "MaxUndoLevel = 12");
    EXPECT_EQ(LineOf(ReadTestText(older), "MaxUndoLevel"), "MaxUndoLevel = 11");
    EXPECT_EQ(FilesOfMaker(),
              (std::vector<std::string>{"Backup of Backup of Tonewright 17.ini",
                                        "Backup of Tonewright 17.ini", "Tonewright 17.ini"}));
}

TEST_F(SettingsFile, BackupsAreCopiesByteForByte) {
    WriteTestText(path, "; \xFF one\r\n");
    WriteTestText(backup, "two");
    WriteTestText(older, "three");
    ConfigWrite();
    EXPECT_EQ(ReadRawText(backup), "; \xFF one\r\n");
    EXPECT_EQ(ReadTestText(older), "two");
}

// Of a newer program's file this one keeps what it knows; the rest is in its backups.
TEST_F(SettingsFile, AFileOfANewerProgramIsReadAndStaysWholeAsABackup) {
    const std::string newer = ";Tonewright configuration file\n;Tonewright 18.0 revision 4\n;\n"
                              "[Tonewright]\nFuture = 3\nMaxUndoLevel = 9\nVersionNumber = 600\n"
                              "[Tonewright Windows]\nFutureX = 1\n";
    WriteTestText(path, newer);
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 9u);
    EXPECT_EQ(VersionNumber, 544u);
    ConfigWrite();
    EXPECT_EQ(ReadTestText(backup), newer);
    EXPECT_EQ(LineOf(ReadTestText(path), "MaxUndoLevel"), "MaxUndoLevel = 9");
    EXPECT_EQ(ReadTestText(path).find("Future"), std::string::npos);
    ConfigWrite();
    EXPECT_EQ(ReadTestText(older), newer);
}

TEST_F(SettingsFile, ABackupWithoutAFileMovesOnAllTheSame) {
    WriteTestText(backup, "two");
    ConfigWrite();
    EXPECT_EQ(ReadTestText(backup), "two");
    EXPECT_EQ(ReadTestText(older), "two");
}

TEST_F(SettingsFile, AnUndoLevelThatMakesNoSenseMeansNoUndo) {
    for (const char *value : {"0", "-5", "2000000000", "2147483648", "65537", "none"}) {
        Read("MaxUndoLevel = " + std::string(value) + "\n");
        ScriptedDesktop desktop;
        desktop.ExpectMessage("There has been an error initializing the Undo function.\n\nUndo "
                              "will be unavailable for this session of Tonewright.");
        EXPECT_EQ(UndoInit(nullptr), 0) << value;
    }
    for (const char *value : {"1", "3", "32", "65536"}) {
        Read("MaxUndoLevel = " + std::string(value) + "\n");
        EXPECT_EQ(UndoInit(nullptr), 1) << value;
    }
}

// ---- a list and a file of its own

namespace {

std::uint32_t Careful;
std::uint32_t Folders;
std::string Archive;
const ConfigKey OtherRows[] = {
    SettingRow("Careful", &Careful, 1, SettingBool, {.control = 301}),
    SettingRow("Folders", &Folders, 12, SettingInteger, {.flags = SettingWriteOnly}),
    SettingRow("Archive", &Archive, "Voices", SettingText, {}),
};
const SettingsList OtherSettings = {.folder = UserFile,
                                    .file = "Other.ini",
                                    .section = "More",
                                    .prefix = "other.",
                                    .written = SettingsWritten::AtEnd,
                                    .rows = OtherRows};

} // namespace

TEST_F(SettingsFile, AnotherListHasItsDefaultsItsFileAndItsBackups) {
    ResetSettings(OtherSettings);
    EXPECT_EQ(Careful, 1u);
    EXPECT_EQ(Folders, 12u);
    EXPECT_EQ(Archive, "Voices");

    const std::string others = maker + "Other.ini";
    EXPECT_EQ(SettingsFilePath(OtherSettings), others);
    WriteTestText(others, "[More]\nA = Basses\nMaxUndoLevel = 9\nFolders = 3\n\n");
    EXPECT_EQ(ReadSettingsFile(OtherSettings, others.c_str()), 1);
    EXPECT_EQ(Archive, "Basses");
    EXPECT_EQ(Folders, 12u);
    EXPECT_EQ(Careful, 0u); // an empty line means the first row
    EXPECT_EQ(MaxUndoLevel, 3u);

    WriteSettingsFile(OtherSettings);
    const std::string text = ReadTestText(others);
    ASSERT_TRUE(text.starts_with(Header));
    EXPECT_EQ(text.substr(Header.size() + 24),
              "\n;\n[More]\nCareful = 0\nFolders = 12\nArchive = Basses\n");
    EXPECT_EQ(FilesOfMaker(), (std::vector<std::string>{"Backup of Other.ini", "Other.ini"}));
    EXPECT_EQ(ReadSingleText(OtherSettings, "Archive", ""), "Basses");

    ResetSettings();
    EXPECT_EQ(Archive, "Basses");
    ResetSettings(OtherSettings);
    EXPECT_EQ(Archive, "Voices");
}

TEST_F(SettingsFile, OnlyTheRowsThatAreAskedForAreFilled) {
    WriteTestText(path, "MaxUndoLevel = 9\nTip = 7\nThemeCurrent = Slate\n");
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, path.c_str(),
                               [](const ConfigKey &row) {
                                   return std::string(row.name) != "MaxUndoLevel" &&
                                          std::string(row.name) != "TipFont01Size";
                               }),
              1);
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(TipFont01Size, 16u);
    EXPECT_EQ(TipOfTheDay, 0u); // "Tip" is short for the row in front of it all the same
    EXPECT_EQ(ThemeCurrent, "Slate");
}

// ---- what goes beyond the program's plain ways

namespace {

using ExtrasFile = SettingsHome;

const ConfigKey &ExtraOf(const char *name) {
    const auto row =
        std::ranges::find(ExtrasSettings.rows, std::string_view(name),
                          [](const ConfigKey &key) { return std::string_view(key.name); });
    EXPECT_NE(row, ExtrasSettings.rows.end()) << name;
    return *row;
}

// The user gives a row its value.
SettingsWrite Choose(const char *name, std::uint32_t value) {
    const ConfigKey &row = ExtraOf(name);
    *std::get<std::uint32_t *>(row.value) = value;
    return WriteChosenSetting(ExtrasSettings, row);
}

// A file behind its head.
std::string LinesBehindHead(const std::string &path) {
    const std::string text = ReadTestText(path);
    EXPECT_TRUE(text.starts_with(Header)) << text;
    return text.substr(std::min(text.size(), Header.size() + 24));
}

} // namespace

TEST_F(ExtrasFile, EveryExtraIsOffUntilAFileSwitchesItOn) {
    for (const ConfigKey &row : ExtrasSettings.rows) {
        if (row.flags == SettingBool) {
            EXPECT_EQ(std::get<std::uint32_t>(row.preset), 0u) << row.name;
        }
        EXPECT_EQ(row.control, 0u) << row.name; // no page of the sheet has them
    }
    ConfigRead();
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_EQ(AuditionKeepsVoice, 0u);
    EXPECT_EQ(BuiltinInstruments, 0u);
    EXPECT_EQ(SpaceAuditions, 0u);
    EXPECT_EQ(RefaceZero64, 0u);
    EXPECT_EQ(InstrumentDevice, "");
    EXPECT_EQ(InstrumentVolume, 100u);
    EXPECT_EQ(InstrumentBuffer, 256u);
    EXPECT_EQ(InstrumentPolyphony, 16u);
    ConfigWrite();
    EXPECT_FALSE(std::filesystem::exists(extras));
}

TEST_F(ExtrasFile, TheSystemsFileCountsWhereTheUserHasNoValue) {
    WriteSystemExtras("[Extras]\nCarefulMode = 1\nWholeDetune = 1\n");
    WriteTestText(extras, "[Extras]\nWholeDetune = 0\nAuditionKeepsVoice = 1\n");
    ConfigRead();
    EXPECT_EQ(CarefulMode, 1u);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_EQ(AuditionKeepsVoice, 1u);
}

TEST_F(ExtrasFile, OfTheSystemsFilesTheFirstCountsMost) {
    WriteSystemExtras("CarefulMode = 1\n");
    PlatformFolders.systemConfiguration.push_back(temp.File("nowhere"));
    WriteSystemExtras("CarefulMode = 0\nWholeDetune = 1\n");
    ConfigRead();
    EXPECT_EQ(CarefulMode, 1u);
    EXPECT_EQ(WholeDetune, 1u);
}

TEST_F(ExtrasFile, TheSystemHasNoFileOfTheProgramsOwnSettings) {
    WriteSystemExtras("");
    WriteTestText(temp.File("system0/Quillbrook/Tonewright 17.ini"), "MaxUndoLevel = 9\n");
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 3u);
}

TEST_F(ExtrasFile, ASystemsFileThatIsDamagedOrNoFileDoesNoHarm) {
    const std::string zero(1, '\0');
    WriteSystemExtras("\xFF" + zero + "CarefulMode\x01 = 1\nWholeDetune = 1\n" +
                      std::string(1 << 20, 'x'));
    std::filesystem::create_directories(temp.File("folder/Quillbrook/Extras.ini"));
    PlatformFolders.systemConfiguration.insert(PlatformFolders.systemConfiguration.begin(),
                                               temp.File("folder"));
    ConfigRead();
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_EQ(WholeDetune, 1u);
    EXPECT_EQ(MaxUndoLevel, 3u);
}

// A name is short for nothing, so that an empty line, or one that begins with a blank, switches no
// protection off.
TEST_F(ExtrasFile, ALineCountsByTheWholeNameAlone) {
    WriteSystemExtras("CarefulMode = 1\n\n  \nCareful = 0\nC = 0\n= 0\nCarefulModes = 0\n"
                      "   WholeDetune = 1\nWholeDetun = 1\n;" +
                      std::string(258, 'x') + " = 0\n");
    ConfigRead();
    EXPECT_EQ(CarefulMode, 1u);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_EQ(Choose("AuditionKeepsVoice", 1), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(SettingsFilePath(ExtrasSettings)),
              "\n;\n[Extras]\nAuditionKeepsVoice = 1\n");
}

TEST_F(ExtrasFile, ChoosingAValueWritesItsRowAlone) {
    EXPECT_EQ(Choose("WholeDetune", 1), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(extras), "\n;\n[Extras]\nWholeDetune = 1\n");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(ExtrasFile, ARowThatWasNeverChosenFollowsTheSystemsFileAsItChanges) {
    WriteSystemExtras("CarefulMode = 1\nWholeDetune = 1\n");
    ConfigRead();
    EXPECT_EQ(Choose("CarefulMode", 0), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(extras), "\n;\n[Extras]\nCarefulMode = 0\n");
    WriteTestText(temp.File("system0/Quillbrook/Extras.ini"),
                  "CarefulMode = 1\nWholeDetune = 0\nAuditionKeepsVoice = 1\n");
    ResetSettings();
    ConfigRead();
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_EQ(AuditionKeepsVoice, 1u);
}

TEST_F(ExtrasFile, ChoosingAValueKeepsTheOtherRowsOfTheFileAsTheyStandThere) {
    WriteTestText(extras,
                  "WholeDetune==1\n;AuditionKeepsVoice = 1\nCarefulMode = 2\nCarefulMode = 1\n");
    WholeDetune = 0; // for this start only, as by an option
    EXPECT_EQ(Choose("AuditionKeepsVoice", 0), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(extras),
              "\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 1\nAuditionKeepsVoice = 0\n"
              ";AuditionKeepsVoice = 1\n");
}

// What a newer program has chosen is still chosen when that one starts again.
TEST_F(ExtrasFile, LinesThatNameNoRowStayBehindTheRows) {
    const std::string head = ";Tonewright configuration file\n;\n\n;\n[Extras]\n";
    WriteTestText(extras, head + "Future = yes\nWholeDetune = 1\n;a note\r\n\n[Other]\n"
                                 "WholeDetunes\t= \xFF\n");
    EXPECT_EQ(Choose("CarefulMode", 1), SettingsWrite::Done);
    const std::string written = PlatformLines("\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 1\n") +
                                "Future = yes\n;a note\r\n[Other]\nWholeDetunes\t= \xFF\n";
    EXPECT_TRUE(ReadRawText(extras).ends_with(written)) << ReadRawText(extras);
    EXPECT_EQ(Choose("CarefulMode", 1), SettingsWrite::Done);
    EXPECT_TRUE(ReadRawText(extras).ends_with(written)) << ReadRawText(extras);
}

TEST_F(ExtrasFile, ALongLineThatNamesNoRowStaysWhole) {
    const std::string future = "Future = " + std::string(900, 'x');
    WriteTestText(extras, "WholeDetune = 1" + std::string(600, ' ') + "2\n" + future);
    EXPECT_EQ(Choose("CarefulMode", 1), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(extras), "\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 1" +
                                           std::string(244 - LineEndSize, ' ') + "\n" + future +
                                           "\n");
}

TEST_F(ExtrasFile, ARestOfALongLineThatIsARowEndsTheLine) {
    // 259 bytes, which is where a line ends at the latest
    const std::string future = "Future = " + std::string(250, 'x');
    WriteTestText(extras, future + "WholeDetune = 1\nLater = 1\n");
    EXPECT_EQ(Choose("CarefulMode", 1), SettingsWrite::Done);
    EXPECT_EQ(LinesBehindHead(extras),
              "\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 1\n" + future + "\nLater = 1\n");
}

TEST_F(ExtrasFile, TwoVersionsAreKeptAsBackups) {
    WriteTestText(extras, "CarefulMode = 1\n");
    EXPECT_EQ(Choose("WholeDetune", 1), SettingsWrite::Done);
    EXPECT_EQ(Choose("WholeDetune", 0), SettingsWrite::Done);
    const std::string folder = maker + "Tonewright 17/";
    EXPECT_EQ(LinesBehindHead(extras), "\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 0\n");
    EXPECT_EQ(LinesBehindHead(folder + "Backup of Extras.ini"),
              "\n;\n[Extras]\nCarefulMode = 1\nWholeDetune = 1\n");
    EXPECT_EQ(ReadTestText(folder + "Backup of Backup of Extras.ini"), "CarefulMode = 1\n");
}

TEST_F(ExtrasFile, ASettingOfTheListThatIsWrittenAtTheEndIsWrittenWithAllOthers) {
    MaxUndoLevel = 7;
    EXPECT_EQ(WriteChosenSetting(ProgramSettings, ProgramSettings.rows[0]), SettingsWrite::Done);
    EXPECT_EQ(LineOf(ReadTestText(path), "MaxUndoLevel"), "MaxUndoLevel = 7");
    EXPECT_FALSE(std::filesystem::exists(extras));
}

TEST_F(ExtrasFile, AFolderInItsPlaceIsAFailureWithAReason) {
    std::filesystem::create_directory(extras);
    EXPECT_EQ(Choose("CarefulMode", 1), SettingsWrite::Failed);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(CarefulMode, 1u); // it counts all the same
}

TEST_F(ExtrasFile, OneKindOfListIsReadWithoutTheOther) {
    WriteTestText(path, "MaxUndoLevel = 9\n");
    WriteTestText(extras, "CarefulMode = 1\n");
    ConfigRead(SettingsWritten::WhenChosen);
    EXPECT_EQ(MaxUndoLevel, 3u);
    EXPECT_EQ(CarefulMode, 1u);
    CarefulMode = 0;
    ConfigRead(SettingsWritten::AtEnd);
    EXPECT_EQ(MaxUndoLevel, 9u);
    EXPECT_EQ(CarefulMode, 0u);
}
