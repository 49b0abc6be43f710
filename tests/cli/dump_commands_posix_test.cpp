// identify and rescue where disks are full, permissions stand in the way and links lead round.
#include "run_cli.h"
#include "unprivileged_cli.h"

#include "support/dump_bytes.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class CliDumpsOnPosix : public testing::Test {
protected:
    const TempFolder folder;
};

TEST_F(CliDumpsOnPosix, AFolderThatTakesNoFileIsToldOfEachAndAllIsTried) {
    const std::string one = folder.Write("one.syx", TestBank()),
                      two = folder.Write("two.syx", TestVoiceFile()), into = folder.File("saved");
    fs::create_directory(into);
    RunCliUnprivileged(
        {{into, 0500}}, {"rescue", one, two, "--into", into}, [&](const ProgramResult &result) {
            EXPECT_EQ(result.exitStatus, 1);
            EXPECT_EQ(result.output,
                      one + "\t0\tDX7 bank, 32 voices\t32\t\t\n" + two + "\t0\tDX7 voice\t1\t\t\n");
            EXPECT_EQ(result.errors, "tonewright-cli: " + one + ": " + into +
                                         "/one.syx could not be written: Permission denied\n"
                                         "tonewright-cli: " +
                                         two + ": " + into +
                                         "/two.sy1 could not be written: Permission denied\n");
        });
    EXPECT_TRUE(fs::is_empty(into));
}

TEST_F(CliDumpsOnPosix, AFullDiskKeepsNoPartOfAFileAndTheRestGoesOn) {
    const std::string disk = folder.File("disk");
    fs::create_directory(disk);
    const std::string large = folder.Write("large.syx", TestPackedVoices(128 * 8)),
                      small = folder.Write("small.sy1", TestVoiceFile());
    RunOnSmallDisk(disk, [&] { // of 64 KB, in pages of 4 KB: a bank takes two
        const auto result = Cli({"rescue", large, small, "--into", disk});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(std::ranges::count(result.output, '\n'), 33);
        EXPECT_NE(result.errors.find(" could not be written: No space left on device\n"),
                  std::string::npos);
        int banks = 0;
        for (const auto &entry : fs::directory_iterator(disk)) {
            if (entry.path().extension() == ".syx") {
                ++banks;
                EXPECT_EQ(ReadTestFile(entry.path().string()), TestBank()) << entry.path();
            }
        }
        EXPECT_GT(banks, 3);
        EXPECT_LT(banks, 9);
    });
    EXPECT_EQ(ReadTestFile(large), TestPackedVoices(128 * 8));
}

TEST_F(CliDumpsOnPosix, LinksLeadToFilesAndRoundInNoCircle) {
    fs::create_directories(folder.path / "a" / "b");
    const std::string file = folder.Write("a/b/voice", TestVoiceFile());
    fs::create_directory_symlink(folder.path / "a", folder.path / "a" / "b" / "round");
    fs::create_symlink(file, folder.path / "a" / "link");
    fs::create_symlink("nowhere", folder.path / "a" / "dangling");
    const std::string found = "\t0\t164\tDX7 voice\t1\t\n";
    ExpectOutput({"identify", folder.File("a")},
                 folder.File("a/link") + found + folder.File("a/b/voice") + found);
    // A link that is named is followed.
    ExpectOutput({"identify", folder.File("a/b/round")},
                 folder.File("a/b/round/link") + found + folder.File("a/b/round/b/voice") + found);
}

TEST_F(CliDumpsOnPosix, AFolderThatCannotBeListedIsToldAndTheRestRead) {
    fs::create_directories(folder.path / "a" / "closed");
    const std::string file = folder.Write("a/voice", TestVoiceFile());
    RunCliUnprivileged({{folder.File("a/closed"), 0}}, {"identify", folder.File("a")},
                       [&](const ProgramResult &result) {
                           EXPECT_EQ(result.exitStatus, 1);
                           EXPECT_EQ(result.output, file + "\t0\t164\tDX7 voice\t1\t\n");
                           EXPECT_EQ(result.errors, "tonewright-cli: " + folder.File("a/closed") +
                                                        ": Permission denied\n");
                       });
}

TEST_F(CliDumpsOnPosix, PipesInAFolderAreNoFilesAndNamesMayBeAnyBytes) {
    MakePipe(folder.File("pipe"));
    const std::string file = folder.Write("n\xE9", TestVoiceFile()), into = folder.File("saved");
    ExpectOutput({"identify", folder.path.string()}, file + "\t0\t164\tDX7 voice\t1\t\n");
    EXPECT_EQ(Cli({"rescue", folder.path.string(), "--into", into}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(into + "/n\xE9.sy1"), TestVoiceFile());
    const auto result = Cli({"identify", folder.File("pipe")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + folder.File("pipe") + ": "));
}

} // namespace
} // namespace tonewright
