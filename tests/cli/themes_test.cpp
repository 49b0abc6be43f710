// The command "themes", and the theme in the picture of the window.
#include "run_cli.h"

#include "common/theme_files.h"
#include "support/bank_bytes.h"
#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tonewright {
namespace {

class CliThemes : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
        SetVariable("XDG_DATA_HOME", home.File(".local/share"));
    }
    void TearDown() override { RemoveVariable("XDG_DATA_HOME"); }

    // The two that come with the program.
    static std::string OwnLines() {
        const std::string folder =
            (std::filesystem::path(CliProgram()).parent_path() / "theme" / "").string();
        return "Slate Compact\t" + folder + ThemeDiskName(ThemeCompact) + "\tloads\n" +
               "Slate Medium\t" + folder + ThemeDiskName(ThemeMedium) + "\tloads\n";
    }
    // Puts a theme for tests into the user's folder; its path.
    std::string Put(const std::string &library, const std::string &theme) const {
        const std::filesystem::path folder =
            home.path / ".local/share/applications/Quillbrook/theme";
        std::filesystem::create_directories(folder);
        const auto path = (folder / ThemeDiskName(theme)).make_preferred();
        std::filesystem::copy_file(TestTheme(library), path);
        return path.string();
    }
    void SetTheme(const std::string &theme) const {
        std::filesystem::create_directories(home.path / ".config/Quillbrook");
        WriteTestText(Ini(), "[Tonewright]\nThemeCurrent = " + theme + "\n");
    }
    std::string Ini() const { return home.File(".config/Quillbrook/Tonewright 17.ini"); }
    // Paints the window with that theme, for a screen of a size.
    ProgramResult Paint(const std::string &theme, const std::string &png,
                        const char *screen = "1920x1080") const {
        SetTheme(theme);
        return Cli({"picture", ExampleFile("tonewright.syx"), home.File(png), "--screen", screen});
    }

    TempFolder home;
};

// Of a theme that only stands in the wrong folder.
constexpr const char *LoadsAside =
    "loads, but is used only from the folder \"theme\" beside the program";

TEST_F(CliThemes, PrintsNameFileAndThatItLoads) {
    const auto result = Cli({"themes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, OwnLines());
    EXPECT_EQ(result.errors, "");
}

TEST_F(CliThemes, PrintsWhyAThemeOfTheUserDoesNotLoad) {
    const std::string whole = Put("whole", "THEME_Mine.dll");
    const std::string broken = Put("without_draw_tool", "THEME_Broken.dll");
    const std::string text = Put("whole", "THEME_Text.dll");
    WriteTestText(text, "not a library");
    const auto result = Cli({"themes"});
    EXPECT_EQ(result.exitStatus, 0);
    const std::string start = OwnLines() + "Broken\t" + broken + "\thas no THEMEDrawTool\nMine\t" +
                              whole + "\t" + LoadsAside + "\nText\t" + text + "\t";
    EXPECT_TRUE(result.output.starts_with(start)) << result.output;
    // The words of the system, in one line.
    EXPECT_GT(result.output.size(), start.size() + 1);
    EXPECT_EQ(result.output.find('\n', start.size()), result.output.size() - 1);
}

TEST_F(CliThemes, PrintsThatAThemeWithoutAPreviewIsNotShown) {
    const std::string unseen = Put("no_bitmap", "THEME_Unseen.dll");
    EXPECT_EQ(Cli({"themes"}).output,
              OwnLines() + "Unseen\t" + unseen + "\t" + LoadsAside +
                  "; has no valid preview, so that \"Select theme...\" does not show it\n");
}

// The line that ends early is that of the theme which did it.
TEST_F(CliThemes, NameAndFileOfAThemeThatEndsTheProgramArePrinted) {
    const std::string path = Put("aborting", "THEME_Wild.dll");
    const auto result = Cli({"themes"});
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_EQ(result.output, OwnLines() + "Wild\t" + path + "\t");
}

TEST_F(CliThemes, TakesNoWords) {
    EXPECT_EQ(Cli({"themes", "x"}).exitStatus, 2);
    EXPECT_EQ(Cli({"themes", "--yes"}).exitStatus, 2);
}

TEST_F(CliThemes, ThePictureOfTheWindowHasTheUsersTheme) {
    ASSERT_EQ(Paint(ThemeMedium, "medium.png").exitStatus, 0);
    ASSERT_EQ(Paint(ThemeCompact, "compact.png").exitStatus, 0);
    ASSERT_EQ(Paint("", "wide.png").exitStatus, 0);
    EXPECT_NE(ReadTestFile(home.File("medium.png")), ReadTestFile(home.File("compact.png")));
    EXPECT_EQ(ReadTestFile(home.File("medium.png")), ReadTestFile(home.File("wide.png")));
}

TEST_F(CliThemes, ThePictureForAScreenOf1023PixelsHasTheCompactTheme) {
    ASSERT_EQ(Paint(ThemeCompact, "compact.png", "1023x1080").exitStatus, 0);
    ASSERT_EQ(Paint("", "narrow.png", "1023x1080").exitStatus, 0);
    EXPECT_EQ(ReadTestFile(home.File("compact.png")), ReadTestFile(home.File("narrow.png")));
    EXPECT_EQ(ReadTestText(Ini()), "[Tonewright]\nThemeCurrent = \n"); // nothing is set
}

} // namespace
} // namespace tonewright
