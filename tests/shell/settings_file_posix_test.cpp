// The configuration file where it may not be written, and where there is no room for it.
#include "shell/settings_file.h"

#include "settings_fixture.h"
#include "shell/single_setting.h"
#include "support/posix_limits.h"

#include <cerrno>
#include <sys/stat.h>

using namespace tonewright;

struct SettingsFileObstacles : SettingsHome {};

TEST_F(SettingsFileObstacles, AReadOnlyFileIsReadAndLosesTheChangesInSilence) {
    WriteTestText(path, "MaxUndoLevel = 9\n");
    RunUnprivileged({{path, 0400}}, [this] {
        ConfigRead();
        EXPECT_EQ(MaxUndoLevel, 9u);
        MaxUndoLevel = 10;
        testing::internal::CaptureStderr();
        ConfigWrite();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(ReadTestText(path), "MaxUndoLevel = 9\n");
        // The old file has become its own backup.
        EXPECT_EQ(ReadTestText(maker + "Backup of Tonewright 17.ini"), "MaxUndoLevel = 9\n");
        ConfigWrite(); // which is enough
        EXPECT_FALSE(std::filesystem::exists(older));
        EXPECT_FALSE(WriteSingleText(path.c_str(), "Tonewright", "MaxUndoLevel", "11"));
        EXPECT_EQ(ReadTestText(path), "MaxUndoLevel = 9\n");
    });
}

TEST_F(SettingsFileObstacles, AFileThatCannotBeReadGivesDefaults) {
    WriteTestText(path, "MaxUndoLevel = 9\n");
    RunUnprivileged({{path, 0}}, [this] {
        EXPECT_EQ(ReadSettingsFile(ProgramSettings, path.c_str()), 0);
        ConfigRead();
        EXPECT_EQ(MaxUndoLevel, 3u);
        EXPECT_EQ(ReadSingleInteger(ProgramSettings, "MaxUndoLevel", 3), 3u);
    });
}

TEST_F(SettingsFileObstacles, AReadOnlyFolderLosesTheChangesInSilence) {
    RunUnprivileged({{maker, 0500}}, [this] {
        EXPECT_EQ(ConfigWrite(), SettingsWrite::Failed);
        EXPECT_FALSE(WriteSingleText(path.c_str(), "Tonewright", "MaxUndoLevel", "11"));
        EXPECT_FALSE(std::filesystem::exists(path));
    });
}

namespace {

// Writes three times, MaxUndoLevel being 10 in the oldest version and 12 in the file.
void WriteThreeVersions() {
    for (MaxUndoLevel = 10; MaxUndoLevel < 13; ++MaxUndoLevel) {
        EXPECT_EQ(ConfigWrite(), SettingsWrite::Done);
    }
}

// The level in a file that is whole; empty for any other.
std::string LevelOfWhole(const std::string &path) {
    const std::string text = ReadTestText(path);
    const bool whole = text.starts_with(";Tonewright configuration file\n") &&
                       text.ends_with("\nShowWelcomeWizard = 1\n");
    return whole ? LineOf(text, "MaxUndoLevel").substr(15) : "";
}

} // namespace

TEST_F(SettingsFileObstacles, AWriteThatFallsShortIsToldAndLeavesThreeWholeVersions) {
    WriteThreeVersions();
    const rlim_t size = ReadTestText(path).size();
    // The last limit has room for copies and not for the longer file.
    for (const rlim_t limited : {rlim_t{0}, size / 2, size - 1, size}) {
        ThemeCurrent = "Slate";
        SettingsWrite outcome = SettingsWrite::Done;
        int reason = 0;
        {
            const FileSizeLimit limit(limited);
            outcome = ConfigWrite();
            reason = errno;
        }
        EXPECT_EQ(outcome, SettingsWrite::Failed) << limited;
        EXPECT_EQ(reason, EFBIG) << limited;
        EXPECT_EQ(LevelOfWhole(path), "12") << limited;
        EXPECT_EQ(LevelOfWhole(backup), "11") << limited;
        EXPECT_EQ(LevelOfWhole(older), "10") << limited;
        EXPECT_EQ(FilesOfMaker().size(), 3u) << limited;
    }
}

TEST_F(SettingsFileObstacles, AFileThatIsWrittenInPlaceIsKeptOnceHoweverOftenThatFails) {
    WriteThreeVersions();
    std::filesystem::create_hard_link(path, temp.File("another name"));
    const rlim_t size = ReadTestText(path).size();
    ThemeCurrent = "Slate"; // longer than before
    for (int attempt = 0; attempt < 3; ++attempt) {
        SettingsWrite outcome = SettingsWrite::Done;
        {
            const FileSizeLimit limit(size);
            outcome = ConfigWrite();
        }
        EXPECT_EQ(outcome, SettingsWrite::Failed);
        EXPECT_EQ(LevelOfWhole(path), "12");
        EXPECT_EQ(LevelOfWhole(backup), "12");
        EXPECT_EQ(LevelOfWhole(older), "11");
    }
    MaxUndoLevel = 15;
    EXPECT_EQ(ConfigWrite(), SettingsWrite::Done);
    EXPECT_EQ(LevelOfWhole(temp.File("another name")), "15");
    EXPECT_EQ(LevelOfWhole(backup), "12");
    EXPECT_EQ(LevelOfWhole(older), "11");
}

TEST_F(SettingsFileObstacles, ABackupThatCannotBeKeptGivesWayToNothing) {
    WriteThreeVersions();
    std::filesystem::remove(older);
    MakePipe(older);
    MaxUndoLevel = 13;
    EXPECT_EQ(ConfigWrite(), SettingsWrite::NoBackup);
    EXPECT_EQ(LevelOfWhole(path), "13");
    EXPECT_EQ(LevelOfWhole(backup), "11");
}

TEST_F(SettingsFileObstacles, AFullDiskIsToldAndLeavesThreeWholeVersions) {
    RunOnSmallDisk(temp.File("app"), [this] {
        MakeProgramFolders();
        WriteThreeVersions();
        FillDisk(temp.File("app/filler"));
        EXPECT_EQ(ConfigWrite(), SettingsWrite::Failed);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(LevelOfWhole(path), "12");
        EXPECT_EQ(LevelOfWhole(backup), "11");
        EXPECT_EQ(LevelOfWhole(older), "10");
        EXPECT_EQ(FilesOfMaker().size(), 3u);
        EXPECT_FALSE(WriteSingleText(path.c_str(), "Tonewright", "MaxUndoLevel", "13"));
        EXPECT_EQ(LevelOfWhole(path), "12");
    });
}

TEST_F(SettingsFileObstacles, ASingleKeyThatFindsNoRoomLeavesTheFileAsItWas) {
    const std::string before = "[Tonewright]\nMaxUndoLevel = 9\n" + std::string(8000, 'x') + "\n";
    WriteTestText(path, before);
    for (const rlim_t size : {rlim_t{0}, rlim_t{4096}, rlim_t{before.size()}}) {
        bool written = true;
        {
            const FileSizeLimit limit(size); // the new text is one byte longer
            written = WriteSingleText(path.c_str(), "Tonewright", "MaxUndoLevel", "11");
        }
        EXPECT_FALSE(written) << size;
        EXPECT_EQ(ReadTestText(path), before) << size;
    }
    EXPECT_EQ(FilesOfMaker().size(), 1u);
}

TEST_F(SettingsFileObstacles, ASingleKeyKeepsThePermissionsOfTheFile) {
    const auto modeAfterwards = [this](mode_t before) {
        EXPECT_EQ(chmod(path.c_str(), before), 0);
        EXPECT_TRUE(WriteSingleText(path.c_str(), "Tonewright", "A", "2"));
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    };
    WriteTestText(path, "[Tonewright]\nA = 1\n");
    for (const mode_t mode : {0600u, 0640u, 0664u, 0666u}) {
        EXPECT_EQ(modeAfterwards(mode), mode);
        EXPECT_EQ(ReadTestText(path), "[Tonewright]\nA = 2\n");
    }
}

TEST_F(SettingsFileObstacles, AFileBehindALinkStaysBehindIt) {
    const std::string real = temp.WriteText("real.ini", "[Tonewright]\nA = 1\n");
    ASSERT_EQ(chmod(real.c_str(), 0640), 0);
    std::filesystem::create_symlink(real, path);
    EXPECT_TRUE(WriteSingleText(path.c_str(), "Tonewright", "A", "2"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(ReadTestText(real), "[Tonewright]\nA = 2\n");
    struct stat status {};
    ASSERT_EQ(stat(real.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
    ConfigWrite();
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_TRUE(ReadTestText(real).starts_with(";Tonewright configuration file\n"));
}

TEST_F(SettingsFileObstacles, ABackupThatSharesTheFileBecomesAFileOfItsOwn) {
    for (const bool link : {false, true}) {
        std::filesystem::remove(path);
        std::filesystem::remove(backup);
        WriteTestText(path, "MaxUndoLevel = 9\n");
        if (link) {
            std::filesystem::create_symlink(path, backup);
        } else {
            std::filesystem::create_hard_link(path, backup);
        }
        ConfigWrite();
        EXPECT_EQ(ReadTestText(backup), "MaxUndoLevel = 9\n") << link;
        EXPECT_FALSE(std::filesystem::is_symlink(backup)) << link;
        EXPECT_TRUE(ReadTestText(path).starts_with(";Tonewright configuration file\n")) << link;
        EXPECT_EQ(ReadTestText(maker + "Backup of Backup of Tonewright 17.ini"),
                  "MaxUndoLevel = 9\n")
            << link;
    }
}

TEST_F(SettingsFileObstacles, APipeInPlaceOfTheFileHoldsNeitherReaderNorWriterUp) {
    MakePipe(path);
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, path.c_str()), 0);
    ConfigRead();
    EXPECT_EQ(ReadSingleText(ProgramSettings, "A", "none"), "none");
    EXPECT_FALSE(WriteSingleText(path.c_str(), "Tonewright", "A", "2"));
    ConfigWrite();
    EXPECT_TRUE(std::filesystem::is_fifo(path));
    EXPECT_FALSE(std::filesystem::exists(maker + "Backup of Tonewright 17.ini"));
}

TEST_F(SettingsFileObstacles, APipeInPlaceOfABackupStaysAndTheFileIsWritten) {
    WriteTestText(path, "MaxUndoLevel = 9\n");
    MakePipe(backup);
    EXPECT_EQ(ConfigWrite(), SettingsWrite::NoBackup);
    EXPECT_TRUE(std::filesystem::is_fifo(backup));
    EXPECT_TRUE(ReadTestText(path).starts_with(";Tonewright configuration file\n"));
}

TEST_F(SettingsFileObstacles, ExtrasThatCannotBeReadAreNotWrittenOver) {
    WriteTestText(extras, "WholeDetune = 1\n");
    RunUnprivileged({{extras, 0200}}, [] { // it could be replaced
        CarefulMode = 1;
        EXPECT_EQ(WriteChosenSetting(ExtrasSettings, ExtrasSettings.rows[0]),
                  SettingsWrite::Failed);
        EXPECT_EQ(errno, EACCES);
    });
    EXPECT_EQ(ReadTestText(extras), "WholeDetune = 1\n");
}

TEST_F(SettingsFileObstacles, AFileThatCannotBeReadToItsEndIsToldFromAWholeOne) {
    errno = 0;
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, "/proc/self/mem"), 0); // nobody reads its start
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(ReadSettingsFile(ProgramSettings, temp.WriteText("empty", "").c_str()), 1);
}

TEST_F(SettingsFileObstacles, ASystemsFileThatMayNotBeReadOrIsAPipeDoesNoHarm) {
    WriteSystemExtras("CarefulMode = 1\n");
    WriteSystemExtras("WholeDetune = 1\n");
    std::filesystem::remove(temp.File("system1/Quillbrook/Extras.ini"));
    MakePipe(temp.File("system1/Quillbrook/Extras.ini"));
    RunUnprivileged({{temp.File("system0/Quillbrook/Extras.ini"), 0}}, [] {
        ConfigRead();
        EXPECT_EQ(CarefulMode, 0u);
        EXPECT_EQ(WholeDetune, 0u);
    });
}
