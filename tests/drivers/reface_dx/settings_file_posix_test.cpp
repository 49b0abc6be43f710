// Files of reface DX settings on a full disk, without permission, and with a pipe in their place.
#include "drivers/reface_dx/configure.h"
#include "drivers/reface_dx/settings_file.h"

#include "common/folders.h"
#include "common/settings.h"
#include "support/fake_midi.h"
#include "support/posix_limits.h"
#include "support/program_texts.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

const std::string Former = "the former file\n";

struct SavedSettings : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    SynthConfigBlock block{.driverId = RefaceDriverId, .midiIn = 0, .midiOut = 1};
    bool collected = false;

    // The user will choose a name in the folder.
    void ExpectSaveAs(const std::string &name) {
        desktop.Expect(
            ExpectedFileDialog{.kind = FileDialogKind::SaveExtra, .answer = folder.File(name)});
    }
    void Save() {
        SaveRefaceSettings(nullptr, block, [this] { collected = true; });
    }
    void ExpectFailure() { desktop.ExpectMessage(NoSuchText); }
};

TEST_F(SavedSettings, OnAFullDiskLeaveNoCutFileButTheBackup) {
    CreateBackups = 1;
    folder.WriteText("mine.crg", Former);
    ExpectSaveAs("mine.crg");
    ExpectFailure();
    {
        const FileSizeLimit limit(100);
        Save();
    }
    EXPECT_TRUE(collected);
    EXPECT_FALSE(folder.Holds("mine.crg"));
    EXPECT_EQ(ReadTestText(folder.File("Backup of mine.crg")), Former);
    EXPECT_EQ(desktop.configurationsSaved, 0);
}

TEST_F(SavedSettings, ThatCannotBeReadToTheirEndAreNotTaken) {
    block.system[0] = 5;
    errno = 0;
    EXPECT_EQ(ReadCrgFile("/proc/self/mem", block), 0); // a file whose start nobody can read
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(block.system[0], 0);
    EXPECT_EQ(ReadCrgFile(folder.WriteText("empty.crg", "").c_str(), block), 1);
}

TEST_F(SavedSettings, OnAFullDiskKeepTheFormerFileInCarefulMode) {
    CreateBackups = 0;
    CarefulMode = 1;
    folder.WriteText("mine.crg", Former);
    ExpectSaveAs("mine.crg");
    ExpectFailure();
    {
        const FileSizeLimit limit(100);
        Save();
    }
    EXPECT_EQ(ReadTestText(folder.File("mine.crg")), Former);
}

TEST_F(SavedSettings, WithoutRoomForABackupKeepTheFormerFileUnlessTheUserGoesOn) {
    CreateBackups = 1;
    std::filesystem::create_directory(folder.path / "disk");
    RunOnSmallDisk(folder.File("disk"), [this] {
        folder.WriteText("disk/mine.crg", Former);
        FillDisk(folder.File("disk/filler"));
        ExpectSaveAs("disk/mine.crg");
        desktop.ExpectYesNo(BackupQuestion, ResultNo);
        Save();
        EXPECT_FALSE(collected);
        EXPECT_EQ(ReadTestText(folder.File("disk/mine.crg")), Former);
        desktop.ExpectNothingLeft();
    });
}

TEST_F(SavedSettings, InAReadOnlyFolderTellOfTheFailure) {
    CreateBackups = 0;
    RunUnprivileged({{folder.path, 0500}}, [this] {
        ExpectSaveAs("new.crg");
        ExpectFailure();
        Save();
        desktop.ExpectNothingLeft();
        EXPECT_TRUE(collected);
    });
    EXPECT_FALSE(folder.Holds("new.crg"));
}

TEST_F(SavedSettings, OverAReadOnlyFileLeaveItAsItWas) {
    CreateBackups = 0;
    RunUnprivileged({{folder.WriteText("mine.crg", Former), 0400}}, [this] {
        ExpectSaveAs("mine.crg");
        ExpectFailure();
        Save();
        desktop.ExpectNothingLeft();
    });
    EXPECT_EQ(ReadTestText(folder.File("mine.crg")), Former);
}

TEST_F(SavedSettings, AreNotReadFromAPipeNorWaitedFor) {
    const std::string path = MakePipe(folder.File("AutoConfig.crg"));
    EXPECT_EQ(ReadCrgFile(path.c_str(), block), 0);
    EXPECT_EQ(WriteCrgFile(path.c_str(), block), 0);
    EXPECT_TRUE(folder.Holds("AutoConfig.crg"));
}

TEST_F(SavedSettings, AreNotSentFromAPipeThatIsAutoConfig) {
    FakeMidi midi;
    const int out = midi.AddOutput("reface DX");
    PlatformFolders.documents = folder.Folder();
    std::filesystem::create_directory(folder.path / "My Tonewright 17 Documents");
    MakePipe(folder.File("My Tonewright 17 Documents/AutoConfig.crg"));
    EXPECT_EQ(RefaceAutoConfigure(nullptr, out), 0);
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(SavedSettings, AreNotReadWithoutPermission) {
    const std::string path = folder.WriteText("mine.crg", CrgFirstLine);
    RunUnprivileged({{path, 0}}, [&] { EXPECT_EQ(ReadCrgFile(path.c_str(), block), 0); });
}

} // namespace
} // namespace tonewright
