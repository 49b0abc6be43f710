// Taking over the settings of an earlier version.
#include "shell/settings_migration.h"

#include "settings_fixture.h"
#include "support/put_back.h"
#include "support/scripted_desktop.h"

using namespace tonewright;

namespace {

using SettingsMigration = SettingsHome;

const std::string CopyQuestion =
    "A previous version of Tonewright is installed on your system.\n\nWould you like to copy its "
    "configuration items to this installation?";
const std::string UninstallQuestion =
    "You can optionally uninstall the previous installation of Tonewright from your system at "
    "this time.\n\nClick on Yes to uninstall, or click on No to leave your previous version in "
    "place.";
const std::string UninstallFailure =
    "The uninstall option could not be accessed.\n\nPlease uninstall the previous installation of "
    "Tonewright manually through the Windows Control Panel.";

const std::string OldText = ";Tonewright configuration file\n[Tonewright]\n"
                            "ApplicationPath = /opt/old/\nMaxUndoLevel = 12\n";

// An installation that is found, and what happened to it.
struct FakeInstallation {
    PutBack<PreviousInstallation> former{ThePreviousInstallation};
    std::vector<std::string> asked, run;

    explicit FakeInstallation(bool exists, bool starts = true) {
        ThePreviousInstallation = {
            .Exists =
                [this, exists](const std::string &shortcut) {
                    asked.push_back(shortcut);
                    return exists;
                },
            .Uninstall =
                [this, starts](const std::string &shortcut) {
                    run.push_back(shortcut);
                    return starts;
                },
        };
    }
};

} // namespace

TEST_F(SettingsMigration, DoesNothingOnceThereIsAFile) {
    WriteTestText(path, "MaxUndoLevel = 4\n");
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    const FakeInstallation installation(true);
    ScriptedDesktop desktop;
    ConfigMigrate();
    EXPECT_EQ(ReadTestText(path), "MaxUndoLevel = 4\n");
    EXPECT_TRUE(installation.asked.empty());
}

TEST_F(SettingsMigration, DoesNothingWithoutAnEarlierFile) {
    const FakeInstallation installation(true);
    ScriptedDesktop desktop;
    ConfigMigrate();
    EXPECT_TRUE(FilesOfMaker().empty());
    EXPECT_TRUE(installation.asked.empty());
}

TEST_F(SettingsMigration, OnYesCopiesTheFileAndEmptiesItsApplicationPath) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultYes);
    ConfigMigrate();
    EXPECT_EQ(ReadTestText(path), ";Tonewright configuration file\n[Tonewright]\n"
                                  "ApplicationPath = \nMaxUndoLevel = 12\n");
    EXPECT_EQ(ReadTestText(maker + "Tonewright 16.ini"), OldText);
    ConfigRead();
    EXPECT_EQ(MaxUndoLevel, 12u);
}

TEST_F(SettingsMigration, ALinkThatLeadsNowhereGetsTheCopyBehindIt) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    std::filesystem::create_symlink(temp.File("elsewhere.ini"), path);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultYes);
    ConfigMigrate();
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(LineOf(ReadTestText(temp.File("elsewhere.ini")), "MaxUndoLevel"),
              "MaxUndoLevel = 12");
}

TEST_F(SettingsMigration, OnNoCopiesNothing) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    std::filesystem::create_directory(maker + "Tonewright 16");
    WriteTestText(maker + "Tonewright 16/FileMenuHistory.txt", "history");
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultNo);
    ConfigMigrate();
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(std::filesystem::is_empty(maker + "Tonewright 17"));
}

TEST_F(SettingsMigration, OnYesCopiesTheTextFilesOfTheFolderWithoutOverwriting) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    const std::string from = maker + "Tonewright 16/";
    const std::string to = maker + "Tonewright 17/";
    std::filesystem::create_directory(from);
    WriteTestText(from + "FileMenuHistory.txt", "history");
    WriteTestText(from + "NOTES.TXT", "notes");
    WriteTestText(from + "present.txt", "theirs");
    WriteTestText(to + "present.txt", "ours");
    WriteTestText(from + ".hidden.txt", "hidden");
    WriteTestText(from + "picture.bmp", "picture");
    WriteTestText(from + "text.txt.old", "old");
    std::filesystem::create_directory(from + "folder.txt");
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultYes);
    ConfigMigrate();
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(to)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"FileMenuHistory.txt", "NOTES.TXT", "present.txt"}));
    EXPECT_EQ(ReadTestText(to + "FileMenuHistory.txt"), "history");
    EXPECT_EQ(ReadTestText(to + "present.txt"), "ours");
    EXPECT_EQ(ReadTestText(from + "FileMenuHistory.txt"), "history");
}

TEST_F(SettingsMigration, TakesTheNamesFilesAndPatternsOfItsCaller) {
    WriteTestText(maker + "Old.ini", "[Bells]\nApplicationPath = /opt/old/\n");
    std::filesystem::create_directory(maker + "Old");
    std::filesystem::create_directory(maker + "New");
    WriteTestText(maker + "Old/a1.dat", "a1");
    WriteTestText(maker + "Old/a12.dat", "a12");
    WriteTestText(maker + "Old/b.txt", "b");
    const FakeInstallation installation(false);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo("A previous version of Bells is installed on your system.\n\nWould you "
                        "like to copy its configuration items to this installation?",
                        ResultYes);
    ConfigMigrate({.programName = "Bells",
                   .newFile = "New.ini",
                   .section = "Bells",
                   .oldFile = "Old.ini",
                   .newFolder = "New",
                   .oldFolder = "Old",
                   .patterns = ";a?.dat;;b*;",
                   .uninstallShortcut = "Old bells.lnk"});
    EXPECT_EQ(ReadTestText(maker + "New.ini"), "[Bells]\nApplicationPath = \n");
    EXPECT_TRUE(std::filesystem::exists(maker + "New/a1.dat"));
    EXPECT_FALSE(std::filesystem::exists(maker + "New/a12.dat"));
    EXPECT_TRUE(std::filesystem::exists(maker + "New/b.txt"));
    EXPECT_EQ(installation.asked, std::vector<std::string>{"Old bells.lnk"});
}

TEST_F(SettingsMigration, AsksAboutTheUninstallerWhateverTheFirstAnswerWas) {
    for (const int copy : {ResultYes, ResultNo}) {
        std::filesystem::remove(path);
        WriteTestText(maker + "Tonewright 16.ini", OldText);
        const FakeInstallation installation(true);
        ScriptedDesktop desktop;
        desktop.ExpectYesNo(CopyQuestion, copy);
        desktop.ExpectYesNo(UninstallQuestion, ResultNo);
        ConfigMigrate();
        EXPECT_EQ(installation.asked,
                  std::vector<std::string>{"Programs\\Quillbrook\\Tonewright 16 x64\\Uninstall "
                                           "Tonewright 16 x64.lnk"});
        EXPECT_TRUE(installation.run.empty());
    }
}

TEST_F(SettingsMigration, OnYesRunsTheUninstaller) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    const FakeInstallation installation(true);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultNo);
    desktop.ExpectYesNo(UninstallQuestion, ResultYes);
    ConfigMigrate();
    EXPECT_EQ(installation.run, installation.asked);
    EXPECT_EQ(installation.run.size(), 1u);
}

TEST_F(SettingsMigration, SaysSoWhenTheUninstallerCannotBeStarted) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    const FakeInstallation installation(true, false);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultNo);
    desktop.ExpectYesNo(UninstallQuestion, ResultYes);
    desktop.ExpectMessage(UninstallFailure);
    ConfigMigrate();
}

TEST_F(SettingsMigration, FindsNoUninstallerOnThisPlatformByItself) {
    WriteTestText(maker + "Tonewright 16.ini", OldText);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(CopyQuestion, ResultNo);
    ConfigMigrate();
}
