// The example bank, and the tool voicetext that makes it from its text.
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "support/paths.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

const std::string ExampleText = ExampleFile("tonewright.voices.txt");
const std::string ExampleBank = ExampleFile("tonewright.syx");

struct SingleVoice {
    int place;
    const char *file;
};
constexpr SingleVoice SingleVoices[] = {
    {1, "velvet_ep.sy1"},   {8, "fretless.sy1"},   {10, "brass_sect.sy1"},
    {28, "tower_bell.sy1"}, {31, "storm_sea.sy1"},
};

Bytes ReadAll(const fs::path &path) {
    return ReadTestFile(path.string());
}

// One voice of a text, 23 lines: the voice 1 to 5, op1 6 to 8 ... op6 21 to 23. The operators
// differ in nothing but their level, 11 for op1 to 66 for op6.
std::string TextOfVoice(int place) {
    std::string text = "voice " + std::to_string(place) +
                       " name=\"HAND #1\"\n"
                       "algorithm=32 feedback=5 osc_sync=on transpose=36\n"
                       "pitch_rates=1,2,3,4 pitch_levels=50,51,52,53\n"
                       "lfo_wave=sample_hold lfo_speed=60 lfo_delay=61 lfo_sync=on\n"
                       "lfo_pitch_depth=62 lfo_amp_depth=63 pitch_sensitivity=7\n";
    for (int op = 1; op <= 6; ++op)
        text += "op" + std::to_string(op) +
                " mode=fixed coarse=31 fine=99 detune=-3 level=" + std::to_string(11 * op) +
                " velocity=6 ams=3\n"
                "eg_rates=10,20,30,40 eg_levels=99,80,70,0 rate_scaling=5\n"
                "breakpoint=39 left_depth=12 left_curve=-exp right_depth=13 right_curve=+lin\n";
    return text;
}

std::string BankText(int voices = 32) {
    std::string text;
    for (int place = 1; place <= voices; ++place)
        text += TextOfVoice(place);
    return text;
}

std::string Replaced(std::string text, const std::string &old, const std::string &replacement) {
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return text.replace(at, old.size(), replacement);
}

class VoiceTextFolder : public testing::Test {
protected:
    std::string In() const { return folder.File("in.txt"); }
    std::string Out() const { return folder.File("out"); }
    std::string WriteText(const std::string &text) const {
        return folder.WriteText("in.txt", text);
    }

    ProgramResult MakeBank(const std::string &text) const {
        return RunProgram({VoicetextProgram(), "bank", WriteText(text), Out()});
    }

    // Makes a bank of a text that is not right; returns the complaint without program and file.
    std::string ComplaintAbout(const std::string &text) const {
        const ProgramResult result = MakeBank(text);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_FALSE(fs::exists(Out()));
        const std::string start = "voicetext: " + In() + ":";
        EXPECT_TRUE(result.errors.starts_with(start)) << result.errors;
        return result.errors.substr(std::min(start.size(), result.errors.size()));
    }

    TempFolder folder;
};
using VoiceText = VoiceTextFolder;
using ExampleVoices = VoiceTextFolder;

// The voices of the committed bank, unpacked.
std::vector<std::array<std::uint8_t, Dx7VoiceSize>> UnpackExampleBank() {
    const Bytes bank = ReadAll(ExampleBank);
    EXPECT_EQ(bank.size(), 4104u);
    std::vector<std::array<std::uint8_t, Dx7VoiceSize>> voices;
    for (std::size_t at = 6; at + 128 + 2 <= bank.size(); at += 128) {
        voices.emplace_back();
        UnpackDx7Voice(voices.back(), Dx7PackedConst(bank.data() + at, 128));
    }
    EXPECT_EQ(voices.size(), 32u);
    return voices;
}

// ---- the examples

TEST_F(ExampleVoices, TheBankIsWhatItsTextSaysByteForByte) {
    const ProgramResult result = RunProgram({VoicetextProgram(), "bank", ExampleText, Out()});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(ReadAll(Out()), ReadAll(ExampleBank));
}

TEST_F(ExampleVoices, TheSingleVoicesAreWhatTheTextSaysByteForByte) {
    for (const auto &[place, file] : SingleVoices) {
        const ProgramResult result =
            RunProgram({VoicetextProgram(), "voice", ExampleText, std::to_string(place), Out()});
        EXPECT_EQ(result.exitStatus, 0) << file;
        EXPECT_EQ(ReadAll(Out()), ReadAll(ExampleFile(file))) << file;
    }
}

TEST_F(ExampleVoices, NoSingleVoiceIsMissingFromTheListOfThisTest) {
    std::set<std::string> listed, found;
    for (const SingleVoice &voice : SingleVoices)
        listed.insert(voice.file);
    for (const fs::directory_entry &entry : fs::directory_iterator(ExampleFile("")))
        if (entry.path().extension() == ".sy1")
            found.insert(entry.path().filename().string());
    EXPECT_EQ(found, listed);
}

TEST_F(ExampleVoices, TheFilesOpenWithoutAQuestion) {
    EXPECT_EQ(JudgeDx7Bank(ReadAll(ExampleBank)), Dx7FileVerdict::Ok);
    for (const SingleVoice &voice : SingleVoices)
        EXPECT_EQ(JudgeDx7Voice(ReadAll(ExampleFile(voice.file))), Dx7FileVerdict::Ok);
}

TEST_F(ExampleVoices, EveryAlgorithmIsUsedOnce) {
    std::set<int> algorithms;
    for (const auto &voice : UnpackExampleBank())
        algorithms.insert(voice[134]);
    EXPECT_EQ(algorithms.size(), 32u);
    EXPECT_EQ(*algorithms.begin(), 0);
    EXPECT_EQ(*algorithms.rbegin(), 31);
}

TEST_F(ExampleVoices, EveryNameIsItsOwnAndPlainText) {
    std::set<std::string> names;
    for (const auto &voice : UnpackExampleBank()) {
        const std::string name(voice.begin() + 145, voice.begin() + 155);
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_GT(name[0], ' ') << name;
        EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](char c) {
            return c >= 0x20 && c <= 0x7E;
        })) << name;
    }
}

TEST_F(ExampleVoices, NoOperatorIsSilentOrDetunedUpwards) {
    // Read from the packed bytes: unpacking keeps only three bits of the detune.
    const Bytes bank = ReadAll(ExampleBank);
    ASSERT_EQ(bank.size(), 4104u);
    for (std::size_t voice = 0; voice < 32; ++voice)
        for (std::size_t block = 0; block < 6; ++block) {
            const std::size_t at = 6 + 128 * voice + 17 * block;
            EXPECT_GE(bank[at + 14], 1) << "voice " << voice + 1 << " block " << block;
            EXPECT_LE(bank[at + 14], 99) << "voice " << voice + 1 << " block " << block;
            EXPECT_LE(bank[at + 12] >> 3, 7) << "voice " << voice + 1 << " block " << block;
        }
}

TEST_F(ExampleVoices, EveryValueIsWithinTheInstrumentsRange) {
    constexpr std::uint8_t operatorMaxima[21] = {99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                                 3,  3,  7,  3,  7,  99, 1,  31, 99, 14};
    // Pitch envelope, algorithm, feedback, sync, LFO (speed, delay, depths, sync, wave), pitch
    // sensitivity, transpose.
    constexpr std::uint8_t voiceMaxima[19] = {99, 99, 99, 99, 99, 99, 99, 99, 31, 7,
                                              1,  99, 99, 99, 99, 1,  5,  7,  48};
    std::size_t place = 0;
    for (const auto &voice : UnpackExampleBank()) {
        ++place;
        for (std::size_t at = 0; at < 126; ++at)
            EXPECT_LE(voice[at], operatorMaxima[at % 21]) << "voice " << place << " byte " << at;
        for (std::size_t at = 126; at < 145; ++at)
            EXPECT_LE(voice[at], voiceMaxima[at - 126]) << "voice " << place << " byte " << at;
        EXPECT_EQ(voice[155], 0x3F) << "voice " << place;
    }
}

TEST_F(ExampleVoices, TheBankComesBackFromUnpackingByteForByte) {
    const Bytes bank = ReadAll(ExampleBank);
    std::size_t at = 6;
    for (const auto &voice : UnpackExampleBank()) {
        Bytes packed(128);
        PackDx7Voice(Dx7Packed(packed.data(), 128), voice);
        EXPECT_EQ(packed, Bytes(bank.begin() + at, bank.begin() + at + 128)) << "offset " << at;
        at += 128;
    }
    EXPECT_EQ(at, 4102u);
}

TEST_F(ExampleVoices, ASingleVoiceIsTheSameVoiceAsInTheBank) {
    const auto voices = UnpackExampleBank();
    for (const auto &[place, file] : SingleVoices) {
        const Bytes single = ReadAll(ExampleFile(file));
        ASSERT_EQ(single.size(), 164u);
        EXPECT_TRUE(std::equal(single.begin() + 6, single.begin() + 162,
                               voices[static_cast<std::size_t>(place - 1)].begin()))
            << file;
    }
}

// ---- the tool: what it writes

TEST_F(VoiceText, ASingleVoiceHoldsTheLastOperatorFirst) {
    const ProgramResult result =
        RunProgram({VoicetextProgram(), "voice", WriteText(BankText()), "32", Out()});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    Bytes expected = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    for (const int level : {66, 55, 44, 33, 22, 11})                          // op6 ... op1
        for (const int byte : {10, 20, 30, 40, 99, 80,    70, 0,  39, 12, 13, // envelope, scaling
                               1,  3,  5,  3,  6,  level, 1,  31, 99, 4})
            expected.push_back(static_cast<std::uint8_t>(byte));
    const Bytes tail = {1,    2, 3, 4,  50,  51,  52,  53,  31,  5,   1,   60,  61,  62,  63,
                        1,    5, 7, 36, 'H', 'A', 'N', 'D', ' ', '#', '1', ' ', ' ', ' ', 0x3F,
                        0x03, // checksum: the 156 bytes add up to 4733
                        0xF7};
    expected.insert(expected.end(), tail.begin(), tail.end());
    EXPECT_EQ(ReadAll(Out()), expected);
}

TEST_F(VoiceText, ABankHoldsThePackedVoices) {
    const ProgramResult result = MakeBank(BankText());
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    Bytes expected = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    for (int place = 1; place <= 32; ++place) {
        for (const int level : {66, 55, 44, 33, 22, 11})
            for (const int byte :
                 {10, 20, 30, 40, 99, 80, 70, 0, 39, 12, 13, 0x0D, 0x25, 0x1B, level, 0x3F, 99})
                expected.push_back(static_cast<std::uint8_t>(byte));
        const Bytes wide = {1,  2,    3,  4,   50,  51,  52,  53,  31,  0x0D, 60,  61,  62,
                            63, 0x7B, 36, 'H', 'A', 'N', 'D', ' ', '#', '1',  ' ', ' ', ' '};
        expected.insert(expected.end(), wide.begin(), wide.end());
    }
    expected.push_back(0x20); // checksum: each voice adds up to 5303
    expected.push_back(0xF7);
    EXPECT_EQ(ReadAll(Out()), expected);
}

TEST_F(VoiceText, OrderLineBreaksAndCommentsMeanNothing) {
    ASSERT_EQ(MakeBank(BankText()).exitStatus, 0);
    const Bytes plain = ReadAll(Out());

    std::string text = BankText();
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.replace(at, 1, "\r\n");
    EXPECT_EQ(MakeBank(text).exitStatus, 0);
    EXPECT_EQ(ReadAll(Out()), plain);

    text =
        Replaced(BankText(), "algorithm=32 feedback=5", "feedback=5# a comment = \"\nalgorithm=32");
    text = Replaced(text, "mode=fixed coarse=31", "coarse=31\n\n\tmode=fixed");
    EXPECT_EQ(MakeBank(text).exitStatus, 0);
    EXPECT_EQ(ReadAll(Out()), plain);
}

TEST_F(VoiceText, OperatorsMayStandInAnyOrder) {
    ASSERT_EQ(MakeBank(BankText()).exitStatus, 0);
    const Bytes plain = ReadAll(Out());
    std::string text = Replaced(BankText(), "op1 ", "opX ");
    text = Replaced(Replaced(text, "level=11", "level=LX"), "level=66", "level=11");
    text = Replaced(Replaced(text, "level=LX", "level=66"), "op6 ", "op1 ");
    EXPECT_EQ(MakeBank(Replaced(text, "opX ", "op6 ")).exitStatus, 0);
    EXPECT_EQ(ReadAll(Out()), plain);
}

TEST_F(VoiceText, TheLimitsOfEachRangeAreAccepted) {
    std::string text = BankText();
    text = Replaced(text, "level=11", "level=1");
    text = Replaced(text, "level=22", "level=99");
    text = Replaced(text, "detune=-3", "detune=-7");
    text = Replaced(text, "detune=-3", "detune=0");
    text = Replaced(text, "algorithm=32", "algorithm=1");
    text = Replaced(text, "transpose=36", "transpose=48");
    text = Replaced(text, "\"HAND #1\"", "\"0123456789\"");
    const ProgramResult result =
        RunProgram({VoicetextProgram(), "voice", WriteText(text), "1", Out()});
    ASSERT_EQ(result.exitStatus, 0) << result.errors;
    const Bytes voice = ReadAll(Out());
    EXPECT_EQ(voice[6 + 105 + 16], 1); // op1
    EXPECT_EQ(voice[6 + 105 + 20], 0);
    EXPECT_EQ(voice[6 + 84 + 16], 99); // op2
    EXPECT_EQ(voice[6 + 84 + 20], 7);
    EXPECT_EQ(voice[6 + 134], 0);
    EXPECT_EQ(voice[6 + 144], 48);
    EXPECT_EQ(std::string(voice.begin() + 6 + 145, voice.begin() + 6 + 155), "0123456789");
}

// ---- the tool: what it refuses

struct Mistake {
    const char *right, *wrong; // the first place in the text is changed
    const char *complaint;     // with the line
};

TEST_F(VoiceText, AValueOutOfRangeIsToldWithLineFieldAndRange) {
    const Mistake mistakes[] = {
        {"coarse=31", "coarse=32", "6: voice 1: op1: coarse is 32, must be 0 to 31\n"},
        {"coarse=31", "coarse=-1", "6: voice 1: op1: coarse is -1, must be 0 to 31\n"},
        {"fine=99", "fine=100", "6: voice 1: op1: fine is 100, must be 0 to 99\n"},
        {"detune=-3", "detune=1",
         "6: voice 1: op1: detune is 1, must be -7 to 0 (a bank that is read keeps no detune above "
         "0)\n"},
        {"detune=-3", "detune=-8",
         "6: voice 1: op1: detune is -8, must be -7 to 0 (a bank that is read keeps no detune "
         "above "
         "0)\n"},
        {"level=66", "level=0",
         "21: voice 1: op6: level is 0, must be 1 to 99 (level 0 switches an operator off in a "
         "bank)\n"},
        {"level=66", "level=100",
         "21: voice 1: op6: level is 100, must be 1 to 99 (level 0 switches an operator off in a "
         "bank)\n"},
        {"velocity=6", "velocity=8", "6: voice 1: op1: velocity is 8, must be 0 to 7\n"},
        {"ams=3", "ams=4", "6: voice 1: op1: ams is 4, must be 0 to 3\n"},
        {"eg_rates=10,20,30,40", "eg_rates=10,20,30,100",
         "7: voice 1: op1: eg_rates is 100, must be 0 to 99\n"},
        {"eg_levels=99", "eg_levels=-1", "7: voice 1: op1: eg_levels is -1, must be 0 to 99\n"},
        {"rate_scaling=5", "rate_scaling=8",
         "7: voice 1: op1: rate_scaling is 8, must be 0 to 7\n"},
        {"breakpoint=39", "breakpoint=100",
         "8: voice 1: op1: breakpoint is 100, must be 0 to 99\n"},
        {"left_depth=12", "left_depth=100",
         "8: voice 1: op1: left_depth is 100, must be 0 to 99\n"},
        {"right_depth=13", "right_depth=100",
         "8: voice 1: op1: right_depth is 100, must be 0 to 99\n"},
        {"algorithm=32", "algorithm=33", "2: voice 1: algorithm is 33, must be 1 to 32\n"},
        {"algorithm=32", "algorithm=0", "2: voice 1: algorithm is 0, must be 1 to 32\n"},
        {"feedback=5", "feedback=8", "2: voice 1: feedback is 8, must be 0 to 7\n"},
        {"transpose=36", "transpose=49", "2: voice 1: transpose is 49, must be 0 to 48\n"},
        {"pitch_rates=1", "pitch_rates=100", "3: voice 1: pitch_rates is 100, must be 0 to 99\n"},
        {"pitch_levels=50", "pitch_levels=100",
         "3: voice 1: pitch_levels is 100, must be 0 to 99\n"},
        {"lfo_speed=60", "lfo_speed=100", "4: voice 1: lfo_speed is 100, must be 0 to 99\n"},
        {"lfo_delay=61", "lfo_delay=100", "4: voice 1: lfo_delay is 100, must be 0 to 99\n"},
        {"lfo_pitch_depth=62", "lfo_pitch_depth=100",
         "5: voice 1: lfo_pitch_depth is 100, must be 0 to 99\n"},
        {"lfo_amp_depth=63", "lfo_amp_depth=100",
         "5: voice 1: lfo_amp_depth is 100, must be 0 to 99\n"},
        {"pitch_sensitivity=7", "pitch_sensitivity=8",
         "5: voice 1: pitch_sensitivity is 8, must be 0 to 7\n"},
    };
    for (const auto &[right, wrong, complaint] : mistakes)
        EXPECT_EQ(ComplaintAbout(Replaced(BankText(), right, wrong)), complaint);
}

TEST_F(VoiceText, AValueThatCannotBeReadIsTold) {
    const Mistake mistakes[] = {
        {"level=11", "level=loud", "6: voice 1: op1: level is \"loud\", must be a whole number\n"},
        {"level=11", "level=", "6: voice 1: op1: level is \"\", must be a whole number\n"},
        {"level=11", "level=11.5", "6: voice 1: op1: level is \"11.5\", must be a whole number\n"},
        {"level=11", "level=99999999999999999999",
         "6: voice 1: op1: level is \"99999999999999999999\", must be a whole number\n"},
        {"level=11", "level=4294967297",
         "6: voice 1: op1: level is \"4294967297\", must be a whole number\n"},
        {"level=11", "level=1,2", "6: voice 1: op1: level has 2 values, must have 1\n"},
        {"10,20,30,40", "10,20,30", "7: voice 1: op1: eg_rates has 3 values, must have 4\n"},
        {"10,20,30,40", "10,20,30,40,50", "7: voice 1: op1: eg_rates has 5 values, must have 4\n"},
        {"10,20,30,40", "10,20,30,", "7: voice 1: op1: eg_rates is \"\", must be a whole number\n"},
        {"mode=fixed", "mode=free",
         "6: voice 1: op1: mode is \"free\", must be one of ratio, fixed\n"},
        {"left_curve=-exp", "left_curve=exp",
         "8: voice 1: op1: left_curve is \"exp\", must be one of -lin, -exp, +exp, +lin\n"},
        {"lfo_wave=sample_hold", "lfo_wave=5",
         "4: voice 1: lfo_wave is \"5\", must be one of triangle, saw_down, saw_up, square, sine, "
         "sample_hold\n"},
        {"osc_sync=on", "osc_sync=", "2: voice 1: osc_sync is \"\", must be one of off, on\n"},
    };
    for (const auto &[right, wrong, complaint] : mistakes)
        EXPECT_EQ(ComplaintAbout(Replaced(BankText(), right, wrong)), complaint);
}

TEST_F(VoiceText, AnUnknownAMissingAndADoubledFieldAreTold) {
    const Mistake mistakes[] = {
        {"ams=3", "ams=3 color=3", "6: voice 1: op1: there is no field \"color\"\n"},
        {"ams=3", "ams=3 feedback=3", "6: voice 1: op1: there is no field \"feedback\"\n"},
        {"ams=3", "ams=3 name=\"A\"", "6: voice 1: op1: there is no field \"name\"\n"},
        {"feedback=5", "feedback=5 level=3", "2: voice 1: there is no field \"level\"\n"},
        {"feedback=5", "Feedback=5", "2: voice 1: there is no field \"Feedback\"\n"},
        {"rate_scaling=5", "", "6: voice 1: op1: rate_scaling is missing\n"},
        {"feedback=5", "", "1: voice 1: feedback is missing\n"},
        {"name=\"HAND #1\"", "", "1: voice 1: name is missing\n"},
        {"ams=3", "ams=3 ams=3", "6: voice 1: op1: ams stands there twice\n"},
        {"feedback=5", "feedback=5 feedback=5", "2: voice 1: feedback stands there twice\n"},
        {"feedback=5", "feedback=5 name=\"B\"", "2: voice 1: name stands there twice\n"},
    };
    for (const auto &[right, wrong, complaint] : mistakes)
        EXPECT_EQ(ComplaintAbout(Replaced(BankText(), right, wrong)), complaint);
}

TEST_F(VoiceText, AMissingADoubledAndAnUnknownOperatorAreTold) {
    std::string text = TextOfVoice(1);
    text.resize(text.find("op6"));
    for (int place = 2; place <= 32; ++place)
        text += TextOfVoice(place);
    EXPECT_EQ(ComplaintAbout(text), "1: voice 1: op6 is missing\n");
    EXPECT_EQ(ComplaintAbout(Replaced(BankText(), "op6", "op5")),
              "21: voice 1: op5 stands there twice\n");
    EXPECT_EQ(ComplaintAbout(Replaced(BankText(), "op6", "op7")),
              "21: voice 1: op5: \"op7\" is no field and no operator\n");
    EXPECT_EQ(ComplaintAbout(Replaced(BankText(), "feedback=5", "feedback =5")),
              "2: voice 1: \"feedback\" is no field and no operator\n");
}

TEST_F(VoiceText, ANameThatDoesNotFitIsTold) {
    const Mistake mistakes[] = {
        {"\"HAND #1\"", "\"ELEVEN LONG\"",
         "1: voice 1: name \"ELEVEN LONG\" has 11 characters, must have 1 to 10\n"},
        {"\"HAND #1\"", "\"\"", "1: voice 1: name \"\" has 0 characters, must have 1 to 10\n"},
        {"\"HAND #1\"", "\"M\xC3\x84RZ\"",
         "1: voice 1: name has a character that is not plain ASCII\n"},
        {"\"HAND #1\"", "\"A\tB\"", "1: voice 1: name has a character that is not plain ASCII\n"},
        {"\"HAND #1\"", "HAND", "1: voice 1: name must stand in quotes\n"},
        {"\"HAND #1\"", "\"A\"B\"C\"", "1: voice 1: name must stand in quotes\n"},
        {"\"HAND #1\"", "\"HAND", "1: the quotes are not closed on this line\n"},
    };
    for (const auto &[right, wrong, complaint] : mistakes)
        EXPECT_EQ(ComplaintAbout(Replaced(BankText(), right, wrong)), complaint);
}

TEST_F(VoiceText, AnyOtherNumberOfVoicesIsTold) {
    EXPECT_EQ(ComplaintAbout(""), "1: there are 0 voices, must be 32\n");
    EXPECT_EQ(ComplaintAbout("# nothing\n"), "1: there are 0 voices, must be 32\n");
    EXPECT_EQ(ComplaintAbout(BankText(31)), "713: there are 31 voices, must be 32\n");
    EXPECT_EQ(ComplaintAbout(BankText(33)), "737: there are more than 32 voices\n");
}

TEST_F(VoiceText, PlacesMustRunInOrder) {
    EXPECT_EQ(ComplaintAbout(Replaced(BankText(), "voice 2 ", "voice 3 ")),
              "24: the next voice must be voice 2\n");
    EXPECT_EQ(ComplaintAbout(Replaced(BankText(), "voice 2 ", "voice ")),
              "24: the next voice must be voice 2\n");
    EXPECT_EQ(ComplaintAbout("voice"), "1: the next voice must be voice 1\n");
    EXPECT_EQ(ComplaintAbout("bank\n" + BankText()),
              "1: \"bank\" stands where a voice should begin\n");
}

TEST_F(VoiceText, AMistakeAnywhereLeavesTheFormerFileAsItWas) {
    folder.WriteText("out", "former");
    const std::string in = WriteText(Replaced(BankText(), "level=66", "level=0"));
    EXPECT_EQ(RunProgram({VoicetextProgram(), "bank", in, Out()}).exitStatus, 1);
    EXPECT_EQ(RunProgram({VoicetextProgram(), "voice", in, "2", Out()}).exitStatus, 1);
    EXPECT_EQ(ReadAll(Out()), (Bytes{'f', 'o', 'r', 'm', 'e', 'r'}));
}

TEST_F(VoiceText, AFileThatCannotBeReadOrWrittenIsNamed) {
    const std::string missing = folder.File("none/file");
    ProgramResult result = RunProgram({VoicetextProgram(), "bank", missing, Out()});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "voicetext: " + missing + ": cannot be read\n");
    result = RunProgram({VoicetextProgram(), "bank", WriteText(BankText()), missing});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "voicetext: " + missing + ": cannot be written\n");
}

TEST_F(VoiceText, AnEndlessTextIsRefused) {
    const ProgramResult result = MakeBank(BankText() + std::string(1 << 20, '\n'));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "voicetext: " + In() + ": is too long for a text of 32 voices\n");
}

TEST_F(VoiceText, AWrongCallShowsTheUsage) {
    const std::string in = WriteText(BankText());
    const std::vector<std::vector<std::string>> calls = {
        {VoicetextProgram()},
        {VoicetextProgram(), "bank"},
        {VoicetextProgram(), "bank", in},
        {VoicetextProgram(), "bank", in, Out(), "more"},
        {VoicetextProgram(), "show", in, Out()},
        {VoicetextProgram(), "voice", in, Out()},
        {VoicetextProgram(), "voice", in, "0", Out()},
        {VoicetextProgram(), "voice", in, "33", Out()},
        {VoicetextProgram(), "voice", in, "1x", Out()},
    };
    for (const std::vector<std::string> &call : calls) {
        const ProgramResult result = RunProgram(call);
        EXPECT_EQ(result.exitStatus, 2) << call.size();
        EXPECT_EQ(result.errors,
                  "usage: voicetext bank IN.txt OUT.syx\n"
                  "       voicetext voice IN.txt PLACE OUT.sy1   (PLACE: 1 to 32)\n");
        EXPECT_FALSE(fs::exists(Out()));
    }
}

} // namespace
} // namespace tonewright
