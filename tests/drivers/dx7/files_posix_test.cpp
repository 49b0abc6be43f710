// DX7 documents on a full disk, and without permission.
#include "drivers/dx7/files.h"

#include "common/settings.h"
#include "support/bank_bytes.h"
#include "support/posix_limits.h"
#include "support/program_texts.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <ctime>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

VoiceList ListOfOne() {
    VoiceList list;
    ListSetVoice(list, ListAdd(list), MakeVoiceObject(Dx7DriverId, TestUnpackedVoice()));
    return list;
}

struct Dx7FilesPosix : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList list = ListOfOne();

    int SaveWithin(rlim_t size, const std::string &path) {
        const FileSizeLimit limit(size);
        return Dx7SaveBank(nullptr, list, path.c_str());
    }
    int ExportWithin(rlim_t size, const std::string &path) {
        const FileSizeLimit limit(size);
        return Dx7ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0);
    }
};

TEST_F(Dx7FilesPosix, AShortWriteOfABankDeletesTheFileAndLeavesTheListDisabled) {
    CreateBackups = 0;
    const std::string path = folder.Write("bank.syx", Bytes(100, 1));
    EXPECT_EQ(SaveWithin(4103, path), 0);
    EXPECT_FALSE(folder.Holds("bank.syx"));
    EXPECT_FALSE(list.enabled);
    EXPECT_EQ(ListCount(list), 1);
    EXPECT_EQ(desktop.waitDepth, 0);
}

TEST_F(Dx7FilesPosix, ABankThatJustFitsIsSaved) {
    EXPECT_EQ(SaveWithin(4104, folder.File("bank.syx")), 1);
    EXPECT_EQ(ReadTestFile(folder.File("bank.syx")).size(), 4104u);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7FilesPosix, ANewBankThatFallsShortIsDeletedToo) {
    EXPECT_EQ(SaveWithin(0, folder.File("bank.syx")), 0);
    EXPECT_FALSE(folder.Holds("bank.syx"));
    EXPECT_FALSE(list.enabled);
}

TEST_F(Dx7FilesPosix, AfterAShortWriteTheFormerContentsAreInTheBackupOnly) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.syx", Bytes(100, 1));
    EXPECT_EQ(SaveWithin(2000, path), 0);
    EXPECT_FALSE(folder.Holds("bank.syx"));
    EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.syx")), Bytes(100, 1));
}

TEST_F(Dx7FilesPosix, ASaveAfterAShortWriteEnablesTheListAgain) {
    EXPECT_EQ(SaveWithin(100, folder.File("bank.syx")), 0);
    EXPECT_FALSE(list.enabled);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("bank.syx").c_str()), 1);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7FilesPosix, ABackupThatFallsShortIsAskedAboutAndNotLeftBehind) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.syx", Bytes(5000, 1));
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    EXPECT_EQ(SaveWithin(4500, path), 0);
    EXPECT_EQ(ReadTestFile(path), Bytes(5000, 1));
    EXPECT_FALSE(folder.Holds("Backup of bank.syx"));
    EXPECT_TRUE(list.enabled);

    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(SaveWithin(4500, path), 1);
    EXPECT_EQ(ReadTestFile(path).size(), 4104u);
}

TEST_F(Dx7FilesPosix, AShortWriteOfAVoiceDeletesTheFileAndLeavesTheListEnabled) {
    for (const rlim_t size : {0u, 1u, 163u}) {
        const std::string path = folder.Write("voice.sy1", {});
        EXPECT_EQ(ExportWithin(size, path), 0) << size;
        EXPECT_FALSE(folder.Holds("voice.sy1")) << size;
        EXPECT_TRUE(list.enabled) << size;
    }
    EXPECT_EQ(ExportWithin(164, folder.File("voice.sy1")), 1);
    EXPECT_EQ(ReadTestFile(folder.File("voice.sy1")), TestVoiceFile());
}

TEST_F(Dx7FilesPosix, AnUnreadableBankIsRefusedWithoutAQuestion) {
    const std::string path = folder.Write("bank.syx", TestBank());
    RunUnprivileged({{path, 0}}, [&] {
        std::int64_t time = 0;
        EXPECT_EQ(Dx7OpenBank(nullptr, list, path.c_str(), &time), 0);
        EXPECT_NE(time, 0);
        EXPECT_EQ(list.items, ListOfOne().items);
    });
}

TEST_F(Dx7FilesPosix, AnUnreadableVoiceIsRefusedWithoutAQuestion) {
    const std::string path = folder.Write("voice.sy1", TestVoiceFile());
    RunUnprivileged({{path, 0}}, [&] {
        VoiceObject voice;
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, path.c_str(), &voice), 0);
        EXPECT_TRUE(voice.bytes.empty());
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, path.c_str(), nullptr), 0);
        EXPECT_EQ(list.items, ListOfOne().items);
    });
}

TEST_F(Dx7FilesPosix, AReadOnlyBankIsNeitherWrittenNorDeletedAndTheListStaysEnabled) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.syx", Bytes{1, 2, 3});
    // Twice: the backup of a read-only file is read-only too, and is replaced all the same.
    for (int time = 0; time < 2; ++time) {
        RunUnprivileged({{path, 0400}}, [&] {
            EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 0);
            EXPECT_TRUE(list.enabled);
        });
        EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
        EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.syx")), (Bytes{1, 2, 3}));
    }
}

TEST_F(Dx7FilesPosix, AReadOnlyVoiceIsNeitherWrittenNorDeleted) {
    const std::string path = folder.Write("voice.sy1", Bytes{1, 2, 3});
    RunUnprivileged({{path, 0400}}, [&] {
        EXPECT_EQ(Dx7ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 0);
    });
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
}

TEST_F(Dx7FilesPosix, ABackupThatSharesTheDocumentsFileBecomesAFileOfItsOwn) {
    CreateBackups = 1;
    const std::string backup = folder.File("Backup of bank.syx");
    for (const bool link : {false, true}) {
        const std::string path = folder.Write("bank.syx", Bytes{1, 2, 3});
        std::filesystem::remove(backup);
        if (link) {
            std::filesystem::create_symlink("bank.syx", backup);
        } else {
            std::filesystem::create_hard_link(path, backup);
        }
        EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1) << link;
        EXPECT_EQ(ReadTestFile(backup), (Bytes{1, 2, 3})) << link;
        EXPECT_EQ(ReadTestFile(path).size(), 4104u) << link;
        std::filesystem::remove(path);
    }
}

TEST_F(Dx7FilesPosix, ABankBehindALinkIsSavedThere) {
    CreateBackups = 1;
    std::filesystem::create_directory(folder.File("real"));
    const std::string real = folder.Write("real/bank.syx", Bytes{1, 2, 3});
    std::filesystem::create_symlink("real/bank.syx", folder.File("bank.syx"));
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("bank.syx").c_str()), 1);
    EXPECT_EQ(ReadTestFile(real).size(), 4104u);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.File("bank.syx")));
    EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.syx")), (Bytes{1, 2, 3}));
    // What falls short there is deleted there.
    CreateBackups = 0;
    EXPECT_EQ(SaveWithin(4103, folder.File("bank.syx")), 0);
    EXPECT_FALSE(folder.Holds("real/bank.syx"));
    EXPECT_FALSE(list.enabled);
}

TEST_F(Dx7FilesPosix, APipeInPlaceOfADocumentIsRefusedAtOnce) {
    CreateBackups = 0;
    const std::string bank = MakePipe(folder.File("x.syx"));
    const std::string file = MakePipe(folder.File("x.sy1"));
    std::int64_t time = 0;
    EXPECT_EQ(Dx7OpenBank(nullptr, list, bank.c_str(), &time), 0);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, bank.c_str()), 0);
    VoiceObject voice;
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, file.c_str(), &voice), 0);
    EXPECT_EQ(Dx7ExportVoice(nullptr, list, nullptr, file.c_str(), 0, 0), 0);
    EXPECT_TRUE(std::filesystem::is_fifo(bank));
    EXPECT_TRUE(std::filesystem::is_fifo(file));
    EXPECT_EQ(list.items, ListOfOne().items);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7FilesPosix, APipeHasNoBackupWhichIsAskedAbout) {
    CreateBackups = 1;
    const std::string bank = MakePipe(folder.File("x.syx"));
    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, bank.c_str()), 0);
    desktop.ExpectNothingLeft();
    EXPECT_TRUE(std::filesystem::is_fifo(bank));
}

TEST_F(Dx7FilesPosix, InAReadOnlyFolderTheBackupFailsAndIsAskedAbout) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.syx", Bytes{1, 2, 3});
    RunUnprivileged({{folder.path, 0500}}, [&] {
        desktop.ExpectYesNo(BackupQuestion, ResultNo);
        EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 0);
        desktop.ExpectNothingLeft();
    });
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
    RunUnprivileged({{folder.path, 0500}}, [&] {
        desktop.ExpectYesNo(BackupQuestion, ResultYes);
        EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
        desktop.ExpectNothingLeft();
    });
    EXPECT_EQ(ReadTestFile(path).size(), 4104u);
}

TEST_F(Dx7FilesPosix, ANewFileInAReadOnlyFolderFails) {
    RunUnprivileged({{folder.path, 0500}}, [&] {
        EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("bank.syx").c_str()), 0);
        EXPECT_TRUE(list.enabled);
        EXPECT_EQ(Dx7ExportVoice(nullptr, list, nullptr, folder.File("voice.sy1").c_str(), 0, 0),
                  0);
    });
    EXPECT_FALSE(folder.Holds("bank.syx"));
    EXPECT_FALSE(folder.Holds("voice.sy1"));
}

} // namespace
} // namespace tonewright
