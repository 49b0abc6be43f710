// The command "colours", with tables of the program, of odd lines and of none.
#include "run_cli.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tonewright {
namespace {

class CliColours : public testing::Test {
protected:
    TempFolder folder;
};

TEST_F(CliColours, PrintsNameRedGreenAndBlueInTheOrderOfTheNames) {
    const auto result =
        Cli({"colours", folder.WriteText("a.ccl", "Navy = 0,,0,128\nno colour\namber=255,191,256\n"
                                                  "=1,2,3\nB\xC3\xA9ge=1,2,3")});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "amber\t255\t191\t0\nB\xC3\xA9ge\t1\t2\t3\nNavy \t0\t0\t128\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(CliColours, TheTableOfTheProgramHasAWordAndAColourInEachLine) {
    const auto result = Cli({"colours", SourceFile("resources/TNWRGT.CCL")});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.output.starts_with("Amber\t255\t191\t0\n")) << result.output;
    EXPECT_NE(result.output.find("\nNavy\t0\t0\t128\n"), std::string::npos);
}

TEST_F(CliColours, NothingInATableMovesTheCursor) {
    const auto result =
        Cli({"colours", folder.WriteText("a.ccl", "a\x1B[2Jb\tc\r=1,2,3\n\x9B\xFF=4,5,6\n")});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "a?[2Jb?c?\t1\t2\t3\n?\xFF\t4\t5\t6\n");
}

TEST_F(CliColours, ATableWithoutAColourPrintsNothing) {
    using namespace std::string_literals;
    for (const std::string &text : {""s, "\n\n"s, "=\n=,\n"s, std::string(100'000, '\0')}) {
        const auto result = Cli({"colours", folder.WriteText("a.ccl", text)});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "");
    }
}

TEST_F(CliColours, SaysWhyATableCannotBeRead) {
    const std::string missing = folder.File("none.ccl");
    auto result = Cli({"colours", missing});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + missing + ": not readable: No such file or directory\n");
    std::filesystem::create_directory(missing);
    result = Cli({"colours", missing});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + missing + ": not readable: Is a directory\n");
}

TEST_F(CliColours, TakesOneFile) {
    EXPECT_EQ(Cli({"colours"}).exitStatus, 2);
    EXPECT_EQ(Cli({"colours", "a.ccl", "b.ccl"}).exitStatus, 2);
    EXPECT_EQ(Cli({"colours", "a.ccl", "--yes"}).exitStatus, 2);
}

} // namespace
} // namespace tonewright
