// The command-line program as its users see it: real files, the real program, its output, errors
// and exit status.
#include "common/setting_rows.h"
#include "core/synth_driver.h"
#include "run_cli.h"
#include "support/bank_bytes.h"
#include "support/environment.h"
#include "support/paths.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// What `list` prints of TestBank(), each line behind `prefix`.
std::string TestBankLines(const std::string &prefix = "") {
    std::string lines;
    for (int number = 0; number < 32; ++number) {
        const std::string place = std::to_string(number + 1);
        lines += prefix + place + "\t" + TestVoiceName(number) + "\t" + place + "\n";
    }
    return lines;
}

// TestBank() with another checksum.
Bytes DamagedBank() {
    Bytes bank = TestBank();
    bank[4102] ^= 0x01;
    return bank;
}

Bytes BankWithWrongCount() {
    Bytes bank = TestBank();
    bank[4] = 0x10;
    return bank;
}

// TestBank() with the voices in the order of `numbers` (from 0).
Bytes BankInOrder(const std::vector<int> &numbers) {
    Bytes bank = TestBank();
    for (std::size_t place = 0; place < numbers.size(); ++place) {
        const Bytes voice = TestPackedVoice(numbers[place]);
        std::copy(voice.begin(), voice.end(),
                  bank.begin() + static_cast<std::ptrdiff_t>(6 + 128 * place));
    }
    FixTestChecksum(bank);
    return bank;
}

// The bank with the ten name bytes of its first voice replaced.
Bytes BankWithFirstName(const std::string &tenBytes) {
    Bytes bank = TestBank();
    std::copy(tenBytes.begin(), tenBytes.end(), bank.begin() + 6 + 118);
    FixTestChecksum(bank);
    return bank;
}

std::string FirstLine(const std::string &text) {
    return text.substr(0, text.find('\n'));
}

// ---- list

TEST(CliList, PrintsPlaceNameAndAlgorithmOfEveryVoiceOfABank) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("a.syx", TestBank())});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, TestBankLines());
    EXPECT_EQ(result.errors, "");
}

TEST(CliList, PrintsTheOneVoiceOfASingleVoiceFile) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("a.sy1", TestVoiceFile())});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "1\tE.PIANO 1x\t5\n");
}

TEST(CliList, PutsThePathInFrontWhenThereAreSeveralFiles) {
    const TempFolder folder;
    const std::string bank = folder.Write("a.syx", TestBank());
    const std::string voice = folder.Write("b.sy1", TestVoiceFile());
    const auto result = Cli({"list", bank, voice});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, TestBankLines(bank + "\t") + voice + "\t1\tE.PIANO 1x\t5\n");
}

TEST(CliList, TakesAnExtensionInCapitals) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("A.SYX", TestBank())});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, TestBankLines());
}

TEST(CliList, ShowsNamesAsLatin1WithControlCharactersReplaced) {
    const TempFolder folder;
    const auto result =
        Cli({"list", folder.Write("a.syx", BankWithFirstName("C\xE9\t\n\r\x7F\x85\xA0z "))});
    EXPECT_EQ(FirstLine(result.output), "1\tC\xC3\xA9?????\xC2\xA0z\t1");
    EXPECT_EQ(std::ranges::count(result.output, '\n'), 32);
    EXPECT_EQ(std::ranges::count(result.output, '\t'), 64);
}

TEST(CliList, ShowsANameOfTenBlanksAsOneBlank) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("a.syx", BankWithFirstName("          "))});
    EXPECT_EQ(FirstLine(result.output), "1\t \t1");
}

TEST(CliList, ShowsAnAlgorithmByteThatNoInstrumentKnowsAsItStands) {
    const TempFolder folder;
    Bytes bank = TestBank();
    bank[6 + 110] = 0xFF;
    FixTestChecksum(bank);
    const auto result = Cli({"list", folder.Write("a.syx", bank)});
    EXPECT_EQ(FirstLine(result.output), "1\tVOICE 01\t256");
}

TEST(CliList, RefusesADamagedBankWithoutATerminal) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("a.syx", DamagedBank())});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(Contains(result.errors, "The data in the document a.syx may be damaged.\n\n"
                                        "Do you wish to open it anyway?"));
    EXPECT_TRUE(Contains(result.errors, folder.File("a.syx") + ": wrong checksum\n"));
}

TEST(CliList, AsksWithoutTheControlCharactersOfAName) {
    const TempFolder folder;
    const auto result = Cli({"list", folder.Write("a\x1B.syx", DamagedBank())});
    EXPECT_TRUE(result.errors.starts_with("The data in the document a?.syx may be damaged.\n\n"))
        << result.errors;
}

TEST(CliList, ListsADamagedBankWithYes) {
    const TempFolder folder;
    const auto result = Cli({"list", "--yes", folder.Write("a.syx", DamagedBank())});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, TestBankLines());
}

TEST(CliList, GoesOnBehindAFileThatItCannotList) {
    const TempFolder folder;
    const std::string missing = folder.File("missing.syx");
    const std::string unknown = folder.Write("readme.txt", TestBank());
    const std::string bank = folder.Write("b.syx", TestBank());
    const auto result = Cli({"list", missing, unknown, bank});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, TestBankLines(bank + "\t"));
    EXPECT_EQ(result.errors, "tonewright-cli: " + missing +
                                 ": not readable: No such file or directory\n" +
                                 "tonewright-cli: " + unknown +
                                 ": the extension is none of those that can be read (syx, sy1, "
                                 "srx, sr1), but a DX7 bank\n");
}

TEST(CliList, PrintsAnAlgorithmThatNoInstrumentKnowsAsTheFileHasIt) {
    const TempFolder folder;
    Bytes bank = TestBank();
    bank[TestBankVoiceOffset(0) + 110] = 32;
    bank[TestBankVoiceOffset(1) + 110] = 0x7F;
    FixTestChecksum(bank);
    const auto result = Cli({"list", folder.Write("a.syx", bank)});
    EXPECT_TRUE(result.output.starts_with("1\tVOICE 01\t33\n2\tVOICE 02\t128\n3\tVOICE 03\t3\n"))
        << result.output;
}

// ---- check

TEST(CliCheck, SaysOkAndTheNumberOfVoices) {
    const TempFolder folder;
    const std::string bank = folder.Write("a.syx", TestBank());
    const std::string voice = folder.Write("b.SY1", TestVoiceFile());
    const auto result = Cli({"check", bank, voice});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, bank + "\tok\t32\n" + voice + "\tok\t1\n");
    EXPECT_EQ(result.errors, "");
}

struct CheckCase {
    const char *name;
    const char *file;
    Bytes bytes;
    const char *line; // behind the path and a tab
};

Bytes Changed(Bytes bytes, std::size_t offset, std::uint8_t value) {
    bytes[offset] = value;
    return bytes;
}

Bytes Resized(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

const CheckCase CheckCases[] = {
    {"AnEmptyBank", "a.syx", {}, "refused\t0 bytes instead of 4104"},
    {"ABankOneByteShort", "a.syx", Resized(TestBank(), 4103),
     "refused\t4103 bytes instead of 4104"},
    {"AVoiceOneByteShort", "a.sy1", Resized(TestVoiceFile(), 163),
     "refused\t163 bytes instead of 164"},
    {"AnotherFormat", "a.syx", Changed(TestBank(), 3, 0), "refused\tnot a DX7 32-voice dump"},
    {"ABankWithoutItsEnd", "a.syx", Changed(TestBank(), 4103, 0),
     "refused\tnot a DX7 32-voice dump"},
    {"TheInstrumentsOwnByteCount", "a.sy1", Changed(TestVoiceFile(), 5, 0x1C),
     "refused\tnot a DX7 single-voice file"},
    {"AWrongChecksum", "a.syx", DamagedBank(), "damaged\twrong checksum"},
    {"AWrongByteCountWithARightChecksum", "a.syx", BankWithWrongCount(),
     "damaged\twrong byte count, right checksum"},
    {"AWrongByteCountWithAWrongChecksum", "a.syx", Changed(BankWithWrongCount(), 4102, 0x7F),
     "damaged\twrong byte count and wrong checksum"},
    {"AWrongChecksumOfAVoice", "a.sy1", Changed(TestVoiceFile(), 20, 1), "damaged\twrong checksum"},
    {"AnUnknownExtension", "a.bin", TestBank(),
     "refused\tthe extension is none of those that can be read (syx, sy1, srx, sr1), but a DX7 "
     "bank"},
    {"NoExtension", "syx", Resized(TestBank(), 4000),
     "refused\tthe extension is none of those that can be read (syx, sy1, srx, sr1)"},
};

class CliCheckOf : public testing::TestWithParam<CheckCase> {};

TEST_P(CliCheckOf, SaysWhatIsWrongAndFails) {
    const TempFolder folder;
    const std::string path = folder.Write(GetParam().file, GetParam().bytes);
    const auto result = Cli({"check", path});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, path + "\t" + GetParam().line + "\n");
    EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + path + ": "));
}

INSTANTIATE_TEST_SUITE_P(Files, CliCheckOf, testing::ValuesIn(CheckCases),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(CliCheck, SaysHowMuchFollowsTheFormatAndIsNotRead) {
    const TempFolder folder;
    const std::string one = folder.Write("a.syx", Resized(TestBank(), 4105));
    const std::string many = folder.Write("b.syx", Resized(TestBank(), 131328));
    const std::string voice = folder.Write("c.sy1", Resized(TestVoiceFile(), 170));
    const std::string damaged = folder.Write("d.syx", Resized(DamagedBank(), 4200));
    const auto result = Cli({"check", one, many, voice, damaged});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, one + "\tok\t32\t1 more byte not read\n" + many +
                                 "\tok\t32\t127224 more bytes not read\n" + voice +
                                 "\tok\t1\t6 more bytes not read\n" + damaged +
                                 "\tdamaged\twrong checksum\t96 more bytes not read\n");
}

TEST(CliCheck, CountsTheVoicesThatHoldBytesAbove7F) {
    const TempFolder folder;
    Bytes bank = TestBank();
    bank[TestBankVoiceOffset(0)] = 0x80;        // first byte of the first voice
    bank[TestBankVoiceOffset(31) + 127] = 0xFF; // last byte of the last
    bank[TestBankVoiceOffset(31) + 126] = 0x80;
    const std::string two = folder.Write("a.syx", bank);
    Bytes voiceFile = TestVoiceFile();
    voiceFile[6 + 154] = 0x80; // last letter of the name
    FixTestChecksum(voiceFile);
    const std::string voice = folder.Write("b.sy1", voiceFile);
    voiceFile[6 + 154] = 'x';
    voiceFile[6 + 155] = 0xFF; // the operators that are switched on: not sent
    FixTestChecksum(voiceFile);
    const std::string operators = folder.Write("c.sy1", voiceFile);
    const std::string longer = folder.Write("d.syx", Resized(bank, 4110));
    const auto result = Cli({"check", two, voice, operators, longer});
    EXPECT_EQ(result.output, two + "\tdamaged\twrong checksum\t2 voices hold bytes above 7F\n" +
                                 voice + "\tok\t1\t1 voice holds bytes above 7F\n" + operators +
                                 "\tok\t1\n" + longer +
                                 "\tdamaged\twrong checksum\t6 more bytes not read"
                                 "\t2 voices hold bytes above 7F\n");
}

// A file that is no document, but something that another program or an instrument writes.
struct OtherThing {
    const char *name;
    const char *file;
    Bytes bytes;
    const char *what;
};

Bytes Behind(Bytes front, const Bytes &back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

// The 163 bytes that an instrument sends: without the byte that a file keeps of its own.
Bytes TestVoiceDump() {
    Bytes dump = TestVoiceFile();
    dump.erase(dump.begin() + 6 + 155);
    FixTestChecksum(dump);
    return dump;
}

Bytes WithoutHeader() {
    const Bytes bank = TestBank();
    return {bank.begin() + 6, bank.end() - 2};
}

const OtherThing OtherThings[] = {
    {"ABankForChannel5", "a.syx", Changed(TestBank(), 2, 4),
     "not a DX7 32-voice dump, but a DX7 bank for channel 5"},
    {"ABankForChannel16AsAVoice", "a.sy1", Changed(TestBank(), 2, 15),
     "not a DX7 single-voice file, but a DX7 bank for channel 16"},
    {"ABankAsAVoice", "a.sy1", TestBank(), "not a DX7 single-voice file, but a DX7 bank"},
    {"AVoiceOfTheInstrument", "a.sy1", TestVoiceDump(),
     "163 bytes instead of 164, but a DX7 voice of 163 bytes, as the instrument sends it"},
    {"AVoiceOfTheInstrumentAsABank", "a.syx", TestVoiceDump(),
     "163 bytes instead of 4104, but a DX7 voice of 163 bytes, as the instrument sends it"},
    {"AVoiceFileAsABank", "a.syx", TestVoiceFile(),
     "164 bytes instead of 4104, but a DX7 single-voice file"},
    {"ARefaceDxVoiceOfTheInstrument",
     "a.syx",
     {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x04, 0x05, 0x0E, 0x0F, 0x00, 0x5E, 0xF7},
     "13 bytes instead of 4104, but a reface DX voice as the instrument sends it"},
    {"ACommonBlockOfARefaceDxVoiceForDevice3",
     "a.syx",
     {0xF0, 0x43, 0x02, 0x7F, 0x1C, 0x00, 0x2A, 0x05, 0x30, 0x00, 0x00},
     "11 bytes instead of 4104, but a reface DX voice as the instrument sends it"},
    {"SettingsOfARefaceDx",
     "a.syx",
     {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x24, 0x05, 0x00, 0x00, 0x00},
     "11 bytes instead of 4104"},
    {"ABankBehindAnotherMessage", "a.syx",
     Behind({0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}, Changed(TestBank(), 2, 3)),
     "not a DX7 32-voice dump, but a DX7 bank behind 6 bytes of something else"},
    {"ABankBehindAnotherMessageWithoutItsEnd", "a.syx",
     Behind({0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}, Resized(TestBank(), 4103)),
     "not a DX7 32-voice dump"},
    {"ABankWithoutItsHeader", "a.syx", WithoutHeader(),
     "4096 bytes instead of 4104, but a DX7 bank of 32 voices without its header"},
    {"ABankWithoutItsHeaderAndALargeLevel", "a.syx", Changed(WithoutHeader(), 31 * 128 + 92, 100),
     "4096 bytes instead of 4104"},
    {"ABankWithoutItsHeaderAndAName", "a.syx", Changed(WithoutHeader(), 127, 0x1F),
     "4096 bytes instead of 4104"},
    {"ABankWithoutItsHeaderAndAHighByte", "a.syx", Changed(WithoutHeader(), 112, 0x80),
     "4096 bytes instead of 4104"},
};

class CliOtherThing : public testing::TestWithParam<OtherThing> {};

TEST_P(CliOtherThing, IsRefusedByTheNameOfWhatItIs) {
    const TempFolder folder;
    const std::string path = folder.Write(GetParam().file, GetParam().bytes);
    const auto result = Cli({"check", path});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, path + "\trefused\t" + GetParam().what + "\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": refused: " + GetParam().what + "\n");
    EXPECT_EQ(Cli({"list", path}).errors,
              "tonewright-cli: " + path + ": " + GetParam().what + "\n");
}

INSTANTIATE_TEST_SUITE_P(Files, CliOtherThing, testing::ValuesIn(OtherThings),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(CliCheck, RefusesAFolderAndAMissingFile) {
    const TempFolder folder;
    const std::string missing = folder.File("missing.syx");
    const std::string directory = folder.File("folder.syx");
    std::filesystem::create_directory(directory);
    const auto result = Cli({"check", missing, directory});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, missing + "\trefused\tnot readable: No such file or directory\n" +
                                 directory + "\trefused\tnot readable: Is a directory\n");
}

TEST(CliCheck, FailsWhenOneFileOfManyIsNotOk) {
    const TempFolder folder;
    const std::string good = folder.Write("a.syx", TestBank());
    const std::string bad = folder.Write("b.syx", DamagedBank());
    const auto result = Cli({"check", good, bad, good});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output,
              good + "\tok\t32\n" + bad + "\tdamaged\twrong checksum\n" + good + "\tok\t32\n");
}

TEST(CliCheck, KeepsOneRecordALineWhateverThePath) {
    const TempFolder folder;
    const std::string path = folder.Write("a\tb\nc.syx", TestBank());
    const auto result = Cli({"check", path});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, folder.File("a?b?c.syx") + "\tok\t32\n");
}

TEST(CliCheck, KnowsTheFilesOfEveryDriverThatReadsSome) {
    int readers = 0;
    for (const SynthDriver *driver : SynthDrivers) {
        for (const char *extension : {driver->OpenBank ? driver->bankExtension : nullptr,
                                      driver->ImportVoice ? driver->voiceExtension : nullptr}) {
            if (extension) {
                ++readers;
                const auto result = Cli({"check", std::string("/nowhere/a.") + extension});
                EXPECT_TRUE(Contains(result.output, "\trefused\tnot readable: ")) << result.output;
            }
        }
    }
    EXPECT_GE(readers, 2);
}

// ---- save

TEST(CliSave, GivesACleanBankBackByteForByte) {
    const TempFolder folder;
    const std::string out = folder.File("out.syx");
    const auto result = Cli({"save", folder.Write("in.syx", TestBank()), out});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(ReadTestFile(out), TestBank());
}

TEST(CliSave, GivesTheExampleBankBackByteForByte) {
    const TempFolder folder;
    const std::string example = ExampleFile("tonewright.syx");
    ASSERT_EQ(Cli({"save", example, folder.File("out.syx")}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(folder.File("out.syx")), ReadTestFile(example));
}

TEST(CliSave, WritesTheSameBytesTheSecondTime) {
    const TempFolder folder;
    Bytes bank = TestBank();
    bank[6 + 12] = 0x73; // a detune above 7 loses its high bit when it is read
    bank[6 + 14] = 0;    // an operator without level
    FixTestChecksum(bank);
    const std::string once = folder.File("once.syx"), twice = folder.File("twice.syx");
    ASSERT_EQ(Cli({"save", folder.Write("in.syx", bank), once}).exitStatus, 0);
    ASSERT_EQ(Cli({"save", once, twice}).exitStatus, 0);
    EXPECT_NE(ReadTestFile(once), bank);
    EXPECT_EQ(ReadTestFile(twice), ReadTestFile(once));
}

// A detune above 0 in every voice, as most banks have them.
Bytes BankWithHighDetunes() {
    Bytes bank = TestBank();
    for (int number = 0; number < 32; ++number) {
        bank[TestBankVoiceOffset(number) + 17 + 12] = 0x72; // detune 14, rate scaling 2
    }
    FixTestChecksum(bank);
    return bank;
}

TEST(CliWholeDetune, IsWhatTheOptionSaysOrElseExtras) {
    const TempFolder folder;
    SetVariable("XDG_CONFIG_HOME", folder.File("config"));
    const Bytes bank = BankWithHighDetunes();
    const std::string in = folder.Write("in.syx", bank);
    const auto saved = [&](std::vector<std::string> options) {
        const std::string out = folder.File("out.syx");
        std::vector<std::string> call = {"save", in, out};
        call.insert(call.end(), options.begin(), options.end());
        const auto result = Cli(call);
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        return ReadTestFile(out);
    };
    Bytes plain = bank;
    for (int number = 0; number < 32; ++number) {
        plain[TestBankVoiceOffset(number) + 17 + 12] = 0x32; // detune 6
    }
    FixTestChecksum(plain);
    EXPECT_EQ(saved({}), plain);
    EXPECT_EQ(saved({"--whole-detune"}), bank);
    EXPECT_FALSE(folder.Holds("config"));
    ASSERT_EQ(Cli({"settings", "set", "extras.WholeDetune", "1"}).exitStatus, 0);
    EXPECT_EQ(saved({}), bank);
    EXPECT_EQ(saved({"--no-whole-detune"}), plain);
    EXPECT_EQ(Cli({"settings", "get", "extras.WholeDetune"}).output, "1\n");
}

TEST(CliWholeDetune, EveryCommandThatReadsABankFollowsIt) {
    const TempFolder folder;
    const Bytes bank = BankWithHighDetunes();
    const std::string in = folder.Write("in.syx", bank);
    const auto run = [](std::vector<std::string> call) {
        call.push_back("--whole-detune");
        const auto result = Cli(call);
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
    };
    run({"move", in, "32", "31", folder.File("moved.syx")});
    EXPECT_EQ(ReadTestFile(folder.File("moved.syx"))[6 + 17 + 12], 0x72);
    run({"export", in, "3", folder.File("voice.sy1")});
    EXPECT_EQ(ReadTestFile(folder.File("voice.sy1"))[6 + 21 + 20], 14);
    run({"import", in, "1", folder.File("voice.sy1"), folder.File("imported.syx")});
    EXPECT_EQ(ReadTestFile(folder.File("imported.syx"))[6 + 17 + 12], 0x72);
    EXPECT_EQ(ReadTestFile(folder.File("imported.syx"))[6 + 128 + 17 + 12], 0x72);
}

TEST(CliExtras, ACommandThatTheyCannotChangeDoesNotTakeTheirOptions) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), out = folder.File("out.png");
    const auto expect = [](std::vector<std::string> call, const std::string &option) {
        const std::string command = call.front();
        call.push_back(option);
        const auto result = Cli(call);
        EXPECT_EQ(result.exitStatus, 2) << command;
        EXPECT_TRUE(
            result.errors.starts_with("tonewright-cli: " + command + " takes no " + option + "\n"))
            << result.errors;
        const std::string help = Cli({command, "--help"}).output;
        EXPECT_TRUE(Contains(help, "--help") && !Contains(help, "  " + option)) << command;
    };
    for (const char *option : {"--whole-detune", "--no-whole-detune"}) {
        expect({"list", in}, option);
        expect({"picture", in, out}, option);
        expect({"download", folder.File("out.srx")}, option);
    }
    for (const char *option : {"--careful", "--no-careful"}) {
        expect({"list", in}, option);
        expect({"picture", in, out}, option);
    }
    EXPECT_FALSE(folder.Holds("out.png"));
}

TEST(CliExtras, OptionsThatContradictEachOtherOrBelongToNoSuchCommandAreWrongCalls) {
    auto result = Cli({"save", "a.syx", "b.syx", "--careful", "--no-careful"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.starts_with(
        "tonewright-cli: --careful and --no-careful exclude each other\n"));
    result = Cli({"save", "a.syx", "b.syx", "--no-whole-detune", "--whole-detune"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.starts_with(
        "tonewright-cli: --whole-detune and --no-whole-detune exclude each other\n"));
    result = Cli({"history", "--careful"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.starts_with("tonewright-cli: history takes no --careful\n"));
}

TEST(CliSave, TakesPathsAgainstTheCurrentFolder) {
    const TempFolder folder;
    folder.Write("in.syx", TestBank());
    std::filesystem::create_directory(folder.path / "sub");
    std::filesystem::current_path(folder.path / "sub");
    const auto result = Cli({"save", "../in.syx", "out.syx"});
    std::filesystem::current_path("/");
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(ReadTestFile(folder.File("sub/out.syx")), TestBank());
}

TEST(CliSave, WritesToNoPathThatIsLongerThan260Bytes) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string longest = folder.FileOfSize(260, "out.syx");
    for (const std::string &path : {longest, longest + ".syx"}) {
        WriteTestText(path, "former");
    }
    auto result = Cli({"save", in, longest + ".syx"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + longest + ".syx: could not be written: File name too long\n");
    EXPECT_EQ(ReadTestText(longest + ".syx"), "former");
    EXPECT_EQ(ReadTestText(longest), "former");
    result = Cli({"export", in, "1", folder.FileOfSize(261, "out.sy1")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "could not be written: File name too long\n"));
    EXPECT_FALSE(std::filesystem::exists(folder.FileOfSize(261, "out.sy1")));
    EXPECT_EQ(Cli({"save", in, longest}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(longest), TestBank());
}

TEST(CliSave, RefusesADamagedBankWithNo) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", DamagedBank());
    const auto result = Cli({"save", in, folder.File("out.syx"), "--no"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "Do you wish to open it anyway?"));
    EXPECT_TRUE(Contains(result.errors, in + ": wrong checksum"));
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliSave, RefusesADamagedBankWithoutATerminal) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", BankWithWrongCount());
    const auto result = Cli({"save", in, folder.File("out.syx")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, in + ": wrong byte count"));
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliSave, OpensADamagedBankWithYesAndWritesItWhole) {
    const TempFolder folder;
    const auto result =
        Cli({"save", folder.Write("in.syx", DamagedBank()), folder.File("out.syx"), "--yes"});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(ReadTestFile(folder.File("out.syx")), TestBank());
}

TEST(CliSave, SaysWhyABankCannotBeOpened) {
    const TempFolder folder;
    const std::string out = folder.File("out.syx");
    const std::string missing = folder.File("missing.syx");
    const std::string small = folder.Write("short.syx", Resized(TestBank(), 4103));
    const std::string voice = folder.Write("voice.sy1", TestVoiceFile());
    auto result = Cli({"save", missing, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + missing + ": not readable: No such file or directory\n");
    result = Cli({"save", small, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + small + ": 4103 bytes instead of 4104\n");
    result = Cli({"save", voice, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + voice + ": not a bank that can be opened, by its extension\n");
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliSave, RefusesAnotherExtensionThanTheBanks) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    for (const char *name : {"out.sy1", "out.srx", "out.txt", "out"}) {
        const auto result = Cli({"save", in, folder.File(name)});
        EXPECT_EQ(result.exitStatus, 2) << name;
        EXPECT_TRUE(Contains(result.errors, folder.File(name) + ": the extension"));
        EXPECT_FALSE(folder.Holds(name));
    }
    EXPECT_EQ(Cli({"save", in, folder.File("OUT.SYX")}).exitStatus, 0);
}

TEST(CliSave, KeepsTheFileThatItReplacesAsABackup) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string out = folder.WriteText("out.syx", "the former file");
    ASSERT_EQ(Cli({"save", in, out}).exitStatus, 0);
    EXPECT_EQ(ReadTestText(folder.File("Backup of out.syx")), "the former file");
    EXPECT_EQ(ReadTestFile(out), TestBank());
}

TEST(CliSave, AsksWhenTheBackupFails) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string out = folder.WriteText("out.syx", "the former file");
    std::filesystem::create_directory(folder.path / "Backup of out.syx");
    folder.WriteText("Backup of out.syx/in the way", "");
    auto result = Cli({"save", in, out, "--no"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "Warning: there has been an error creating a backup for "
                                        "your file.\n\nClick on Yes to proceed, or click on No to "
                                        "abort this save."));
    EXPECT_TRUE(Contains(result.errors, out + ": not written, as answered\n"));
    EXPECT_EQ(ReadTestText(out), "the former file");
    result = Cli({"save", in, out, "--yes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(ReadTestFile(out), TestBank());
}

TEST(CliSave, SaysWhyTheFileCannotBeWritten) {
    const TempFolder folder;
    const std::string out = folder.File("no folder/out.syx");
    const auto result = Cli({"save", folder.Write("in.syx", TestBank()), out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + out + ": could not be written: No such file or directory\n");
}

// ---- move

Bytes AfterMove(const TempFolder &folder, const char *from, const char *to) {
    const std::string out = folder.File("out.syx");
    const auto result = Cli({"move", folder.Write("in.syx", TestBank()), from, to, out});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    return ReadTestFile(out);
}

TEST(CliMove, MovesAVoiceDown) {
    const TempFolder folder;
    EXPECT_EQ(AfterMove(folder, "1", "3"), BankInOrder({1, 2, 0}));
}

TEST(CliMove, MovesAVoiceUp) {
    const TempFolder folder;
    EXPECT_EQ(AfterMove(folder, "5", "2"), BankInOrder({0, 4, 1, 2, 3}));
}

TEST(CliMove, MovesTheFirstVoiceToTheLastPlace) {
    const TempFolder folder;
    std::vector<int> order;
    for (int number = 1; number < 32; ++number) {
        order.push_back(number);
    }
    order.push_back(0);
    EXPECT_EQ(AfterMove(folder, "1", "32"), BankInOrder(order));
}

TEST(CliMove, ChangesNothingFromAPlaceToItself) {
    const TempFolder folder;
    EXPECT_EQ(AfterMove(folder, "32", "32"), TestBank());
}

TEST(CliMove, RefusesWhatIsNoPlace) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string out = folder.File("out.syx");
    for (const char *place : {"0", "", "x", "1x", " 1", "+1", "1.0", "99999999999999999999"}) {
        EXPECT_EQ(Cli({"move", in, place, "1", out}).exitStatus, 2) << place;
        EXPECT_EQ(Cli({"move", in, "1", place, out}).exitStatus, 2) << place;
    }
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliMove, SaysThatTheBankHasNoSuchPlace) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string out = folder.File("out.syx");
    for (const auto &[from, to] : {std::pair("33", "1"), std::pair("1", "33")}) {
        const auto result = Cli({"move", in, from, to, out});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.errors,
                  "tonewright-cli: " + in + ": there is no place 33 among its 32 voices\n");
    }
    EXPECT_FALSE(folder.Holds("out.syx"));
}

// ---- export and import

TEST(CliExport, WritesTheVoiceOfAPlace) {
    const TempFolder folder;
    const std::string bank = folder.File("bank.syx"), voice = folder.File("voice.sy1");
    const std::string in = folder.Write("in.sy1", TestVoiceFile());
    const auto result = Cli({"export", folder.Write("in.syx", TestBank()), "2", voice});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    const Bytes file = ReadTestFile(voice);
    ASSERT_EQ(file.size(), 164u);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 6), (Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B}));
    // The first operator block, one parameter a byte.
    EXPECT_EQ(Bytes(file.begin() + 6, file.begin() + 27),
              (Bytes{95, 29, 20, 50, 99, 95, 0, 0, 41, 0, 19, 1, 3, 3, 2, 5, 79, 1, 14, 88, 7}));
    // Algorithm, then the name and the operators that are switched on.
    EXPECT_EQ(file[6 + 134], 1);
    EXPECT_EQ(std::string(file.begin() + 6 + 145, file.begin() + 6 + 155), "VOICE 02  ");
    EXPECT_EQ(file[6 + 155], 0x3F);
    EXPECT_EQ(file[162], TestChecksum(std::span(file).subspan(6, 156)));
    EXPECT_EQ(file[163], 0xF7);
}

TEST(CliExport, KeepsTheFileThatItReplacesAsABackup) {
    const TempFolder folder;
    const std::string out = folder.WriteText("voice.sy1", "the former file");
    ASSERT_EQ(Cli({"export", folder.Write("in.syx", TestBank()), "1", out}).exitStatus, 0);
    EXPECT_EQ(ReadTestText(folder.File("Backup of voice.sy1")), "the former file");
    EXPECT_EQ(ReadTestFile(out).size(), 164u);
}

TEST(CliExport, RefusesAWrongPlaceAndAWrongExtension) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    EXPECT_EQ(Cli({"export", in, "0", folder.File("a.sy1")}).exitStatus, 2);
    EXPECT_EQ(Cli({"export", in, "1", folder.File("a.syx")}).exitStatus, 2);
    const auto result = Cli({"export", in, "33", folder.File("a.sy1")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + in + ": there is no place 33 among its 32 voices\n");
    EXPECT_FALSE(folder.Holds("a.sy1"));
    EXPECT_FALSE(folder.Holds("a.syx"));
}

TEST(CliExport, SaysWhyTheFileCannotBeWritten) {
    const TempFolder folder;
    const std::string out = folder.File("no folder/a.sy1");
    const auto result = Cli({"export", folder.Write("in.syx", TestBank()), "1", out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + out + ": could not be written: No such file or directory\n");
}

TEST(CliImport, PutsTheVoiceOfAFileIntoAPlace) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    const std::string voice = folder.File("voice.sy1"), out = folder.File("out.syx");
    ASSERT_EQ(Cli({"export", in, "1", voice}).exitStatus, 0);
    const auto result = Cli({"import", in, "32", voice, out});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    Bytes expected = TestBank();
    const Bytes first = TestPackedVoice(0);
    std::copy(first.begin(), first.end(), expected.begin() + 6 + 31 * 128);
    FixTestChecksum(expected);
    EXPECT_EQ(ReadTestFile(out), expected);
    EXPECT_EQ(ReadTestFile(in), TestBank());
}

TEST(CliImport, LosesTheLevelOfASwitchedOffOperatorInTheBank) {
    const TempFolder folder;
    const std::string out = folder.File("out.syx");
    ASSERT_EQ(Cli({"import", folder.Write("in.syx", TestBank()), "1",
                   folder.Write("voice.sy1", TestVoiceFile()), out})
                  .exitStatus,
              0);
    const Bytes bank = ReadTestFile(out);
    EXPECT_EQ(bank[6 + 14], 79);
    EXPECT_EQ(bank[6 + 17 + 14], 0);
    EXPECT_EQ(bank[6 + 34 + 14], 99);
}

TEST(CliImport, AsksAboutADamagedVoice) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), out = folder.File("out.syx");
    const std::string voice = folder.Write("voice.sy1", Changed(TestVoiceFile(), 162, 0));
    auto result = Cli({"import", in, "1", voice, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "The data in the document voice.sy1 may be damaged."));
    EXPECT_TRUE(Contains(result.errors, voice + ": wrong checksum"));
    EXPECT_FALSE(folder.Holds("out.syx"));
    result = Cli({"import", in, "1", voice, out, "--yes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(Contains(Cli({"list", out}).output, "1\tE.PIANO 1x\t5\n"));
}

TEST(CliImport, RefusesWhatIsNoVoice) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), out = folder.File("out.syx");
    const std::string small = folder.Write("short.sy1", Resized(TestVoiceFile(), 163));
    const std::string missing = folder.File("missing.sy1");
    auto result = Cli({"import", in, "1", small, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + small + ": 163 bytes instead of 164\n");
    result = Cli({"import", in, "1", missing, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + missing + ": not readable: No such file or directory\n");
    result = Cli({"import", in, "1", in, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + in + ": not a DX7 single-voice file, but a DX7 bank\n");
    result = Cli({"import", in, "33", small, out});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(Cli({"import", in, "one", small, out}).exitStatus, 2);
    EXPECT_EQ(Cli({"import", in, "1", small, folder.File("out.sy1")}).exitStatus, 2);
    EXPECT_FALSE(folder.Holds("out.syx"));
}

// ---- picture

// Width and height of a PNG, from its header.
std::pair<unsigned, unsigned> PngSize(const Bytes &file) {
    const Bytes signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (file.size() < 24 || !std::equal(signature.begin(), signature.end(), file.begin())) {
        return {};
    }
    const auto number = [&file](std::size_t at) {
        return unsigned{file[at]} << 24 | unsigned{file[at + 1]} << 16 |
               unsigned{file[at + 2]} << 8 | file[at + 3];
    };
    return {number(16), number(20)};
}

TEST(CliPicture, PaintsTheWindowForTheUsualScreen) {
    const TempFolder folder;
    const std::string png = folder.File("window.png");
    const auto result = Cli({"picture", folder.Write("in.syx", TestBank()), png});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    // 95 percent of 1080, and that times 372 / 460, without the frame: 4 pixels on each side and 23
    // for the caption.
    EXPECT_EQ(PngSize(ReadTestFile(png)), std::pair(829u - 8, 1026u - 31));
}

TEST(CliPicture, PaintsTheWindowForAnotherScreen) {
    const TempFolder folder;
    const std::string png = folder.File("window.PNG");
    const auto result =
        Cli({"picture", folder.Write("in.syx", TestBank()), "--screen", "1024x768", png});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(PngSize(ReadTestFile(png)).second, 729u - 31);
}

TEST(CliPicture, RefusesAScreenThatIsNone) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), png = folder.File("a.png");
    for (const char *screen : {"", "x", "1920", "1920x", "1920x0", "199x199", "1920x16385",
                               "-1920x1080", "1920x1080x24", "1920 x 1080"}) {
        EXPECT_EQ(Cli({"picture", in, png, "--screen", screen}).exitStatus, 2) << screen;
    }
    EXPECT_FALSE(folder.Holds("a.png"));
}

TEST(CliPicture, RefusesAnotherExtensionThanPng) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank());
    EXPECT_EQ(Cli({"picture", in, folder.File("a.jpg")}).exitStatus, 2);
    EXPECT_EQ(Cli({"picture", folder.File("a.png"), in}).exitStatus, 2);
    EXPECT_EQ(ReadTestFile(in), TestBank());
}

TEST(CliPicture, FailsWithoutABankAndWithoutAPlaceForThePicture) {
    const TempFolder folder;
    const std::string missing = folder.File("missing.syx"), png = folder.File("a.png");
    auto result = Cli({"picture", missing, png});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, missing + ": "));
    EXPECT_FALSE(folder.Holds("a.png"));
    const std::string nowhere = folder.File("no folder/a.png");
    result = Cli({"picture", folder.Write("in.syx", TestBank()), nowhere});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, nowhere + ": "));
}

TEST(CliPicture, AsksAboutADamagedBank) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", DamagedBank()), png = folder.File("a.png");
    const auto result = Cli({"picture", in, png});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(Contains(result.errors, "Do you wish to open it anyway?"));
    EXPECT_EQ(Cli({"picture", in, png, "--yes"}).exitStatus, 0);
    EXPECT_TRUE(folder.Holds("a.png"));
}

// ---- config

// The value that `config` prints for a key; "(none)" when it prints no such key.
std::string ConfigValue(const std::string &output, const std::string &key) {
    const std::size_t start = ("\n" + output).find("\n" + key + "\t");
    if (start == std::string::npos) {
        return "(none)";
    }
    const std::size_t value = start + key.size() + 1;
    return output.substr(value, output.find('\n', value) - value);
}

TEST(CliConfig, PrintsEveryKeyInTheOrderOfTheTable) {
    const TempFolder folder;
    const auto result = Cli({"config", folder.WriteText("a.ini", "")});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    const auto count = static_cast<std::ptrdiff_t>(ProgramSettings.rows.size());
    EXPECT_EQ(std::ranges::count(result.output, '\n'), count);
    EXPECT_EQ(std::ranges::count(result.output, '\t'), count);
    EXPECT_TRUE(result.output.starts_with("ApplicationPath\t"));
    EXPECT_TRUE(Contains(result.output, "\nTipOfTheDay\t0\nThemeCurrent\t\n"));
    EXPECT_TRUE(result.output.ends_with("\nShowWelcomeWizard\t1\n"));
    EXPECT_EQ(ConfigValue(result.output, "MaxUndoLevel"), "3");
    EXPECT_EQ(ConfigValue(result.output, "SysexWait"), "1500");
    EXPECT_EQ(ConfigValue(result.output, "DatabaseCurrentName"), "Voices");
}

TEST(CliConfig, ReadsAsTheProgramDoes) {
    const TempFolder folder;
    const std::string file = folder.WriteText("a.ini", ";MaxUndoLevel = 9\n"
                                                       "[Tonewright]\n"
                                                       "Max   ==  7\r\n"
                                                       "Version = 3\n"
                                                       "CreateBackups = yes\n"
                                                       "TipFont01Size = -1\n"
                                                       "DatabaseCurrentName=My Voices\there\n"
                                                       "OpenPath = \n");
    const auto result = Cli({"config", file});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_EQ(ConfigValue(result.output, "MaxUndoLevel"), "7");
    EXPECT_EQ(ConfigValue(result.output, "VersionNumber"), "544");
    EXPECT_EQ(ConfigValue(result.output, "CreateBackups"), "0");
    EXPECT_EQ(ConfigValue(result.output, "TipFont01Size"), "4294967295");
    EXPECT_EQ(ConfigValue(result.output, "DatabaseCurrentName"), "My Voices");
    EXPECT_EQ(ConfigValue(result.output, "OpenPath"), "");
}

TEST(CliConfig, StartsFromTheDefaultFolders) {
    const TempFolder folder;
    SetVariable("HOME", folder.path.string());
    SetVariable("XDG_CONFIG_HOME", folder.path.string());
    const auto result = Cli({"config", folder.WriteText("a.ini", "")});
    EXPECT_EQ(ConfigValue(result.output, "OpenPath"),
              folder.File("Documents/My Tonewright 17 Documents/"));
    EXPECT_EQ(ConfigValue(result.output, "ApplicationPath"),
              (std::filesystem::path(CliProgram()).parent_path() / "").string());
}

TEST(CliConfig, FailsOnAFileThatCannotBeRead) {
    const TempFolder folder;
    const auto result = Cli({"config", folder.File("missing.ini")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tonewright-cli: " + folder.File("missing.ini") +
                                 ": not readable: No such file or directory\n");
}

// ---- the command line

TEST(CliCommandLine, ShowsItsHelp) {
    const auto result = Cli({"--help"});
    EXPECT_EQ(result.exitStatus, 0);
    for (const char *command : {"list FILE...",
                                "check FILE...",
                                "save IN OUT",
                                "move IN FROM TO OUT",
                                "export IN PLACE OUT",
                                "import IN PLACE VOICE OUT",
                                "picture FILE OUT.png",
                                "print FILE OUT.pdf",
                                "config FILE",
                                "db print OUT.pdf",
                                "identify FILE...",
                                "rescue IN...",
                                "archive add FOLDER...",
                                "archive update",
                                "archive find TEXT...",
                                "archive duplicates",
                                "archive similar FILE PLACE",
                                "archive show ID",
                                "archive make-bank OUT ID...",
                                "archive forget FOLDER",
                                "archive check",
                                "--into FOLDER",
                                "--archive FILE",
                                "--algorithm N",
                                "--instrument NAME",
                                "--folder FOLDER",
                                "--paper SIZE",
                                "settings WHAT [KEY [VALUE]]",
                                "history",
                                "colours FILE",
                                "themes",
                                "tip",
                                "--yes",
                                "--no",
                                "--screen WIDTHxHEIGHT",
                                "--file FILE",
                                "--help",
                                "--version"}) {
        EXPECT_TRUE(Contains(result.output, std::string("  ") + command)) << command;
    }
    EXPECT_EQ(result.errors, "");
}

TEST(CliCommandLine, ShowsTheHelpOfACommand) {
    const auto result = Cli({"move", "--help"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(result.output.starts_with("usage: tonewright-cli move IN FROM TO OUT\n"));
    EXPECT_TRUE(Contains(result.output, "--yes"));
    EXPECT_FALSE(Contains(result.output, "--screen"));
}

TEST(CliCommandLine, ShowsItsVersion) {
    for (const auto &arguments : std::vector<std::vector<std::string>>{
             {"--version"}, {"list", "--version"}, {"--version", "list", "/nowhere"}}) {
        const auto result = Cli(arguments);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, "tonewright-cli 17.0a revision 1\n");
    }
}

TEST(CliCommandLine, RefusesAWrongCall) {
    for (const auto &arguments : std::vector<std::vector<std::string>>{
             {},
             {""},
             {"lists", "a.syx"},
             {"--unknown"},
             {"-h"},
             {"list"},
             {"list", "a.syx", "--screen", "800x600"},
             {"check"},
             {"check", "a.syx", "--yes"},
             {"save", "a.syx"},
             {"save", "a.syx", "b.syx", "c.syx"},
             {"save", "a.syx", "b.syx", "--yes", "--no"},
             {"save", "a.syx", "b.syx", "--yes=1"},
             {"move", "a.syx", "1", "b.syx"},
             {"export", "a.syx", "1"},
             {"import", "a.syx", "1", "b.sy1"},
             {"picture", "a.syx"},
             {"picture", "a.syx", "b.png", "--screen"},
             {"config"},
             {"config", "a.ini", "b.ini"},
             {"config", "a.ini", "--file", "b.ini"},
             {"settings"},
             {"settings", "set", "MaxUndoLevel", "7", "8"},
             {"history", "a.txt"},
             {"history", "--file"},
             {"history", "--yes"},
         }) {
        const auto result = Cli(arguments);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("tonewright-cli: ")) << result.errors;
        EXPECT_TRUE(Contains(result.errors, "usage: ")) << result.errors;
    }
}

TEST(CliCommandLine, TakesOptionsAnywhere) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", DamagedBank()), out = folder.File("out.syx");
    const std::vector<std::string> words = {"save", in, out};
    for (std::size_t place = 0; place <= words.size(); ++place) {
        std::vector<std::string> arguments = words;
        arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(place), "--yes");
        EXPECT_EQ(Cli(arguments).exitStatus, 0) << place;
        EXPECT_EQ(ReadTestFile(out), TestBank());
        std::filesystem::remove(out);
    }
}

TEST(CliCommandLine, TakesAnOptionsValueInBothForms) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), png = folder.File("a.png");
    EXPECT_EQ(Cli({"--screen", "1024x768", "picture", in, png}).exitStatus, 0);
    EXPECT_EQ(PngSize(ReadTestFile(png)).second, 729u - 31);
    EXPECT_EQ(Cli({"picture", in, png, "--screen=1280x1024"}).exitStatus, 0);
    EXPECT_EQ(PngSize(ReadTestFile(png)).second, 972u - 31);
}

TEST(CliCommandLine, EndsTheOptionsAtTwoDashes) {
    const TempFolder folder;
    folder.Write("--yes.syx", TestBank());
    folder.Write("--", TestBank());
    std::filesystem::current_path(folder.path);
    const auto named = Cli({"check", "--", "--yes.syx"});
    const auto unnamed = Cli({"check", "--yes.syx"});
    const auto twice = Cli({"check", "--", "--"});
    std::filesystem::current_path("/");
    EXPECT_EQ(named.exitStatus, 0);
    EXPECT_EQ(named.output, "--yes.syx\tok\t32\n");
    EXPECT_EQ(unnamed.exitStatus, 2);
    EXPECT_EQ(twice.output.substr(0, 3), "--\t");
}

// What stands in front of a run of blanks, of the lines of the help that begin with two blanks.
std::vector<std::string> Usages(const std::string &help) {
    std::vector<std::string> usages;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  ") && line[2] != ' ') {
            line.erase(0, 2);
            usages.push_back(line.substr(0, line.find("  ")));
        }
    }
    return usages;
}

TEST(CliHelp, EveryCommandAndOptionStandsInTheHelpPage) {
    const std::string page = ReadTestText(SourceFile("resources/html/cli.html"));
    const auto usages = Usages(Cli({"--help"}).output);
    EXPECT_GE(usages.size(), 50u);
    for (const std::string &usage : usages) {
        EXPECT_TRUE(Contains(page, "<td><code>" + usage + "</code></td>")) << usage;
    }
}

} // namespace
} // namespace tonewright
