// The command "tip", beside the tips of the program and beside files of tips of other kinds.
#include "run_cli.h"

#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace tonewright {
namespace {

class CliTip : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
    }

    void WriteIni(const std::string &text) const {
        std::filesystem::create_directories(home.path / ".config/Quillbrook");
        WriteTestText(IniPath(), text);
    }
    std::string IniPath() const { return home.File(".config/Quillbrook/Tonewright 17.ini"); }

    TempFolder home;
};

TEST_F(CliTip, PrintsTheNextTipAndChangesNoSetting) {
    const std::string tips = ReadTestText(SourceFile("resources/TNWRGT.TIP"));
    const std::size_t end = tips.find('\n');
    const std::string first = tips.substr(0, end + 1);
    const std::string second = tips.substr(end + 1, tips.find('\n', end + 1) - end);
    for (int i = 0; i < 2; ++i) {
        const auto result = Cli({"tip"});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, first);
        EXPECT_EQ(result.errors, "");
    }
    EXPECT_TRUE(std::filesystem::is_empty(home.path));
    const std::string ini = "[Tonewright]\nTipOfTheDay = 2\nLastTipDate = 5\n";
    WriteIni(ini);
    EXPECT_EQ(Cli({"tip"}).output, second);
    EXPECT_EQ(ReadTestText(IniPath()), ini);
    WriteIni("[Tonewright]\nTipOfTheDay = 4000000000\n");
    EXPECT_EQ(Cli({"tip"}).output, first);
}

// Each call that a tip quotes, up to its last word.
TEST_F(CliTip, TheTipsTellOfCommandsThatThereAre) {
    const std::string tips = ReadTestText(SourceFile("resources/TNWRGT.TIP"));
    const std::regex call("\"tonewright-cli ([^\"]*)\"");
    int calls = 0;
    for (auto at = std::sregex_iterator(tips.begin(), tips.end(), call);
         at != std::sregex_iterator(); ++at, ++calls) {
        std::istringstream text((*at)[1]);
        std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
        const std::string name = words[0] + (words[0] == "db" ? " " + words.at(1) : "");
        words.push_back("--help");
        const auto result = Cli(words);
        EXPECT_EQ(result.exitStatus, 0) << (*at)[1];
        EXPECT_TRUE(result.output.starts_with("usage: tonewright-cli " + name + ' '))
            << result.output;
    }
    EXPECT_GE(calls, 4);
}

TEST_F(CliTip, TheTipsStandBesideTheProgram) {
    const std::string program = home.File("tonewright-cli");
    std::filesystem::copy_file(CliProgram(), program);
    const std::string tips = home.File("TNWRGT.TIP");
    auto result = RunProgram({program, "tip"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tonewright-cli: " + tips +
                                 ": There has been an error accessing the tip of the day.\n");
    // Line breaks are kept, and nothing else that moves the cursor.
    WriteTestText(tips, "one\x1B[2J\\ntwo\tthree\\n\n");
    result = RunProgram({program, "tip"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "one?[2J\ntwo?three\n\n");
}

TEST_F(CliTip, TakesNoWords) {
    EXPECT_EQ(Cli({"tip", "2"}).exitStatus, 2);
    EXPECT_EQ(Cli({"tip", "--yes"}).exitStatus, 2);
}

} // namespace
} // namespace tonewright
