// The commands of the archive, on a home and folders of their own.
#include "run_cli.h"

#include "common/text.h"
#include "drivers/dx7/voice_codec.h"
#include "extras/dump_voice.h"
#include "extras/initial_voice.h"
#include "extras/voice_identity.h"
#include "support/environment.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

// The initial voice with a name, a level of its first operator, an algorithm (from 1) and a detune
// of its last operator that needs all four bits.
Bytes PackedVoice(const std::string &name, int level, int algorithm) {
    Bytes voice = InitialVoiceOf(Dx7DriverId).bytes;
    voice[5 * Dx7PackedOperatorSize + 14] = static_cast<std::uint8_t>(level);
    voice[5 * Dx7PackedOperatorSize + 12] = 14 << 3;
    voice[110] = static_cast<std::uint8_t>(algorithm - 1);
    std::fill(voice.end() - 10, voice.end(), std::uint8_t{' '});
    std::ranges::copy(name, voice.end() - 10);
    return voice;
}

std::string IdOf(const Bytes &voice) {
    return TextOfIdentity(IdentityOf({VoiceForm::Dx7Packed, voice}));
}

// A bank that begins with these voices, the rest being initial ones.
Bytes Bank(const std::vector<Bytes> &voices) {
    Bytes bank = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    for (std::size_t row = 0; row < 32; ++row) {
        const Bytes voice = row < voices.size() ? voices[row] : InitialVoiceOf(Dx7DriverId).bytes;
        bank.insert(bank.end(), voice.begin(), voice.end());
    }
    const int sum = std::accumulate(bank.begin() + 6, bank.end(), 0);
    bank.push_back(static_cast<std::uint8_t>(-sum & 0x7F));
    bank.push_back(0xF7);
    return bank;
}

void WriteBytes(const fs::path &path, const Bytes &bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes ReadBytes(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {(std::istreambuf_iterator<char>(file)), {}};
}

const Bytes Harp = PackedVoice("Glass Harp", 99, 5);
const Bytes Horn = PackedVoice("HORN", 90, 5);
const Bytes Bell = PackedVoice("Glass BELL", 60, 32);

class CliArchive : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
        fs::create_directories(home.path / ".config");
        WriteBytes(banks / "a.syx", Bank({Harp, Horn}));
        WriteBytes(banks / "old/b.syx", Bank({Horn, Bell}));
        fs::create_directories(home.path / "empty");
    }

    void Add() {
        const ProgramResult result = Cli({"archive", "add", banks.string()});
        EXPECT_EQ(result.exitStatus, 0) << result.errors;
        EXPECT_EQ(result.errors, "");
    }
    // The line of a voice.
    std::string Line(const Bytes &voice, const std::string &name, int algorithm, int times,
                     const std::string &file, int place) const {
        return IdOf(voice) + '\t' + name + "\tdx7\t" + std::to_string(algorithm) + '\t' +
               std::to_string(times) + '\t' + (banks / file).generic_string() + '\t' +
               std::to_string(place) + '\n';
    }
    std::string Archive() const {
        return home.File(".config/Quillbrook/Tonewright 17/Archive.sqlite");
    }
    std::string Out(const std::string &name) const { return home.File(name); }

    TempFolder home;
    fs::path banks = home.path / "banks";
};

TEST_F(CliArchive, AddsFoldersAndSaysWhatIsInThem) {
    ExpectOutput({"archive", "add", banks.string()},
                 "added\t2\nchanged\t0\nmoved\t0\ngone\t0\nunchanged\t0\nskipped\t0\nfailed\t0\n"
                 "files\t2\nvoices\t64\n");
    ExpectOutput({"archive", "update"},
                 "added\t0\nchanged\t0\nmoved\t0\ngone\t0\nunchanged\t2\nskipped\t0\nfailed\t0\n"
                 "files\t2\nvoices\t64\n");
    fs::rename(banks / "a.syx", banks / "c.syx");
    WriteBytes(banks / "old/b.syx", Bank({Bell}));
    ExpectOutput({"archive", "update"},
                 "added\t0\nchanged\t1\nmoved\t1\ngone\t0\nunchanged\t0\nskipped\t0\nfailed\t0\n"
                 "files\t2\nvoices\t64\n");
    ExpectOutput({"archive", "find", "horn"}, Line(Horn, "HORN", 5, 1, "c.syx", 2));
    ExpectOutput({"archive", "check"}, "ok\n");
}

TEST_F(CliArchive, NothingIsWrittenBeforeAFolderIsAdded) {
    for (const std::vector<std::string> &words :
         {std::vector<std::string>{"archive", "find", "a"},
          {"archive", "update"},
          {"archive", "check"},
          {"archive", "forget", banks.string()},
          {"archive", "duplicates"},
          {"archive", "show", "0123456789abcdef"},
          {"archive", "make-bank", Out("o.syx"), "0123456789abcdef"},
          {"archive", "similar", (banks / "a.syx").string(), "1"}}) {
        ExpectFailure(words, Archive() + ": there is no archive yet: archive add FOLDER makes one");
    }
    ExpectFailure({"archive", "add", Out("missing")},
                  Out("missing") + ": No such file or directory");
    ExpectFailure({"archive", "add", banks.string(), (banks / "a.syx").string()},
                  (banks / "a.syx").string() + ": not a folder");
    EXPECT_FALSE(fs::exists(Archive()));
}

TEST_F(CliArchive, FindsNamesByWords) {
    Add();
    ExpectOutput({"archive", "find", "glass"}, Line(Bell, "Glass BELL", 32, 1, "old/b.syx", 2) +
                                                   Line(Harp, "Glass Harp", 5, 1, "a.syx", 1));
    ExpectOutput({"archive", "find", "rp", "GLA"}, Line(Harp, "Glass Harp", 5, 1, "a.syx", 1));
    ExpectOutput({"archive", "find", "rp gla"}, Line(Harp, "Glass Harp", 5, 1, "a.syx", 1));
    ExpectFailure({"archive", "find", "glas horn"}, "glas horn: no voice of the archive fits");
    // A character that no name can hold.
    ExpectFailure({"archive", "find", "gl\xC4\x81ss"},
                  "gl\xC4\x81ss: no voice of the archive fits");
}

TEST_F(CliArchive, FiltersLeaveTheOthersOut) {
    Add();
    ExpectOutput({"archive", "find", "", "--algorithm", "32"},
                 Line(Bell, "Glass BELL", 32, 1, "old/b.syx", 2));
    ExpectOutput({"archive", "find", "horn", "--folder", (banks / "old").string()},
                 Line(Horn, "HORN", 5, 2, "old/b.syx", 1));
    ExpectOutput({"archive", "find", "horn", "--instrument", "DX7"},
                 Line(Horn, "HORN", 5, 2, "a.syx", 2));
    ExpectFailure({"archive", "find", "", "--instrument", "reface"},
                  "no voice of the archive fits");
    ExpectFailure({"archive", "find", "", "--folder", Out("empty")},
                  "no voice of the archive fits");
    ExpectFailure({"archive", "find", "", "--algorithm", "33"}, "33: not an algorithm: 1 to 32 is",
                  2);
    ExpectFailure({"archive", "find", "", "--algorithm", "5x"}, "5x: not an algorithm: 1 to 32 is",
                  2);
    ExpectFailure({"archive", "find", "", "--instrument", "organ"},
                  "organ: not an instrument of the archive: dx7 and reface are", 2);
}

TEST_F(CliArchive, DuplicatesAreEachPlaceOfWhatIsFoundMoreThanOnce) {
    Add();
    const Bytes initial = InitialVoiceOf(Dx7DriverId).bytes;
    std::string initials;
    for (const char *file : {"a.syx", "old/b.syx"}) {
        for (int place = 3; place <= 32; ++place) {
            initials += Line(initial, "INIT VOICE", 1, 60, file, place);
        }
    }
    const std::string horns =
        Line(Horn, "HORN", 5, 2, "a.syx", 2) + Line(Horn, "HORN", 5, 2, "old/b.syx", 1);
    ExpectOutput({"archive", "duplicates"}, initials + horns);
    ExpectOutput({"archive", "duplicates", "--algorithm", "5"}, horns);
    ExpectOutput({"archive", "show", IdOf(Horn)}, horns);
}

TEST_F(CliArchive, TheMostSimilarComesFirst) {
    Add();
    WriteBytes(home.path / "mine.syx", Bank({PackedVoice("MINE", 91, 5)}));
    const ProgramResult result = Cli({"archive", "similar", Out("mine.syx"), "1"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    const auto lines = SplitList(result.output, '\n');
    ASSERT_GE(lines.size(), 4u);
    const std::string horn = Line(Horn, "HORN", 5, 2, "a.syx", 2);
    EXPECT_EQ(lines[0].substr(lines[0].find('\t') + 1) + '\n', horn);
    int last = 0;
    for (std::size_t line = 0; line < 4; ++line) {
        EXPECT_GE(std::stoi(lines[line]), last);
        last = std::stoi(lines[line]);
    }
    // Without the voice itself.
    const ProgramResult own = Cli({"archive", "similar", (banks / "old/b.syx").string(), "1"});
    EXPECT_EQ(own.output.find("HORN"), std::string::npos) << own.output;
    // Of another family than all others.
    const std::string reface = Out("reface.srx");
    WriteTestFile(reface, TestRefaceBank());
    ExpectFailure({"archive", "similar", reface, "1"},
                  reface + ": the archive holds no other voice to compare it with");
    ExpectFailure({"archive", "similar", Out("mine.syx"), "33"},
                  Out("mine.syx") + ": there is no voice at place 33");
    ExpectFailure({"archive", "similar", Out("mine.syx"), "0"},
                  "0: not a place: a number from 1 is", 2);
    ExpectFailure({"archive", "similar", Out("none.syx"), "1"},
                  Out("none.syx") + ": No such file or directory");
}

TEST_F(CliArchive, ABankHasTheVeryBytesOfItsSources) {
    Add();
    ExpectDone({"archive", "make-bank", Out("new.syx"), IdOf(Bell), IdOf(Harp), IdOf(Bell)});
    EXPECT_EQ(ReadBytes(Out("new.syx")), Bank({Bell, Harp, Bell}));
}

TEST_F(CliArchive, NoFileIsReplacedWithoutAYes) {
    Add();
    WriteBytes(Out("old.syx"), {1, 2, 3});
    const std::vector<std::string> words = {"archive", "make-bank", Out("old.syx"), IdOf(Bell)};
    const ProgramResult refused = Cli(words);
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.errors, "The file " + Out("old.syx") +
                                  " exists.\n\nDo you wish to replace it? [y/n] no\n"
                                  "tonewright-cli: " +
                                  Out("old.syx") + ": not written\n");
    EXPECT_EQ(ReadBytes(Out("old.syx")), (Bytes{1, 2, 3}));
    std::vector<std::string> yes = words;
    yes.push_back("--yes");
    EXPECT_EQ(Cli(yes).exitStatus, 0);
    EXPECT_EQ(ReadBytes(Out("old.syx")), Bank({Bell}));
}

TEST_F(CliArchive, AVoiceIsTakenFromWhicheverPlaceStillHoldsIt) {
    Add();
    WriteBytes(banks / "a.syx", Bank({Horn, Harp})); // both have changed places
    ExpectDone({"archive", "make-bank", Out("horn.syx"), IdOf(Horn)});
    EXPECT_EQ(ReadBytes(Out("horn.syx")), Bank({Horn}));
    const std::string lost = ": none of its 1 place holds it any more: archive update looks where "
                             "it is now";
    ExpectFailure({"archive", "make-bank", Out("harp.syx"), IdOf(Bell), IdOf(Harp)},
                  IdOf(Harp) + lost);
    fs::remove(banks / "old/b.syx");
    ExpectFailure({"archive", "make-bank", Out("harp.syx"), IdOf(Bell)}, IdOf(Bell) + lost);
    EXPECT_FALSE(fs::exists(Out("harp.syx")));
}

TEST_F(CliArchive, ABankIsMadeOfKnownVoicesAndUnderItsExtension) {
    Add();
    ExpectFailure({"archive", "make-bank", Out("a.syx"), "0123456789abcdef"},
                  "0123456789abcdef: no voice of the archive has this id");
    ExpectFailure({"archive", "make-bank", Out("a.syx"), "horn"},
                  "horn: not the id of a voice: 16 hexadecimal digits are", 2);
    const ProgramResult result = Cli({"archive", "make-bank", Out("a.srx"), IdOf(Horn)});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_FALSE(fs::exists(Out("a.srx")));
    std::vector<std::string> many = {"archive", "make-bank", Out("a.syx")};
    many.insert(many.end(), 33, IdOf(Horn));
    EXPECT_EQ(Cli(many).exitStatus, 2);
}

TEST_F(CliArchive, BytesAbove7FAreAskedAbout) {
    Bytes high = PackedVoice("HIGH", 77, 3);
    high[20] = 0x80;
    WriteBytes(banks / "high.syx", Bank({high}));
    Add();
    const ProgramResult found = Cli({"archive", "find", "high"});
    const std::string id = found.output.substr(0, 16);
    const ProgramResult refused = Cli({"archive", "make-bank", Out("new.syx"), id});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_NE(refused.errors.find("1 of these voices has bytes above 7F"), std::string::npos)
        << refused.errors;
    EXPECT_FALSE(fs::exists(Out("new.syx")));
    EXPECT_EQ(Cli({"archive", "make-bank", Out("new.syx"), id, "--yes"}).exitStatus, 0);
    EXPECT_EQ(ReadBytes(Out("new.syx")), Bank({high}));
}

TEST_F(CliArchive, ForgetsAFolderAndKeepsItsFiles) {
    Add();
    ExpectFailure({"archive", "forget", (banks / "old").string()},
                  (banks / "old").string() + ": not a folder that was added to the archive");
    ExpectDone({"archive", "forget", banks.string() + "/"});
    ExpectFailure({"archive", "find", "horn"}, "horn: no voice of the archive fits");
    EXPECT_TRUE(fs::exists(banks / "old/b.syx"));
}

TEST_F(CliArchive, AnotherArchiveIsAFileOfItsOwn) {
    const std::string other = Out("other.sqlite");
    EXPECT_EQ(Cli({"archive", "add", banks.string(), "--archive", other}).exitStatus, 0);
    EXPECT_FALSE(fs::exists(Archive()));
    ExpectOutput({"archive", "find", "horn", "--archive", other},
                 Line(Horn, "HORN", 5, 2, "a.syx", 2));
}

TEST_F(CliArchive, WhatIsNoArchiveIsToldAndStaysAsItIs) {
    const Bytes nonsense(8000, 'x');
    WriteBytes(Out("other.sqlite"), nonsense);
    for (const std::vector<std::string> &words : {std::vector<std::string>{"archive", "find", "a"},
                                                  {"archive", "update"},
                                                  {"archive", "check"},
                                                  {"archive", "add", banks.string()}}) {
        std::vector<std::string> call = words;
        call.insert(call.end(), {"--archive", Out("other.sqlite")});
        const ProgramResult result = Cli(call);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + Out("other.sqlite") + ": "))
            << result.errors;
    }
    EXPECT_EQ(ReadBytes(Out("other.sqlite")), nonsense);
}

} // namespace
} // namespace tonewright
