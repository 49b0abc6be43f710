// The bank and single-voice documents of the DX7 family, on real files.
#include "drivers/dx7/files.h"

#include "common/settings.h"
#include "core/current.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/bank_bytes.h"
#include "support/program_texts.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <random>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string DamageQuestion(const std::string &name) {
    return "The data in the document " + name +
           " may be damaged.\n\nDo you wish to open it anyway?";
}

// The 156 payload bytes of a row.
Bytes VoiceAt(const VoiceList &list, int row) {
    const VoiceObject *voice = ListVoice(list, row);
    return voice ? Bytes(voice->bytes.begin() + 52, voice->bytes.end()) : Bytes();
}

std::string NameAt(const VoiceList &list, int row) {
    std::string name;
    const VoiceObject *voice = ListVoice(list, row);
    return voice && Dx7VoiceName(name, *voice) > 0 ? name : "";
}

VoiceObject TestVoice() {
    return MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
}

// A list with one row that holds a voice of its own.
VoiceList SmallList() {
    VoiceList list;
    ListSetVoice(list, ListAdd(list), TestVoice());
    return list;
}

// The bank of TestBank() as a list.
VoiceList FullList() {
    VoiceList list;
    const Bytes bank = TestBank();
    DecodeDx7Bank(list, std::span<const std::uint8_t, Dx7BankFileSize>(bank.data(), bank.size()));
    return list;
}

Bytes Slice(const Bytes &bytes, std::size_t from, std::size_t size) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return Bytes(start, start + static_cast<std::ptrdiff_t>(size));
}

bool SameItems(const VoiceList &a, const VoiceList &b) {
    return a.items == b.items && a.selection == b.selection && a.enabled == b.enabled;
}

struct Dx7Files : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;

    int Open(VoiceList &list, const std::string &path) {
        std::int64_t time = 0;
        return Dx7OpenBank(nullptr, list, path.c_str(), &time);
    }
    // The bytes are refused as a bank, without a question and without touching the list.
    void ExpectBankRefused(const Bytes &bytes, const std::string &why) {
        VoiceList list = SmallList();
        EXPECT_EQ(Open(list, folder.Write("refused.syx", bytes)), 0) << why;
        EXPECT_TRUE(SameItems(list, SmallList())) << why;
    }
    void ExpectVoiceRefused(const Bytes &bytes, const std::string &why) {
        VoiceList list = SmallList();
        const std::string path = folder.Write("refused.sy1", bytes);
        VoiceObject voice;
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, path.c_str(), &voice), 0) << why;
        EXPECT_TRUE(voice.bytes.empty()) << why;
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, path.c_str(), nullptr), 0) << why;
        EXPECT_TRUE(SameItems(list, SmallList())) << why;
    }
};

using Dx7OpenBankTest = Dx7Files;
using Dx7SaveBankTest = Dx7Files;
using Dx7ImportVoiceTest = Dx7Files;
using Dx7ExportVoiceTest = Dx7Files;

TEST_F(Dx7OpenBankTest, ABankFillsTheListInFileOrder) {
    VoiceList list = SmallList();
    ListSetItemHeight(list, 10);
    MainItemFonts = {};
    ASSERT_EQ(Open(list, folder.Write("bank.syx", TestBank())), 1);
    ASSERT_EQ(ListCount(list), 32);
    for (int row = 0; row < 32; ++row) {
        EXPECT_EQ(NameAt(list, row), TestVoiceName(row));
        EXPECT_EQ(VoiceAt(list, row).at(134), row);
    }
    EXPECT_EQ(list.selection, 0);
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(list.redraw);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_EQ(MainItemFonts.title.family, "TIMES NEW ROMAN");
    EXPECT_EQ(MainItemFonts.itemHeight, 48);
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(Dx7OpenBankTest, TheListIsDisabledAndNotRedrawnWhileItIsFilled) {
    VoiceList list;
    int added = 0;
    list.observer = [&](ListChange change) {
        if (change == ListChange::Items && ListCount(list) > 0) {
            ++added;
            EXPECT_FALSE(list.enabled);
            EXPECT_FALSE(list.redraw);
        }
    };
    EXPECT_EQ(Open(list, folder.Write("bank.syx", TestBank())), 1);
    EXPECT_GE(added, 1);
}

TEST_F(Dx7OpenBankTest, ALongerListIsReplaced) {
    VoiceList list;
    for (int row = 0; row < 40; ++row) {
        ListSetVoice(list, ListAdd(list), TestVoice());
    }
    EXPECT_EQ(Open(list, folder.Write("bank.syx", TestBank())), 1);
    EXPECT_TRUE(SameItems(list, FullList()));
}

TEST_F(Dx7OpenBankTest, TheTimeIsTheFilesModificationTime) {
    const std::string path = folder.Write("bank.syx", TestBank());
    const auto day = std::chrono::sys_seconds(std::chrono::seconds(1'234'567'890));
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(day));
    VoiceList list;
    std::int64_t time = 0;
    EXPECT_EQ(Dx7OpenBank(nullptr, list, path.c_str(), &time), 1);
    EXPECT_EQ(time, 1'234'567'890);
}

TEST_F(Dx7OpenBankTest, TheTimeOfAFileThatIsMissingIsThePresent) {
    VoiceList list = SmallList();
    std::int64_t time = 0;
    const std::int64_t before = std::time(nullptr);
    EXPECT_EQ(Dx7OpenBank(nullptr, list, folder.File("missing.syx").c_str(), &time), 0);
    EXPECT_GE(time, before);
    EXPECT_LE(time, std::time(nullptr));
    EXPECT_TRUE(SameItems(list, SmallList()));
}

TEST_F(Dx7OpenBankTest, AFolderIsRefusedWithoutAQuestion) {
    const std::string path = folder.File("folder.syx");
    std::filesystem::create_directory(path);
    VoiceList list = SmallList();
    EXPECT_EQ(Open(list, path), 0);
    EXPECT_TRUE(SameItems(list, SmallList()));
}

TEST_F(Dx7OpenBankTest, AnEmptyFileIsRefusedWithoutAQuestion) {
    ExpectBankRefused({}, "empty");
}

TEST_F(Dx7OpenBankTest, AFileOneByteTooShortIsRefusedWithoutAQuestion) {
    Bytes bank = TestBank();
    bank.pop_back();
    ASSERT_EQ(bank.size(), 4103u);
    ExpectBankRefused(bank, "without its end byte");
    bank.back() = 0xF7;
    ExpectBankRefused(bank, "with an end byte one too early");
}

TEST(Dx7Decoders, TakeTheRightFrameWhateverItsSums) {
    ScriptedDesktop desktop; // that fails on any question
    Bytes bank = TestBank();
    bank[4] = 0x21;
    bank[4102] ^= 1;
    bank.push_back(0);
    VoiceList list = SmallList();
    EXPECT_TRUE(DecodeDx7Bank(list, bank));
    EXPECT_TRUE(SameItems(list, FullList()));
    const VoiceObject voice = TestVoice();
    Bytes file = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    file.insert(file.end(), voice.bytes.begin() + 52, voice.bytes.end());
    file.insert(file.end(), {0x7F, 0xF7});
    EXPECT_EQ(DecodeDx7Voice(file), voice);
}

TEST(Dx7Decoders, RefuseAWrongFrameAndLeaveTheList) {
    Bytes bank = TestBank(), cut = bank, wrong = bank;
    cut.pop_back();
    wrong[3] = 0x00;
    VoiceList list = SmallList();
    for (const Bytes &bytes : {Bytes(), cut, wrong}) {
        EXPECT_FALSE(DecodeDx7Bank(list, bytes));
        EXPECT_EQ(DecodeDx7Voice(bytes), std::nullopt);
    }
    EXPECT_TRUE(SameItems(list, SmallList()));
    Bytes file(164);
    EXPECT_EQ(DecodeDx7Voice(file), std::nullopt);
}

TEST_F(Dx7OpenBankTest, ALongerFileWithARightBankInFrontOpensWithoutAQuestion) {
    Bytes bank = TestBank();
    bank.resize(4200, 0x11);
    VoiceList list;
    EXPECT_EQ(Open(list, folder.Write("long.syx", bank)), 1);
    EXPECT_TRUE(SameItems(list, FullList()));
}

TEST_F(Dx7OpenBankTest, AnEndByteOnlyBehindALongerFileIsNone) {
    Bytes bank = TestBank();
    bank[4103] = 0x11;
    bank.resize(4200, 0xF7);
    ExpectBankRefused(bank, "end byte at the end of a longer file");
}

TEST_F(Dx7OpenBankTest, EachWrongHeaderByteIsRefusedWithoutAQuestion) {
    for (const std::size_t offset : {0u, 1u, 2u, 3u, 4103u}) {
        for (const std::uint8_t flip : {0x01, 0x80}) {
            Bytes bank = TestBank();
            bank[offset] ^= flip;
            ExpectBankRefused(bank, "byte " + std::to_string(offset));
        }
    }
}

TEST_F(Dx7OpenBankTest, AnotherChannelIsAWrongHeader) {
    Bytes bank = TestBank();
    bank[2] = 5;
    ExpectBankRefused(bank, "channel 6");
}

TEST_F(Dx7OpenBankTest, AWrongByteCountAsksEvenWithARightChecksum) {
    Bytes bank = TestBank();
    bank[4] = 0x10;
    bank[5] = 0x00;
    const std::string path = folder.Write("count.syx", bank);
    for (const int answer : {ResultNo, ResultYes}) {
        VoiceList list = SmallList();
        desktop.ExpectYesNo(DamageQuestion("count.syx"), answer);
        EXPECT_EQ(Open(list, path), answer == ResultYes);
        EXPECT_TRUE(SameItems(list, answer == ResultYes ? FullList() : SmallList()));
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7OpenBankTest, EitherByteOfTheCountAsksWhenItIsWrong) {
    for (const std::size_t offset : {4u, 5u}) {
        Bytes bank = TestBank();
        bank[offset] ^= 0x01;
        VoiceList list;
        desktop.ExpectYesNo(DamageQuestion("count.syx"), ResultYes);
        EXPECT_EQ(Open(list, folder.Write("count.syx", bank)), 1);
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7OpenBankTest, AWrongCountAndAWrongChecksumAskOnce) {
    Bytes bank = TestBank();
    bank[4] = 0x10;
    bank[4102] ^= 1;
    VoiceList list;
    desktop.ExpectYesNo(DamageQuestion("count.syx"), ResultYes);
    EXPECT_EQ(Open(list, folder.Write("count.syx", bank)), 1);
}

TEST_F(Dx7OpenBankTest, AWrongChecksumAnsweredWithNoLeavesTheListAsItWas) {
    Bytes bank = TestBank();
    bank[4102] ^= 1;
    VoiceList list = SmallList();
    ListSelect(list, 0);
    const VoiceList before = list;
    desktop.Expect(
        ExpectedMessage{.text = DamageQuestion("sum.syx"),
                        .buttons = {"Yes", "No"},
                        .answer = ResultNo,
                        .during = [&](MessageRequest &) { EXPECT_EQ(desktop.waitDepth, 1); }});
    EXPECT_EQ(Open(list, folder.Write("sum.syx", bank)), 0);
    EXPECT_TRUE(SameItems(list, before));
    EXPECT_EQ(desktop.waitDepth, 0);
}

TEST_F(Dx7OpenBankTest, AWrongChecksumAnsweredWithYesLoadsAllVoices) {
    Bytes bank = TestBank();
    bank[6 + 31 * 128 + 127] = '!'; // one data byte changed, the checksum left
    VoiceList list;
    desktop.ExpectYesNo(DamageQuestion("sum.syx"), ResultYes);
    EXPECT_EQ(Open(list, folder.Write("sum.syx", bank)), 1);
    ASSERT_EQ(ListCount(list), 32);
    EXPECT_EQ(NameAt(list, 0), "VOICE 01");
    EXPECT_EQ(NameAt(list, 31), "VOICE 32 !");
}

TEST_F(Dx7OpenBankTest, AChecksumWithItsHighBitSetIsWrong) {
    Bytes bank = TestBank();
    bank[4102] |= 0x80;
    VoiceList list;
    desktop.ExpectYesNo(DamageQuestion("sum.syx"), ResultNo);
    EXPECT_EQ(Open(list, folder.Write("sum.syx", bank)), 0);
}

TEST_F(Dx7OpenBankTest, TheQuestionNamesTheFileInUtf8) {
    Bytes bank = TestBank();
    bank[4102] ^= 1;
    VoiceList list;
    desktop.ExpectYesNo(DamageQuestion("Glöckchen ♪.v2.syx"), ResultNo);
    EXPECT_EQ(Open(list, folder.Write("Glöckchen ♪.v2.syx", bank)), 0);
}

TEST_F(Dx7OpenBankTest, ADisabledListIsEnabledByASuccess) {
    VoiceList list = SmallList();
    ListEnable(list, false);
    EXPECT_EQ(Open(list, folder.Write("bank.syx", TestBank())), 1);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7OpenBankTest, NamesWithAnyBytesAreKept) {
    const Bytes names[] = {
        {0x80, 0xE9, 0xFF, ' ', 0xA0, 0x7F, 0xC3, 0x28, 0x81, 0xFE},
        {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '},
        {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
        {'A', 0, 'B', 0, 0, ' ', 0, ' ', 0, 0},
    };
    Bytes bank = TestBank();
    for (int row = 0; row < 4; ++row) {
        std::ranges::copy(
            names[row], bank.begin() + static_cast<std::ptrdiff_t>(TestBankVoiceOffset(row)) + 118);
    }
    FixTestChecksum(bank);
    CreateBackups = 0;
    VoiceList list;
    ASSERT_EQ(Open(list, folder.Write("names.syx", bank)), 1);
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(Slice(VoiceAt(list, row), 145, 10), names[row]) << row;
    }
    EXPECT_EQ(NameAt(list, 1), " ");
    EXPECT_EQ(NameAt(list, 2), "");
    EXPECT_EQ(NameAt(list, 3), "A");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, folder.File("again.syx").c_str()), 1);
    EXPECT_EQ(ReadTestFile(folder.File("again.syx")), bank);
}

TEST_F(Dx7SaveBankTest, ABankSavedAndOpenedAgainHasItsVoicesInTheSamePlaces) {
    VoiceList list = FullList();
    const std::string path = folder.File("saved.syx");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), TestBank());
    EXPECT_TRUE(list.enabled);
    EXPECT_EQ(desktop.waitsBegun, 1);
    VoiceList again;
    ASSERT_EQ(Open(again, path), 1);
    EXPECT_TRUE(SameItems(again, list));
}

TEST_F(Dx7SaveBankTest, ADetuneAboveSevenIsSavedWholeAndReadWithoutItsHighestBit) {
    VoiceList list = FullList();
    VoiceObject voice = TestVoice(); // detune 14 in its first operator block
    ListSetVoice(list, 4, voice);
    const std::string path = folder.File("saved.syx");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path)[6 + 4 * 128 + 12], 0x73);
    VoiceList again;
    ASSERT_EQ(Open(again, path), 1);
    EXPECT_EQ(VoiceAt(list, 4)[20], 14);
    EXPECT_EQ(VoiceAt(again, 4)[20], 6);
}

// 128 packed bytes whose fields have any value of their range, the detunes of the operators all of
// theirs in turn.
Bytes AnyPackedVoice(int number, std::mt19937 &random) {
    const auto upTo = [&random](unsigned largest) {
        return static_cast<std::uint8_t>(random() % (largest + 1));
    };
    Bytes voice;
    for (int block = 0; block < 6; ++block) {
        for (int rateOrLevel = 0; rateOrLevel < 11; ++rateOrLevel) {
            voice.push_back(upTo(99));
        }
        voice.push_back(upTo(15)); // two curves
        const int detune = (6 * number + block) % 15;
        voice.push_back(static_cast<std::uint8_t>(detune << 3 | upTo(7)));
        voice.push_back(upTo(31)); // two sensitivities
        voice.push_back(upTo(99)); // output level
        voice.push_back(upTo(63)); // mode and coarse frequency
        voice.push_back(upTo(99)); // fine frequency
    }
    for (int rateOrLevel = 0; rateOrLevel < 8; ++rateOrLevel) {
        voice.push_back(upTo(99));
    }
    voice.push_back(upTo(31)); // algorithm
    voice.push_back(upTo(15)); // feedback and key sync
    for (int lfo = 0; lfo < 4; ++lfo) {
        voice.push_back(upTo(99));
    }
    voice.push_back(static_cast<std::uint8_t>(upTo(7) << 4 | upTo(5) << 1 | upTo(1)));
    voice.push_back(upTo(48)); // transpose
    for (int letter = 0; letter < 10; ++letter) {
        voice.push_back(static_cast<std::uint8_t>(' ' + upTo(94)));
    }
    return voice;
}

Bytes AnyBank(std::mt19937 &random) {
    Bytes bank = TestBank();
    for (int number = 0; number < 32; ++number) {
        std::ranges::copy(AnyPackedVoice(number, random),
                          bank.begin() + static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number)));
    }
    FixTestChecksum(bank);
    return bank;
}

TEST_F(Dx7SaveBankTest, WithWholeDetuneABankThatIsOpenedAndSavedIsTheSame) {
    std::mt19937 random(9);
    const std::string saved = folder.File("saved.syx");
    CreateBackups = 0;
    for (int run = 0; run < 20; ++run) {
        const Bytes bank = AnyBank(random);
        const std::string path = folder.Write("any.syx", bank);
        for (const std::uint32_t whole : {0u, 1u}) {
            WholeDetune = whole;
            VoiceList list;
            ASSERT_EQ(Open(list, path), 1);
            ASSERT_EQ(Dx7SaveBank(nullptr, list, saved.c_str()), 1);
            Bytes expected = bank;
            for (int number = 0; whole == 0 && number < 32; ++number) {
                for (std::size_t block = 0; block < 6; ++block) {
                    expected[TestBankVoiceOffset(number) + 17 * block + 12] &= 0x3F;
                }
            }
            FixTestChecksum(expected);
            EXPECT_EQ(ReadTestFile(saved), expected) << run << " " << whole;
        }
    }
}

// The bits of a packed voice that belong to nothing are not kept: of each operator the upper four
// of its curves, the highest of rate scaling and detune, three of the sensitivities, two of mode
// and frequency; of the voice the upper four of feedback and key sync, and the highest of the LFO's
// wave.
TEST_F(Dx7SaveBankTest, WithWholeDetuneTheBitsOfNoFieldAreAllThatIsLost) {
    std::mt19937 random(10);
    WholeDetune = 1;
    CreateBackups = 0;
    const Bytes bank = AnyBank(random);
    Bytes marked = bank;
    for (int number = 0; number < 32; ++number) {
        std::uint8_t *voice = marked.data() + TestBankVoiceOffset(number);
        for (std::size_t block = 0; block < 6; ++block) {
            voice[17 * block + 11] |= 0xF0;
            voice[17 * block + 12] |= 0x80;
            voice[17 * block + 13] |= 0xE0;
            voice[17 * block + 15] |= 0xC0;
        }
        voice[111] |= 0xF0;
        voice[116] |= 0x80;
    }
    FixTestChecksum(marked);
    VoiceList list;
    ASSERT_EQ(Open(list, folder.Write("marked.syx", marked)), 1);
    const std::string saved = folder.File("saved.syx");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, saved.c_str()), 1);
    EXPECT_EQ(ReadTestFile(saved), bank);
}

TEST_F(Dx7SaveBankTest, ALongerFileIsCutToTheBank) {
    CreateBackups = 0;
    const std::string path = folder.Write("saved.syx", Bytes(5000, 0x22));
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), TestBank());
}

TEST_F(Dx7SaveBankTest, AnEmptyListIsSavedAsZeroVoices) {
    VoiceList list;
    const std::string path = folder.File("empty.syx");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    Bytes expected = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    expected.resize(4103, 0);
    expected.push_back(0xF7);
    EXPECT_EQ(ReadTestFile(path), expected);
    VoiceList again;
    ASSERT_EQ(Open(again, path), 1);
    for (int row = 0; row < 32; ++row) {
        EXPECT_EQ(VoiceAt(again, row), Bytes(156, 0)); // operatorEnable among them
    }
}

TEST_F(Dx7SaveBankTest, PlacesWithoutAVoiceOfThisFamilyBecomeZeroVoices) {
    VoiceList list = FullList();
    for (int row = 31; row >= 20; --row) {
        ListDelete(list, row);
    }
    ListTakeVoice(list, 3);
    const Bytes payload = TestUnpackedVoice();
    ListSetVoice(list, 5, MakeVoiceObject(RefaceDriverId, payload));
    VoiceObject wrongMagic = TestVoice();
    wrongMagic.bytes[0] ^= 1;
    ListSetVoice(list, 7, wrongMagic);
    VoiceObject cut = TestVoice();
    cut.bytes.pop_back();
    ListSetVoice(list, 9, cut);
    ListSetVoice(list, 11, MakeVoiceObject(Dx7DriverId, Slice(payload, 0, 155)));

    Bytes expected = TestBank();
    for (const int row : {3, 5, 7, 9, 11, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31}) {
        const auto start = expected.begin() + static_cast<std::ptrdiff_t>(TestBankVoiceOffset(row));
        std::fill(start, start + 128, std::uint8_t{0});
    }
    FixTestChecksum(expected);
    const std::string path = folder.File("gaps.syx");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), expected);

    VoiceList again;
    ASSERT_EQ(Open(again, path), 1);
    EXPECT_EQ(ListCount(again), 32);
    EXPECT_EQ(VoiceAt(again, 5).at(155), 0);
    EXPECT_EQ(VoiceAt(again, 4).at(155), 0x3F);
}

TEST_F(Dx7SaveBankTest, APayloadBehindALongerHeaderIsFoundByItsOffset) {
    VoiceObject voice = TestVoice();
    voice.bytes.insert(voice.bytes.begin() + 52, 4, 0xEE);
    voice.bytes[4] = 56;
    VoiceList list;
    ListSetVoice(list, ListAdd(list), voice);
    VoiceList plain = SmallList();
    Bytes image(Dx7BankFileSize), plainImage(Dx7BankFileSize);
    EncodeDx7Bank(list, std::span<std::uint8_t, Dx7BankFileSize>(image.data(), image.size()));
    EncodeDx7Bank(plain,
                  std::span<std::uint8_t, Dx7BankFileSize>(plainImage.data(), plainImage.size()));
    EXPECT_EQ(image, plainImage);
    EXPECT_EQ(image[6], 96);
}

TEST_F(Dx7SaveBankTest, RowsBeyondTheThirtySecondAreNotSaved) {
    VoiceList list = FullList();
    ListSetVoice(list, ListAdd(list), TestVoice());
    const std::string path = folder.File("more.syx");
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), TestBank());
}

TEST_F(Dx7SaveBankTest, ADisabledOperatorLosesItsLevelInABankAndKeepsItInAVoiceFile) {
    VoiceList list = SmallList(); // its second operator block is off and has level 58
    const std::string bank = folder.File("bank.syx"), single = folder.File("voice.sy1");
    ASSERT_EQ(Dx7SaveBank(nullptr, list, bank.c_str()), 1);
    ASSERT_EQ(Dx7ExportVoice(nullptr, list, nullptr, single.c_str(), 0, 0), 1);
    EXPECT_EQ(ReadTestFile(bank)[6 + 17 + 14], 0);
    EXPECT_EQ(ReadTestFile(single)[6 + 21 + 16], 58);
    VoiceObject back;
    ASSERT_EQ(Dx7ImportVoice(nullptr, list, 0, single.c_str(), &back), 1);
    EXPECT_EQ(back, TestVoice());
}

TEST_F(Dx7SaveBankTest, TheFormerFileIsBackedUpBesideIt) {
    CreateBackups = 1;
    const std::string path = folder.Write("my.bank.syx", Bytes{1, 2, 3});
    folder.Write("Backup of my.bank.syx", Bytes(9000, 9));
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), TestBank());
    EXPECT_EQ(ReadTestFile(folder.File("Backup of my.bank.syx")), (Bytes{1, 2, 3}));
}

TEST_F(Dx7SaveBankTest, BackupsAreOnByDefault) {
    const std::string path = folder.Write("a.syx", Bytes{1});
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(folder.File("Backup of a.syx")), Bytes{1});
}

TEST_F(Dx7SaveBankTest, ANewFileNeedsNoBackup) {
    CreateBackups = 1;
    folder.Write("Backup of new.syx", Bytes{7});
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("new.syx").c_str()), 1);
    EXPECT_EQ(ReadTestFile(folder.File("Backup of new.syx")), Bytes{7});
}

TEST_F(Dx7SaveBankTest, WithoutBackupsNoneIsMade) {
    CreateBackups = 0;
    const std::string path = folder.Write("a.syx", Bytes{1});
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_FALSE(folder.Holds("Backup of a.syx"));
}

TEST_F(Dx7SaveBankTest, AFailedBackupAnsweredWithNoLeavesTheFileAsItWas) {
    CreateBackups = 1;
    const std::string path = folder.Write("a.syx", Bytes{1, 2, 3});
    std::filesystem::create_directory(folder.File("Backup of a.syx"));
    VoiceList list = FullList();
    desktop.Expect(
        ExpectedMessage{.text = BackupQuestion,
                        .buttons = {"Yes", "No"},
                        .answer = ResultNo,
                        .during = [&](MessageRequest &) { EXPECT_EQ(desktop.waitDepth, 1); }});
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 0);
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("Backup of a.syx")));
}

TEST_F(Dx7SaveBankTest, AFailedBackupAnsweredWithYesSavesAllTheSame) {
    CreateBackups = 1;
    const std::string path = folder.Write("a.syx", Bytes{1, 2, 3});
    std::filesystem::create_directory(folder.File("Backup of a.syx"));
    VoiceList list = FullList();
    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 1);
    EXPECT_EQ(ReadTestFile(path), TestBank());
}

TEST_F(Dx7SaveBankTest, AFolderInPlaceOfTheFileFailsAndStays) {
    CreateBackups = 1;
    const std::string path = folder.File("folder.syx");
    std::filesystem::create_directory(path);
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, path.c_str()), 0);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7SaveBankTest, AMissingFolderFailsAndIsNotMade) {
    VoiceList list = FullList();
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("none/a.syx").c_str()), 0);
    EXPECT_FALSE(folder.Holds("none"));
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7SaveBankTest, ADisabledListIsEnabledBySavingAndStaysDisabledWhenTheFileDoesNotOpen) {
    VoiceList list = FullList();
    ListEnable(list, false);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("none/a.syx").c_str()), 0);
    EXPECT_FALSE(list.enabled);
    EXPECT_EQ(Dx7SaveBank(nullptr, list, folder.File("a.syx").c_str()), 1);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7ImportVoiceTest, AVoiceReplacesTheOneAtTheIndex) {
    VoiceList list = FullList();
    const std::string path = folder.Write("voice.sy1", TestVoiceFile());
    ASSERT_EQ(Dx7ImportVoice(nullptr, list, 7, path.c_str(), nullptr), 1);
    VoiceList expected = FullList();
    ListSetVoice(expected, 7, TestVoice());
    EXPECT_TRUE(SameItems(list, expected));
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(Dx7ImportVoiceTest, WithAnOutVoiceTheListIsLeftAlone) {
    VoiceList list = FullList();
    VoiceObject voice;
    const std::string path = folder.Write("voice.sy1", TestVoiceFile());
    ASSERT_EQ(Dx7ImportVoice(nullptr, list, 7, path.c_str(), &voice), 1);
    EXPECT_EQ(voice, TestVoice());
    EXPECT_TRUE(SameItems(list, FullList()));
    voice = {};
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, -1, path.c_str(), &voice), 1)
        << "the index does not matter then";
    EXPECT_EQ(voice, TestVoice());
    ListTakeVoice(list, 7);
    voice = {};
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 7, path.c_str(), &voice), 1)
        << "nor does it that its row has no voice";
    EXPECT_EQ(voice, TestVoice());
    EXPECT_EQ(ListVoice(list, 7), nullptr);
}

TEST_F(Dx7ImportVoiceTest, APlaceWithoutAVoiceCannotBeFilledAndTheFileIsNotLookedAt) {
    VoiceList list = FullList();
    ListTakeVoice(list, 7);
    Bytes damaged = TestVoiceFile(); // would ask a question
    damaged[162] ^= 1;
    const std::string path = folder.Write("voice.sy1", damaged);
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 7, path.c_str(), nullptr), 0);
    EXPECT_EQ(ListVoice(list, 7), nullptr);
    EXPECT_EQ(ListCount(list), 32);
}

TEST_F(Dx7ImportVoiceTest, ARowPastTheEndTakesNothingThoughTheFileIsReadAndAskedAbout) {
    const std::string right = folder.Write("right.sy1", TestVoiceFile());
    Bytes bytes = TestVoiceFile();
    bytes[162] ^= 1;
    const std::string damaged = folder.Write("damaged.sy1", bytes);
    VoiceList list = FullList();
    for (const int row : {32, 100, -1}) {
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, row, right.c_str(), nullptr), 1) << row;
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, row, folder.File("none").c_str(), nullptr), 0);
        desktop.ExpectYesNo(DamageQuestion("damaged.sy1"), ResultNo);
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, row, damaged.c_str(), nullptr), 0) << row;
        desktop.ExpectNothingLeft();
    }
    EXPECT_TRUE(SameItems(list, FullList()));
}

TEST_F(Dx7ImportVoiceTest, OperatorEnableIsTakenAsItStands) {
    for (const std::uint8_t enabled : {0x00, 0x3F, 0x15, 0xFF}) {
        Bytes file = TestVoiceFile();
        file[6 + 155] = enabled;
        for (const std::size_t block : {0u, 3u}) {
            file[6 + 21 * block + 16] = 0;
        }
        FixTestChecksum(file);
        VoiceList list;
        VoiceObject voice;
        ASSERT_EQ(Dx7ImportVoice(nullptr, list, 0, folder.Write("v.sy1", file).c_str(), &voice), 1);
        EXPECT_EQ(Slice(voice.bytes, 52, 156), Slice(file, 6, 156));
    }
}

TEST_F(Dx7ImportVoiceTest, ALongerFileIsAcceptedWithoutItsTail) {
    Bytes file = TestVoiceFile();
    file.resize(300, 0x12);
    VoiceList list;
    VoiceObject voice;
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, folder.Write("v.sy1", file).c_str(), &voice), 1);
    EXPECT_EQ(voice, TestVoice());
}

TEST_F(Dx7ImportVoiceTest, AShortFileIsRefusedWithoutAQuestion) {
    Bytes file = TestVoiceFile();
    file.pop_back();
    ExpectVoiceRefused(file, "without its end byte");
    file.back() = 0xF7;
    ExpectVoiceRefused(file, "a dump of 155 bytes, as the instrument sends it");
    ExpectVoiceRefused({}, "empty");
}

TEST_F(Dx7ImportVoiceTest, EachWrongHeaderByteIsRefusedWithoutAQuestion) {
    for (const std::size_t offset : {0u, 1u, 2u, 3u, 4u, 5u, 163u}) {
        for (const std::uint8_t flip : {0x01, 0x80}) {
            Bytes file = TestVoiceFile();
            file[offset] ^= flip;
            ExpectVoiceRefused(file, "byte " + std::to_string(offset));
        }
    }
}

TEST_F(Dx7ImportVoiceTest, ABankIsRefusedWithoutAQuestion) {
    ExpectVoiceRefused(TestBank(), "a bank");
}

TEST_F(Dx7ImportVoiceTest, AFolderAndAMissingFileAreRefusedWithoutAQuestion) {
    VoiceList list = SmallList();
    std::filesystem::create_directory(folder.File("folder.sy1"));
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, folder.File("folder.sy1").c_str(), nullptr), 0);
    EXPECT_EQ(Dx7ImportVoice(nullptr, list, 0, folder.File("none.sy1").c_str(), nullptr), 0);
    EXPECT_TRUE(SameItems(list, SmallList()));
}

TEST_F(Dx7ImportVoiceTest, AWrongChecksumIsAskedAbout) {
    Bytes file = TestVoiceFile();
    file[162] ^= 0x40;
    const std::string path = folder.Write("Ärger.sy1", file);
    for (const int answer : {ResultNo, ResultYes}) {
        VoiceList list = FullList();
        desktop.Expect(
            ExpectedMessage{.text = DamageQuestion("Ärger.sy1"),
                            .buttons = {"Yes", "No"},
                            .answer = answer,
                            .during = [&](MessageRequest &) { EXPECT_EQ(desktop.waitDepth, 1); }});
        EXPECT_EQ(Dx7ImportVoice(nullptr, list, 2, path.c_str(), nullptr), answer == ResultYes);
        VoiceList expected = FullList();
        if (answer == ResultYes) {
            ListSetVoice(expected, 2, TestVoice());
        }
        EXPECT_TRUE(SameItems(list, expected));
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7ExportVoiceTest, TheFileHoldsTheUnpackedVoiceAndCounts155Bytes) {
    VoiceList list = FullList();
    ListSetVoice(list, 9, TestVoice());
    const std::string path = folder.File("voice.sy1");
    ASSERT_EQ(Dx7ExportVoice(nullptr, list, nullptr, path.c_str(), 9, 0), 1);
    const Bytes file = ReadTestFile(path);
    ASSERT_EQ(file.size(), 164u);
    EXPECT_EQ(Slice(file, 0, 6), (Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B}));
    EXPECT_EQ(Slice(file, 6, 156), TestUnpackedVoice());
    EXPECT_EQ(file[162], TestChecksum(TestUnpackedVoice()));
    EXPECT_EQ(file[163], 0xF7);
    EXPECT_EQ(desktop.waitsBegun, 1);
}

TEST_F(Dx7ExportVoiceTest, AGivenVoiceIsWrittenWhateverTheIndex) {
    VoiceList list = FullList();
    const VoiceObject voice = TestVoice();
    const std::string path = folder.File("voice.sy1");
    for (const int row : {3, -1, 99}) {
        std::filesystem::remove(path);
        ASSERT_EQ(Dx7ExportVoice(nullptr, list, &voice, path.c_str(), row, 0), 1);
        EXPECT_EQ(ReadTestFile(path), TestVoiceFile());
    }
}

TEST_F(Dx7ExportVoiceTest, ALongerFileIsCutAndNoBackupIsMade) {
    CreateBackups = 1;
    VoiceList list = SmallList();
    const std::string path = folder.Write("voice.sy1", Bytes(500, 3));
    ASSERT_EQ(Dx7ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 1);
    EXPECT_EQ(ReadTestFile(path), TestVoiceFile());
    EXPECT_FALSE(folder.Holds("Backup of voice.sy1"));
}

TEST_F(Dx7ExportVoiceTest, NoVoiceAtTheIndexFails) {
    VoiceList list = FullList();
    ListTakeVoice(list, 3);
    for (const int row : {3, 32, -1}) {
        EXPECT_EQ(Dx7ExportVoice(nullptr, list, nullptr, folder.File("v.sy1").c_str(), row, 0), 0);
    }
    EXPECT_FALSE(folder.Holds("v.sy1"));
}

TEST_F(Dx7ExportVoiceTest, AnotherFamilysVoiceOrABrokenBlockLeavesTheFileUntouched) {
    const Bytes payload = TestUnpackedVoice();
    VoiceObject wrongMagic = TestVoice();
    wrongMagic.bytes[3] ^= 1;
    VoiceObject cut = TestVoice();
    cut.bytes.pop_back();
    const VoiceObject voices[] = {MakeVoiceObject(RefaceDriverId, payload),
                                  MakeVoiceObject(NoDriverId, payload),
                                  wrongMagic,
                                  cut,
                                  MakeVoiceObject(Dx7DriverId, Slice(payload, 0, 155)),
                                  VoiceObject{}};
    VoiceList list = SmallList();
    const std::string path = folder.Write("voice.sy1", Bytes{1, 2, 3});
    for (const VoiceObject &voice : voices) {
        EXPECT_EQ(Dx7ExportVoice(nullptr, list, &voice, path.c_str(), 0, 0), 0);
        EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2, 3}));
    }
}

TEST_F(Dx7ExportVoiceTest, AFolderInPlaceOfTheFileFailsAndStays) {
    const std::string path = folder.File("folder.sy1");
    std::filesystem::create_directory(path);
    VoiceList list = SmallList();
    EXPECT_EQ(Dx7ExportVoice(nullptr, list, nullptr, path.c_str(), 0, 0), 0);
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST(JudgeDx7Bank, LooksAtSizeThenFrameThenCountThenChecksum) {
    Bytes bank = TestBank();
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::Ok);
    bank[4102] ^= 1;
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::WrongChecksum);
    bank[5] = 1;
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::WrongCount);
    bank[4103] = 0;
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::WrongHeader);
    bank.pop_back();
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::TooShort);
    EXPECT_EQ(JudgeDx7Bank({}), Dx7FileVerdict::TooShort);
    bank = TestBank();
    bank.push_back(0);
    EXPECT_EQ(JudgeDx7Bank(bank), Dx7FileVerdict::Ok);
}

TEST(JudgeDx7Voice, LooksAtSizeThenFrameThenChecksum) {
    Bytes file = TestVoiceFile();
    EXPECT_EQ(JudgeDx7Voice(file), Dx7FileVerdict::Ok);
    file[162] ^= 1;
    EXPECT_EQ(JudgeDx7Voice(file), Dx7FileVerdict::WrongChecksum);
    file[5] = 0x1C;
    EXPECT_EQ(JudgeDx7Voice(file), Dx7FileVerdict::WrongHeader);
    file.pop_back();
    EXPECT_EQ(JudgeDx7Voice(file), Dx7FileVerdict::TooShort);
}

} // namespace
} // namespace tonewright
