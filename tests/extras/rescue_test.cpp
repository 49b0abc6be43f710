// The documents that dumps give, byte for byte.
#include "extras/rescue.h"

#include "core/voice_file_reader.h"
#include "support/dump_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

namespace tonewright {
namespace {

using Bytes = DumpBytes;

std::vector<RescuedDocument> Rescued(const Bytes &file) {
    const TempFolder folder;
    const std::string path = folder.Write("found.bin", file);
    std::vector<RescuedDocument> documents;
    EXPECT_EQ(RescueDocuments(path.c_str(),
                              [&documents](const RescuedDocument &document) {
                                  documents.push_back(document);
                                  return true;
                              }),
              DumpRead::Done);
    EXPECT_EQ(ReadTestFile(path), file);
    return documents;
}

// Of a file that gives one document.
Bytes OnlyDocument(const Bytes &file, const std::string &extension, int voices) {
    const std::vector<RescuedDocument> documents = Rescued(file);
    EXPECT_EQ(documents.size(), 1u);
    if (documents.size() != 1) {
        return {};
    }
    EXPECT_EQ(documents[0].extension, extension);
    EXPECT_EQ(documents[0].voices, voices);
    return documents[0].bytes;
}

std::vector<std::string> Shapes(const std::vector<RescuedDocument> &documents) {
    std::vector<std::string> shapes;
    for (const RescuedDocument &document : documents) {
        shapes.push_back(std::string(document.extension) + " of " +
                         std::to_string(document.voices) + " from " +
                         std::to_string(document.firstPlace));
    }
    return shapes;
}
using Strings = std::vector<std::string>;

// The published initial voice of the DX7, packed.
Bytes InitialVoice() {
    Bytes voice;
    for (int block = 0; block < 6; ++block) {
        voice += Bytes{99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0, 0, 2, 0};
    }
    voice[5 * 17 + 14] = 99;
    voice += Bytes{99, 99, 99, 99, 50, 50, 50, 50, 0, 8, 35, 0, 0, 0, 0x31, 24};
    return Join({voice, TextBytes("INIT VOICE")});
}

// A bank of these voices and of initial ones behind them.
Bytes BankOf(const Bytes &packed) {
    Bytes data = packed;
    while (data.size() < 4096) {
        data += InitialVoice();
    }
    Bytes file = Join({{0xF0, 0x43, 0x00, 0x09, 0x20, 0x00}, data});
    file.push_back(TestChecksum(data));
    file.push_back(0xF7);
    return file;
}

// The 155 bytes that a DX7 sends of TestPackedVoice(number), taken apart by the published table.
Bytes SentVoice(int number) {
    const Bytes packed = TestPackedVoice(number);
    Bytes sent;
    for (std::size_t block = 0; block < 6; ++block) {
        const auto *from = &packed[17 * block];
        sent.insert(sent.end(), from, from + 11);
        for (const int value : {from[11] & 3, from[11] >> 2 & 3, from[12] & 7, from[13] & 3,
                                from[13] >> 2 & 7, from[14] & 127, from[15] & 1, from[15] >> 1 & 31,
                                from[16] & 127, from[12] >> 3 & 15}) {
            sent.push_back(static_cast<std::uint8_t>(value));
        }
    }
    const auto *from = &packed[102];
    sent.insert(sent.end(), from, from + 9);
    for (const int value :
         {from[9] & 7, from[9] >> 3 & 1, from[10] & 127, from[11] & 127, from[12] & 127,
          from[13] & 127, from[14] & 1, from[14] >> 1 & 7, from[14] >> 4 & 7, from[15] & 127}) {
        sent.push_back(static_cast<std::uint8_t>(value));
    }
    sent.insert(sent.end(), packed.begin() + 118, packed.end());
    return sent;
}

Bytes SentMessage(int number, int channel = 1) {
    return TestBulk(0x00, SentVoice(number), channel);
}

Bytes SentMessages(int count, const Bytes &between = {}) {
    Bytes messages;
    for (int number = 0; number < count; ++number) {
        messages += Join({SentMessage(number % 32), between});
    }
    return messages;
}

// As ours: 156 bytes, with a new checksum.
Bytes VoiceFileOf(Bytes voice, std::uint8_t operators) {
    voice.push_back(operators);
    Bytes file = Join({{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B}, voice});
    file.push_back(TestChecksum(voice));
    file.push_back(0xF7);
    return file;
}

TEST(Rescue, ABankAsWeWriteItStaysWhatItIs) {
    const auto documents = Rescued(TestBank());
    ASSERT_EQ(documents.size(), 1u);
    EXPECT_EQ(documents[0].bytes, TestBank());
    EXPECT_EQ(documents[0].extension, std::string("syx"));
    EXPECT_EQ(documents[0].voices, 32);
    EXPECT_EQ(documents[0].highByteVoices, 0);
    EXPECT_EQ(documents[0].firstPlace, 0u);
    EXPECT_EQ(documents[0].dump.kind, DumpKind::Dx7Bank);
    EXPECT_EQ(documents[0].dump.length, 4104u);
}

TEST(Rescue, OfABankForAnotherChannelOneByteAloneBecomesAnother) {
    for (const int channel : {2, 9, 16}) {
        Bytes expected = TestBankMessage(channel);
        expected[2] = 0;
        EXPECT_EQ(OnlyDocument(TestBankMessage(channel), "syx", 32), expected) << channel;
    }
}

TEST(Rescue, SumsAndEndOfABankArePutRight) {
    Bytes checksum = TestBank(), bit7 = TestBank(), count = TestBank();
    checksum[4102] ^= 0x15;
    bit7[4102] |= 0x80;
    count[4] = 0x10;
    EXPECT_EQ(OnlyDocument(checksum, "syx", 32), TestBank());
    EXPECT_EQ(OnlyDocument(bit7, "syx", 32), TestBank());
    EXPECT_EQ(OnlyDocument(count, "syx", 32), TestBank());
    Bytes withoutEnd = TestBank();
    withoutEnd.pop_back();
    EXPECT_EQ(OnlyDocument(withoutEnd, "syx", 32), TestBank());
}

TEST(Rescue, WhatStandsAroundABankIsLeftOut) {
    EXPECT_EQ(OnlyDocument(Join({TextBytes("From a friend\n"), TestBank(), {1, 2, 3}}), "syx", 32),
              TestBank());
}

TEST(Rescue, HeaderlessVoicesGetHeaderChecksumAndEnd) {
    EXPECT_EQ(OnlyDocument(TestPackedVoices(32), "syx", 32), TestBank());
}

TEST(Rescue, ARunOfHeaderlessVoicesBecomesSeveralBanks) {
    auto documents = Rescued(TestPackedVoices(128));
    EXPECT_EQ(Shapes(documents), (Strings{"syx of 32 from 0", "syx of 32 from 32",
                                          "syx of 32 from 64", "syx of 32 from 96"}));
    for (const RescuedDocument &document : documents) {
        EXPECT_EQ(document.bytes, TestBank());
    }
    documents = Rescued(TestPackedVoices(33));
    EXPECT_EQ(Shapes(documents), (Strings{"syx of 32 from 0", "syx of 1 from 32"}));
    EXPECT_EQ(documents.at(0).bytes, TestBank());
    EXPECT_EQ(documents.at(1).bytes, BankOf(TestPackedVoice(0)));
}

TEST(Rescue, ACutBankIsFilledUpWithInitialVoices) {
    for (const int voices : {1, 7, 31}) {
        Bytes cut = TestBank();
        cut.resize(6 + 128 * static_cast<std::size_t>(voices) + 50);
        EXPECT_EQ(OnlyDocument(cut, "syx", voices), BankOf(TestPackedVoices(voices))) << voices;
    }
    Bytes none = TestBank();
    none.resize(6 + 127);
    EXPECT_TRUE(Rescued(none).empty());
}

TEST(Rescue, ASingleVoiceOfTheInstrumentHasAllOperatorsOn) {
    for (const int channel : {1, 3}) {
        Bytes voice = TestUnpackedVoice();
        voice.pop_back();
        EXPECT_EQ(OnlyDocument(TestVoiceMessage(channel), "sy1", 1), VoiceFileOf(voice, 0x3F))
            << channel;
    }
}

TEST(Rescue, ASingleVoiceOfOursStaysWhatItIs) {
    EXPECT_EQ(OnlyDocument(TestVoiceFile(), "sy1", 1), TestVoiceFile());
}

TEST(Rescue, ThirtyTwoVoicesInARowArePackedIntoABank) {
    EXPECT_EQ(OnlyDocument(SentMessages(32), "syx", 32), TestBank());
    // Of a later model each comes with more of its own.
    const Bytes supplement = Join(
        {{0xF0, 0x43, 0x00, 0x05, 0x00, 0x31}, Bytes(49, 1), {TestChecksum(Bytes(49, 1)), 0xF7}});
    EXPECT_EQ(OnlyDocument(SentMessages(32, supplement), "syx", 32), TestBank());
}

TEST(Rescue, OfAFileThatChangesMeanwhileEachVoiceIsOneThatWasRead) {
    const TempFolder folder;
    Bytes reface;
    while (reface.size() < 3 << 20) { // several of the pieces in which a file is read
        reface += TestRefaceMessages(TestRefaceVoice(1));
    }
    const std::string path = folder.Write("found.bin", SentMessages(20'000));
    const Bytes bank = TestBank();
    int banks = 0, banksOfReface = 0;
    const auto isKnown = [&bank](const std::uint8_t *voice) {
        for (std::size_t at = 6; at < 6 + 4096; at += 128) {
            if (std::equal(voice, voice + 128, bank.data() + at)) {
                return true;
            }
        }
        return false;
    };
    const auto look = [&](const RescuedDocument &document) {
        if (banks == 0) {
            folder.Write("found.bin", reface);
        }
        if (document.extension == std::string("syx")) {
            ++banks;
            for (std::size_t at = 6; at < 6 + 4096; at += 128) {
                EXPECT_TRUE(isKnown(&document.bytes[at])) << banks;
            }
        } else if (document.extension == std::string("srx")) {
            ++banksOfReface;
        }
        return true;
    };
    EXPECT_EQ(RescueDocuments(path.c_str(), look), DumpRead::Done);
    EXPECT_GT(banks, 100); // those of the piece that had been read
    EXPECT_GT(banksOfReface, 100);
}

TEST(Rescue, ADumpOfMoreVoicesThanWaitForItIsRescuedAsOthersAre) {
    const auto documents = Rescued(TestPackedVoices(32 * 1024 + 33));
    ASSERT_EQ(documents.size(), 1026u);
    for (const RescuedDocument &document : {documents.front(), documents[1024]}) {
        EXPECT_EQ(document.bytes, TestBank());
        EXPECT_EQ(document.dump.kind, DumpKind::Dx7Headerless);
    }
    EXPECT_EQ(documents.front().dump.detail, "the rest not read yet");
    EXPECT_EQ(documents.back().dump.voices, 32u * 1024 + 33);
    EXPECT_EQ(documents.back().dump.detail, "");
    EXPECT_EQ(documents.back().firstPlace, 32u * 1024 + 32);
    EXPECT_EQ(documents.back().voices, 1);
    EXPECT_EQ(documents.back().extension, std::string("syx")); // of a run that had banks
}

TEST(Rescue, DumpsThatGiveNoDocumentAreTold) {
    const TempFolder folder;
    Bytes cut = TestBank();
    cut.resize(100);
    const Bytes four = TestBulk(0x04, Bytes(4096, 0));
    const std::string path = folder.Write("found.bin", Join({cut, TestBank(), four}));
    std::vector<DumpKind> left;
    int documents = 0;
    EXPECT_EQ(RescueDocuments(
                  path.c_str(), [&](const RescuedDocument &) { return ++documents != 0; },
                  [&](const FoundDump &dump) { left.push_back(dump.kind); }),
              DumpRead::Done);
    EXPECT_EQ(documents, 1);
    EXPECT_EQ(left, (std::vector<DumpKind>{DumpKind::Dx7Bank, DumpKind::FourOperatorBank}));
}

TEST(Rescue, ThirtyTwoVoicesWithoutHeadersArePackedIntoABank) {
    Bytes voices;
    for (int number = 0; number < 32; ++number) {
        voices += SentVoice(number);
    }
    EXPECT_EQ(OnlyDocument(voices, "syx", 32), TestBank());
}

TEST(Rescue, WhatFillsNoBankStaysSingleVoices) {
    auto documents = Rescued(SentMessages(3));
    EXPECT_EQ(Shapes(documents),
              (Strings{"sy1 of 1 from 0", "sy1 of 1 from 1", "sy1 of 1 from 2"}));
    for (int number = 0; number < 3; ++number) {
        EXPECT_EQ(documents[static_cast<std::size_t>(number)].bytes,
                  VoiceFileOf(SentVoice(number), 0x3F));
        EXPECT_EQ(documents[static_cast<std::size_t>(number)].dump.offset,
                  163u * static_cast<unsigned>(number));
    }
    documents = Rescued(SentMessages(33));
    EXPECT_EQ(Shapes(documents), (Strings{"syx of 32 from 0", "sy1 of 1 from 32"}));
    EXPECT_EQ(documents.at(1).bytes, VoiceFileOf(SentVoice(0), 0x3F));
}

TEST(Rescue, ABankBetweenThemEndsARowOfSingleVoices) {
    const auto documents = Rescued(Join({SentMessages(20), TestBank(), SentMessages(12)}));
    ASSERT_EQ(documents.size(), 33u);
    EXPECT_EQ(documents[20].bytes, TestBank());
    EXPECT_EQ(documents[20].firstPlace, 20u);
    EXPECT_EQ(documents[32].extension, std::string("sy1"));
}

TEST(Rescue, AVoiceWhoseLevelsABankWouldLoseIsNotPacked) {
    Bytes files; // each with an operator that is off and has a level
    for (int number = 0; number < 32; ++number) {
        files += TestVoiceFile();
    }
    const auto documents = Rescued(files);
    ASSERT_EQ(documents.size(), 32u);
    for (const RescuedDocument &document : documents) {
        EXPECT_EQ(document.bytes, TestVoiceFile());
    }
    // Without that level nothing is lost.
    Bytes quiet = TestVoiceFile();
    quiet[6 + 21 + 16] = 0;
    FixTestChecksum(quiet);
    files.clear();
    for (int number = 0; number < 32; ++number) {
        files += quiet;
    }
    EXPECT_EQ(Shapes(Rescued(files)), Strings{"syx of 32 from 0"});
}

// ---- reface DX

Bytes RefaceBlock(const Bytes &voice) {
    Bytes block = {0x6F, 0x57, 0x4E, 0x54, 52, 0, 0,   0,   38,  0,
                   0,    0,    112,  0,    0,  0, 'x', 'd', 'F', 'R'};
    block.resize(52, 0);
    return Join({block, voice});
}

TEST(Rescue, AVoiceOfTheRefaceDxIsTakenOutOfItsBlocks) {
    EXPECT_EQ(WithoutTestTime(OnlyDocument(TestRefaceMessages(TestRefaceVoice(7)), "sr1", 1)),
              Join({TestRefaceHeader("TNWRDxrf", 1), RefaceBlock(TestRefaceVoice(7))}));
}

TEST(Rescue, SeveralVoicesOfTheRefaceDxAreABank) {
    Bytes messages, blocks;
    for (int number = 0; number < 2; ++number) {
        messages += TestRefaceMessages(TestRefaceVoice(number), 5);
        blocks += RefaceBlock(TestRefaceVoice(number));
    }
    const Bytes bank = OnlyDocument(messages, "srx", 2);
    ASSERT_EQ(bank.size(), 6624u);
    EXPECT_EQ(WithoutTestTime(Bytes(bank.begin(), bank.begin() + 160 + 404)),
              Join({TestRefaceHeader("TNWRDXrf", 32), blocks}));
    for (std::size_t row = 2; row < 32; ++row) {
        const auto voice = bank.begin() + 160 + 202 * static_cast<std::ptrdiff_t>(row) + 52;
        EXPECT_EQ(std::string(voice, voice + 10), "Init Voice");
    }
}

TEST(Rescue, ABankOfTheRefaceDxKeepsItsRecords) {
    EXPECT_EQ(WithoutTestTime(OnlyDocument(TestRefaceBank(), "srx", 32)), TestRefaceBank());
    EXPECT_EQ(WithoutTestTime(OnlyDocument(TestRefaceVoiceFile(3), "sr1", 1)),
              TestRefaceVoiceFile(3));
}

TEST(Rescue, VoicesOfBothFamiliesGoIntoDocumentsOfTheirOwn) {
    EXPECT_EQ(
        Shapes(Rescued(Join(
            {SentMessage(0), TestRefaceMessages(TestRefaceVoice(1)), SentMessage(1), TestBank()}))),
        (Strings{"sy1 of 1 from 0", "sr1 of 1 from 1", "sy1 of 1 from 2", "syx of 32 from 3"}));
}

// A piece of a file, chosen at random.
Bytes RandomPiece(std::mt19937 &random) {
    const auto below = [&random](unsigned limit) { return random() % limit; };
    const int channel = 1 + static_cast<int>(below(16));
    switch (below(9)) {
    case 0:
        return TestBankMessage(channel);
    case 1: {
        Bytes bank = TestBankMessage(channel);
        bank[4 + below(2)] ^= 0x10;
        bank[6 + below(4096)] ^= 0x01;
        return bank;
    }
    case 2: {
        Bytes bank = TestBankMessage(channel);
        bank.resize(6 + 128 + below(3000));
        return bank;
    }
    case 3:
        return SentMessage(static_cast<int>(below(32)), channel);
    case 4:
        return SentMessages(static_cast<int>(30 + below(6)));
    case 5:
        return TestVoiceFile();
    case 6:
        return TestRefaceMessages(TestRefaceVoice(static_cast<int>(below(100))), channel);
    case 7:
        return Join({{0xF0, 0x41}, TextBytes("other"), {0xF7}});
    default:
        return TestBulk(0x05, Bytes(49, 1), channel);
    }
}

// Where the voice in a row of a document stands, in the form in which it came, must be its bytes.
void ExpectVoice(const RescuedDocument &document, std::size_t row, const KeptVoice &voice) {
    const VoiceFileFormat *format = FormatOfPath((std::string("a.") + document.extension).c_str());
    const auto begin = document.bytes.begin();
    if (format->driver == FamilyOfForm(VoiceForm::Reface)) {
        const auto at = begin + 160 + 202 * static_cast<std::ptrdiff_t>(row) + 52;
        EXPECT_EQ(Bytes(at, at + 150), voice.bytes);
    } else if (format->kind == VoiceFileKind::Bank) {
        const auto at = begin + 6 + 128 * static_cast<std::ptrdiff_t>(row);
        const auto packed = PackedBytesOf(voice.Voice());
        EXPECT_EQ(Bytes(at, at + 128), Bytes(packed.begin(), packed.end()));
    } else {
        EXPECT_EQ(Bytes(begin + 6, begin + 6 + 155),
                  Bytes(voice.bytes.begin(), voice.bytes.begin() + 155));
    }
}

TEST(Rescue, OfFilesAtRandomEveryVoiceComesOnceIntoAWholeDocument) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Bytes file;
        for (unsigned count = 1 + random() % 8; count > 0; --count) {
            file += RandomPiece(random);
        }
        std::vector<KeptVoice> voices;
        DumpVisitor visitor;
        visitor.voice = [&voices](const FoundVoice &found) {
            voices.push_back(KeepVoice(found.voice));
            return true;
        };
        ASSERT_EQ(ReadDumps(file, visitor), DumpRead::Done);
        std::size_t place = 0;
        for (const RescuedDocument &document : Rescued(file)) {
            ASSERT_EQ(document.firstPlace, place);
            const VoiceFileFormat *format =
                FormatOfPath((std::string("a.") + document.extension).c_str());
            ASSERT_EQ(document.bytes.size(), format->size);
            EXPECT_EQ(format->judge(document.bytes).reason, "");
            for (int row = 0; row < document.voices; ++row) {
                ExpectVoice(document, static_cast<std::size_t>(row), voices.at(place++));
            }
        }
        ASSERT_EQ(place, voices.size());
    }
}

// ---- what is to be asked, and what cannot be had

TEST(Rescue, VoicesWithBytesThatNoMessageCarriesAreCounted) {
    Bytes bank = TestBank();
    bank[6] = 0x80;
    bank[6 + 31 * 128 + 5] = 0xF0;
    bank[6 + 31 * 128 + 6] = 0xFF;
    FixTestChecksum(bank);
    const auto documents = Rescued(bank);
    ASSERT_EQ(documents.size(), 1u);
    EXPECT_EQ(documents[0].highByteVoices, 2);
    EXPECT_EQ(documents[0].bytes, bank);
}

TEST(Rescue, TheVisitorMayEndIt) {
    const TempFolder folder;
    const std::string path = folder.Write("found.bin", TestPackedVoices(128));
    int documents = 0;
    EXPECT_EQ(
        RescueDocuments(path.c_str(), [&](const RescuedDocument &) { return ++documents < 2; }),
        DumpRead::Ended);
    EXPECT_EQ(documents, 2);
}

TEST(Rescue, AFileThatCannotBeReadIsAFailure) {
    const TempFolder folder;
    const auto never = [](const RescuedDocument &) {
        ADD_FAILURE();
        return true;
    };
    EXPECT_EQ(RescueDocuments(folder.File("none").c_str(), never), DumpRead::Failed);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(RescueDocuments(folder.Write("text", TextBytes("no voices")).c_str(), never),
              DumpRead::Done);
    EXPECT_EQ(RescueDocuments(folder.Write("empty", Bytes{}).c_str(), never), DumpRead::Done);
}

TEST(Rescue, DumpsInMidiFilesLoseTheLengthsOfTheirEvents) {
    const Bytes bank = TestBankMessage(2);
    const auto length = [](std::size_t bytes) {
        return Bytes{static_cast<std::uint8_t>(0x80 | bytes >> 7),
                     static_cast<std::uint8_t>(bytes & 0x7F)};
    };
    // In one event, and cut into three.
    const Bytes whole = Join({{0x00, 0xF0}, length(4103), Bytes(bank.begin() + 1, bank.end())});
    const Bytes cut = Join({{0x00, 0xF0},
                            length(2000),
                            Bytes(bank.begin() + 1, bank.begin() + 2001),
                            {0x10, 0xF7},
                            length(1000),
                            Bytes(bank.begin() + 2001, bank.begin() + 3001),
                            {0x10, 0xF7},
                            length(1103),
                            Bytes(bank.begin() + 3001, bank.end())});
    for (const Bytes &event : {whole, cut}) {
        const Bytes track = Join({event, {0x00, 0xFF, 0x2F, 0x00}});
        Bytes file = Join({TextBytes("MThd"),
                           {0, 0, 0, 6, 0, 0, 0, 1, 0, 96},
                           TextBytes("MTrk"),
                           {0, 0, static_cast<std::uint8_t>(track.size() >> 8),
                            static_cast<std::uint8_t>(track.size() & 0xFF)},
                           track});
        EXPECT_EQ(OnlyDocument(file, "syx", 32), TestBank());
    }
}

TEST(Rescue, TextInHexadecimalIsReadAsItsBytes) {
    std::string text = "My bank:\n";
    for (const std::uint8_t byte : TestBank()) {
        constexpr char digits[] = "0123456789abcdef";
        text += {digits[byte >> 4], digits[byte & 15], ' '};
    }
    EXPECT_EQ(OnlyDocument(TextBytes(text), "syx", 32), TestBank());
}

TEST(Rescue, APackedVoiceAloneKeepsAllBitsOfItsDetune) {
    Bytes packed = TestPackedVoice(3);
    packed[17 + 12] = 14 << 3 | 2; // detune and rate scaling of the second block
    const Bytes file = OnlyDocument(packed, "sy1", 1);
    ASSERT_EQ(file.size(), 164u);
    EXPECT_EQ(file[6 + 21 + 20], 14);
    EXPECT_EQ(file[6 + 21 + 13], 2);
    EXPECT_EQ(file[6 + 155], 0x3F); // each has a level
    EXPECT_EQ(file[162], TestChecksum(std::span(file).subspan(6, 156)));
}

TEST(Rescue, WhatWasJudgedSaysHowSureThatIs) {
    EXPECT_EQ(RemarksOfDump({.kind = DumpKind::Dx7Bank}), "");
    EXPECT_EQ(RemarksOfDump({.kind = DumpKind::Dx7Bank, .faults = DumpFault::Checksum}),
              "wrong checksum");
    EXPECT_EQ(
        RemarksOfDump(
            {.kind = DumpKind::Dx7Headerless, .faults = DumpFault::NoHeader, .confidence = 97}),
        "no header, 97% sure");
    EXPECT_EQ(RemarksOfDump({.kind = DumpKind::Dx7Headerless, .confidence = 60}), "60% sure");
}

TEST(Rescue, ADumpIsSoundUnlessItIsUnknownOrHasAFault) {
    EXPECT_TRUE(IsSoundDump({.kind = DumpKind::Dx7Bank}));
    EXPECT_TRUE(IsSoundDump({.kind = DumpKind::Dx7Bank, .faults = DumpFault::InMidiFile}));
    EXPECT_TRUE(IsSoundDump({.kind = DumpKind::OtherMessage, .faults = DumpFault::InHexText}));
    EXPECT_FALSE(IsSoundDump({.kind = DumpKind::Dx7Bank, .faults = DumpFault::Channel}));
    EXPECT_FALSE(IsSoundDump({.kind = DumpKind::Unknown}));
}

} // namespace
} // namespace tonewright
