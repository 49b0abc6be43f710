// Names and paths of themes.
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/theme_files.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

// "THEME_Slate_x64.so", with whatever libraries end in here.
std::string OnDisk(const std::string &stem) {
    return stem + "." + PlatformLibraryExtension;
}

TEST(ThemeFiles, ANameOfTheSettingsIsTakenToTheDiskAndBack) {
    EXPECT_EQ(ThemeDiskName("THEME_Slate Medium.dll"), OnDisk("THEME_Slate Medium_x64"));
    EXPECT_EQ(ThemeDiskName("THEME_a.b.DLL"), OnDisk("THEME_a.b_x64"));
    EXPECT_EQ(ThemeDiskName("THEME_Slate Medium_x64.dll"), OnDisk("THEME_Slate Medium_x64"));
    EXPECT_EQ(ThemeDiskName("THEME_Slate.txt"), "THEME_Slate_x64.txt");
    EXPECT_EQ(ThemeDiskName("THEME_Slate"), "THEME_Slate_x64");
    EXPECT_EQ(ThemeSettingName(OnDisk("THEME_Slate Medium_x64")), "THEME_Slate Medium.dll");
    EXPECT_EQ(ThemeSettingName(OnDisk("THEME_a.b_x64")), "THEME_a.b.dll");
    EXPECT_EQ(ThemeSettingName("THEME_Slate Medium.dll"), "THEME_Slate Medium.dll");
    EXPECT_EQ(ThemeSettingName("THEME_Slate_x64"), "THEME_Slate");
}

TEST(ThemeFiles, TheDisplayNameIsWhatStandsBetweenUnderscoresAndDot) {
    EXPECT_EQ(ThemeDisplayName(OnDisk("THEME_Slate Medium_x64")), "Slate Medium");
    EXPECT_EQ(ThemeDisplayName("THEME_Slate Medium.dll"), "Slate Medium");
    EXPECT_EQ(ThemeDisplayName(OnDisk("THEME___Big_Buttons_x64")), "Big_Buttons");
    EXPECT_EQ(ThemeDisplayName(OnDisk("THEME_Slate 2.0_x64")), "Slate 2");
    EXPECT_EQ(ThemeDisplayName(OnDisk("THEME__x64")), "x64");
    EXPECT_EQ(ThemeDisplayName("Slate.dll"), "Slate");
    EXPECT_EQ(ThemeDisplayName("THEME_"), "");
    EXPECT_EQ(ThemeDisplayName(""), "");
}

TEST(ThemeFiles, AThemeStandsInTheFolderBelowTheProgram) {
    const std::string separator(1, PathSeparator);
    EXPECT_EQ(ThemeFilePath("/opt/tw/", "THEME_A.dll"),
              "/opt/tw/theme" + separator + OnDisk("THEME_A_x64"));
}

TEST(ThemeFiles, ANameThatLeadsElsewhereOrIsImpossibleHasNoPath) {
    for (const char *name :
         {"", "../THEME_A.dll", "a/THEME_A.dll", "/THEME_A.dll", "..\\THEME_A.dll", "C:THEME_A.dll",
          "THEME_A\n.dll", "THEME_A\x7F.dll"}) {
        EXPECT_EQ(ThemeFilePath("/opt/tw/", name), "") << name;
    }
    EXPECT_EQ(ThemeFilePath("/opt/tw/", std::string("THEME\0.dll", 10)), "");
    EXPECT_EQ(ThemeFilePath("/opt/tw/", std::string(1100, 'x')), "");
    EXPECT_EQ(ThemeFilePath("", "THEME_A.dll"), ""); // not in the current folder
}

TEST(ThemeFiles, APathHasAtMost1024BytesBeforeItsNameIsMadeAnd260Afterwards) {
    // "/opt/tw/" and "theme/" are 14 bytes, "_x64" 4, the extension with its dot as on the disk.
    const std::size_t extension = 1 + std::string_view(PlatformLibraryExtension).size();
    const std::size_t longest = 260 - 14 - 4 - extension;
    EXPECT_EQ(ThemeFilePath("/opt/tw/", std::string(longest, 'x') + ".dll").size(), 260u);
    EXPECT_EQ(ThemeFilePath("/opt/tw/", std::string(longest + 1, 'x') + ".dll"), "");
    EXPECT_EQ(ThemeFilePath("/opt/tw/", std::string(1025 - 14, 'x')), "");
}

class ThemeFolders : public testing::Test {
protected:
    ThemeFolders() {
        ApplicationPath = program.Folder();
        PlatformFolders.programs = user.Folder();
        std::filesystem::create_directories(ProgramThemes());
        std::filesystem::create_directories(UserThemes());
    }

    std::filesystem::path ProgramThemes() const { return program.path / "theme"; }
    std::filesystem::path UserThemes() const { return user.path / "Quillbrook" / "theme"; }
    static std::string Put(const std::filesystem::path &folder, const std::string &name) {
        const std::string path = (folder / name).string();
        WriteTestText(path, "x");
        return path;
    }

    TempFolder program, user;
};

TEST_F(ThemeFolders, ThoseBelowTheProgramComeFirstAndEachFolderInTheOrderOfNames) {
    const std::string first = Put(ProgramThemes(), OnDisk("THEME_B_x64"));
    const std::string second = Put(ProgramThemes(), OnDisk("THEME_C_x64"));
    const std::string third = Put(UserThemes(), OnDisk("THEME_A_x64"));
    const std::string fourth = Put(UserThemes(), OnDisk("THEME_B_x64"));
    EXPECT_EQ(ThemeFiles(), (std::vector<std::string>{first, second, third, fourth}));
}

TEST_F(ThemeFolders, OtherFilesAndFoldersAreNoThemes) {
    Put(ProgramThemes(), OnDisk("THEME_A"));
    Put(ProgramThemes(), OnDisk(".THEME_A_x64"));
    Put(ProgramThemes(), OnDisk("LIBRARY_A_x64"));
    Put(ProgramThemes(), "THEME_A_x64.txt");
    Put(ProgramThemes(), "THEME_A_x64");
    Put(program.path, OnDisk("THEME_A_x64"));
    std::filesystem::create_directory(ProgramThemes() / OnDisk("THEME_F_x64"));
    EXPECT_EQ(ThemeFiles(), std::vector<std::string>());
}

TEST_F(ThemeFolders, AFileWhoseNameOfTheSettingsLeadsToAnotherOneIsNoTheme) {
    for (const std::string &name :
         {OnDisk("THEME_A_x64_beta"), OnDisk("THEME_A_x64_x64"), std::string("THEME_A_x64.So")}) {
        Put(ProgramThemes(), name);
    }
    EXPECT_EQ(ThemeFiles(), std::vector<std::string>());
    const std::string path = Put(ProgramThemes(), OnDisk("THEME_A_x64_beta_x64"));
    EXPECT_EQ(ThemeFiles(), std::vector<std::string>{path});
    EXPECT_EQ(FindThemeFile("THEME_A_x64_beta.dll"), path);
}

TEST_F(ThemeFolders, FoldersThatAreNotThereHoldNoThemes) {
    ApplicationPath = program.File("nothing") + PathSeparator;
    PlatformFolders.programs.clear();
    EXPECT_EQ(ThemeFiles(), std::vector<std::string>());
    ApplicationPath.clear();
    EXPECT_EQ(ThemeFiles(), std::vector<std::string>());
}

TEST_F(ThemeFolders, AThemeOfBothFoldersIsThatBelowTheProgram) {
    const std::string name = OnDisk("THEME_A_x64");
    EXPECT_EQ(FindThemeFile("THEME_A.dll"), "");
    const std::string second = Put(UserThemes(), name);
    EXPECT_EQ(FindThemeFile("THEME_A.dll"), second);
    const std::string first = Put(ProgramThemes(), name);
    EXPECT_EQ(FindThemeFile("THEME_A.dll"), first);
}

TEST_F(ThemeFolders, AFolderIsNoFile) {
    EXPECT_FALSE(ThemeFileExists(ProgramThemes().string()));
    EXPECT_FALSE(ThemeFileExists(""));
    EXPECT_TRUE(ThemeFileExists(Put(ProgramThemes(), "x")));
}

TEST(ThemeChoice, AScreenOf1023PixelsStartsWithTheCompactTheme) {
    EXPECT_TRUE(ThemeChooseDefault(1023));
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Compact.dll");
}

TEST(ThemeChoice, AScreenOf1024PixelsStartsWithTheMediumTheme) {
    EXPECT_TRUE(ThemeChooseDefault(1024));
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll");
}

TEST(ThemeChoice, AThemeThatIsSetStays) {
    ThemeCurrent = "THEME_Mine.dll";
    EXPECT_FALSE(ThemeChooseDefault(1023));
    EXPECT_EQ(ThemeCurrent, "THEME_Mine.dll");
}

} // namespace
} // namespace tonewright
