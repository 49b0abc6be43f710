// How voices sound, as the command line writes it into sound files: the files are read here byte by
// byte.
#include "midi_home.h"

#include "support/comma_locale.h"

#include <bit>
#include <cmath>
#include <cstdlib>

namespace tonewright {
namespace {

// Operator 1 alone at full level, a sine, or with another last level of its envelope.
Bytes InitialVoiceFile(std::uint8_t lastLevel = 0) {
    Bytes voice;
    for (int number = 6; number >= 1; --number) {
        const std::uint8_t level = number == 1 ? 99 : 0;
        const Bytes bytes = {99, 99, 99, 99, 99, 99,    99, lastLevel, 39, 0, 0,
                             0,  0,  0,  0,  0,  level, 0,  1,         0,  7};
        voice.insert(voice.end(), bytes.begin(), bytes.end());
    }
    const Bytes common = {99, 99, 99, 99, 50,  50,  50,  50,  0,   0,   1,   35,  0,   0,   0,
                          1,  0,  3,  24, 'I', 'N', 'I', 'T', ' ', 'V', 'O', 'I', 'C', 'E', 0x3F};
    voice.insert(voice.end(), common.begin(), common.end());
    Bytes file = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    file.insert(file.end(), voice.begin(), voice.end());
    file.insert(file.end(), {0, 0xF7});
    FixTestChecksum(file);
    return file;
}

std::uint32_t NumberAt(const Bytes &bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 |
           static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

// The two sides of a file of floating point.
struct Sides {
    std::vector<float> left, right;
};
Sides SidesOf(const Bytes &file) {
    Sides sides;
    for (std::size_t at = 58; at + 8 <= file.size(); at += 8) {
        sides.left.push_back(std::bit_cast<float>(NumberAt(file, at)));
        sides.right.push_back(std::bit_cast<float>(NumberAt(file, at + 4)));
    }
    return sides;
}

float PeakOf(const std::vector<float> &samples) {
    float peak = 0.0f;
    for (const float sample : samples) {
        peak = std::max(peak, std::fabs(sample));
    }
    return peak;
}

class CliRender : public CliMidi {
protected:
    void SetUp() override {
        CliMidi::SetUp();
        RemoveVariable("TONEWRIGHT_INSTRUMENTS");
        voice = folder.Write("voice.sy1", InitialVoiceFile());
    }
    Bytes Rendered(const std::string &file, const std::string &place,
                   std::vector<std::string> options) const {
        options.insert(options.begin(), {"render", file, place, folder.File("out.wav")});
        ExpectDone(options);
        return ReadTestFile(folder.File("out.wav"));
    }
    Bytes Rendered(const std::vector<std::string> &options) const {
        return Rendered(voice, "1", options);
    }
    Sides Played(std::vector<std::string> options) const {
        options.insert(options.end(), {"--bits", "32f"});
        return SidesOf(Rendered(options));
    }

    std::string voice;
};

TEST_F(CliRender, WritesAFileOfSixteenBits) {
    const Bytes file = Rendered({});
    EXPECT_EQ(Part(file, 0, 4), (Bytes{'R', 'I', 'F', 'F'}));
    EXPECT_EQ(NumberAt(file, 4), file.size() - 8);
    EXPECT_EQ(Part(file, 8, 32), (Bytes{'W', 'A', 'V', 'E', 'f', 'm',  't',  ' ', 16,  0,    0,
                                        0,   1,   0,   2,   0,   0x80, 0xBB, 0,   0,   0x00, 0xEE,
                                        2,   0,   4,   0,   16,  0,    'd',  'a', 't', 'a'}));
    EXPECT_EQ(NumberAt(file, 40), file.size() - 44);
    EXPECT_EQ(file.size() % 4, 0u);
}

TEST_F(CliRender, WritesOtherKindsOfSamplesAndOtherRates) {
    const Bytes whole = Rendered({"--bits", "24", "--rate", "44100"});
    EXPECT_EQ(Part(whole, 16, 20),
              (Bytes{16, 0, 0, 0, 1, 0, 2, 0, 0x44, 0xAC, 0, 0, 0x98, 0x09, 4, 0, 6, 0, 24, 0}));
    EXPECT_EQ(NumberAt(whole, 40), whole.size() - 44);
    EXPECT_EQ(whole.size() % 6, 44u % 6);
    const Bytes floating = Rendered({"--bits=32F", "--rate=8000"});
    EXPECT_EQ(NumberAt(floating, 4), floating.size() - 8);
    EXPECT_EQ(Part(floating, 16, 30),
              (Bytes{18, 0, 0, 0,  3, 0, 2, 0,   0x40, 0x1F, 0,   0, 0x00, 0xFA, 0,
                     0,  8, 0, 32, 0, 0, 0, 'f', 'a',  'c',  't', 4, 0,    0,    0}));
    EXPECT_EQ(NumberAt(floating, 46), (floating.size() - 58) / 8);
    EXPECT_EQ(NumberAt(floating, 54), floating.size() - 58);
}

TEST_F(CliRender, PlaysTheSameInEveryKindOfSamples) {
    const std::vector<std::string> call = {"--seconds", "0.1"};
    const Bytes sixteen = Rendered(call);
    const Bytes twentyFour = Rendered({"--seconds", "0.1", "--bits", "24"});
    const Sides exact = Played(call);
    ASSERT_EQ(sixteen.size(), 44 + 4 * exact.left.size());
    ASSERT_EQ(twentyFour.size(), 44 + 6 * exact.left.size());
    for (std::size_t i = 0; i < exact.left.size(); ++i) {
        const auto value =
            static_cast<std::int16_t>(sixteen[44 + 4 * i] | sixteen[45 + 4 * i] << 8);
        EXPECT_NEAR(value, 32767.0 * exact.left[i], 0.5001) << i;
        const std::size_t at = 44 + 6 * i;
        const std::int32_t shifted =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(twentyFour[at]) << 8 |
                                      static_cast<std::uint32_t>(twentyFour[at + 1]) << 16 |
                                      static_cast<std::uint32_t>(twentyFour[at + 2]) << 24);
        EXPECT_NEAR(shifted / 256, 8388607.0 * exact.left[i], 0.51) << i;
    }
}

TEST_F(CliRender, PlaysMiddleCAsASineOfAnEighthOfFullScale) {
    const Sides played = Played({});
    EXPECT_EQ(played.left, played.right);
    // From half a second on: what takes the offset away has settled.
    EXPECT_NEAR(PeakOf({played.left.begin() + 24000, played.left.begin() + 96000}), 0.125f,
                0.0002f);
    int crossings = 0;
    for (std::size_t i = 24000; i < 72000; ++i) { // a second
        crossings += played.left[i - 1] < 0.0f && played.left[i] >= 0.0f ? 1 : 0;
    }
    EXPECT_GE(crossings, 261); // 261.63 Hz
    EXPECT_LE(crossings, 262);
}

TEST_F(CliRender, HoldsItForTwoSecondsOrAsLongAsIsSaidAndEndsWithTheSound) {
    // The release takes 6 ms, and what takes the offset away a quarter of a second.
    const auto expectFrames = [&](const std::vector<std::string> &options, std::size_t held) {
        const Sides played = Played(options);
        EXPECT_GT(played.left.size(), held);
        EXPECT_LT(played.left.size(), held + 14400);
        EXPECT_GT(PeakOf({played.left.begin() + static_cast<std::ptrdiff_t>(held) - 480,
                          played.left.begin() + static_cast<std::ptrdiff_t>(held)}),
                  0.1f);
        EXPECT_NEAR(played.left.back(), 0.0f, 1e-4f);
    };
    expectFrames({}, 96000);
    expectFrames({"--seconds", "0.25"}, 12000);
    expectFrames({"--seconds", ".25", "--release", "60"}, 12000);
}

TEST_F(CliRender, LetsWhatNeverEndsSoundOnAsLongAsIsSaidAndFadesIt) {
    voice = folder.Write("voice.sy1", InitialVoiceFile(99));
    EXPECT_EQ(Played({"--seconds", "0.1"}).left.size(), 4800u + 5 * 48000u);
    const Sides played = Played({"--seconds", "0.1", "--release", "0.5"});
    ASSERT_EQ(played.left.size(), 4800u + 24000u);
    EXPECT_GT(PeakOf({played.left.end() - 1000, played.left.end() - 240}), 0.12f);
    EXPECT_EQ(played.left.back(), 0.0f);
    for (std::size_t i = 1; i < played.left.size(); ++i) {
        // The steepest step of the sine, 0.125 * 2 pi * 261.63 / 48000, and a little more.
        ASSERT_LT(std::fabs(played.left[i] - played.left[i - 1]), 0.0050f) << i;
    }
    EXPECT_EQ(Played({"--seconds", "0.1", "--release", "0"}).left.size(), 4800u);
}

TEST_F(CliRender, PlaysSeveralNotesAsTheirSum) {
    const std::vector<std::string> notes = {"C3", "64", "g3"};
    std::vector<float> sum;
    std::vector<std::string> all;
    for (const std::string &note : notes) {
        const Sides one = Played({"--note", note, "--seconds", "0.3"});
        sum.resize(std::max(sum.size(), one.left.size()));
        for (std::size_t i = 0; i < one.left.size(); ++i) {
            sum[i] += one.left[i];
        }
        all.insert(all.end(), {"--note", note});
    }
    all.insert(all.end(), {"--seconds", "0.3"});
    const Sides chord = Played(all);
    EXPECT_GT(PeakOf(chord.left), 0.2f);
    // The last trace of an offset ends earlier or later.
    EXPECT_NEAR(static_cast<double>(chord.left.size()), static_cast<double>(sum.size()), 1000.0);
    for (std::size_t i = 0; i < std::min(sum.size(), chord.left.size()); ++i) {
        ASSERT_NEAR(chord.left[i], sum[i], 1e-5f) << i;
    }
}

TEST_F(CliRender, PlaysAsHardAsIsSaid) {
    Bytes file = InitialVoiceFile();
    file[6 + 5 * 21 + 15] = 7; // velocity sensitivity of operator 1
    FixTestChecksum(file);
    voice = folder.Write("voice.sy1", file);
    const float usual = PeakOf(Played({}).left);
    EXPECT_EQ(usual, PeakOf(Played({"--velocity", "100"}).left));
    EXPECT_NEAR(20.0 * std::log10(PeakOf(Played({"--velocity", "64"}).left) / 0.125), -10.5, 0.4);
    EXPECT_NEAR(20.0 * std::log10(PeakOf(Played({"--velocity", "127"}).left) / 0.125), 5.3, 0.4);
}

TEST_F(CliRender, PlaysTheVoiceAtThePlaceOfABankOfEitherFamily) {
    const std::string examples = SourceFile("examples/tonewright.syx");
    const Bytes bell = Rendered(examples, "28", {});
    const Bytes organ = Rendered(examples, "19", {});
    EXPECT_NE(bell, organ);
    EXPECT_EQ(bell, Rendered(SourceFile("examples/tower_bell.sy1"), "1", {}));
    const std::string bank = RefaceBank();
    const Bytes reface = Rendered(bank, "2", {"--bits", "32f"});
    EXPECT_GT(PeakOf(SidesOf(reface).left), 0.001f);
    EXPECT_NE(reface, Rendered(bank, "3", {"--bits", "32f"}));
    EXPECT_EQ(reface,
              Rendered(folder.Write("voice.sr1", TestRefaceVoiceFile(1)), "1", {"--bits", "32f"}));
}

TEST_F(CliRender, WritesTheSameBytesInEveryCallAndWhateverTheUserHasSet) {
    const std::string examples = SourceFile("examples/tonewright.syx");
    const std::vector<std::string> options = {"--seconds", "0.5", "--note", "40", "--note", "47"};
    const Bytes first = Rendered(examples, "17", options);
    EXPECT_EQ(Rendered(examples, "17", options), first);
    WriteSettings("CurrentMidiChannel = 5\nAuditionCurrentVelocity = 1\nSysexWait = 1\n"
                  "SelectKeyboardMidiOut = No Such\n");
    SetVariable("TONEWRIGHT_INSTRUMENTS", "1");
    EXPECT_EQ(Rendered(examples, "17", options), first);
    const CommaLocale comma;
    const std::string out = folder.File("comma.wav");
    const ProgramResult result =
        RunProgram(comma.Command({CliProgram(), "render", examples, "17", out, "--seconds", "0.5",
                                  "--note", "40", "--note", "47"}));
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(ReadTestFile(out), first);
}

TEST_F(CliRender, ReplacesTheFileThatIsThere) {
    const Bytes file = Rendered({});
    folder.WriteText("out.wav", "former");
    EXPECT_EQ(Rendered({}), file);
    EXPECT_FALSE(folder.Holds("Backup of out.wav"));
}

TEST_F(CliRender, RefusesWhatItCannotPlay) {
    const std::string out = folder.File("out.wav");
    const auto expectWrong = [&](std::vector<std::string> options, const std::string &reason) {
        options.insert(options.begin(), {"render", voice, "1", out});
        ExpectFailure(options, reason, 2);
    };
    for (const char *note : {"128", "-1", "H2", ""}) {
        expectWrong({"--note", note}, std::string(*note ? note : "") + (*note ? ": " : "") +
                                          "not a note: 0 to 127, or C-2 to G8, is (C3 is 60)");
    }
    expectWrong({"--velocity", "0"}, "0: not a velocity: a number from 1 to 127 is");
    expectWrong({"--velocity", "128"}, "128: not a velocity: a number from 1 to 127 is");
    for (const char *seconds : {"0", "0.009", "1800.1", "1e2", "1,5", "nan", "inf", "-1", "2 "}) {
        expectWrong({"--seconds", seconds},
                    std::string(seconds) + ": not a time to hold a note: 0.01 to 1800 seconds are");
    }
    expectWrong({"--release", "60.5"}, "60.5: not a time to sound on: 0 to 60 seconds are");
    expectWrong({"--rate", "7999"}, "7999: not a rate: 8000 to 192000 frames a second are");
    expectWrong({"--rate", "192001"}, "192001: not a rate: 8000 to 192000 frames a second are");
    expectWrong({"--bits", "32"}, "32: not a kind of samples: 16, 24 and 32f are");
    std::vector<std::string> many;
    for (int i = 0; i < 65; ++i) {
        many.insert(many.end(), {"--note", "60"});
    }
    expectWrong(many, "more than 64 notes");
    ExpectFailure({"render", voice, "0", out}, "0: not a place: a number from 1 is", 2);
    const std::string other = folder.File("out.mp3");
    ExpectFailure({"render", voice, "1", other},
                  other + ": the extension of the file to write must be \"wav\"", 2);
    EXPECT_EQ(Cli({"render", out, "1", out}).exitStatus, 2);
    ExpectFailure({"render", voice, "2", out}, voice + ": there is no place 2 among its 1 voices");
    EXPECT_EQ(Cli({"render", folder.File("none.syx"), "1", out}).exitStatus, 1);
    EXPECT_FALSE(folder.Holds("out.wav"));
}

TEST_F(CliRender, SaysWhatIsWrongWithAFileAsTheOtherCommandsDo) {
    Bytes damaged = InitialVoiceFile();
    damaged[damaged.size() - 2] ^= 1;
    const std::string path = folder.Write("damaged.sy1", damaged);
    const ProgramResult refused = Cli({"render", path, "1", folder.File("out.wav")});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_FALSE(folder.Holds("out.wav"));
    EXPECT_EQ(Cli({"render", path, "1", folder.File("out.wav"), "--yes"}).exitStatus, 0);
    EXPECT_TRUE(folder.Holds("out.wav"));
}

TEST_F(CliRender, LeavesTheMemoryOfTheInstrumentsAsItWas) {
    SetVariable("TONEWRIGHT_INSTRUMENTS", "1");
    ExpectDone({"upload", Bank(), "--out", "dx7", "--memory", Memory()});
    const Bytes former = ReadTestFile(Memory());
    Rendered({});
    EXPECT_EQ(ReadTestFile(Memory()), former);
}

} // namespace
} // namespace tonewright
