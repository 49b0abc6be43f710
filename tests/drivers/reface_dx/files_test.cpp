// The bank and single-voice documents of the reface DX, on real files.
#include "drivers/reface_dx/files.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "support/program_texts.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

VoiceObject TestVoice(int number) {
    return VoiceObject{TestRefaceBlock(number)};
}

// A list of the voices 0 to `count` - 1.
VoiceList ListOf(int count) {
    VoiceList list;
    for (int number = 0; number < count; ++number) {
        ListSetVoice(list, ListAdd(list), TestVoice(number));
    }
    return list;
}

// A list whose one row holds a voice that stands in no test file.
VoiceList SmallList() {
    VoiceList list;
    ListSetVoice(list, ListAdd(list), TestVoice(99));
    ListSelect(list, 0);
    return list;
}

bool SameItems(const VoiceList &a, const VoiceList &b) {
    return a.items == b.items && a.selection == b.selection && a.enabled == b.enabled;
}

Bytes Joined(Bytes first, const Bytes &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes Changed(Bytes bytes, std::size_t offset, std::uint8_t value) {
    bytes[offset] = value;
    return bytes;
}

Bytes Resized(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

std::uint32_t NumberAt(const Bytes &file, std::size_t offset) {
    return file.at(offset) | std::uint32_t{file.at(offset + 1)} << 8 |
           std::uint32_t{file.at(offset + 2)} << 16 | std::uint32_t{file.at(offset + 3)} << 24;
}

struct RefaceFiles : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;

    void SetUp() override { SynthFirmware = 0; }
    int Open(VoiceList &list, const std::string &path) {
        std::int64_t time = 0;
        return RefaceOpenBank(nullptr, list, path.c_str(), &time);
    }
    int Open(VoiceList &list, const Bytes &bytes) {
        return Open(list, folder.Write("opened.srx", bytes));
    }
    int Save(VoiceList &list, const std::string &path) {
        return RefaceSaveBank(nullptr, list, path.c_str());
    }
    // The bytes are refused as a bank, without touching the list.
    void ExpectBankRefused(const Bytes &bytes, const std::string &why) {
        VoiceList list = SmallList();
        EXPECT_EQ(Open(list, bytes), 0) << why;
        EXPECT_TRUE(SameItems(list, SmallList())) << why;
    }
    void ExpectVoiceRefused(const Bytes &bytes, const std::string &why) {
        VoiceList list = SmallList();
        const std::string path = folder.Write("refused.sr1", bytes);
        VoiceObject voice;
        EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), &voice), 0) << why;
        EXPECT_TRUE(voice.bytes.empty()) << why;
        EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), nullptr), 0) << why;
        EXPECT_TRUE(SameItems(list, SmallList())) << why;
    }
};

using RefaceOpenBankTest = RefaceFiles;
using RefaceSaveBankTest = RefaceFiles;
using RefaceImportVoiceTest = RefaceFiles;
using RefaceExportVoiceTest = RefaceFiles;

TEST_F(RefaceOpenBankTest, ABankFillsTheListInFileOrder) {
    VoiceList list = SmallList();
    ListSetItemHeight(list, 10);
    MainItemFonts = {};
    ASSERT_EQ(Open(list, TestRefaceBank()), 1);
    EXPECT_EQ(list.items, ListOf(32).items);
    EXPECT_EQ(list.selection, 0);
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(list.redraw);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_EQ(MainItemFonts.title.family, "TIMES NEW ROMAN");
    EXPECT_EQ(MainItemFonts.itemHeight, 48);
    EXPECT_EQ(desktop.waitsBegun, 1);
    EXPECT_EQ(desktop.waitDepth, 0);
}

TEST_F(RefaceOpenBankTest, AFileOfTheRightExtensionOpensThroughThisDriver) {
    VoiceList list;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    const std::string path = folder.Write("BANK.SRX", TestRefaceBank());
    EXPECT_EQ(OpenDocument(nullptr, list, path.c_str(), &driver, &time), 1);
    EXPECT_EQ(driver, RefaceDriverId);
    EXPECT_STREQ(VoiceObjectName(list.items[31]), "REFACE 32");
}

TEST_F(RefaceOpenBankTest, TheTimeIsTheFilesModificationTime) {
    const std::string path = folder.Write("bank.srx", TestRefaceBank());
    const auto day = std::chrono::sys_seconds(std::chrono::seconds(1'234'567'890));
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(day));
    VoiceList list;
    std::int64_t time = 0;
    EXPECT_EQ(RefaceOpenBank(nullptr, list, path.c_str(), &time), 1);
    EXPECT_EQ(time, 1'234'567'890);
}

TEST_F(RefaceOpenBankTest, TheTimeOfAFileThatIsMissingIsThePresent) {
    VoiceList list = SmallList();
    std::int64_t time = 0;
    const std::int64_t before = std::time(nullptr);
    EXPECT_EQ(RefaceOpenBank(nullptr, list, folder.File("missing.srx").c_str(), &time), 0);
    EXPECT_GE(time, before);
    EXPECT_LE(time, std::time(nullptr));
    EXPECT_TRUE(SameItems(list, SmallList()));
    EXPECT_EQ(RefaceOpenBank(nullptr, list, folder.File("missing.srx").c_str(), nullptr), 0);
}

TEST_F(RefaceOpenBankTest, AFolderAndAnEmptyFileAreRefused) {
    const std::string path = folder.File("folder.srx");
    std::filesystem::create_directory(path);
    VoiceList list = SmallList();
    EXPECT_EQ(Open(list, path), 0);
    EXPECT_TRUE(SameItems(list, SmallList()));
    ExpectBankRefused({}, "empty");
}

TEST_F(RefaceOpenBankTest, AFileShorterThanItsHeaderIsRefused) {
    for (const std::size_t size : {1u, 8u, 36u, 159u}) {
        ExpectBankRefused(Resized(TestRefaceBank(), size), std::to_string(size) + " bytes");
    }
}

TEST_F(RefaceOpenBankTest, EachWrongByteOfMagicAndDriverIdIsRefused) {
    for (const std::size_t offset : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 16u, 17u, 18u, 19u}) {
        for (const std::uint8_t flip : {0x01, 0x20, 0x80}) {
            Bytes bank = TestRefaceBank();
            bank[offset] ^= flip;
            ExpectBankRefused(bank, "byte " + std::to_string(offset));
        }
    }
}

TEST_F(RefaceOpenBankTest, TheMagicOfASingleVoiceIsRefusedThoughTheDriverIdIsRight) {
    Bytes bank = TestRefaceBank();
    ASSERT_EQ(bank[5], 'X');
    ExpectBankRefused(Changed(bank, 5, 'x'), "the sixth letter in the other case");
    ExpectBankRefused(TestRefaceVoiceFile(0), "a single voice");
}

TEST_F(RefaceOpenBankTest, EveryOtherByteOfTheHeaderIsReadOver) {
    Bytes bank = TestRefaceBank();
    for (std::size_t offset = 8; offset < 160; ++offset) {
        const bool used = (offset >= 16 && offset < 20) || (offset >= 24 && offset < 32);
        if (!used) {
            bank[offset] ^= 0xFF; // header size, version, time, firmware, reserved
        }
    }
    VoiceList list;
    EXPECT_EQ(Open(list, bank), 1);
    EXPECT_EQ(list.items, ListOf(32).items);
}

TEST_F(RefaceOpenBankTest, AHeaderThatSays3VoicesGivesAListOf3Items) {
    VoiceList list = ListOf(32);
    EXPECT_EQ(Open(list, TestRefaceBank(3)), 1);
    EXPECT_EQ(list.items, ListOf(3).items);
    EXPECT_EQ(list.selection, 0);
    Bytes more = TestRefaceBank();
    PutTestNumber(more, 24, 3);
    EXPECT_EQ(Open(list, more), 1) << "what follows the third record is not looked at";
    EXPECT_EQ(list.items, ListOf(3).items);
}

TEST_F(RefaceOpenBankTest, AHeaderThatSays40VoicesGivesAListOf40Items) {
    VoiceList list;
    EXPECT_EQ(Open(list, TestRefaceBank(40)), 1);
    EXPECT_EQ(list.items, ListOf(40).items);
}

TEST_F(RefaceOpenBankTest, AHeaderThatSaysNoVoicesEmptiesTheList) {
    for (const std::uint32_t recordSize : {202u, 0u, 0xFFFFFFFFu}) {
        Bytes bank = TestRefaceBank();
        PutTestNumber(bank, 24, 0);
        PutTestNumber(bank, 28, recordSize);
        VoiceList list = SmallList();
        EXPECT_EQ(Open(list, bank), 1) << recordSize;
        EXPECT_EQ(ListCount(list), 0);
        EXPECT_EQ(list.selection, NoRow);
    }
}

TEST_F(RefaceOpenBankTest, AHeaderThatSays4BillionVoicesLeavesThoseThatAreThere) {
    Bytes bank = TestRefaceBank(5);
    PutTestNumber(bank, 24, 0xFFFFFFFF);
    VoiceList list = SmallList();
    EXPECT_EQ(Open(list, bank), 0);
    EXPECT_EQ(list.items, ListOf(5).items);
    EXPECT_EQ(list.selection, NoRow);
}

TEST(RefaceDecoders, ReadBytesAsTheFilesAreRead) {
    VoiceList list = SmallList();
    EXPECT_TRUE(DecodeRefaceBank(list, Joined(TestRefaceBank(), {1, 2, 3})));
    EXPECT_EQ(list.items, ListOf(32).items);
    EXPECT_EQ(list.selection, 0);
    EXPECT_FALSE(DecodeRefaceBank(list, Resized(TestRefaceBank(), 160 + 202 * 2 + 1)));
    EXPECT_EQ(list.items, ListOf(2).items);
    EXPECT_FALSE(DecodeRefaceBank(list, Resized(TestRefaceBank(), 159)));
    EXPECT_EQ(list.items, ListOf(2).items) << "without a header the list stays";
    EXPECT_EQ(DecodeRefaceVoice(TestRefaceBank()), std::nullopt);
    const VoiceObject voice = TestVoice(5);
    const VoiceObject *const voices[] = {&voice};
    const Bytes file = EncodeRefaceFile(RefaceFileKind::SingleVoice, voices, 0);
    EXPECT_EQ(DecodeRefaceVoice(file), voice);
    EXPECT_EQ(DecodeRefaceVoice(Resized(file, 361)), std::nullopt);
}

TEST_F(RefaceOpenBankTest, ABankCutWithinARecordLeavesTheVoicesBeforeTheCut) {
    struct Cut {
        std::size_t bytes;
        int voices;
    };
    for (const Cut cut : {Cut{6623, 31}, Cut{160 + 202 * 31, 31}, Cut{160 + 202 * 2 + 1, 2},
                          Cut{160 + 202, 1}, Cut{160 + 201, 0}, Cut{160, 0}}) {
        VoiceList list = SmallList();
        EXPECT_EQ(Open(list, Resized(TestRefaceBank(), cut.bytes)), 0) << cut.bytes;
        EXPECT_EQ(list.items, ListOf(cut.voices).items) << cut.bytes;
        EXPECT_EQ(list.selection, NoRow) << cut.bytes;
        EXPECT_TRUE(list.enabled && list.redraw) << cut.bytes;
        EXPECT_EQ(list.itemHeight, 48);
    }
    EXPECT_EQ(desktop.waitDepth, 0);
}

TEST_F(RefaceOpenBankTest, ARecordSizeOf100GivesBlocksOf100Bytes) {
    Bytes bank = TestRefaceBank();
    PutTestNumber(bank, 28, 100);
    VoiceList list;
    EXPECT_EQ(Open(list, bank), 1);
    ASSERT_EQ(ListCount(list), 32);
    for (int row = 0; row < 32; ++row) {
        const auto start = bank.begin() + 160 + 100 * row;
        EXPECT_EQ(list.items[row].bytes, Bytes(start, start + 100)) << row;
    }
    // The first block begins as a voice and says that it is longer than it is.
    std::string name = "former";
    EXPECT_EQ(RefaceVoiceName(name, list.items[0]), 0);
}

TEST_F(RefaceOpenBankTest, ARecordSizeOf300KeepsWhatFollowsEachVoice) {
    Bytes bank = TestRefaceHeader("TNWRDXrf", 2, 300);
    for (const int number : {4, 5}) {
        bank = Joined(bank, Resized(TestRefaceBlock(number), 300));
        bank.back() = 0x77;
    }
    VoiceList list;
    EXPECT_EQ(Open(list, bank), 1);
    ASSERT_EQ(ListCount(list), 2);
    EXPECT_EQ(list.items[1].bytes, Bytes(bank.end() - 300, bank.end()));
    EXPECT_STREQ(VoiceObjectName(list.items[1]), "REFACE 06");
}

TEST_F(RefaceOpenBankTest, ARecordSizeOf1GivesAnItemForEachByte) {
    Bytes bank = TestRefaceHeader("TNWRDXrf", 3, 1);
    bank = Joined(bank, {7, 8, 9});
    VoiceList list;
    EXPECT_EQ(Open(list, bank), 1);
    ASSERT_EQ(ListCount(list), 3);
    EXPECT_EQ(list.items[2].bytes, Bytes{9});
}

TEST_F(RefaceOpenBankTest, ARecordSizeOf0IsAShortRead) {
    Bytes bank = TestRefaceBank();
    PutTestNumber(bank, 28, 0);
    VoiceList list = SmallList();
    EXPECT_EQ(Open(list, bank), 0);
    EXPECT_EQ(ListCount(list), 0);
    PutTestNumber(bank, 24, 0xFFFFFFFF);
    list = SmallList();
    EXPECT_EQ(Open(list, bank), 0);
    EXPECT_EQ(ListCount(list), 0);
}

TEST_F(RefaceOpenBankTest, ARecordSizeLargerThanTheBytesLeftIsAShortRead) {
    for (const std::uint32_t size : {6465u, 0x10000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        for (const std::uint32_t count : {1u, 32u, 0xFFFFFFFFu}) {
            Bytes bank = TestRefaceBank();
            PutTestNumber(bank, 24, count);
            PutTestNumber(bank, 28, size);
            VoiceList list = SmallList();
            EXPECT_EQ(Open(list, bank), 0) << size;
            EXPECT_EQ(ListCount(list), 0) << size;
        }
    }
    Bytes one = TestRefaceBank();
    PutTestNumber(one, 24, 1);
    PutTestNumber(one, 28, 6464);
    VoiceList list;
    EXPECT_EQ(Open(list, one), 1) << "just as large as what is left";
    EXPECT_EQ(list.items[0].bytes, Bytes(one.begin() + 160, one.end()));
}

TEST_F(RefaceOpenBankTest, RecordsWhoseHeadersLieAreKeptAsTheyAreAndHaveNoName) {
    Bytes bank = TestRefaceBank();
    const std::size_t fields[] = {0, 4, 8, 12}; // magic, payload offset and size, extra size
    for (std::size_t row = 0; row < 4; ++row) {
        PutTestNumber(bank, 160 + 202 * row + fields[row], 0xFFFFFFFF);
    }
    PutTestNumber(bank, 160 + 202 * 4 + 8, 5); // a payload too short for a name
    VoiceList list;
    ASSERT_EQ(Open(list, bank), 1);
    for (int row = 0; row < 5; ++row) {
        std::string name = "former";
        EXPECT_EQ(RefaceVoiceName(name, list.items[row]), 0) << row;
        EXPECT_EQ(name, "former");
        EXPECT_EQ(list.items[row].bytes,
                  Bytes(bank.begin() + 160 + 202 * row, bank.begin() + 160 + 202 * (row + 1)));
    }
    // Saved they come back byte for byte, header and all.
    ASSERT_EQ(Save(list, folder.File("again.srx")), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(folder.File("again.srx"))), bank);
}

TEST_F(RefaceOpenBankTest, OutOfRangeValuesAndOddNamesComeBackByteForByte) {
    Bytes bank = TestRefaceBank();
    for (std::size_t offset = 52; offset < 202; ++offset) {
        bank[160 + offset] = 0xFF;
        bank[160 + 202 + offset] = 0;
        bank[160 + 404 + offset] = static_cast<std::uint8_t>(offset);
    }
    VoiceList list;
    ASSERT_EQ(Open(list, bank), 1);
    ASSERT_EQ(Save(list, folder.File("again.srx")), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(folder.File("again.srx"))), bank);
}

TEST_F(RefaceSaveBankTest, TheFileIsAHeaderOf160BytesAnd32WholeBlocks) {
    SynthFirmware = 0x01000203;
    VoiceList list = ListOf(32);
    const std::string path = folder.File("bank.srx");
    const auto before = static_cast<std::uint32_t>(std::time(nullptr));
    ASSERT_EQ(Save(list, path), 1);
    const Bytes file = ReadTestFile(path);
    ASSERT_EQ(file.size(), 6624u);
    EXPECT_GE(NumberAt(file, 20), before);
    EXPECT_LE(NumberAt(file, 20), static_cast<std::uint32_t>(std::time(nullptr)));
    Bytes header = {
        'T', 'N', 'W', 'R', 'D', 'X', 'r', 'f', // magic
        160, 0,   0,   0,                       // header size
        32,  2,   0,   0,                       // version 544
        'x', 'd', 'F', 'R',                     // driver
        0,   0,   0,   0,                       // time, compared above
        32,  0,   0,   0,                       // voices
        202, 0,   0,   0,                       // record size
        3,   2,   0,   1,                       // firmware
    };
    header.resize(160, 0);
    Bytes expected = header;
    for (int number = 0; number < 32; ++number) {
        expected = Joined(expected, TestRefaceBlock(number));
    }
    EXPECT_EQ(WithoutTestTime(file), expected);
    EXPECT_TRUE(list.enabled);
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(RefaceSaveBankTest, ABankSavedAndOpenedAgainHasItsVoicesInTheSamePlaces) {
    VoiceList list = ListOf(32), again;
    ASSERT_EQ(Save(list, folder.File("bank.srx")), 1);
    ASSERT_EQ(Open(again, folder.File("bank.srx")), 1);
    EXPECT_EQ(again.items, list.items);
}

TEST_F(RefaceSaveBankTest, AListOfFewerThan32VoicesIsNotSavedAndLeavesNoFile) {
    for (const int count : {0, 3, 31}) {
        VoiceList list = ListOf(count);
        EXPECT_EQ(Save(list, folder.File("bank.srx")), 0) << count;
        EXPECT_FALSE(folder.Holds("bank.srx")) << count;
        EXPECT_TRUE(list.enabled);
        EXPECT_EQ(list.items, ListOf(count).items);
    }
}

TEST_F(RefaceSaveBankTest, AListOfFewerThan32VoicesLeavesTheFormerFileInItsBackupOnly) {
    CreateBackups = 1;
    VoiceList list = ListOf(31);
    EXPECT_EQ(Save(list, folder.Write("bank.srx", TestRefaceBank())), 0);
    EXPECT_FALSE(folder.Holds("bank.srx"));
    EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.srx")), TestRefaceBank());
}

TEST_F(RefaceSaveBankTest, ARowWithoutAVoiceOrWithLessThan202BytesLeavesNoFile) {
    for (const int row : {0, 17, 31}) {
        VoiceList list = ListOf(32);
        ListTakeVoice(list, row);
        EXPECT_EQ(Save(list, folder.File("bank.srx")), 0) << row;
        EXPECT_FALSE(folder.Holds("bank.srx")) << row;
        ListSetVoice(list, row, VoiceObject{Resized(TestRefaceBlock(row), 201)});
        EXPECT_EQ(Save(list, folder.File("bank.srx")), 0) << row;
        EXPECT_FALSE(folder.Holds("bank.srx")) << row;
        ListSetVoice(list, row, TestVoice(row));
        EXPECT_EQ(Save(list, folder.File("bank.srx")), 1) << row;
        std::filesystem::remove(folder.File("bank.srx"));
    }
}

TEST_F(RefaceSaveBankTest, RowsBehindThe32ndAreNotWritten) {
    VoiceList list = ListOf(40);
    ASSERT_EQ(Save(list, folder.File("bank.srx")), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(folder.File("bank.srx"))), TestRefaceBank());
}

TEST_F(RefaceSaveBankTest, OfALongerBlockTheFirst202BytesAreWritten) {
    VoiceList list = ListOf(32);
    ListSetVoice(list, 2, VoiceObject{Resized(TestRefaceBlock(2), 300)});
    ASSERT_EQ(Save(list, folder.File("bank.srx")), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(folder.File("bank.srx"))), TestRefaceBank());
}

TEST_F(RefaceSaveBankTest, SavingOverAFileLeavesItsBackupBesideItAndASecondSaveReplacesThat) {
    CreateBackups = 1;
    VoiceList list = ListOf(32);
    const std::string path = folder.Write("my.bank.srx", Bytes{1, 2, 3});
    ASSERT_EQ(Save(list, path), 1);
    EXPECT_EQ(ReadTestFile(folder.File("Backup of my.bank.srx")), (Bytes{1, 2, 3}));
    const Bytes first = ReadTestFile(path);
    ListSetVoice(list, 0, TestVoice(50));
    ASSERT_EQ(Save(list, path), 1);
    EXPECT_EQ(ReadTestFile(folder.File("Backup of my.bank.srx")), first);
    EXPECT_NE(WithoutTestTime(ReadTestFile(path)), WithoutTestTime(first));
}

TEST_F(RefaceSaveBankTest, WithoutBackupsNoneIsMade) {
    CreateBackups = 0;
    VoiceList list = ListOf(32);
    EXPECT_EQ(Save(list, folder.Write("bank.srx", Bytes(9000, 1))), 1);
    EXPECT_FALSE(folder.Holds("Backup of bank.srx"));
    EXPECT_EQ(ReadTestFile(folder.File("bank.srx")).size(), 6624u);
}

TEST_F(RefaceSaveBankTest, AFailedBackupAnsweredWithNoLeavesTheDocumentAlone) {
    CreateBackups = 1;
    const std::string path = folder.Write("bank.srx", Bytes{1, 2, 3});
    std::filesystem::create_directory(folder.File("Backup of bank.srx"));
    VoiceList list = ListOf(32);
    desktop.Expect(
        ExpectedMessage{.text = BackupQuestion,
                        .buttons = {"Yes", "No"},
                        .answer = ResultNo,
                        .during = [&](MessageRequest &) { EXPECT_EQ(desktop.waitDepth, 1); }});
    EXPECT_EQ(Save(list, path), 0);
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
    EXPECT_EQ(desktop.waitDepth, 0);

    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(Save(list, path), 1);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(path)), TestRefaceBank());
}

TEST_F(RefaceSaveBankTest, AFolderInPlaceOfTheFileAndAMissingFolderFail) {
    const std::string path = folder.File("folder.srx");
    std::filesystem::create_directory(path);
    VoiceList list = ListOf(32);
    EXPECT_EQ(Save(list, path), 0);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(Save(list, folder.File("none/bank.srx")), 0);
    EXPECT_FALSE(folder.Holds("none"));
}

TEST_F(RefaceImportVoiceTest, AVoiceReplacesTheOneAtTheIndex) {
    VoiceList list = ListOf(32);
    const std::string path = folder.Write("voice.sr1", TestRefaceVoiceFile(60));
    ASSERT_EQ(RefaceImportVoice(nullptr, list, 7, path.c_str(), nullptr), 1);
    VoiceList expected = ListOf(32);
    ListSetVoice(expected, 7, TestVoice(60));
    EXPECT_EQ(list.items, expected.items);
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(RefaceImportVoiceTest, WithAnOutVoiceTheListIsLeftAlone) {
    VoiceList list = ListOf(32);
    const std::string path = folder.Write("voice.sr1", TestRefaceVoiceFile(60));
    for (const int row : {7, -1, 99}) {
        VoiceObject voice;
        ASSERT_EQ(RefaceImportVoice(nullptr, list, row, path.c_str(), &voice), 1);
        EXPECT_EQ(voice, TestVoice(60));
    }
    EXPECT_EQ(list.items, ListOf(32).items);
}

TEST_F(RefaceImportVoiceTest, ARowWithoutAVoiceCannotBeFilled) {
    VoiceList list = ListOf(32);
    ListTakeVoice(list, 7);
    const std::string path = folder.Write("voice.sr1", TestRefaceVoiceFile(60));
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 7, path.c_str(), nullptr), 0);
    EXPECT_EQ(ListVoice(list, 7), nullptr);
    VoiceObject voice;
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 7, path.c_str(), &voice), 1)
        << "an out voice needs no row";
}

TEST_F(RefaceImportVoiceTest, ARowPastTheEndTakesNothingThoughTheFileIsRead) {
    VoiceList list = ListOf(32);
    const std::string path = folder.Write("voice.sr1", TestRefaceVoiceFile(60));
    for (const int row : {32, 100, -1}) {
        EXPECT_EQ(RefaceImportVoice(nullptr, list, row, path.c_str(), nullptr), 1) << row;
        EXPECT_EQ(RefaceImportVoice(nullptr, list, row, folder.File("none").c_str(), nullptr), 0);
    }
    EXPECT_EQ(list.items, ListOf(32).items);
}

TEST_F(RefaceImportVoiceTest, TheFirstRecordIsTakenWhateverTheCount) {
    Bytes file = Joined(TestRefaceVoiceFile(3), TestRefaceBlock(4));
    for (const std::uint32_t count : {0u, 1u, 2u, 0xFFFFFFFFu}) {
        PutTestNumber(file, 24, count);
        VoiceList list;
        VoiceObject voice;
        const std::string path = folder.Write("voice.sr1", file);
        EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), &voice), 1) << count;
        EXPECT_EQ(voice, TestVoice(3)) << count;
    }
}

TEST_F(RefaceImportVoiceTest, ARecordOfAnotherSizeIsTakenAsItIs) {
    Bytes file = TestRefaceVoiceFile(3);
    PutTestNumber(file, 28, 100);
    VoiceList list = SmallList();
    const std::string path = folder.Write("voice.sr1", file);
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), nullptr), 1);
    EXPECT_EQ(list.items[0].bytes, Resized(TestRefaceBlock(3), 100));
}

TEST_F(RefaceImportVoiceTest, AShortReadIsRefused) {
    for (const std::size_t size : {0u, 159u, 160u, 361u}) {
        ExpectVoiceRefused(Resized(TestRefaceVoiceFile(0), size), std::to_string(size));
    }
    for (const std::uint32_t size : {0u, 203u, 0x10000u, 0xFFFFFFFFu}) {
        Bytes file = TestRefaceVoiceFile(0);
        PutTestNumber(file, 28, size);
        ExpectVoiceRefused(file, "a record size of " + std::to_string(size));
    }
}

TEST_F(RefaceImportVoiceTest, EachWrongByteOfMagicAndDriverIdIsRefused) {
    for (const std::size_t offset : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 16u, 17u, 18u, 19u}) {
        for (const std::uint8_t flip : {0x01, 0x20, 0x80}) {
            Bytes file = TestRefaceVoiceFile(0);
            file[offset] ^= flip;
            ExpectVoiceRefused(file, "byte " + std::to_string(offset));
        }
    }
}

TEST_F(RefaceImportVoiceTest, ABankIsRefusedByOneLetter) {
    ExpectVoiceRefused(TestRefaceBank(), "a bank");
    VoiceList list = SmallList();
    const std::string path = folder.Write("bank.sr1", Changed(TestRefaceBank(), 5, 'x'));
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), nullptr), 1);
    EXPECT_EQ(list.items[0], TestVoice(0));
}

TEST_F(RefaceImportVoiceTest, AFolderAndAMissingFileAreRefused) {
    VoiceList list = SmallList();
    std::filesystem::create_directory(folder.File("folder.sr1"));
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, folder.File("folder.sr1").c_str(), nullptr), 0);
    EXPECT_EQ(RefaceImportVoice(nullptr, list, 0, folder.File("none.sr1").c_str(), nullptr), 0);
    EXPECT_TRUE(SameItems(list, SmallList()));
}

TEST_F(RefaceExportVoiceTest, TheFileIsAHeaderAndOneWholeBlock) {
    SynthFirmware = 0x09090909; // not the one handed over
    VoiceList list = ListOf(32);
    const std::string path = folder.File("voice.sr1");
    const auto before = static_cast<std::uint32_t>(std::time(nullptr));
    ASSERT_EQ(RefaceExportVoice(nullptr, list, nullptr, path.c_str(), 9, 0x01020304), 1);
    const Bytes file = ReadTestFile(path);
    ASSERT_EQ(file.size(), 362u);
    EXPECT_GE(NumberAt(file, 20), before);
    Bytes expected = {
        'T', 'N', 'W', 'R', 'D', 'x', 'r', 'f', // magic
        160, 0,   0,   0,                       // header size
        32,  2,   0,   0,                       // version 544
        'x', 'd', 'F', 'R',                     // driver
        0,   0,   0,   0,                       // time
        1,   0,   0,   0,                       // voices
        202, 0,   0,   0,                       // record size
        4,   3,   2,   1,                       // firmware
    };
    expected.resize(160, 0);
    EXPECT_EQ(WithoutTestTime(file), Joined(expected, TestRefaceBlock(9)));
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(RefaceExportVoiceTest, AnExportedVoiceComesBackByteForByteReservedBytesIncluded) {
    VoiceObject voice = TestVoice(0);
    for (std::size_t offset = 20; offset < 202; ++offset) {
        voice.bytes[offset] = static_cast<std::uint8_t>(255 - offset);
    }
    VoiceList list = SmallList();
    const std::string path = folder.File("voice.sr1");
    ASSERT_EQ(RefaceExportVoice(nullptr, list, &voice, path.c_str(), 0, 0), 1);
    VoiceObject back;
    ASSERT_EQ(RefaceImportVoice(nullptr, list, 0, path.c_str(), &back), 1);
    EXPECT_EQ(back, voice);
}

TEST_F(RefaceExportVoiceTest, AGivenVoiceIsWrittenWhateverTheIndex) {
    VoiceList list = ListOf(32);
    const VoiceObject voice = TestVoice(60);
    const std::string path = folder.File("voice.sr1");
    for (const int row : {3, -1, 99}) {
        std::filesystem::remove(path);
        ASSERT_EQ(RefaceExportVoice(nullptr, list, &voice, path.c_str(), row, 0), 1);
        EXPECT_EQ(WithoutTestTime(ReadTestFile(path)), TestRefaceVoiceFile(60));
    }
}

TEST_F(RefaceExportVoiceTest, ALongerFileIsCutAndNoBackupIsMade) {
    CreateBackups = 1;
    VoiceList list = SmallList();
    const std::string path = folder.Write("voice.sr1", Bytes(500, 3));
    ASSERT_EQ(RefaceExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 1);
    EXPECT_EQ(ReadTestFile(path).size(), 362u);
    EXPECT_FALSE(folder.Holds("Backup of voice.sr1"));
}

TEST_F(RefaceExportVoiceTest, NoVoiceAtTheIndexFailsAndLeavesTheFileAlone) {
    VoiceList list = ListOf(32);
    ListTakeVoice(list, 3);
    const std::string path = folder.Write("voice.sr1", Bytes{1, 2, 3});
    for (const int row : {3, 32, -1}) {
        EXPECT_EQ(RefaceExportVoice(nullptr, list, nullptr, path.c_str(), row, 0), 0);
        EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
    }
}

TEST_F(RefaceExportVoiceTest, ABlockOfLessThan202BytesFailsAndLeavesNoFile) {
    VoiceList list;
    const VoiceObject voice{Resized(TestRefaceBlock(0), 201)};
    const std::string path = folder.Write("voice.sr1", Bytes{1, 2, 3});
    EXPECT_EQ(RefaceExportVoice(nullptr, list, &voice, path.c_str(), 0, 0), 0);
    EXPECT_FALSE(folder.Holds("voice.sr1"));
}

TEST_F(RefaceExportVoiceTest, AFolderInPlaceOfTheFileAndAMissingFolderFail) {
    const std::string path = folder.File("folder.sr1");
    std::filesystem::create_directory(path);
    VoiceList list = SmallList();
    EXPECT_EQ(RefaceExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 0);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(RefaceExportVoice(nullptr, list, nullptr, folder.File("none/v.sr1").c_str(), 0, 0),
              0);
    EXPECT_FALSE(folder.Holds("none"));
}

} // namespace
} // namespace tonewright
