// The command-line program on files of the reface DX: real files, the real program, its output,
// errors and exit status.
#include "run_cli.h"
#include "support/bank_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Resized(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

Bytes WithNumber(Bytes bytes, std::size_t offset, std::uint32_t value) {
    PutTestNumber(bytes, offset, value);
    return bytes;
}

// What `list` prints of TestRefaceBank(count).
std::string BankLines(int count, const std::string &prefix = "") {
    std::string lines;
    for (int number = 0; number < count; ++number) {
        lines += prefix + std::to_string(number + 1) + "\t" + TestRefaceName(number) + "\t" +
                 std::to_string(number % 12 + 1) + "\n";
    }
    return lines;
}

TEST(CliRefaceList, PrintsPlaceNameAndAlgorithmOfEveryVoice) {
    const TempFolder folder;
    auto result = Cli({"list", folder.Write("a.SRX", TestRefaceBank())});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, BankLines(32));
    EXPECT_EQ(result.errors, "");
    result = Cli({"list", folder.Write("a.sr1", TestRefaceVoiceFile(13))});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "1\tREFACE 14\t2\n");
}

TEST(CliRefaceList, PrintsAsManyVoicesAsABankHas) {
    const TempFolder folder;
    for (const int count : {0, 3, 40}) {
        const auto result = Cli({"list", folder.Write("a.srx", TestRefaceBank(count))});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        EXPECT_EQ(result.output, BankLines(count));
    }
}

TEST(CliRefaceList, PrintsFilesOfBothFamiliesInOneCall) {
    const TempFolder folder;
    const std::string dx7 = folder.Write("a.sy1", TestVoiceFile());
    const std::string reface = folder.Write("b.srx", TestRefaceBank(2));
    const auto result = Cli({"list", dx7, reface});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, dx7 + "\t1\tE.PIANO 1x\t5\n" + BankLines(2, reface + "\t"));
}

TEST(CliRefaceList, ShowsARecordThatHoldsNoVoiceAsUnknown) {
    const TempFolder folder;
    Bytes bank = TestRefaceBank(3);
    bank[160] ^= 1;            // magic of the first
    bank[160 + 202 + 8] = 200; // payload size of the second
    bank[160 + 404 + 52 + 16] = 0xFF;
    auto result = Cli({"list", folder.Write("a.srx", bank)});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.output, "1\tUnknown Voice\t0\n2\tUnknown Voice\t0\n3\tREFACE 03\t256\n");
    result = Cli({"list", folder.Write("b.srx", WithNumber(TestRefaceBank(2), 28, 100))});
    EXPECT_EQ(result.output, "1\tUnknown Voice\t0\n2\tUnknown Voice\t0\n");
}

TEST(CliRefaceCheck, SaysOkAndTheNumberOfVoices) {
    const TempFolder folder;
    const std::string bank = folder.Write("a.srx", TestRefaceBank());
    const std::string three = folder.Write("b.srx", TestRefaceBank(3));
    const std::string longer = folder.Write("c.srx", Resized(TestRefaceBank(40), 9000));
    const std::string voice = folder.Write("d.sr1", Resized(TestRefaceVoiceFile(0), 400));
    const auto result = Cli({"check", bank, three, longer, voice});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, bank + "\tok\t32\n" + three + "\tok\t3\n" + longer +
                                 "\tok\t40\t760 more bytes not read\n" + voice +
                                 "\tok\t1\t38 more bytes not read\n");
    EXPECT_EQ(result.errors, "");
}

struct CheckCase {
    const char *name;
    const char *file;
    Bytes bytes;
    const char *reason;
};

Bytes Changed(Bytes bytes, std::size_t offset, std::uint8_t value) {
    bytes[offset] = value;
    return bytes;
}

const CheckCase CheckCases[] = {
    {"AnEmptyBank", "a.srx", {}, "0 bytes, and its header alone should have 160"},
    {"ABankShorterThanItsHeader", "a.srx", Resized(TestRefaceBank(), 159),
     "159 bytes, and its header alone should have 160"},
    {"AVoiceShorterThanItsHeader", "a.sr1", Resized(TestRefaceVoiceFile(0), 100),
     "100 bytes, and its header alone should have 160"},
    {"AnotherFormat", "a.srx", TestBank(), "not a reface DX bank, but a DX7 bank"},
    {"AnotherDriver", "a.srx", Changed(TestRefaceBank(), 16, 'X'), "not a reface DX bank"},
    {"AnotherFormatAsVoice", "a.sr1", TestVoiceFile(),
     "not a reface DX single-voice file, but a DX7 single-voice file"},
    {"AVoiceAsBank", "a.srx", TestRefaceVoiceFile(0),
     "not a reface DX bank, but a reface DX single-voice file"},
    {"ABankAsVoice", "a.sr1", TestRefaceBank(),
     "not a reface DX single-voice file, but a reface DX bank"},
    {"ABankOneByteShort", "a.srx", Resized(TestRefaceBank(), 6623),
     "cut off: 31 of 32 voices are there"},
    {"ABankOfAHeaderOnly", "a.srx", Resized(TestRefaceBank(), 160),
     "cut off: 0 of 32 voices are there"},
    {"ABankThatSays4BillionVoices", "a.srx", WithNumber(TestRefaceBank(40), 24, 0xFFFFFFFF),
     "cut off: 40 of 4294967295 voices are there"},
    {"ABankWithRecordsOf4BillionBytes", "a.srx", WithNumber(TestRefaceBank(), 28, 0xFFFFFFFF),
     "cut off: 0 of 32 voices are there"},
    {"ABankOf4BillionRecordsOf4BillionBytes", "a.srx",
     WithNumber(WithNumber(TestRefaceBank(), 24, 0xFFFFFFFF), 28, 0xFFFFFFFF),
     "cut off: 0 of 4294967295 voices are there"},
    {"ABankWithRecordsOfNoBytes", "a.srx", WithNumber(TestRefaceBank(), 28, 0),
     "its records have no bytes"},
    {"AVoiceOneByteShort", "a.sr1", Resized(TestRefaceVoiceFile(0), 361),
     "361 bytes instead of 362"},
    {"AVoiceOf4BillionBytes", "a.sr1", WithNumber(TestRefaceVoiceFile(0), 28, 0xFFFFFFFF),
     "362 bytes instead of 4294967455"},
    {"AVoiceOfNoBytes", "a.sr1", WithNumber(TestRefaceVoiceFile(0), 28, 0),
     "its records have no bytes"},
};

class CliRefaceCheckOf : public testing::TestWithParam<CheckCase> {};

TEST_P(CliRefaceCheckOf, SaysWhyItIsRefusedAndFails) {
    const TempFolder folder;
    const std::string path = folder.Write(GetParam().file, GetParam().bytes);
    for (const char *command : {"check", "list"}) {
        const auto result = Cli({command, path});
        EXPECT_EQ(result.exitStatus, 1);
        const bool isCheck = std::string(command) == "check";
        EXPECT_EQ(result.output,
                  isCheck ? path + "\trefused\t" + GetParam().reason + "\n" : std::string());
        EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": " + (isCheck ? "refused: " : "") +
                                     GetParam().reason + "\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Files, CliRefaceCheckOf, testing::ValuesIn(CheckCases),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(CliRefaceSave, GivesABankBackByteForByteButForVersionTimeAndFirmware) {
    const TempFolder folder;
    Bytes bank = TestRefaceBank(32, 0x01020304);
    for (std::size_t offset = 52; offset < 202; ++offset) {
        bank[160 + offset] = static_cast<std::uint8_t>(255 - offset);
    }
    const std::string out = folder.File("out.srx");
    const auto result = Cli({"save", folder.Write("in.srx", bank), out});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(WithoutTestTime(ReadTestFile(out)), WithNumber(bank, 32, 0));
}

TEST(CliRefaceSave, KeepsTheFileThatItReplacesAsABackup) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", TestRefaceBank());
    const std::string out = folder.WriteText("out.srx", "the former file");
    ASSERT_EQ(Cli({"save", in, out}).exitStatus, 0);
    EXPECT_EQ(ReadTestText(folder.File("Backup of out.srx")), "the former file");
}

TEST(CliRefaceSave, SaysWhichPlaceKeepsABankFromBeingWrittenAndLeavesTheFileAlone) {
    const TempFolder folder;
    const std::string three = folder.Write("three.srx", TestRefaceBank(3));
    const std::string small = folder.Write("small.srx", WithNumber(TestRefaceBank(), 28, 100));
    const std::string out = folder.WriteText("out.srx", "the former file");
    auto result = Cli({"save", three, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + out + ": not written: place 4 holds no whole voice\n");
    result = Cli({"save", small, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + out + ": not written: place 1 holds no whole voice\n");
    EXPECT_EQ(ReadTestText(out), "the former file");
    EXPECT_FALSE(folder.Holds("Backup of out.srx"));
    EXPECT_EQ(Cli({"save", three, three}).exitStatus, 1);
    EXPECT_EQ(ReadTestFile(three), TestRefaceBank(3));
}

TEST(CliRefaceSave, SaysWhyABankCannotBeOpened) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", Resized(TestRefaceBank(), 1000));
    const auto result = Cli({"save", in, folder.File("out.srx")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + in + ": cut off: 4 of 32 voices are there\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
}

TEST(CliRefaceSave, RefusesTheExtensionsOfTheOtherFamily) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", TestRefaceBank());
    for (const char *name : {"out.syx", "out.sr1", "out"}) {
        EXPECT_EQ(Cli({"save", in, folder.File(name)}).exitStatus, 2) << name;
        EXPECT_FALSE(folder.Holds(name));
    }
}

TEST(CliRefaceMove, MovesAVoice) {
    const TempFolder folder;
    const std::string out = folder.File("out.srx");
    ASSERT_EQ(Cli({"move", folder.Write("in.srx", TestRefaceBank()), "32", "1", out}).exitStatus,
              0);
    const Bytes file = ReadTestFile(out);
    EXPECT_EQ(Bytes(file.begin() + 160, file.begin() + 362), TestRefaceBlock(31));
    EXPECT_EQ(Bytes(file.begin() + 362, file.begin() + 564), TestRefaceBlock(0));
    EXPECT_EQ(Bytes(file.end() - 202, file.end()), TestRefaceBlock(30));
}

TEST(CliRefaceMove, PutsNoVoiceWhereABankIsNotWritten) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", TestRefaceBank(34));
    const std::string voice = folder.Write("a.sr1", TestRefaceVoiceFile(5));
    const std::string out = folder.WriteText("out.srx", "former");
    for (const std::vector<std::string> &call : std::vector<std::vector<std::string>>{
             {"move", in, "1", "33", out}, {"import", in, "33", voice, out}}) {
        const auto result = Cli(call);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.errors,
                  "tonewright-cli: " + in + ": a bank has places 1 to 32, and no place 33\n");
        EXPECT_EQ(ReadTestText(out), "former");
    }
    EXPECT_EQ(Cli({"move", in, "34", "2", out}).exitStatus, 0); // which fetches one of those behind
    EXPECT_NE(Cli({"list", out}).output.find("\n2\t" + TestRefaceName(33) + "\t"),
              std::string::npos);
}

TEST(CliRefaceExport, WritesTheVoiceOfAPlaceAndImportPutsItIntoAnother) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", TestRefaceBank());
    const std::string voice = folder.File("voice.sr1"), out = folder.File("out.srx");
    auto result = Cli({"export", in, "3", voice});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(WithoutTestTime(ReadTestFile(voice)), TestRefaceVoiceFile(2));
    result = Cli({"import", in, "32", voice, out});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    Bytes expected = TestRefaceBank();
    const Bytes block = TestRefaceBlock(2);
    std::copy(block.begin(), block.end(), expected.end() - 202);
    EXPECT_EQ(WithoutTestTime(ReadTestFile(out)), expected);
    EXPECT_EQ(ReadTestFile(in), TestRefaceBank());
}

TEST(CliRefaceExport, OfARecordThatHoldsNoWholeVoiceLeavesTheFileAlone) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", WithNumber(TestRefaceBank(), 28, 100));
    const std::string voice = folder.WriteText("voice.sr1", "the former file");
    const auto result = Cli({"export", in, "3", voice});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + voice + ": not written: place 3 holds no whole voice\n");
    EXPECT_EQ(ReadTestText(voice), "the former file");
}

TEST(CliRefaceImport, SaysWhyAVoiceCannotBeRead) {
    const TempFolder folder;
    const std::string in = folder.Write("in.srx", TestRefaceBank());
    const std::string out = folder.File("out.srx");
    const std::string dx7 = folder.Write("voice.sy1", TestVoiceFile());
    auto result = Cli({"import", in, "1", in, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + in +
                                 ": not a reface DX single-voice file, but a reface DX bank\n");
    result = Cli({"import", in, "1", dx7, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + dx7 +
                  ": not a reface DX single-voice file, but a DX7 single-voice file\n");
    EXPECT_FALSE(folder.Holds("out.srx"));
}

TEST(CliRefacePicture, PaintsTheWindowWithABank) {
    const TempFolder folder;
    const std::string png = folder.File("window.png");
    const auto result = Cli({"picture", folder.Write("in.srx", TestRefaceBank()), png});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_GT(ReadTestFile(png).size(), 10000u);
}

} // namespace
} // namespace tonewright
