// The command "system-information".
#include "run_cli.h"

#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace tonewright {
namespace {

TEST(CliSystemInformation, PrintsLabelTabAndValueOfWhatIsKnownWithoutAWindow) {
    const TempFolder home;
    SetHome(home.path.string());
    std::filesystem::create_directory(home.path / ".config");
    const ProgramResult result = Cli({"system-information"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(result.output.starts_with("Operating system:\t"));
    for (const std::string &line :
         {"Configuration folder:\t" + home.File(".config"),
          "Profile folder:\t" + home.path.string(), std::string("Application:\tTonewright"),
          std::string("Version:\t17"), std::string("Revision:\ta"), std::string("Patch:\t1")}) {
        EXPECT_NE(result.output.find("\n" + line + "\n"), std::string::npos) << line;
    }
    for (const char *absent : {"Screen", "Mouse", "Monitors", "Raw", "Windows folder"}) {
        EXPECT_EQ(result.output.find(std::string("\n") + absent), std::string::npos) << absent;
    }
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 1) << line;
    }
}

TEST(CliSystemInformation, PrintsNoControlCharacterOfAName) {
    const TempFolder home;
    const std::string folder = home.File("a\xC2\x9B"
                                         "2J\tb\xC3\xA9");
    std::filesystem::create_directory(folder);
    SetVariable("XDG_CONFIG_HOME", folder);
    const ProgramResult result = Cli({"system-information"});
    EXPECT_NE(result.output.find("Configuration folder:\t" + home.File("a?2J?b\xC3\xA9\n")),
              std::string::npos);
    EXPECT_EQ(result.output.find("\xC2\x9B"), std::string::npos);
}

TEST(CliSystemInformation, TakesNoArguments) {
    EXPECT_EQ(Cli({"system-information", "x"}).exitStatus, 2);
    EXPECT_EQ(Cli({"system-information", "--yes"}).exitStatus, 2);
}

} // namespace
} // namespace tonewright
