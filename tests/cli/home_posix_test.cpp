// The command line where the environment names no home folder.
#include "run_cli.h"

#include "support/environment.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <pwd.h>
#include <unistd.h>

namespace tonewright {
namespace {

struct CliWithoutHome : testing::Test {
    const EnvironmentVariable home{"HOME", std::nullopt};
    const EnvironmentVariable configuration{"XDG_CONFIG_HOME", std::nullopt};
    const std::string said = "tonewright-cli: HOME is not set and this user has no home folder: "
                             "documents and settings have no place\n";
};

TEST_F(CliWithoutHome, TakesThatOfTheAccount) {
    const std::string ofAccount = getpwuid(getuid())->pw_dir;
    const ProgramResult result = Cli({"system-information"});
    EXPECT_EQ(result.errors, "");
    EXPECT_NE(result.output.find("\nProfile folder:\t" + ofAccount + "\n"), std::string::npos)
        << result.output;
}

TEST_F(CliWithoutHome, SaysThatTheUserHasNoneAndGoesOn) {
    RunWithoutAccount([this] {
        ProgramResult result = Cli({"settings", "get", "MaxUndoLevel"});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, "3\n");
        EXPECT_EQ(result.errors, said);
        result = Cli({"settings", "set", "MaxUndoLevel", "7"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_TRUE(result.errors.starts_with(said)) << result.errors;
    });
}

TEST_F(CliWithoutHome, KeepsSettingsWhereTheEnvironmentSays) {
    const TempFolder folder;
    SetVariable("XDG_CONFIG_HOME", folder.path.string());
    RunWithoutAccount([] {
        EXPECT_EQ(Cli({"settings", "set", "MaxUndoLevel", "7"}).exitStatus, 0);
        EXPECT_EQ(Cli({"settings", "get", "MaxUndoLevel"}).output, "7\n");
    });
    EXPECT_TRUE(folder.Holds("Quillbrook/Tonewright 17.ini"));
}

} // namespace
} // namespace tonewright
