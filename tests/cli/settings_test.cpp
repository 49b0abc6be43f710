// The commands "settings" and "history" on a home of their own.
#include "run_cli.h"

#include "common/platform.h"
#include "common/setting_rows.h"
#include "support/environment.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {
namespace {

class CliHome : public testing::Test {
protected:
    void SetUp() override { SetHome(home.path.string()); }

    // A call that is refused with these words and writes nothing.
    void ExpectRefused(const std::vector<std::string> &arguments, const std::string &reason) {
        ExpectFailure(arguments, reason, 2);
        EXPECT_FALSE(home.Holds(".config/Quillbrook"));
    }
    std::string IniPath() const { return home.File(".config/Quillbrook/Tonewright 17.ini"); }
    std::string Ini() const { return ReadTestText(IniPath()); }
    void WriteUserFile(const std::string &name, const std::string &text) const {
        std::filesystem::create_directories(home.path / ".config/Quillbrook/Tonewright 17");
        WriteTestText(home.File(".config/Quillbrook/" + name), text);
    }

    TempFolder home;
};

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// ---- settings

using CliSettings = CliHome;

TEST_F(CliSettings, GetPrintsTheValueAndWritesNothing) {
    ExpectOutput({"settings", "get", "MaxUndoLevel"}, "3\n");
    ExpectOutput({"settings", "get", "DatabaseCurrentName"}, "Voices\n");
    ExpectOutput({"settings", "get", "ThemeCurrent"}, "\n");
    ExpectOutput({"settings", "get", "VersionNumber"}, "544\n");
    ExpectOutput({"settings", "get", "OpenPath"},
                 home.File("Documents/My Tonewright 17 Documents/") + "\n");
    EXPECT_FALSE(home.Holds(".config/Quillbrook"));
}

TEST_F(CliSettings, GetReadsTheFileAsTheProgramDoes) {
    WriteUserFile("Tonewright 17.ini", "Max == 7\nCreateBackups = yes\nOpenPath = a\tb\n");
    ExpectOutput({"settings", "get", "MaxUndoLevel"}, "7\n");
    ExpectOutput({"settings", "get", "CreateBackups"}, "0\n");
    ExpectOutput({"settings", "get", "OpenPath"}, "a\n");
}

TEST_F(CliSettings, ListPrintsEveryKeyInTheOrderOfTheTable) {
    WriteUserFile("Tonewright 17.ini", "MaxUndoLevel = 9\n");
    const auto result = Cli({"settings", "list"});
    EXPECT_EQ(result.exitStatus, 0);
    const auto count =
        static_cast<std::ptrdiff_t>(ProgramSettings.rows.size() + ExtrasSettings.rows.size());
    EXPECT_EQ(std::ranges::count(result.output, '\n'), count);
    EXPECT_EQ(std::ranges::count(result.output, '\t'), count);
    EXPECT_TRUE(result.output.starts_with("ApplicationPath\t"));
    EXPECT_TRUE(Contains(result.output, "\nMaxUndoLevel\t9\nMiddleButtonAudition\t1\n"));
    EXPECT_TRUE(result.output.ends_with(
        "\nShowWelcomeWizard\t1\nextras.CarefulMode\t0\nextras.WholeDetune\t0\n"
        "extras.AuditionKeepsVoice\t0\nextras.BuiltinInstruments\t0\nextras.InstrumentDevice\t\n"
        "extras.InstrumentVolume\t100\nextras.InstrumentBuffer\t256\n"
        "extras.InstrumentPolyphony\t16\nextras.SpaceAuditions\t0\nextras.RefaceZero64\t0\n"));
}

TEST_F(CliSettings, AnExtraIsReadFromTheFilesOfSystemAndUser) {
    std::filesystem::create_directories(home.path / "system/Quillbrook");
    WriteTestText(home.File("system/Quillbrook/Extras.ini"), "CarefulMode = 1\nWholeDetune = 1\n");
    const EnvironmentVariable folders("XDG_CONFIG_DIRS", home.File("system"));
    ExpectOutput({"settings", "get", "extras.CarefulMode"}, "1\n");
    EXPECT_FALSE(home.Holds(".config/Quillbrook"));
    WriteUserFile("Tonewright 17/Extras.ini", "CarefulMode = 0\n");
    ExpectOutput({"settings", "get", "extras.CarefulMode"}, "0\n");
    ExpectOutput({"settings", "get", "extras.WholeDetune"}, "1\n");
    ExpectOutput({"settings", "get", "extras.AuditionKeepsVoice"}, "0\n");
}

TEST_F(CliSettings, SettingAnExtraWritesItsFileAndItsRowAlone) {
    ExpectOutput({"settings", "set", "extras.WholeDetune", "1"}, "");
    const std::string text = ReadTestText(home.File(".config/Quillbrook/Tonewright 17/Extras.ini"));
    EXPECT_TRUE(text.starts_with(";Tonewright configuration file\n"));
    EXPECT_TRUE(text.ends_with("\n;\n[Extras]\nWholeDetune = 1\n"));
    EXPECT_FALSE(std::filesystem::exists(IniPath()));
    ExpectOutput({"settings", "get", "extras.WholeDetune"}, "1\n");
}

TEST_F(CliSettings, ANameOfOneListIsNoneOfTheOther) {
    const std::string reason = "no such key; settings list shows all";
    ExpectRefused({"settings", "get", "CarefulMode"}, "CarefulMode: " + reason);
    ExpectRefused({"settings", "get", "extras.MaxUndoLevel"}, "extras.MaxUndoLevel: " + reason);
    ExpectRefused({"settings", "get", "extras."}, "extras.: " + reason);
    ExpectRefused({"settings", "set", "extras.CarefulMode", "2"},
                  "extras.CarefulMode: 2 is neither 0 nor 1");
}

TEST_F(CliSettings, AnExtraThatCannotBeWrittenIsToldOf) {
    const std::string path = home.File(".config/Quillbrook/Tonewright 17/Extras.ini");
    std::filesystem::create_directories(path); // a folder in its place
    const auto result = Cli({"settings", "set", "extras.CarefulMode", "1"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + path + ": could not be written: Is a directory\n");
}

TEST_F(CliSettings, SetOnAnEmptyHomeMakesTheFileWithAllKeys) {
    ExpectOutput({"settings", "set", "MaxUndoLevel", "7"}, "");
    EXPECT_TRUE(Ini().starts_with(";Tonewright configuration file\n;Edit this at your own risk\n"));
    EXPECT_TRUE(Contains(Ini(), "\nMaxUndoLevel = 7\n"));
    EXPECT_TRUE(Contains(Ini(), "\nVersionNumber = 544\n"));
    EXPECT_TRUE(Ini().ends_with("\nShowWelcomeWizard = 1\n"));
    ExpectOutput({"settings", "get", "MaxUndoLevel"}, "7\n");
}

TEST_F(CliSettings, SetKeepsTheOtherValuesAndTwoGenerations) {
    WriteUserFile("Tonewright 17.ini", "first SysexWait\nSysexWait = 99\n");
    ExpectOutput({"settings", "set", "MaxUndoLevel", "7"}, "");
    ExpectOutput({"settings", "set", "DatabaseCurrentName", "My Voices"}, "");
    EXPECT_TRUE(Contains(Ini(), "\nMaxUndoLevel = 7\n"));
    EXPECT_TRUE(Contains(Ini(), "\nSysexWait = 99\n"));
    EXPECT_TRUE(Contains(Ini(), "\nDatabaseCurrentName = My Voices\n"));
    const std::string backup =
        ReadTestText(home.File(".config/Quillbrook/Backup of Tonewright 17.ini"));
    EXPECT_TRUE(Contains(backup, "\nMaxUndoLevel = 7\n"));
    EXPECT_TRUE(Contains(backup, "\nDatabaseCurrentName = Voices\n"));
    EXPECT_EQ(ReadTestText(home.File(".config/Quillbrook/Backup of Backup of Tonewright 17.ini")),
              "first SysexWait\nSysexWait = 99\n");
}

// A line has at most 259 bytes with its end, which is longer on Windows.
const std::size_t LongestTheme =
    259 - std::string("ThemeCurrent = ").size() - PlatformLines("\n").size();

TEST_F(CliSettings, TheGreatestNumberAndEveryTextComeBack) {
    ExpectOutput({"settings", "set", "TipFont01Size", "4294967295"}, "");
    ExpectOutput({"settings", "get", "TipFont01Size"}, "4294967295\n");
    ExpectOutput({"settings", "set", "CreateBackups", "0"}, "");
    ExpectOutput({"settings", "get", "CreateBackups"}, "0\n");
    for (const std::string &text :
         {std::string(), std::string("\xC3\x84 = ;[x]"), std::string("blanks behind  "),
          std::string("--no"), std::string(LongestTheme, 'x')}) {
        ExpectOutput({"settings", "set", "--", "ThemeCurrent", text}, "");
        ExpectOutput({"settings", "get", "ThemeCurrent"}, text + "\n");
    }
    // The lines behind a long one are untouched.
    ExpectOutput({"settings", "get", "AuditionCurrentOctave"}, "5\n");
}

TEST_F(CliSettings, AnUnknownKeyIsRefused) {
    const std::string reason = "no such key; settings list shows all";
    ExpectRefused({"settings", "get", "NoSuchKey"}, "NoSuchKey: " + reason);
    ExpectRefused({"settings", "set", "NoSuchKey", "1"}, "NoSuchKey: " + reason);
    ExpectRefused({"settings", "set", "Max", "1"}, "Max: " + reason);
    ExpectRefused({"settings", "set", "maxundolevel", "1"}, "maxundolevel: " + reason);
    ExpectRefused({"settings", "set", "", "1"}, reason);
    ExpectRefused({"settings", "get", "a\nb"}, "a?b: " + reason);
}

TEST_F(CliSettings, AValueThatIsNoNumberIsRefused) {
    for (const std::string value :
         {"", "yes", "7x", " 7", "7 ", "+7", "1.5", "0x10", "4294967296", "99999999999999999999"}) {
        ExpectRefused({"settings", "set", "MaxUndoLevel", value},
                      std::string("MaxUndoLevel: ") + value +
                          " is no whole number from 0 to 4294967295");
    }
    ExpectRefused({"settings", "set", "--", "MaxUndoLevel", "-1"},
                  "MaxUndoLevel: -1 is no whole number from 0 to 4294967295");
    for (const char *value : {"", "yes", "2", "-0", "true"}) {
        ExpectRefused({"settings", "set", "--", "CreateBackups", value},
                      std::string("CreateBackups: ") + value + " is neither 0 nor 1");
    }
}

TEST_F(CliSettings, AKeyThatTheProgramSetsItselfIsRefused) {
    for (const std::string key : {"ApplicationPath", "BuildDate", "PatchLevel", "VersionNumber"}) {
        ExpectRefused({"settings", "set", key, "1"}, key + ": the program sets this key itself");
    }
}

TEST_F(CliSettings, ATextThatWouldNotComeBackIsRefused) {
    ExpectRefused({"settings", "set", "ThemeCurrent", "a\nMaxUndoLevel = 1"},
                  "ThemeCurrent: the value has a control character");
    ExpectRefused({"settings", "set", "ThemeCurrent", " a"},
                  "ThemeCurrent: the value begins with a blank or an equal sign");
    ExpectRefused({"settings", "set", "ThemeCurrent", "=a"},
                  "ThemeCurrent: the value begins with a blank or an equal sign");
    ExpectRefused({"settings", "set", "ThemeCurrent", std::string(LongestTheme + 1, 'x')},
                  "ThemeCurrent: the value has " + std::to_string(LongestTheme + 1) +
                      " bytes, and " + std::to_string(LongestTheme) + " is the limit");
}

TEST_F(CliSettings, AnotherActionOrAWrongNumberOfWordsIsRefused) {
    ExpectRefused({"settings", "delete", "MaxUndoLevel"},
                  "settings: takes list, get or set, not delete");
    ExpectRefused({"settings", "list", "MaxUndoLevel"}, "settings: list has too many arguments");
    ExpectRefused({"settings", "get"}, "settings: get lacks arguments");
    ExpectRefused({"settings", "get", "MaxUndoLevel", "7"}, "settings: get has too many arguments");
    ExpectRefused({"settings", "set", "MaxUndoLevel"}, "settings: set lacks arguments");
}

TEST_F(CliSettings, AFileThatCannotBeWrittenIsToldOf) {
    std::filesystem::create_directories(IniPath()); // a folder in its place
    const auto result = Cli({"settings", "set", "MaxUndoLevel", "7"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + IniPath() + ": could not be written: Is a directory\n");
}

// ---- what the extras change

class CliCareful : public CliHome {
protected:
    void SetUp() override {
        CliHome::SetUp();
        SetVariable("TONEWRIGHT_INSTRUMENTS", "1");
        auto bank = TestRefaceBank();
        bank[160 + 6 * 202 + 16] = 'y'; // the family of voice 7
        in = home.Write("in.srx", bank);
        out = home.WriteText("out.srx", "former");
        voice = home.WriteText("voice.sr1", "former");
        good = home.Write("good.sr1", TestRefaceVoiceFile(0));
    }
    void SwitchOn(bool on) {
        WriteUserFile("Tonewright 17/Extras.ini", on ? "CarefulMode = 1\n" : "CarefulMode = 0\n");
    }
    // A call that ends with that status and with what `reason` says of `path`; empty: nothing.
    static void Expect(const std::vector<std::string> &call, int status, const std::string &path,
                       const std::string &reason) {
        const auto result = Cli(call);
        EXPECT_EQ(result.exitStatus, status) << call.front();
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors,
                  reason.empty() ? "" : "tonewright-cli: " + path + ": " + reason + "\n")
            << call.front();
    }
    const std::string noVoice = "place 7 holds no voice of the Yamaha reface DX";
    std::string in, out, voice, good;
};

TEST_F(CliCareful, LeavesNoVoiceOutOfABank) {
    in = home.Write("in.srx", TestRefaceBank(33));
    SwitchOn(true);
    for (const std::vector<std::string> &call : std::vector<std::vector<std::string>>{
             {"save", in, out}, {"move", in, "1", "2", out}, {"import", in, "1", good, out}}) {
        Expect(call, 1, out, "not written: there are 33 voices, and a bank has 32");
        EXPECT_EQ(ReadTestText(out), "former");
    }
    Expect({"export", in, "33", voice}, 0, "", "");
    SwitchOn(false);
    Expect({"save", in, out}, 0, "", "");
    EXPECT_EQ(ReadTestFile(out).size(), 160u + 32 * 202);
}

TEST_F(CliCareful, CutsNoVoice) {
    auto bank = TestRefaceBank(0);
    bank[24] = 32;  // voices
    bank[28] = 210; // bytes of each, eight more than are written
    for (int number = 0; number < 32; ++number) {
        auto block = TestRefaceBlock(number);
        block.resize(210, 7);
        bank.insert(bank.end(), block.begin(), block.end());
    }
    in = home.Write("in.srx", bank);
    SwitchOn(true);
    Expect({"save", in, out}, 1, out, "not written: place 1 holds more than a file keeps");
    Expect({"export", in, "2", voice}, 1, voice,
           "not written: place 2 holds more than a file keeps");
    EXPECT_EQ(ReadTestText(out), "former");
    EXPECT_EQ(ReadTestText(voice), "former");
    SwitchOn(false);
    Expect({"save", in, out}, 0, "", "");
    EXPECT_EQ(ReadTestFile(out).size(), 160u + 32 * 202);
}

TEST_F(CliCareful, WritesNoVoicesOfAnotherFamily) {
    SwitchOn(true);
    for (const std::vector<std::string> &call : std::vector<std::vector<std::string>>{
             {"save", in, out}, {"move", in, "1", "2", out}, {"import", in, "1", good, out}}) {
        Expect(call, 1, out, "not written: " + noVoice);
        EXPECT_EQ(ReadTestText(out), "former");
        EXPECT_FALSE(home.Holds("Backup of out.srx"));
    }
    Expect({"export", in, "7", voice}, 1, voice, "not written: " + noVoice);
    EXPECT_EQ(ReadTestText(voice), "former");
    Expect({"export", in, "8", voice}, 0, "", "");
    Expect({"import", in, "7", good, out}, 0, "", ""); // it takes the stranger's place
}

TEST_F(CliCareful, WritesThemWithTheModeOff) {
    SwitchOn(false);
    for (const std::vector<std::string> &call : std::vector<std::vector<std::string>>{
             {"save", in, out}, {"move", in, "1", "2", out}, {"import", in, "1", good, out}}) {
        WriteTestText(out, "former");
        Expect(call, 0, "", "");
        EXPECT_EQ(ReadTestFile(out).size(), 160u + 32 * 202);
    }
    Expect({"export", in, "7", voice}, 0, "", "");
    EXPECT_EQ(ReadTestFile(voice).size(), 160u + 202);
}

TEST_F(CliCareful, OptionsGoBeforeTheFile) {
    SwitchOn(false);
    Expect({"save", in, out, "--careful"}, 1, out, "not written: " + noVoice);
    EXPECT_EQ(ReadTestText(out), "former");
    SwitchOn(true);
    Expect({"save", in, out, "--no-careful"}, 0, "", "");
}

TEST_F(CliCareful, SaysThatAVoiceOfAnotherFamilyIsNotSent) {
    const std::string memory = home.File("studio");
    for (const std::vector<std::string> &call :
         std::vector<std::vector<std::string>>{{"upload-voice", in, "7", "--memory", memory},
                                               {"play", in, "7", "60", "--memory", memory}}) {
        SwitchOn(false);
        Expect(call, 1, in, "place 7 holds no whole voice");
        SwitchOn(true);
        Expect(call, 1, in, "not sent: " + noVoice);
        EXPECT_FALSE(home.Holds("studio"));
    }
    Expect({"upload-voice", in, "8", "--memory", memory}, 0, "", "");
    EXPECT_TRUE(home.Holds("studio"));
}

// ---- history

using CliHistory = CliHome;

TEST_F(CliHistory, WithoutAFileItPrintsNothing) {
    ExpectOutput({"history"}, "");
    EXPECT_FALSE(home.Holds(".config/Quillbrook"));
}

TEST_F(CliHistory, PrintsPathPinAndTimeInTheOrderOfTheMenu) {
    WriteUserFile("Tonewright 17/FileMenuHistory.txt", "/a/old.syx,100\n"
                                                       "/a/pinned old.syx/P,50\n"
                                                       "/a/new.syx,1700000000\r\n"
                                                       "/a/pinned.syx/P,60\n"
                                                       "/a/late.syx,-294967296");
    ExpectOutput({"history"}, "/a/pinned.syx\tyes\t60\n"
                              "/a/pinned old.syx\tyes\t50\n"
                              "/a/late.syx\tno\t4000000000\n"
                              "/a/new.syx\tno\t1700000000\n"
                              "/a/old.syx\tno\t100\n");
}

TEST_F(CliHistory, ReadsAFileThatIsNamed) {
    const std::string file = home.WriteText("other.txt", "/b/x.syx,5\n");
    ExpectOutput({"history", "--file", file}, "/b/x.syx\tno\t5\n");
    ExpectOutput({"history", "--file=" + file}, "/b/x.syx\tno\t5\n");
}

TEST_F(CliHistory, AFileThatIsNamedAndCannotBeReadIsAFailure) {
    const auto result = Cli({"history", "--file", home.File("missing.txt")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "tonewright-cli: " + home.File("missing.txt") +
                                 ": not readable: No such file or directory\n");
    EXPECT_EQ(Cli({"history", "--file", home.path.string()}).exitStatus, 1);
}

TEST_F(CliHistory, GarbageGivesWholeRecords) {
    const std::string file = home.WriteText("garbage.txt", std::string("\0\n,,\na\tb,1\n", 11) +
                                                               std::string(1000, 'x') + ",7\n");
    const auto result = Cli({"history", "--file", file});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_TRUE(Contains(result.output, "a?b\tno\t1\n"));
    EXPECT_EQ(std::ranges::count(result.output, '\t'), 2 * std::ranges::count(result.output, '\n'));
}

} // namespace
} // namespace tonewright
