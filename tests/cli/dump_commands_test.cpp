// identify and rescue: what is in files of any kind, and whole files of it.
#include "run_cli.h"

#include "support/dump_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <filesystem>

namespace tonewright {
namespace {

using Bytes = DumpBytes;
using Strings = std::vector<std::string>;

Bytes HighBank() {
    Bytes bank = TestBank();
    bank[6] = 0x80;
    FixTestChecksum(bank);
    return bank;
}

const std::string HighQuestion =
    ", at 0: one voice has bytes above 7F, which no instrument sends or takes.\n\nDo you wish to "
    "write them all the same? [y/n] ";

class CliDumps : public testing::Test {
protected:
    // The names of the files in the folder of what was rescued, in their order.
    Strings Saved() const {
        Strings names;
        if (std::filesystem::exists(folder.path / "saved")) {
            for (const auto &entry : std::filesystem::directory_iterator(folder.path / "saved")) {
                names.push_back(entry.path().filename().string());
            }
        }
        std::ranges::sort(names);
        return names;
    }
    std::string Into() const { return folder.File("saved"); }
    std::string Saved(const std::string &name) const {
        return (std::filesystem::path(Into()) / name).string();
    }
    ProgramResult Rescue(Strings words) const {
        words.insert(words.begin(), "rescue");
        words.push_back("--into");
        words.push_back(Into());
        return Cli(words);
    }

    const TempFolder folder;
};

class CliIdentify : public CliDumps {};
class CliRescue : public CliDumps {};

TEST_F(CliDumps, EachFileAndEachDumpOfVoicesHasALine) {
    const std::string empty = folder.Write("empty.syx", Bytes{});
    Bytes cut = TestBank();
    cut.resize(100);
    const std::string mixed = folder.Write("mixed.syx", Join({cut, TestBank()}));
    const auto identified = Cli({"identify", empty});
    EXPECT_EQ(identified.exitStatus, 0);
    EXPECT_EQ(identified.output, empty + "\t0\t0\tempty file\t0\t\n");
    const auto rescued = Rescue({empty, mixed});
    EXPECT_EQ(rescued.exitStatus, 0);
    EXPECT_EQ(rescued.output, empty + "\t0\tempty file\t0\t\t\n" + mixed +
                                  "\t0\tDX7 bank, 0 voices\t0\tno end byte, cut short\t\n" + mixed +
                                  "\t100\tDX7 bank, 32 voices\t32\t\t" + Saved("mixed.syx") + "\n");
    EXPECT_EQ(Saved(), Strings{"mixed.syx"});
}

TEST_F(CliIdentify, PrintsALineForEachDump) {
    const std::string file = folder.Write(
        "a.mid.bak",
        Join({TestBank(), TestVoiceMessage(), TestRefaceMessages(TestRefaceVoice(1))}));
    ExpectOutput({"identify", file}, file + "\t0\t4104\tDX7 bank, 32 voices\t32\t\n" + file +
                                         "\t4104\t163\tDX7 voice\t1\t\n" + file +
                                         "\t4267\t241\treface DX voice\t1\t\n");
}

TEST_F(CliIdentify, WhatIsWrongFailsAndIsToldOnStandardErrorToo) {
    const std::string good = folder.Write("good.syx", TestBank()),
                      bad = folder.Write("bad.syx", Join({TestBankMessage(3), {1, 2}}));
    const auto result = Cli({"identify", good, bad});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, good + "\t0\t4104\tDX7 bank, 32 voices\t32\t\n" + bad +
                                 "\t0\t4104\tDX7 bank, 32 voices\t32\tfor channel 3\n" + bad +
                                 "\t4104\t2\tunknown data\t0\t\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + bad +
                                 ": at 0: DX7 bank, 32 voices: for channel 3\ntonewright-cli: " +
                                 bad + ": at 4104: unknown data\n");
}

TEST_F(CliIdentify, AFileThatIsNotThereFailsAndTheOthersAreRead) {
    const std::string none = folder.File("none"), good = folder.Write("good.syx", TestBank());
    const auto result = Cli({"identify", none, good});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, good + "\t0\t4104\tDX7 bank, 32 voices\t32\t\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + none + ": No such file or directory\n");
}

TEST_F(CliIdentify, AFolderIsAllFilesInItAndBelow) {
    std::filesystem::create_directories(folder.path / "a" / "inner");
    const std::string one = folder.Write("a/z.syx", TestVoiceMessage()),
                      two = folder.Write("a/b", TestVoiceFile()),
                      three = folder.Write("a/inner/c", TestVoiceMessage());
    ExpectOutput({"identify", folder.File("a")}, two + "\t0\t164\tDX7 voice\t1\t\n" + one +
                                                     "\t0\t163\tDX7 voice\t1\t\n" + three +
                                                     "\t0\t163\tDX7 voice\t1\t\n");
}

TEST_F(CliRescue, WritesEachBankAndVoiceAsAFileOfItsOwn) {
    const Bytes source = Join({TestBankMessage(5), TextBytes("and"), TestVoiceMessage(),
                               TestRefaceMessages(TestRefaceVoice(1))});
    const std::string file = folder.Write("old.dat", source);
    const auto result = Rescue({file});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, file + "\t0\tDX7 bank, 32 voices\t32\tfor channel 5\t" +
                                 Saved("old.syx") + "\n" + file + "\t4107\tDX7 voice\t1\t\t" +
                                 Saved("old.sy1") + "\n" + file + "\t4270\treface DX voice\t1\t\t" +
                                 Saved("old.sr1") + "\n");
    EXPECT_EQ(Saved(), (Strings{"old.sr1", "old.sy1", "old.syx"}));
    EXPECT_EQ(ReadTestFile(Saved("old.syx")), TestBank());
    EXPECT_EQ(ReadTestFile(Saved("old.sy1")).size(), 164u);
    EXPECT_EQ(ReadTestFile(Saved("old.sr1")).size(), 362u);
    EXPECT_EQ(ReadTestFile(file), source);
    // What was written is whole.
    EXPECT_EQ(Cli({"check", Saved("old.syx"), Saved("old.sy1"), Saved("old.sr1")}).exitStatus, 0);
}

TEST_F(CliRescue, NeverWritesOverAFile) {
    const std::string file = folder.Write("bank.syx", TestPackedVoices(64));
    std::filesystem::create_directory(Into());
    folder.WriteText("saved/bank.syx", "mine");
    folder.WriteText("saved/bank (3).syx", "mine too");
    EXPECT_EQ(Rescue({file}).exitStatus, 0);
    EXPECT_EQ(Saved(), (Strings{"bank (2).syx", "bank (3).syx", "bank (4).syx", "bank.syx"}));
    EXPECT_EQ(ReadTestText(Saved("bank.syx")), "mine");
    EXPECT_EQ(ReadTestText(Saved("bank (3).syx")), "mine too");
    EXPECT_EQ(ReadTestFile(Saved("bank (2).syx")), TestBank());
    EXPECT_EQ(ReadTestFile(Saved("bank (4).syx")), TestBank());
}

TEST_F(CliRescue, IntoItsOwnFolderTheSourceStays) {
    const Bytes source = TestPackedVoices(32);
    std::filesystem::create_directory(Into());
    const std::string file = folder.Write("saved/bank.syx", source);
    EXPECT_EQ(Rescue({file}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(file), source);
    EXPECT_EQ(ReadTestFile(Saved("bank (2).syx")), TestBank());
}

TEST_F(CliRescue, AFolderIsWalkedWithoutWhatWasRescuedBefore) {
    std::filesystem::create_directories(folder.path / "sub");
    folder.Write("sub/a.syx", TestPackedVoices(32));
    folder.Write("b.syx", TestBank());
    folder.WriteText("readme.txt", "nothing");
    for (int times = 1; times <= 2; ++times) {
        const auto result = Rescue({folder.path.string()});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(std::ranges::count(result.output, '\n'), 3);
        EXPECT_NE(result.output.find(folder.File("readme.txt") + "\t0\tno voices\t0\t\t\n"),
                  std::string::npos);
    }
    EXPECT_EQ(Saved(), (Strings{"a (2).syx", "a.syx", "b (2).syx", "b.syx"}));
}

TEST_F(CliRescue, VoicesWithBytesAbove7FAreAskedAbout) {
    const std::string file = folder.Write("high.syx", HighBank());
    for (const Strings &answer : {Strings{}, Strings{"--no"}}) {
        Strings words = answer;
        words.push_back(file);
        const auto result = Rescue(words);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output,
                  file + "\t0\tDX7 bank, 32 voices\t32\tbytes above 7F, values out of range\t\n");
        EXPECT_EQ(result.errors, file + HighQuestion + "no\ntonewright-cli: " + file +
                                     ": not written: bytes above 7F\n");
        EXPECT_EQ(Saved(), Strings{});
    }
    const auto result = Rescue({file, "--yes"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.errors, file + HighQuestion + "yes\n");
    EXPECT_EQ(ReadTestFile(Saved("high.syx")), HighBank());
}

TEST_F(CliRescue, AFileThatCannotBeReadIsToldAndTheRestGoesOn) {
    const std::string none = folder.File("none"), good = folder.Write("good.syx", TestBank());
    const auto result = Rescue({none, good});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + none + ": No such file or directory\n");
    EXPECT_EQ(Saved(), Strings{"good.syx"});
}

TEST_F(CliRescue, NeedsAFolderToWriteInto) {
    const std::string file = folder.Write("good.syx", TestBank());
    const auto missing = Cli({"rescue", file});
    EXPECT_EQ(missing.exitStatus, 2);
    EXPECT_EQ(missing.errors.find("tonewright-cli: rescue: --into FOLDER is missing\n"), 0u);
    folder.WriteText("saved", "a file");
    const auto result = Rescue({file});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + Into() + ": ")) << result.errors;
    EXPECT_EQ(ReadTestText(Into()), "a file");
}

TEST_F(CliRescue, AFolderThatIsNotThereIsMade) {
    const std::string file = folder.Write("good.syx", TestBank()), into = folder.File("x/y/z");
    EXPECT_EQ(Cli({"rescue", "--into", into, file}).exitStatus, 0);
    EXPECT_EQ(ReadTestFile(folder.File("x/y/z/good.syx")), TestBank());
}

} // namespace
} // namespace tonewright
