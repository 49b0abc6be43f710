// reface DX documents on a full disk, without permission, and with sizes that no memory holds.
#include "drivers/reface_dx/files.h"

#include "common/settings.h"
#include "support/posix_limits.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

VoiceList FullList() {
    VoiceList list;
    for (int number = 0; number < 32; ++number) {
        ListSetVoice(list, ListAdd(list), VoiceObject{TestRefaceBlock(number)});
    }
    return list;
}

struct RefaceFilesPosix : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList list = FullList();

    int SaveWithin(rlim_t size, const std::string &path) {
        const FileSizeLimit limit(size);
        return RefaceSaveBank(nullptr, list, path.c_str());
    }
    int ExportWithin(rlim_t size, const std::string &path) {
        const FileSizeLimit limit(size);
        return RefaceExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0);
    }
};

TEST_F(RefaceFilesPosix, AShortWriteOfABankDeletesTheFileAndLeavesTheListEnabled) {
    CreateBackups = 0;
    for (const rlim_t size : {0u, 100u, 160u, 3000u, 6623u}) { // within header and records
        const std::string path = folder.Write("bank.srx", Bytes{});
        EXPECT_EQ(SaveWithin(size, path), 0) << size;
        EXPECT_FALSE(folder.Holds("bank.srx")) << size;
        EXPECT_TRUE(list.enabled) << size;
        EXPECT_EQ(list.items, FullList().items);
    }
    EXPECT_EQ(desktop.waitDepth, 0);
    EXPECT_EQ(SaveWithin(6624, folder.File("bank.srx")), 1);
    EXPECT_EQ(ReadTestFile(folder.File("bank.srx")).size(), 6624u);
}

TEST_F(RefaceFilesPosix, AfterAShortWriteTheFormerContentsAreInTheBackupOnly) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.srx", Bytes(100, 1));
    EXPECT_EQ(SaveWithin(2000, path), 0);
    EXPECT_FALSE(folder.Holds("bank.srx"));
    EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.srx")), Bytes(100, 1));
}

TEST_F(RefaceFilesPosix, AShortWriteOfAVoiceDeletesTheFile) {
    for (const rlim_t size : {0u, 160u, 361u}) {
        EXPECT_EQ(ExportWithin(size, folder.Write("voice.sr1", Bytes{})), 0) << size;
        EXPECT_FALSE(folder.Holds("voice.sr1")) << size;
    }
    EXPECT_EQ(ExportWithin(362, folder.File("voice.sr1")), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(folder.File("voice.sr1"))), TestRefaceVoiceFile(0));
}

TEST_F(RefaceFilesPosix, AnUnreadableFileIsRefused) {
    const std::string bank = folder.Write("bank.srx", TestRefaceBank());
    const std::string voice = folder.Write("voice.sr1", TestRefaceVoiceFile(0));
    RunUnprivileged({{bank, 0}, {voice, 0}}, [&] {
        std::int64_t time = 0;
        EXPECT_EQ(RefaceOpenBank(nullptr, list, bank.c_str(), &time), 0);
        EXPECT_NE(time, 0);
        EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, voice.c_str(), nullptr), 0);
        EXPECT_EQ(list.items, FullList().items);
    });
}

TEST_F(RefaceFilesPosix, AReadOnlyFileStaysAsItWas) {
    CreateBackups = 0;
    const std::string bank = folder.Write("bank.srx", Bytes{1, 2, 3});
    const std::string voice = folder.Write("voice.sr1", Bytes{4, 5, 6});
    RunUnprivileged({{bank, 0400}, {voice, 0400}}, [&] {
        EXPECT_EQ(RefaceSaveBank(nullptr, list, bank.c_str()), 0);
        VoiceList few;
        EXPECT_EQ(RefaceSaveBank(nullptr, few, bank.c_str()), 0) << "not deleted either";
        EXPECT_EQ(RefaceExportVoice(nullptr, list, nullptr, voice.c_str(), 0, 0), 0);
    });
    EXPECT_EQ(ReadTestFile(bank), (Bytes{1, 2, 3}));
    EXPECT_EQ(ReadTestFile(voice), (Bytes{4, 5, 6}));
}

TEST_F(RefaceFilesPosix, ANewFileInAReadOnlyFolderFails) {
    RunUnprivileged({{folder.path, 0500}}, [&] {
        EXPECT_EQ(RefaceSaveBank(nullptr, list, folder.File("bank.srx").c_str()), 0);
        EXPECT_EQ(RefaceExportVoice(nullptr, list, nullptr, folder.File("voice.sr1").c_str(), 0, 0),
                  0);
    });
    EXPECT_FALSE(folder.Holds("bank.srx"));
    EXPECT_FALSE(folder.Holds("voice.sr1"));
}

// Peak memory of this process in KiB.
long PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(RefaceFilesPosix, SizesAndCountsThatTheFileDoesNotHoldCostNoMemory) {
    const long before = PeakMemory();
    for (const std::uint32_t count : {1u, 0x40000000u, 0xFFFFFFFFu}) {
        for (const std::uint32_t size : {0u, 0x40000000u, 0xFFFFFFFFu}) {
            Bytes bank = TestRefaceBank();
            PutTestNumber(bank, 24, count);
            PutTestNumber(bank, 28, size);
            EXPECT_EQ(RefaceOpenBank(nullptr, list, folder.Write("b.srx", bank).c_str(), nullptr),
                      0);
            Bytes voice = TestRefaceVoiceFile(0);
            PutTestNumber(voice, 28, size);
            VoiceObject out;
            EXPECT_EQ(
                RefaceImportVoice(nullptr, list, 0, folder.Write("v.sr1", voice).c_str(), &out), 0);
        }
    }
    EXPECT_LT(PeakMemory() - before, 8 * 1024);
}

} // namespace
} // namespace tonewright
