// The commands for the parameters of a voice on real files: show and edit.
#include "run_cli.h"
#include "support/bank_bytes.h"
#include "support/comma_locale.h"
#include "support/environment.h"
#include "support/family_names.h"
#include "support/parameter_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::string>;

constexpr std::size_t Dx7VoiceStart = 6;           // of a .sy1 file
constexpr std::size_t RefaceVoiceStart = 160 + 52; // of a .sr1 file
constexpr std::size_t FirstPackedVoice = 6;        // of a .syx file
constexpr std::size_t FirstRefaceVoice = 160 + 52; // of a .srx file

Words Lines(const std::string &text) {
    Words lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// `show` of these values.
std::string Shown(const std::vector<TestParameter> &parameters) {
    std::string text;
    for (const TestParameter &parameter : parameters) {
        text += parameter.name + "\t" + parameter.text + "\n";
    }
    return text;
}

Words Assignments(const std::vector<TestParameter> &parameters) {
    Words words;
    for (const TestParameter &parameter : parameters) {
        words.push_back(parameter.name + "=" + parameter.text);
    }
    return words;
}

ProgramResult Edit(const std::string &in, const std::string &place, const Words &changes,
                   const std::string &out, const Words &options = {}) {
    Words call = {"edit", in, place};
    call.insert(call.end(), changes.begin(), changes.end());
    call.push_back(out);
    call.insert(call.end(), options.begin(), options.end());
    return Cli(call);
}

void ExpectDone(const ProgramResult &result) {
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
}

class CliParameters : public testing::Test {
protected:
    void SetUp() override { SetHome(folder.path.string()); }
    // A call that fails so, prints nothing, and leaves the file that it was to write as it was.
    void ExpectRefused(const std::string &in, const std::string &place, const Words &changes,
                       const std::string &reason, int status = 2, const Words &options = {}) const {
        const std::string out = folder.WriteText("out" + in.substr(in.rfind('.')), "former");
        const Bytes former = ReadTestFile(in);
        for (const std::string &path : {out, in}) {
            const auto result = Edit(in, place, changes, path, options);
            EXPECT_EQ(result.exitStatus, status) << reason;
            EXPECT_EQ(result.output, "");
            EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n");
        }
        EXPECT_EQ(ReadTestText(out), "former") << reason;
        EXPECT_EQ(ReadTestFile(in), former) << reason;
        EXPECT_FALSE(folder.Holds("Backup of out" + in.substr(in.rfind('.'))));
    }
    std::string ShowOf(const std::string &path, const std::string &place = "1") const {
        const auto result = Cli({"show", path, place});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
        return result.output;
    }
    std::string LineOf(const std::string &name, const std::string &path,
                       const std::string &place = "1") const {
        for (const std::string &line : Lines(ShowOf(path, place))) {
            if (line.starts_with(name + "\t")) {
                return line.substr(name.size() + 1);
            }
        }
        return "none";
    }
    std::string Voice() const { return folder.Write("voice.sy1", TestVoiceFile()); }
    std::string RefaceVoice() const { return folder.Write("voice.sr1", TestRefaceVoiceFile(0)); }
    std::string Bank() const { return folder.Write("bank.syx", TestBank()); }
    std::string RefaceBank() const { return folder.Write("bank.srx", TestRefaceBank()); }

    TempFolder folder;
};

// ---- show

TEST_F(CliParameters, ShowPrintsEveryParameterOfAVoice) {
    Bytes dx7 = TestVoiceFile(), reface = TestRefaceVoiceFile(0);
    PutTestParameters(dx7, Dx7VoiceStart, TestDx7Parameters());
    FixTestChecksum(dx7);
    PutTestParameters(reface, RefaceVoiceStart, TestRefaceParameters());
    EXPECT_EQ(ShowOf(folder.Write("a.sy1", dx7)), Shown(TestDx7Parameters()));
    EXPECT_EQ(ShowOf(folder.Write("a.sr1", reface)), Shown(TestRefaceParameters()));
}

TEST_F(CliParameters, ShowTakesAPlaceOfABank) {
    const std::string dx7 = Bank(), reface = RefaceBank();
    EXPECT_EQ(LineOf("name", dx7, "32"), "VOICE 32");
    EXPECT_EQ(LineOf("algorithm", dx7, "32"), "32");
    // Byte 15 of the first operator is fixed, coarse 14, and byte 16 is 88.
    EXPECT_EQ(LineOf("operator1.oscillatorMode", dx7, "7"), "on");
    EXPECT_EQ(LineOf("operator1.frequency", dx7, "7"), "14.88");
    EXPECT_EQ(LineOf("operator1.detune", dx7, "7"), "0");
    EXPECT_EQ(LineOf("operator6.frequency", dx7, "7"), "1.05");
    EXPECT_EQ(LineOf("name", reface, "13"), "REFACE 13");
    EXPECT_EQ(LineOf("algorithm", reface, "13"), "1");
    EXPECT_EQ(LineOf("operator4.outputLevel", reface, "13"), "93");
}

TEST_F(CliParameters, ShowPrintsANameAsLatin1WithControlCharactersReplaced) {
    Bytes file = TestVoiceFile();
    const std::string name = "C\xE9\t\n\r\x7F\x85\xA0z ";
    std::copy(name.begin(), name.end(), file.begin() + Dx7VoiceStart + 145);
    FixTestChecksum(file);
    const std::string path = folder.Write("a.sy1", file);
    EXPECT_EQ(Lines(ShowOf(path))[0], "name\tC\xC3\xA9?????\xC2\xA0z");
    EXPECT_EQ(Lines(ShowOf(path)).size(), TestDx7Parameters().size());
}

TEST_F(CliParameters, ShowReadsADetuneOfABankWholeWhenAsked) {
    Bytes bank = TestBank();
    bank[FirstPackedVoice + 12] = 0x73; // detune 14, rate scaling 3
    FixTestChecksum(bank);
    const std::string path = folder.Write("bank.syx", bank);
    EXPECT_EQ(LineOf("operator1.detune", path), "-1");
    const auto result = Cli({"show", path, "1", "--whole-detune"});
    EXPECT_NE(result.output.find("\noperator1.detune\t7\n"), std::string::npos);
}

TEST_F(CliParameters, ShowSaysWhatKeepsItFromShowing) {
    const std::string bank = Bank();
    const auto expect = [](const std::string &path, const std::string &place, int status,
                           const std::string &reason) {
        const auto result = Cli({"show", path, place});
        EXPECT_EQ(result.exitStatus, status);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n");
    };
    for (const char *place : {"0", "", "x", "1x", "-1"}) {
        const auto result = Cli({"show", bank, "--", place});
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.errors, "tonewright-cli: " + std::string(place) + (*place ? ": " : "") +
                                     "not a place: a number from 1 is\n");
    }
    expect(bank, "33", 1, bank + ": there is no place 33 among its 32 voices");
    expect(Voice(), "2", 1, folder.File("voice.sy1") + ": there is no place 2 among its 1 voices");
    const std::string missing = folder.File("missing.srx");
    expect(missing, "1", 1, missing + ": not readable: No such file or directory");
    const std::string text = folder.Write("a.txt", TestBank());
    expect(text, "1", 2,
           text + ": the extension is none of those that can be read (syx, sy1, srx, sr1), but a "
                  "DX7 bank");
    const std::string empty = folder.Write("empty.srx", TestRefaceBank(0));
    expect(empty, "1", 1, empty + ": there is no place 1 among its 0 voices");
}

TEST_F(CliParameters, AVoiceThatIsNoneOfTheFamilyIsRefused) {
    Bytes bank = TestRefaceBank();
    bank[160] ^= 1;             // the first record is no voice
    bank[160 + 202 + 16] = 'y'; // the second is one of another family
    bank[160 + 404 + 8] = 200;  // the third says that it is longer than it is
    const std::string path = folder.Write("bank.srx", bank);
    for (const char *place : {"1", "2", "3"}) {
        const std::string reason =
            path + ": place " + place + " holds no whole voice of the " + RefaceName;
        const auto result = Cli({"show", path, place});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n");
        ExpectRefused(path, place, {"lfoSpeed=1"}, reason, 1);
    }
    EXPECT_EQ(LineOf("name", path, "4"), "REFACE 04");
}

TEST_F(CliParameters, ADamagedFileIsAskedAbout) {
    Bytes file = TestVoiceFile();
    file[162] ^= 1;
    const std::string path = folder.Write("voice.sy1", file), out = folder.File("out.sy1");
    auto result = Cli({"show", path, "1"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(Edit(path, "1", {"lfoSpeed=1"}, out).exitStatus, 1);
    EXPECT_FALSE(folder.Holds("out.sy1"));
    result = Cli({"show", path, "1", "--yes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(Lines(result.output)[0], "name\tE.PIANO 1x");
    EXPECT_EQ(Edit(path, "1", {"lfoSpeed=1"}, out, {"--yes"}).exitStatus, 0);
    EXPECT_EQ(LineOf("lfoSpeed", out), "1");
}

// ---- edit

TEST_F(CliParameters, EditSetsEveryParameterOfASingleVoice) {
    Bytes expected = TestVoiceFile();
    PutTestParameters(expected, Dx7VoiceStart, TestDx7Parameters());
    FixTestChecksum(expected);
    const std::string out = folder.File("out.sy1");
    ExpectDone(Edit(Voice(), "1", Assignments(TestDx7Parameters()), out));
    EXPECT_EQ(ReadTestFile(out), expected);
    EXPECT_EQ(ReadTestFile(folder.File("voice.sy1")), TestVoiceFile());
    EXPECT_EQ(ShowOf(out), Shown(TestDx7Parameters()));

    expected = TestRefaceVoiceFile(0);
    PutTestParameters(expected, RefaceVoiceStart, TestRefaceParameters());
    const std::string reface = folder.File("out.sr1");
    ExpectDone(Edit(RefaceVoice(), "1", Assignments(TestRefaceParameters()), reface));
    EXPECT_EQ(WithoutTestTime(ReadTestFile(reface)), expected);
    EXPECT_EQ(ShowOf(reface), Shown(TestRefaceParameters()));
}

TEST_F(CliParameters, AFrequencyHasADotWhateverTheLanguage) {
    const CommaLocale comma;
    ASSERT_EQ(RunProgram(comma.Command({"printf", "%.1f", "1"})).output, "1,0");
    const std::string out = folder.File("out.sy1");
    const auto edit = [&](const char *change) {
        return RunProgram(comma.Command({CliProgram(), "edit", Voice(), "1", change, out}));
    };
    EXPECT_EQ(edit("operator2.frequency=3,07").errors,
              "tonewright-cli: operator2.frequency: 3,07 is no number from 0.00 to 31.99\n");
    ExpectDone(edit("operator2.frequency=3.07"));
    const auto shown = RunProgram(comma.Command({CliProgram(), "show", out, "1"}));
    EXPECT_NE(shown.output.find("\noperator2.frequency\t3.07\n"), std::string::npos)
        << shown.output;
}

TEST_F(CliParameters, EditOfABankChangesTheVoiceAtThePlaceAlone) {
    const std::string out = folder.File("out.syx");
    // Transpose 12 is 36. Byte 15 of an operator holds the coarse frequency above the mode.
    ExpectDone(Edit(Bank(), "2",
                    {"name=PLUCK", "transpose=12", "operator2.frequency=3.07",
                     "operator6.detune=-7", "operator3.scaleRightCurve=+lin", "lfoKeySync=off"},
                    out));
    Bytes expected = TestBank();
    const std::size_t voice = FirstPackedVoice + 128;
    const std::string name("PLUCK\0\0\0\0\0", 10);
    std::copy(name.begin(), name.end(),
              expected.begin() + static_cast<std::ptrdiff_t>(voice + 118));
    expected[voice + 117] = 36;
    expected[voice + 17 + 15] = 0x06;
    expected[voice + 17 + 16] = 7;
    expected[voice + 5 * 17 + 12] = 0x00;
    expected[voice + 2 * 17 + 11] = 0x0E;
    expected[voice + 116] = 0x38;
    FixTestChecksum(expected);
    EXPECT_EQ(ReadTestFile(out), expected);

    const std::string reface = folder.File("out.srx");
    ExpectDone(Edit(RefaceBank(), "32", Assignments(TestRefaceParameters()), reface));
    expected = TestRefaceBank();
    PutTestParameters(expected, FirstRefaceVoice + 31 * 202, TestRefaceParameters());
    EXPECT_EQ(WithoutTestTime(ReadTestFile(reface)), expected);
    EXPECT_EQ(ShowOf(reface, "32"), Shown(TestRefaceParameters()));
}

TEST_F(CliParameters, EditTakesAllThatShowPrintedAndChangesNothing) {
    Bytes odd = TestVoiceFile(); // blanks behind the name, values out of range, reserved bits
    const std::string name = "A?  \xE9     ";
    std::copy(name.begin(), name.end(), odd.begin() + Dx7VoiceStart + 145);
    odd[Dx7VoiceStart + 134] = 200; // algorithm
    odd[Dx7VoiceStart + 142] = 9;   // LFO wave
    odd[Dx7VoiceStart + 136] = 7;   // oscillator sync
    odd[Dx7VoiceStart + 19] = 127;  // fine
    odd[Dx7VoiceStart + 144] = 255; // transpose
    odd[Dx7VoiceStart + 155] = 0xEF;
    FixTestChecksum(odd);
    Bytes oddReface = TestRefaceVoiceFile(5);
    oddReface[RefaceVoiceStart + 13] = 99;
    oddReface[RefaceVoiceStart + 38 + 22] = 200;
    for (const std::string &path : {Voice(), RefaceVoice(), folder.Write("odd.sy1", odd),
                                    folder.Write("odd.sr1", oddReface), Bank(), RefaceBank()}) {
        const std::string out = folder.File("same" + path.substr(path.rfind('.')));
        ExpectDone(Edit(path, "1", Lines(ShowOf(path)), out));
        const bool isReface = path[path.size() - 2] == 'r';
        EXPECT_EQ(isReface ? WithoutTestTime(ReadTestFile(out)) : ReadTestFile(out),
                  ReadTestFile(path))
            << path;
    }
}

TEST_F(CliParameters, ShowAndEditCountARefaceDxAbout64WithTheExtra) {
    Bytes file = TestRefaceVoiceFile(0);
    file[RefaceVoiceStart + 12] = 64;
    file[RefaceVoiceStart + 15] = 66;
    const std::string in = folder.Write("in.sr1", file), out = folder.File("new.sr1");
    EXPECT_EQ(LineOf("transpose", in), "24");
    EXPECT_EQ(LineOf("pitchBend", in), "26");
    const std::string plain = ShowOf(in);
    ExpectDone(Cli({"settings", "set", "extras.RefaceZero64", "1"}));
    EXPECT_EQ(LineOf("transpose", in), "0");
    EXPECT_EQ(LineOf("pitchBend", in), "2");
    ExpectDone(Edit(in, "1", Lines(ShowOf(in)), out));
    EXPECT_EQ(WithoutTestTime(ReadTestFile(out)), WithoutTestTime(file)) << "what was shown";
    ExpectDone(Edit(in, "1", {"transpose=-24", "pitchBend=24"}, out));
    file[RefaceVoiceStart + 12] = 40;
    file[RefaceVoiceStart + 15] = 88;
    EXPECT_EQ(WithoutTestTime(ReadTestFile(out)), WithoutTestTime(file));
    ExpectRefused(in, "1", {"transpose=25"}, "transpose: 25 is no whole number from -24 to 24");
    ExpectRefused(in, "1", {"pitchBend=-25"}, "pitchBend: -25 is no whole number from -24 to 24");

    const std::string dx7 = Voice();
    const std::string shown = ShowOf(dx7);
    ExpectDone(Cli({"settings", "set", "extras.RefaceZero64", "0"}));
    EXPECT_EQ(ShowOf(in), plain);
    EXPECT_EQ(ShowOf(dx7), shown);
}

TEST_F(CliParameters, EditKeepsTheControlCharactersOfANameAsItIsShownAndSaysSo) {
    Bytes file = TestVoiceFile();
    const std::string name = "A\x01\x42       ";
    std::copy(name.begin(), name.end(), file.begin() + Dx7VoiceStart + 145);
    FixTestChecksum(file);
    const std::string path = folder.Write("a.sy1", file), out = folder.File("out.sy1");
    const auto result = Edit(path, "1", {"name=A?B"}, out);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors,
              "tonewright-cli: name: as before, with the control characters shown as ?\n");
    EXPECT_EQ(ReadTestFile(out), file);
    ExpectDone(Edit(path, "1", {"lfoSpeed=5"}, out)); // names no name
    ExpectDone(Edit(path, "1", {"name=A?C"}, out));
    ExpectDone(Edit(out, "1", {"name=A?B"}, out));
    EXPECT_EQ(ReadTestFile(out)[Dx7VoiceStart + 146], '?');
    EXPECT_EQ(LineOf("name", out), "A?B");
}

TEST_F(CliParameters, EditTakesWordsInOtherFormsToo) {
    const std::string out = folder.File("out.sy1");
    ExpectDone(Edit(Voice(), "1",
                    {"lfoWave=saw u", "operator1.scaleLeftCurve=-Exponential",
                     "operator2.scaleLeftCurve=3", "oscillatorKeySync=YES", "lfoKeySync=1",
                     "operator1.enable=0", "name=a=b\xC3\xA9"},
                    out));
    Bytes expected = TestVoiceFile();
    expected[Dx7VoiceStart + 142] = 1;
    expected[Dx7VoiceStart + 11] = 1;
    expected[Dx7VoiceStart + 21 + 11] = 3;
    expected[Dx7VoiceStart + 136] = 1;
    expected[Dx7VoiceStart + 141] = 1;
    expected[Dx7VoiceStart + 155] = 0x0F;
    const std::string name("a=b\xE9\0\0\0\0\0\0", 10);
    std::copy(name.begin(), name.end(), expected.begin() + Dx7VoiceStart + 145);
    FixTestChecksum(expected);
    EXPECT_EQ(ReadTestFile(out), expected);
}

TEST_F(CliParameters, EditLeavesAnEmptyNameUntitled) {
    const std::string out = folder.File("out.sy1");
    ExpectDone(Edit(Voice(), "1", {"name="}, out));
    const Bytes file = ReadTestFile(out);
    EXPECT_EQ(std::string(file.begin() + Dx7VoiceStart + 145, file.begin() + Dx7VoiceStart + 155),
              std::string("Untitled\0\0", 10));
}

TEST_F(CliParameters, EditChecksAllBeforeItWritesAnything) {
    const std::string voice = Voice(), bank = Bank(), reface = RefaceVoice();
    const std::string wave = " is none of Triangle (TRI); Sawtooth up (SAW U); Sawtooth down "
                             "(SAW D); Square (SQ); Sine (SI); Sample and hold (SH); 0 to 5";
    struct Case {
        Words changes;
        std::string reason;
    };
    const Case cases[] = {
        {{"lfoSpeed"}, "lfoSpeed: not NAME=VALUE"},
        {{""}, "not NAME=VALUE"},
        {{"=5"}, "no such parameter of the " + std::string(Dx7Name) + "; show prints all"},
        {{"lfospeed=5"},
         "lfospeed: no such parameter of the " + std::string(Dx7Name) + "; show prints all"},
        {{"operator7.egRate1=5"},
         "operator7.egRate1: no such parameter of the " + std::string(Dx7Name) +
             "; show prints all"},
        {{"partMode=0"},
         "partMode: no such parameter of the " + std::string(Dx7Name) + "; show prints all"},
        {{"lfoSpeed=5", "lfoSpeed=5"}, "lfoSpeed: given more than once"},
        {{"lfoSpeed=5", "lfoDelay=100"}, "lfoDelay: 100 is no whole number from 0 to 99"},
        {{"lfoSpeed="}, "lfoSpeed: an empty text is no whole number from 0 to 99"},
        {{"lfoSpeed=5\r"}, "lfoSpeed: 5? is no whole number from 0 to 99"},
        {{"transpose=25"}, "transpose: 25 is no whole number from -24 to 24"},
        {{"algorithm=33"}, "algorithm: 33 is no whole number from 1 to 32"},
        {{"algorithm=0"}, "algorithm: 0 is no whole number from 1 to 32"},
        {{"lfoWave=noise"}, "lfoWave: noise" + wave},
        {{"lfoWave=6"}, "lfoWave: 6" + wave},
        {{"lfoKeySync=maybe"}, "lfoKeySync: maybe is neither on nor off"},
        {{"operator1.frequency=1.155"}, "operator1.frequency: 1.155 has more than two decimals"},
        {{"operator1.frequency=32.00"},
         "operator1.frequency: 32.00 is no number from 0.00 to 31.99"},
        {{"operator1.ampModSensitivity=4"},
         "operator1.ampModSensitivity: 4 is no whole number from 0 to 3"},
        {{"name=ELEVEN CHAR"}, "name: ELEVEN CHAR has 11 characters, and 10 is the limit"},
        {{"name=5 \xE2\x82\xAC"}, "name: 5 \xE2\x82\xAC has characters that are not in Latin-1"},
        {{"name=a\tb"}, "name: a?b has control characters"},
    };
    for (const Case &value : cases) {
        ExpectRefused(voice, "1", value.changes, value.reason);
        ExpectRefused(bank, "3", value.changes, value.reason);
    }
    ExpectRefused(reface, "1", {"operator5.egRate1=5"},
                  "operator5.egRate1: no such parameter of the " + std::string(RefaceName) +
                      "; show prints all");
    ExpectRefused(bank, "33", {"lfoSpeed=5"}, bank + ": there is no place 33 among its 32 voices",
                  1);
    ExpectRefused(bank, "0", {"lfoSpeed=5"}, "0: not a place: a number from 1 is");
}

TEST_F(CliParameters, EditRefusesAPlaceThatABankIsNotWrittenWith) {
    const std::string bank = folder.Write("bank.srx", TestRefaceBank(40));
    for (const Words &options : {Words{}, Words{"--careful"}}) {
        ExpectRefused(bank, "33", {"name=GLASS"},
                      bank + ": a bank has places 1 to 32, and no place 33", 1, options);
        ExpectRefused(bank, "40", {"name=GLASS"},
                      bank + ": a bank has places 1 to 32, and no place 40", 1, options);
    }
    EXPECT_EQ(LineOf("name", bank, "33"), "REFACE 33"); // which show takes
    // What stands behind is left out, as by save.
    const std::string out = folder.File("out.srx");
    std::filesystem::remove(out);
    ExpectDone(Edit(bank, "32", {"name=GLASS"}, out));
    EXPECT_EQ(LineOf("name", out, "32"), "GLASS");
    EXPECT_EQ(ReadTestFile(out).size(), 160u + 32 * 202);
}

TEST_F(CliParameters, EditRefusesForABankWhatOnlyASingleVoiceKeeps) {
    const std::string bank = Bank(), voice = folder.File("voice.sy1");
    ExpectRefused(bank, "1", {"operator1.rateScaling=8"},
                  "operator1.rateScaling: 8 does not fit into a bank, which has room for 0 to 7");
    ExpectRefused(bank, "1", {"operator1.velocitySensitivity=99"},
                  "operator1.velocitySensitivity: 99 does not fit into a bank, which has room for "
                  "0 to 7");
    ExpectRefused(bank, "1", {"operator1.outputLevel=5", "operator1.enable=off"},
                  "operator1.outputLevel: a bank keeps none with operator1.enable off");
    ExpectRefused(bank, "1", {"operator1.outputLevel=0", "operator1.enable=on"},
                  "operator1.enable: an operator with operator1.outputLevel 0 is off in a bank");
    ExpectDone(Edit(Voice(), "1",
                    {"operator1.rateScaling=8", "operator1.velocitySensitivity=99",
                     "operator1.enable=off", "operator1.outputLevel=5"},
                    voice));
    EXPECT_EQ(LineOf("operator1.rateScaling", voice), "8");
    EXPECT_EQ(LineOf("operator1.velocitySensitivity", voice), "99");
    EXPECT_EQ(LineOf("operator1.enable", voice), "off");
    EXPECT_EQ(LineOf("operator1.outputLevel", voice), "5");
}

TEST_F(CliParameters, EditSwitchesAnOperatorOfABankOffAndOnWithItsLevel) {
    const std::string bank = Bank();
    const ProgramResult off = Edit(bank, "1", {"operator1.enable=off"}, bank);
    EXPECT_EQ(off.exitStatus, 0);
    EXPECT_EQ(off.errors, "tonewright-cli: operator1.enable: a bank keeps no level of an operator "
                          "that is off: operator1.outputLevel is 0 in the stead of 79\n");
    EXPECT_EQ(ReadTestFile(bank)[FirstPackedVoice + 14], 0);
    EXPECT_EQ(LineOf("operator1.enable", bank), "off");
    ExpectRefused(bank, "1", {"operator1.outputLevel=79"},
                  "operator1.outputLevel: a bank keeps none with operator1.enable off");
    std::filesystem::remove(folder.File("Backup of bank.syx"));
    ExpectDone(Edit(bank, "1", {"operator1.outputLevel=79", "operator1.enable=on"}, bank));
    EXPECT_EQ(ReadTestFile(bank), TestBank());
}

TEST_F(CliParameters, EditWritesTheDetuneOfABankWhole) {
    const std::string bank = Bank();
    const auto result = Edit(bank, "1", {"operator1.detune=7", "operator2.detune=0"}, bank);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "tonewright-cli: operator1.detune: a bank read without "
                             "--whole-detune has -1 in the stead of 7\n");
    EXPECT_EQ(ReadTestFile(bank)[FirstPackedVoice + 12], 0x73);
    EXPECT_EQ(LineOf("operator1.detune", bank), "-1");
    ExpectDone(Edit(bank, "1", {"operator1.detune=7"}, bank, {"--whole-detune"}));
    ExpectDone(Edit(Voice(), "1", {"operator1.detune=7"}, folder.File("out.sy1")));
    // Nothing is said of what was not written.
    ExpectRefused(bank, "1", {"operator1.detune=7", "lfoSpeed=100"},
                  "lfoSpeed: 100 is no whole number from 0 to 99");
    ExpectDone(Edit(bank, "1", {"lfoSpeed=1"}, bank, {"--whole-detune"}));
    EXPECT_EQ(ReadTestFile(bank)[FirstPackedVoice + 12], 0x73);
    ExpectDone(Edit(bank, "1", {"lfoSpeed=2"}, bank)); // which opens the bank with three bits
    EXPECT_EQ(ReadTestFile(bank)[FirstPackedVoice + 12], 0x33);
}

TEST_F(CliParameters, EditWritesOverItsFileWithTheBackupThatTheOthersMake) {
    for (const std::string &path : {Voice(), RefaceVoice(), Bank(), RefaceBank()}) {
        const Bytes former = ReadTestFile(path);
        const std::string name = PathOfUtf8(path).filename().string();
        const std::string backup = folder.File("Backup of " + name);
        ExpectDone(Edit(path, "1", {"lfoSpeed=7"}, path));
        EXPECT_EQ(LineOf("lfoSpeed", path), "7");
        EXPECT_EQ(ReadTestFile(backup), former);
    }
}

TEST_F(CliParameters, EditMakesItsBackupWhateverTheSettingsOfTheWindow) {
    std::filesystem::create_directories(folder.path / ".config/Quillbrook");
    WriteTestText(folder.File(".config/Quillbrook/Tonewright 17.ini"), "CreateBackups = 0\n");
    const std::string bank = Bank();
    ExpectDone(Edit(bank, "1", {"lfoSpeed=7"}, bank));
    EXPECT_EQ(ReadTestFile(folder.File("Backup of bank.syx")), TestBank());
}

TEST_F(CliParameters, EditInCarefulModeTellsOfAVoiceOfAnotherFamilyBesideIt) {
    Bytes bank = TestRefaceBank();
    const std::string id = "y7XD"; // of the DX7, at place 2
    std::copy(id.begin(), id.end(), bank.begin() + 160 + 202 + 16);
    const std::string path = folder.Write("bank.srx", bank);
    const auto result = Edit(path, "4", {"lfoSpeed=7"}, path, {"--careful"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": not written: place 2 holds no voice " +
                                 "of the " + RefaceName + "\n");
    EXPECT_EQ(ReadTestFile(path), bank);
}

TEST_F(CliParameters, EditWantsTheExtensionOfTheFilesKindAndFamily) {
    const auto expect = [&](const std::string &in, const char *name, const char *extension) {
        const std::string out = folder.File(name);
        const auto result = Edit(in, "1", {"lfoSpeed=7"}, out);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.errors, "tonewright-cli: " + out +
                                     ": the extension of the file to write must be \"" + extension +
                                     "\"\n");
        EXPECT_FALSE(folder.Holds(name));
    };
    for (const char *name : {"out.syx", "out.sr1", "out.srx", "out"}) {
        expect(Voice(), name, "sy1");
    }
    for (const char *name : {"out.sy1", "out.srx", "out.txt"}) {
        expect(Bank(), name, "syx");
    }
    expect(RefaceVoice(), "out.sy1", "sr1");
    expect(RefaceBank(), "out.syx", "srx");
    ExpectDone(Edit(Voice(), "1", {"lfoSpeed=7"}, folder.File("OUT.SY1")));
}

TEST_F(CliParameters, EditNeedsAChange) {
    const auto result = Cli({"edit", Voice(), "1", folder.File("out.sy1")});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.errors, "tonewright-cli: edit lacks arguments\nusage: tonewright-cli edit "
                             "FILE PLACE NAME=VALUE... OUT\n");
    EXPECT_FALSE(folder.Holds("out.sy1"));
}

TEST_F(CliParameters, TheHelpOfEditSaysWhatABankLoses) {
    const std::string help = Cli({"edit", "--help"}).output;
    EXPECT_TRUE(help.starts_with("usage: tonewright-cli edit FILE PLACE NAME=VALUE... OUT\n"
                                 "write the file with these parameters changed\n\n"))
        << help;
    for (const char *part : {"a detune\nabove 0 comes back 8 lower", "\n  --whole-detune ",
                             "keeps no level of an\noperator that is switched off.\n\nOptions"}) {
        EXPECT_NE(help.find(part), std::string::npos) << part;
    }
}

TEST_F(CliParameters, EditOfAShortBankIsRefusedAsEveryWriteOfOne) {
    const std::string bank = folder.Write("bank.srx", TestRefaceBank(3));
    const auto result = Edit(bank, "1", {"lfoSpeed=7"}, bank);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + bank + ": not written: place 4 holds no whole voice\n");
    EXPECT_EQ(ReadTestFile(bank), TestRefaceBank(3));
}

TEST_F(CliParameters, ShowAndEditTakeNoOptionThatMeansNothingToThem) {
    const std::string voice = Voice();
    EXPECT_EQ(Cli({"show", voice, "1", "--careful"}).exitStatus, 2);
    EXPECT_EQ(Cli({"show", voice, "1", "--memory", "x"}).exitStatus, 2);
    EXPECT_EQ(Edit(voice, "1", {"lfoSpeed=7"}, voice, {"--sort", "name"}).exitStatus, 2);
    EXPECT_EQ(ReadTestFile(voice), TestVoiceFile());
}

} // namespace
} // namespace tonewright
