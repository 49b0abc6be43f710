// Banks whose header or records say what is not so: opened, named, saved, undone and sent.
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/undo_level.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/transfer.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/builtin_midi.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr auto Reface = BuiltinInstrument::Reface;
constexpr int In = 4, Out = 5; // ports of the built-in reface DX
constexpr std::uint32_t Huge = 0xFFFFFFFF;

// The 150 bytes of a voice as the instrument holds it.
Bytes VoiceBytes(int number) {
    const Bytes block = TestRefaceBlock(number);
    return {block.begin() + 52, block.end()};
}

Bytes WithHeader(Bytes bank, std::uint32_t count, std::uint32_t recordSize) {
    PutTestNumber(bank, 24, count);
    PutTestNumber(bank, 28, recordSize);
    return bank;
}

struct RefaceOddBanks : testing::Test {
    TempFolder folder;
    BuiltinMidi midi;
    ScriptedDesktop desktop;
    VoiceList list;

    RefaceOddBanks() {
        CurrentDriverId = RefaceDriverId;
        CreateBackups = 0;
    }
    ~RefaceOddBanks() override { EXPECT_EQ(desktop.busyBoxesOpen, 0); }

    int Open(const Bytes &file) {
        // A voice of the list before stands for what has to go.
        list = {};
        ListSetVoice(list, ListAdd(list), VoiceObject{TestRefaceBlock(99)});
        DriverId driver = NoDriverId;
        std::int64_t time = 0;
        const std::string path = folder.Write("odd.srx", file);
        return OpenDocument(nullptr, list, path.c_str(), &driver, &time);
    }
    bool Saves() {
        const std::string path = folder.File("saved.srx");
        const int result = SaveDocument(nullptr, list, path.c_str());
        EXPECT_EQ(folder.Holds("saved.srx"), result == 1) << "no file is left behind a failure";
        return result == 1;
    }
    // The bytes of a saved bank, without its time.
    Bytes Saved() {
        EXPECT_TRUE(Saves());
        return WithoutTestTime(ReadTestFile(folder.File("saved.srx")));
    }
    // The size of the items of an undo level; 0 for none. What is put back is what was there, cut
    // to that size.
    std::size_t UndoneSize() {
        const auto level = MakeUndoLevel(nullptr, list);
        if (level.empty()) {
            return 0;
        }
        const std::size_t size = (level.size() - 36) / 32;
        VoiceList restored;
        EXPECT_TRUE(RestoreUndoLevel(restored, level));
        EXPECT_EQ(ListCount(restored), 32);
        for (int row = 0; row < ListCount(restored); ++row) {
            const Bytes &before = list.items[static_cast<std::size_t>(row)].bytes;
            const std::size_t kept = std::min(size, before.size());
            EXPECT_EQ(restored.items[static_cast<std::size_t>(row)].bytes,
                      Bytes(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(kept)));
        }
        return size;
    }
    // What the edit buffer holds after an upload of the first row: by itself, and as the bank.
    void ExpectSent(const Bytes &voice, const std::string &name) {
        const Bytes former = Bytes(150, 0x22);
        EditBufferOf(Reface) = former;
        desktop.ExpectMessage(name +
                              " has been uploaded to your reface DX.\n\nPress Store, select the "
                              "bank and program you want to store your uploaded voice to and then "
                              "use the red Data Entry controls to confirm the upload.");
        EXPECT_EQ(RefaceUploadVoice(nullptr, list, nullptr, {In, Out}, 0, 1), 1);
        desktop.ExpectNothingLeft();
        EXPECT_EQ(EditBufferOf(Reface), voice);
        EditBufferOf(Reface) = former;
        EXPECT_EQ(RefaceUploadBank(nullptr, list, {In, Out}), 1);
        EXPECT_EQ(EditBufferOf(Reface), voice);
        ListEnable(list, true);
    }
    void ExpectNothingSent() { ExpectSent(Bytes(150, 0x22), ""); }
};

TEST_F(RefaceOddBanks, ACountOf3IsThreeVoicesThatCanBeSentAndNothingElse) {
    for (const Bytes &file : {TestRefaceBank(3), WithHeader(TestRefaceBank(), 3, 202)}) {
        EXPECT_EQ(Open(file), 1);
        ASSERT_EQ(ListCount(list), 3);
        EXPECT_EQ(list.selection, 0);
        EXPECT_STREQ(VoiceObjectName(list.items[2]), "REFACE 03");
        EXPECT_FALSE(Saves());
        EXPECT_EQ(UndoneSize(), 0u);
        ExpectSent(VoiceBytes(0), "REFACE 01");
    }
}

TEST_F(RefaceOddBanks, ACountOf0IsAnEmptyList) {
    for (const std::uint32_t recordSize : {202u, 100u, 0u, Huge}) {
        EXPECT_EQ(Open(WithHeader(TestRefaceBank(), 0, recordSize)), 1);
        EXPECT_EQ(ListCount(list), 0);
        EXPECT_EQ(list.selection, NoRow);
        EXPECT_FALSE(Saves());
        EXPECT_EQ(UndoneSize(), 0u);
        ExpectNothingSent();
    }
}

TEST_F(RefaceOddBanks, ACountOf4BillionKeepsTheVoicesThatAreThere) {
    EXPECT_EQ(Open(WithHeader(TestRefaceBank(), Huge, 202)), 0);
    ASSERT_EQ(ListCount(list), 32);
    EXPECT_EQ(list.selection, NoRow);
    EXPECT_STREQ(VoiceObjectName(list.items[31]), "REFACE 32");
    EXPECT_EQ(Saved(), TestRefaceBank()) << "they are a bank after all";
    EXPECT_EQ(UndoneSize(), 202u);
    ExpectSent(VoiceBytes(0), "REFACE 01");

    EXPECT_EQ(Open(WithHeader(TestRefaceBank(5), Huge, 202)), 0);
    ASSERT_EQ(ListCount(list), 5);
    EXPECT_FALSE(Saves());
    EXPECT_EQ(UndoneSize(), 0u);
    ExpectSent(VoiceBytes(0), "REFACE 01");
}

TEST_F(RefaceOddBanks, ARecordSizeOf100IsBlocksThatNobodyCanRead) {
    EXPECT_EQ(Open(WithHeader(TestRefaceBank(), 32, 100)), 1);
    ASSERT_EQ(ListCount(list), 32);
    for (const VoiceObject &voice : list.items) {
        EXPECT_EQ(voice.bytes.size(), 100u);
        EXPECT_STREQ(VoiceObjectName(voice), "Unknown Voice");
    }
    EXPECT_FALSE(Saves());
    EXPECT_EQ(UndoneSize(), 0u);
    ExpectSent(Bytes(150, 0), "Unknown Voice");
    // Behind a good voice they go by its name.
    VoiceObjectName(VoiceObject{TestRefaceBlock(4)});
    ExpectSent(Bytes(150, 0), "REFACE 05");
}

TEST_F(RefaceOddBanks, ARecordSizeOf0IsAnEmptyList) {
    for (const std::uint32_t count : {1u, 32u, Huge}) {
        EXPECT_EQ(Open(WithHeader(TestRefaceBank(), count, 0)), 0);
        EXPECT_EQ(ListCount(list), 0);
        EXPECT_EQ(list.selection, NoRow);
        EXPECT_FALSE(Saves());
        EXPECT_EQ(UndoneSize(), 0u);
        ExpectNothingSent();
    }
}

TEST_F(RefaceOddBanks, ARecordSizeOf4BillionIsAnEmptyList) {
    for (const std::uint32_t count : {1u, 32u, Huge}) {
        for (const std::uint32_t recordSize : {0x7FFFFFFFu, 0x80000000u, Huge}) {
            EXPECT_EQ(Open(WithHeader(TestRefaceBank(), count, recordSize)), 0);
            EXPECT_EQ(ListCount(list), 0);
            EXPECT_FALSE(Saves());
            EXPECT_EQ(UndoneSize(), 0u);
            ExpectNothingSent();
        }
    }
}

// ---- records whose own header lies

// What the first record of a whole bank is changed to, and what comes of it.
struct Lie {
    const char *name;
    std::vector<std::pair<std::size_t, std::uint32_t>> fields; // offset in the record, number
    const char *shown;                                         // name; Unknown for none of its own
    std::size_t undone;                                        // size of an item; 0: no level
    Bytes sent;
};
constexpr const char *Unknown = "Unknown Voice";
constexpr std::size_t Magic = 0, PayloadOffset = 4, PayloadSize = 8, ExtraSize = 12, Driver = 16;

// The voice with zeros for whole blocks that it does not hold.
Bytes WithoutCommon() {
    Bytes voice = VoiceBytes(0);
    std::fill_n(voice.begin(), 38, std::uint8_t{0});
    return voice;
}
Bytes WithOperators(std::ptrdiff_t count) {
    Bytes voice = VoiceBytes(0);
    std::fill(voice.begin() + 38 + 28 * count, voice.end(), std::uint8_t{0});
    return voice;
}
// The record's bytes from `offset` on where the voice is looked for. The instrument hears seven
// bits a byte only: a block with any other byte, or an end byte, does not arrive, and the edit
// buffer keeps its own.
Bytes VoiceAt(std::ptrdiff_t offset) {
    const Bytes block = TestRefaceBlock(0);
    Bytes voice(block.begin() + offset, block.begin() + offset + 150);
    EXPECT_TRUE(std::ranges::all_of(voice, [](std::uint8_t byte) { return byte < 0x80; }));
    return voice;
}

std::vector<Lie> Lies() {
    const Bytes zeros(150, 0);
    return {
        {"wrong magic", {{Magic, 0x12345678}}, Unknown, 0, zeros},
        {"payload offset of 4 billion", {{PayloadOffset, Huge}}, Unknown, 0, zeros},
        {"payload offset one too far", {{PayloadOffset, 53}}, Unknown, 0, zeros},
        {"payload size of 4 billion", {{PayloadSize, Huge}}, Unknown, 0, zeros},
        {"payload size one too large", {{PayloadSize, 39}}, Unknown, 0, zeros},
        {"extra size of 4 billion", {{ExtraSize, Huge}}, Unknown, 0, zeros},
        {"extra size one too large", {{ExtraSize, 113}}, Unknown, 0, zeros},
        {"all three of 4 billion",
         {{PayloadOffset, Huge}, {PayloadSize, Huge}, {ExtraSize, Huge}},
         Unknown,
         0,
         zeros},
        // In 32 bits the sum would be 202.
        {"sizes whose sum runs over",
         {{PayloadOffset, 52}, {PayloadSize, Huge - 51}, {ExtraSize, 202}},
         Unknown,
         0,
         zeros},
        {"an offset that the payload brings back",
         {{PayloadOffset, Huge - 37}, {PayloadSize, 38}, {ExtraSize, 202}},
         Unknown,
         0,
         zeros},
        {"no sizes at all",
         {{PayloadOffset, 0}, {PayloadSize, 0}, {ExtraSize, 0}},
         Unknown,
         0,
         zeros},
        {"a payload too short by one",
         {{PayloadSize, 37}, {ExtraSize, 113}},
         Unknown,
         202,
         [] {
             // Its operators begin one byte early.
             Bytes voice(38, 0);
             const Bytes block = TestRefaceBlock(0);
             voice.insert(voice.end(), block.begin() + 89, block.begin() + 89 + 112);
             return voice;
         }()},
        {"no payload, and room for the operators",
         {{PayloadSize, 0}, {PayloadOffset, 90}},
         Unknown,
         202,
         WithoutCommon()},
        {"operators too short by one", {{ExtraSize, 111}}, "REFACE 01", 201, WithOperators(3)},
        {"two operators and a half", {{ExtraSize, 70}}, "REFACE 01", 160, WithOperators(2)},
        {"no operators", {{ExtraSize, 0}}, "REFACE 01", 90, WithOperators(0)},
        {"all of it payload",
         {{PayloadSize, 150}, {ExtraSize, 0}},
         "REFACE 01",
         202,
         WithOperators(0)},
        {"the voice from byte 50 on", {{PayloadOffset, 50}}, "", 200, VoiceAt(50)},
        {"the voice from byte 20 on", {{PayloadOffset, 20}}, "", 170, VoiceAt(20)},
        {"another family", {{Driver, Dx7DriverId}}, Unknown, 202, VoiceBytes(0)},
        {"an unknown family", {{Driver, MakeDriverId("none")}}, Unknown, 202, VoiceBytes(0)},
    };
}

TEST_F(RefaceOddBanks, RecordsWhoseHeadersLieAreKeptAndReadAsFarAsTheyGo) {
    for (const Lie &lie : Lies()) {
        SCOPED_TRACE(lie.name);
        Bytes bank = TestRefaceBank();
        for (const auto &[offset, number] : lie.fields) {
            PutTestNumber(bank, 160 + offset, number);
        }
        EXPECT_EQ(Open(bank), 1);
        ASSERT_EQ(ListCount(list), 32);
        EXPECT_EQ(Saved(), bank) << "every byte is kept";
        EXPECT_EQ(UndoneSize(), lie.undone);
        // A name that cannot be read is that of the last voice that could.
        VoiceObjectName(VoiceObject{TestRefaceBlock(8)});
        const std::string name = lie.shown == std::string(Unknown) ? "REFACE 09"
                                 : *lie.shown                      ? lie.shown
                                                                   : "Unknown Voice";
        EXPECT_EQ(VoiceObjectName(list.items[0]), name);
        VoiceObjectName(VoiceObject{TestRefaceBlock(8)});
        ExpectSent(lie.sent, name);
    }
}

TEST_F(RefaceOddBanks, InALowerRowALieStandsInNobodysWay) {
    for (const Lie &lie : Lies()) {
        SCOPED_TRACE(lie.name);
        Bytes bank = TestRefaceBank();
        for (const auto &[offset, number] : lie.fields) {
            PutTestNumber(bank, 160 + 202 * 7 + offset, number);
        }
        EXPECT_EQ(Open(bank), 1);
        EXPECT_EQ(Saved(), bank);
        EXPECT_EQ(UndoneSize(), 202u) << "the first voice says how long an item is";
        ExpectSent(VoiceBytes(0), "REFACE 01");
    }
}

TEST_F(RefaceOddBanks, LongRecordsAreUndoneAtTheLengthThatTheFirstVoiceSays) {
    Bytes bank = TestRefaceHeader(TestRefaceBankMagic, 32, 1000);
    for (int number = 0; number < 32; ++number) {
        Bytes block = TestRefaceBlock(number);
        PutTestNumber(block, ExtraSize, number == 0 ? 900 : Huge);
        block.resize(1000, 0x44);
        bank.insert(bank.end(), block.begin(), block.end());
    }
    EXPECT_EQ(Open(bank), 1);
    ASSERT_EQ(ListCount(list), 32);
    EXPECT_EQ(UndoneSize(), 990u);
    EXPECT_TRUE(Saves());
    ExpectSent(VoiceBytes(0), "REFACE 01");
}

} // namespace
} // namespace tonewright
