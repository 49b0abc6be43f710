// The command "settings set" where there is no room for the file.
#include "run_cli.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tonewright {
namespace {

TEST(CliSettingsObstacles, ASetThatFindsNoRoomFailsInWordsAndLeavesTheFile) {
    const TempFolder home;
    setenv("HOME", home.path.c_str(), 1);
    setenv("XDG_CONFIG_HOME", home.File(".config").c_str(), 1);
    const std::string path = home.File(".config/Quillbrook/Tonewright 17.ini");
    ASSERT_EQ(Cli({"settings", "set", "MaxUndoLevel", "7"}).exitStatus, 0);
    const std::string before = ReadTestText(path);
    for (const rlim_t size : {rlim_t{0}, rlim_t{1024}, rlim_t{before.size()}}) {
        const auto result = [size] {
            const FileSizeLimit limit(size,
                                      SIG_DFL); // as from a shell; the new text is one byte longer
            return Cli({"settings", "set", "MaxUndoLevel", "12"});
        }();
        EXPECT_EQ(result.exitStatus, 1) << size;
        if (size > 0) { // else the words have no room either: what is told comes by a file
            EXPECT_EQ(result.errors,
                      "tonewright-cli: " + path + ": could not be written: File too large\n");
        }
        EXPECT_EQ(ReadTestText(path), before) << size;
    }
    const auto result = Cli({"settings", "get", "MaxUndoLevel"});
    EXPECT_EQ(result.output, "7\n");
}

} // namespace
} // namespace tonewright
