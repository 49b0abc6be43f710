// The commands for the settings of a reface DX, with the built-in instrument and real files.
#include "midi_home.h"

#include <algorithm>

namespace tonewright {
namespace {

using Words = std::vector<std::string>;

// What the instrument has from the factory: transmit channel 1, receive all, 440.0 Hz, local
// control, transpose 0, tempo 120, contrast 32, pedal FC3, auto power off, speaker, MIDI control.
const Bytes Factory = {0, 16, 0, 4, 0, 0, 1, 64, 0, 0x78, 32, 0, 1, 1, 1};
constexpr const char *FactoryLines = "transmitChannel\tChannel 1\n"
                                     "receiveChannel\tAll\n"
                                     "masterTune\t440.0\n"
                                     "localControl\ton\n"
                                     "transpose\t0\n"
                                     "tempo\t120\n"
                                     "lcdContrast\t32\n"
                                     "sustainPedal\tYamaha FC3\n"
                                     "powerAutoOff\ton\n"
                                     "speaker\ton\n"
                                     "midiControl\ton\n";
constexpr const char *FirstLine = ";Quillbrook Tonewright - reface DX configuration\n";
const std::string NoAnswer =
    "tonewright-cli: Yamaha reface DX: did not answer as this instrument does\n";

class CliRefaceSettings : public CliMidi {
protected:
    Words Call(const char *action, Words words, const Words &options = {}) const {
        words.insert(words.begin(), {"reface-settings", action});
        words.insert(words.end(), {"--memory", Memory()});
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    // The 15 bytes that the instrument holds, and what stands behind them.
    Bytes Held() const { return Part(ReadTestFile(Memory()), RefaceSystemOffset, 15); }
    Bytes HeldBehind() const { return Part(ReadTestFile(Memory()), RefaceSystemOffset + 15, 17); }
    std::string Crg(const std::string &lines) const {
        return folder.WriteText("a.crg", FirstLine + lines);
    }
    // All keys of a file, with these numbers.
    static std::string Keys(const Bytes &numbers) {
        const char *const keys[] = {"TransCh",     "RcvCh",       "MasterTune0",  "MasterTune1",
                                    "MasterTune2", "MasterTune3", "LocalCtrl",    "Transpose",
                                    "Tempo0",      "Tempo1",      "LCDConstrast", "Sustain",
                                    "AutoPower",   "Speaker",     "MIDICtrl"};
        std::string text;
        for (std::size_t n = 0; n < numbers.size(); ++n) {
            text += std::string(keys[n]) + ":" + std::to_string(numbers[n]) + "\n";
        }
        return text;
    }
};

TEST_F(CliRefaceSettings, GetPrintsAllOrThoseThatAreNamed) {
    ExpectOutput({"reface-settings", "get"}, FactoryLines);
    ExpectOutput({"reface-settings", "get", "tempo"}, "tempo\t120\n");
    ExpectOutput({"reface-settings", "get", "speaker", "masterTune", "speaker"},
                 "speaker\ton\nmasterTune\t440.0\nspeaker\ton\n");
    ExpectOutput({"reface-settings", "get", "tempo", "--in", "Built-in reface DX"}, "tempo\t120\n");
}

TEST_F(CliRefaceSettings, SetChangesWhatIsNamedAndGetTellsIt) {
    ExpectDone(Call("set", {"transmitChannel=off", "receiveChannel=channel 5", "masterTune=442.0",
                            "localControl=OFF", "transpose=-12", "tempo=255", "lcdContrast=63",
                            "sustainPedal=yamaha fc4/5", "powerAutoOff=no", "speaker=0",
                            "midiControl=off"}));
    // 442.0 Hz are 1024 + 78.5 tenths of a cent, rounded to 1103: 0x44F. 255 is 1 * 128 + 127.
    EXPECT_EQ(Held(), (Bytes{127, 4, 0, 4, 4, 15, 0, 52, 1, 127, 63, 1, 0, 0, 0}));
    ExpectOutput(Call("get", {}), "transmitChannel\tOff\n"
                                  "receiveChannel\tChannel 5\n"
                                  "masterTune\t442.0\n"
                                  "localControl\toff\n"
                                  "transpose\t-12\n"
                                  "tempo\t255\n"
                                  "lcdContrast\t63\n"
                                  "sustainPedal\tYamaha FC4/5\n"
                                  "powerAutoOff\toff\n"
                                  "speaker\toff\n"
                                  "midiControl\toff\n");
    ExpectDone(Call("set", {"tempo=30"}));
    EXPECT_EQ(Held(), (Bytes{127, 4, 0, 4, 4, 15, 0, 52, 0, 30, 63, 1, 0, 0, 0}));
}

TEST_F(CliRefaceSettings, SetTakesWhatGetPrintedAndKeepsTheBytesThatItDoesNotName) {
    ExpectDone(Call("set", {"tempo=120"}));
    EXPECT_EQ(Held(), Factory);
    Words lines;
    std::istringstream stream(FactoryLines);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    ExpectDone(Call("set", lines));
    EXPECT_EQ(Held(), Factory);
    // A tuning of 1025, which is shown as 440.0 too, stays unless it is named.
    ExpectDone(Call("load", {Crg(Keys({3, 2, 0, 4, 0, 1, 1, 70, 2, 1, 9, 0, 1, 1, 1}))}));
    ExpectDone(Call("set", {"speaker=off"}));
    EXPECT_EQ(Held(), (Bytes{3, 2, 0, 4, 0, 1, 1, 70, 2, 1, 9, 0, 1, 0, 1}));
}

TEST_F(CliRefaceSettings, WhatStandsBehindTheSettingsIsNeitherSentNorCompared) {
    ExpectDone(Call("set", {"tempo=120"}));
    Bytes studio = ReadTestFile(Memory());
    std::fill_n(studio.begin() + static_cast<std::ptrdiff_t>(RefaceSystemOffset + 15), 17,
                std::uint8_t{0x55});
    FixMemoryCheck(studio);
    WriteTestFile(Memory(), studio);
    ExpectDone(Call("load", {Crg(Keys({3, 2, 0, 4, 0, 1, 1, 70, 1, 1, 9, 0, 1, 1, 1}))}));
    ExpectDone(Call("set", {"tempo=131"}));
    EXPECT_EQ(Held(), (Bytes{3, 2, 0, 4, 0, 1, 1, 70, 1, 3, 9, 0, 1, 1, 1}));
    EXPECT_EQ(HeldBehind(), Bytes(17, 0x55));
}

TEST_F(CliRefaceSettings, TheTraceShowsReadingWritingAndReadingAgain) {
    const auto result = Cli({"reface-settings", "set", "tempo=131", "speaker=off", "--trace"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "");
    const std::string request = "out\tF0 43 20 7F 1C 05 00 00 00 F7";
    const std::string frame = "F0 43 10 7F 1C 05 00 00 ";
    const auto dump = [](Bytes system) {
        Bytes counted = {5, 0, 0, 0};
        system.resize(32, 0);
        counted.insert(counted.end(), system.begin(), system.end());
        Bytes message = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x24};
        message.insert(message.end(), counted.begin(), counted.end());
        message.push_back(TestChecksum(counted));
        message.push_back(0xF7);
        return "in\t" + HexOf(message);
    };
    Bytes after = Factory;
    after[8] = 1;
    after[9] = 3;
    after[13] = 0;
    EXPECT_EQ(
        MessagesOf(result.errors),
        (Words{"out\tF0 7E 00 06 01 F7", "in\tF0 7E 7F 06 02 43 00 41 53 06 02 00 00 7F F7",
               request, dump(Factory), "out\t" + frame + "00 00 F7", "out\t" + frame + "01 10 F7",
               "out\t" + frame + "02 00 04 00 00 F7", "out\t" + frame + "06 01 F7",
               "out\t" + frame + "07 40 F7", "out\t" + frame + "08 01 03 F7",
               "out\t" + frame + "0A 20 F7", "out\t" + frame + "0B 00 F7",
               "out\t" + frame + "0C 01 F7", "out\t" + frame + "0D 00 F7",
               "out\t" + frame + "0E 01 F7", request, dump(after)}));
}

TEST_F(CliRefaceSettings, WhatCannotBeKeptIsRefusedAndNothingIsSent) {
    const std::string there = "; there are: transmitChannel, receiveChannel, masterTune, "
                              "localControl, transpose, tempo, lcdContrast, sustainPedal, "
                              "powerAutoOff, speaker, midiControl";
    struct Case {
        Words words;
        std::string reason;
    };
    const Case cases[] = {
        {{"set", "tempo=256"}, "tempo: 256 cannot be kept: it would become 0"},
        {{"set", "tempo=300"}, "tempo: 300 cannot be kept: it would become 44"},
        {{"set", "tempo=29"}, "tempo: 29 is no whole number from 30 to 300"},
        {{"set", "tempo=120.0"}, "tempo: 120.0 is no whole number from 30 to 300"},
        {{"set", "tempo=120\r"}, "tempo: 120? is no whole number from 30 to 300"},
        {{"set", "masterTune=440.1"}, "masterTune: 440.1 cannot be kept: it would become 440.0"},
        {{"set", "masterTune=440.05"}, "masterTune: 440.05 is no number of Hz with one decimal"},
        {{"set", "masterTune=414.6"}, "masterTune: 414.6 is no number from 414.8 to 466.8"},
        {{"set", "transpose=13"}, "transpose: 13 is no whole number from -12 to 12"},
        {{"set", "lcdContrast=64"}, "lcdContrast: 64 is no whole number from 0 to 63"},
        {{"set", "speaker=loud"}, "speaker: loud is neither on nor off"},
        {{"set", "speaker="}, "speaker: an empty text is neither on nor off"},
        // The number that get prints of a list that has no word for it; channels count from 1.
        {{"set", "sustainPedal=100"}, "sustainPedal: 100 is none of Yamaha FC3; Yamaha FC4/5"},
        {{"set", "sustainPedal=1"}, "sustainPedal: 1 is none of Yamaha FC3; Yamaha FC4/5"},
        {{"set", "speaker"}, "speaker: not KEY=VALUE"},
        {{"set", "Speaker=on"}, "Speaker: no such setting" + there},
        {{"set", "=on"}, "no such setting" + there},
        {{"set", "speaker=on", "tempo=20"}, "tempo: 20 is no whole number from 30 to 300"},
        {{"set", "speaker=on", "speaker=on"}, "speaker: given more than once"},
        {{"get", "speaker", "volume"}, "volume: no such setting" + there},
        {{"get", "speaker", ""}, "no such setting" + there},
        {{"get", "--synth", "DX7"}, std::string(Dx7Name) + ": its own settings are not known"},
        {{"set", "tempo=100", "--synth", "volca"},
         std::string(Dx7Name) + ": its own settings are not known"},
        {{"get", "--synth", "nothing"},
         "nothing: no such instrument; there are: Yamaha DX7, TX7, Korg Volca FM; Yamaha reface "
         "DX"},
        {{"get", "--channel", "17"}, "17: not a MIDI channel: a number from 1 to 16 is"},
        {{"save", folder.File("a.txt")},
         folder.File("a.txt") + ": the extension of the file to write must be \"crg\""},
    };
    for (const Case &value : cases) {
        Words words = value.words;
        words.insert(words.begin(), "reface-settings");
        words.insert(words.end(), {"--trace", "--memory", Memory()});
        ExpectFailure(words, value.reason, 2);
    }
    EXPECT_FALSE(folder.Holds("studio"));
    EXPECT_FALSE(folder.Holds("a.txt"));
    ExpectOutput({"reface-settings", "get", "tempo", "--synth", "reface"}, "tempo\t120\n");
}

TEST_F(CliRefaceSettings, SaveAndLoadCarryAllSettingsToAnotherInstrument) {
    const std::string file = folder.File("mine.CRG");
    ExpectDone(Call("set", {"transmitChannel=Channel 16", "masterTune=414.8", "tempo=200",
                            "transpose=12", "sustainPedal=Yamaha FC4/5"}));
    const Bytes former = Held();
    ExpectDone(Call("save", {file}));
    const std::string text = ReadTestText(file);
    EXPECT_TRUE(text.starts_with(FirstLine)) << text;
    EXPECT_TRUE(text.ends_with("\n" + Keys(former))) << text;
    std::filesystem::remove(Memory());
    ExpectDone(Call("load", {file}));
    EXPECT_EQ(Held(), former);
    EXPECT_EQ(former, (Bytes{15, 16, 0, 0, 0, 3, 1, 76, 1, 72, 32, 1, 1, 1, 1}));
}

TEST_F(CliRefaceSettings, SaveKeepsTheFileThatItReplaces) {
    const std::string file = folder.WriteText("a.crg", "former");
    ExpectDone({"reface-settings", "save", file});
    EXPECT_EQ(ReadTestText(folder.File("Backup of a.crg")), "former");
    EXPECT_TRUE(ReadTestText(file).starts_with(FirstLine));
    std::filesystem::remove(folder.File("Backup of a.crg"));
    std::filesystem::create_directory(folder.File("Backup of a.crg"));
    folder.WriteText("a.crg", "former");
    const auto result = Cli({"reface-settings", "save", file});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.ends_with(" [y/n] no\ntonewright-cli: " + file +
                                        ": not written, as answered\n"))
        << result.errors;
    EXPECT_EQ(ReadTestText(file), "former");
}

TEST_F(CliRefaceSettings, SaveSaysWhyTheFileCannotBeWritten) {
    const std::string none = folder.File("none/a.crg");
    ExpectFailure({"reface-settings", "save", none},
                  none + ": could not be written: No such file or directory");
    const std::string longer = folder.FileOfSize(261, "a.crg");
    ExpectFailure({"reface-settings", "save", longer},
                  longer + ": could not be written: File name too long");
    std::filesystem::create_directory(folder.File("b.crg"));
    EXPECT_EQ(Cli({"reface-settings", "save", folder.File("b.crg"), "--yes"}).exitStatus, 1);
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("b.crg")));
}

TEST_F(CliRefaceSettings, LoadAsksBeforeAFileWithMissingKeysIsSent) {
    const std::string file = Crg("; mine\r\ntempo0:1\r\nTEMPO1: 7\r\nRcvCh:16\r\n");
    const std::string question =
        "The document a.crg does not tell all settings. These would be sent as zero: TransCh, "
        "MasterTune0, MasterTune1, MasterTune2, MasterTune3, LocalCtrl, Transpose, LCDConstrast, "
        "Sustain, AutoPower, Speaker, MIDICtrl.\n\nDo you wish to send it anyway? [y/n] ";
    for (const Words &options : {Words{}, Words{"--no"}}) {
        const auto result = Cli(Call("load", {file, "--trace"}, options));
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.errors,
                  question + "no\ntonewright-cli: " + file + ": not sent, as answered\n");
        EXPECT_FALSE(folder.Holds("studio"));
    }
    // Zeros are what is sent; as a transpose the instrument takes none.
    const auto result = Cli(Call("load", {file}, {"--yes"}));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors,
              question + "yes\ntonewright-cli: Yamaha reface DX: has other settings than those "
                         "that were sent: transpose is 0\n");
    EXPECT_EQ(Held(), (Bytes{0, 16, 0, 0, 0, 0, 0, 64, 1, 7, 0, 0, 0, 0, 0}));
}

TEST_F(CliRefaceSettings, LoadRefusesWhatIsNoFileOfSettings) {
    const std::string missing = folder.File("none.crg");
    const std::string bank = folder.Write("bank.crg", TestRefaceBank());
    const auto expect = [&](const std::string &file, const std::string &reason) {
        ExpectFailure(Call("load", {file, "--trace", "--yes"}), file + ": " + reason);
    };
    expect(missing, "not readable: No such file or directory");
    expect(bank, "not a file of settings of the Yamaha reface DX");
    EXPECT_EQ(Cli(Call("load", {folder.path.string(), "--yes"})).exitStatus, 1);
    // A file without a line is one of zeros, and asked about.
    const std::string empty = folder.WriteText("empty.crg", "");
    const auto result = Cli(Call("load", {empty}));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.errors.starts_with("The document empty.crg does not tell all settings."));
    EXPECT_FALSE(folder.Holds("studio"));
}

TEST_F(CliRefaceSettings, LoadAsksBeforeNumbersAreSentThatNoMessageCarries) {
    const std::string question =
        "The document a.crg holds numbers above 127, which a MIDI message cannot carry.\n\nDo you "
        "wish to send it anyway? [y/n] ";
    const std::string file = Crg(Keys({0, 200, 0, 4, 0, 0, 1, 64, 0, 0x79, 32, 0, 1, 1, 1}));
    for (const Words &options : {Words{}, Words{"--no"}}) {
        const auto result = Cli(Call("load", {file, "--trace"}, options));
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.errors,
                  question + "no\ntonewright-cli: " + file + ": not sent, as answered\n");
        EXPECT_FALSE(folder.Holds("studio"));
    }
    // The number goes out, the instrument does not take it, and the rest is there.
    auto result = Cli(Call("load", {file, "--trace"}, {"--yes"}));
    EXPECT_NE(result.errors.find("\tF0 43 10 7F 1C 05 00 00 01 C8 F7\n"), std::string::npos)
        << result.errors;
    EXPECT_EQ(Held(), (Bytes{0, 16, 0, 4, 0, 0, 1, 64, 0, 0x79, 32, 0, 1, 1, 1}));
    result = Cli(Call("load", {file}, {"--yes"}));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, question + "yes\ntonewright-cli: Yamaha reface DX: has other settings "
                                        "than those that were sent: receiveChannel is All\n");
    // Both questions, and the second one is asked after a yes only.
    const std::string some = Crg("RcvCh:200\n");
    result = Cli(Call("load", {some}, {"--no"}));
    EXPECT_EQ(result.errors.find(question), std::string::npos);
    result = Cli(Call("load", {some}, {"--yes"}));
    EXPECT_NE(result.errors.find("[y/n] yes\n" + question + "yes\n"), std::string::npos)
        << result.errors;
}

TEST_F(CliRefaceSettings, SettingsThatTheInstrumentDoesNotTakeAreToldOf) {
    // Channel 21, and a tempo above 300.
    const std::string file = Crg(Keys({20, 16, 0, 4, 0, 0, 1, 64, 127, 127, 5, 0, 1, 1, 1}));
    ExpectFailure(Call("load", {file}),
                  "Yamaha reface DX: has other settings than those that were sent: "
                  "transmitChannel is Channel 1, tempo is 120");
    EXPECT_EQ(Held(), (Bytes{0, 16, 0, 4, 0, 0, 1, 64, 0, 0x78, 5, 0, 1, 1, 1}));
}

TEST_F(CliRefaceSettings, AnInstrumentThatDoesNotAnswerIsToldOf) {
    WriteSettings("SysexWait = 200\n");
    const std::string out = folder.WriteText("a.crg", "former");
    const std::string file = folder.WriteText("full.crg", FirstLine + Keys(Factory));
    for (Words words : {Words{"get"}, {"set", "tempo=100"}, {"save", out}, {"load", file}}) {
        words.insert(words.begin(), "reface-settings");
        words.insert(words.end(), {"--in", "Built-in reface", "--out", "Built-in DX7"});
        const auto result = Cli(words);
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, NoAnswer);
    }
    WriteSettings("SysexWait = 0\n");
    ExpectFailure({"reface-settings", "get"},
                  "Yamaha reface DX: no device: there are ports of its name, and no answer");
    EXPECT_EQ(ReadTestText(out), "former");
    EXPECT_FALSE(folder.Holds("Backup of a.crg"));
}

TEST_F(CliRefaceSettings, WithoutPortsNothingIsDone) {
    RemoveVariable("TONEWRIGHT_INSTRUMENTS");
    const std::string out = folder.File("a.crg");
    const std::string file = folder.WriteText("full.crg", FirstLine + Keys(Factory));
    for (Words words : {Words{"get"}, {"set", "tempo=100"}, {"save", out}, {"load", file}}) {
        words.insert(words.begin(), "reface-settings");
        ExpectFailure(words, "Yamaha reface DX: no device: there are no MIDI ports of its name");
    }
    EXPECT_FALSE(folder.Holds("a.crg"));
}

TEST_F(CliRefaceSettings, FindSendsNoSettings) {
    // Where the window program looks for it: the folder of the catalogues.
    std::filesystem::create_directories(folder.path / "Documents/My Tonewright 17 Documents");
    WriteTestText(folder.File("Documents/My Tonewright 17 Documents/AutoConfig.crg"),
                  FirstLine + Keys(Factory));
    WriteTestFile(folder.File("Documents/My Tonewright 17 Documents/Here.syx_db"), {});
    EXPECT_TRUE(Cli({"db", "names"}).output.starts_with("Here\t"));
    const auto result = Cli({"find", "--synth", "reface", "--trace"});
    EXPECT_EQ(MessagesOf(result.errors).size(), 2u) << result.errors;
}

TEST_F(CliRefaceSettings, TheHelpOfTheGroupNamesItsCommands) {
    const std::string help = Cli({"reface-settings", "--help"}).output;
    for (const char *call : {"reface-settings get [KEY...]", "reface-settings set KEY=VALUE...",
                             "reface-settings save OUT.crg", "reface-settings load FILE.crg"}) {
        EXPECT_NE(help.find(call), std::string::npos) << call;
    }
    const std::string save = Cli({"reface-settings", "save", "--help"}).output;
    EXPECT_NE(
        save.find("  --careful                     careful mode: lose no voice and no former"),
        std::string::npos)
        << save;
    EXPECT_NE(Cli({"reface-settings", "set", "--help"}).output.find("\nNames and values are those"),
              std::string::npos);
    EXPECT_NE(Cli({"reface-settings", "load", "--help"}).output.find("numbers above 127"),
              std::string::npos);
    EXPECT_EQ(Cli({"reface-settings"}).exitStatus, 2);
    EXPECT_EQ(Cli({"reface-settings", "show"}).exitStatus, 2);
}

} // namespace
} // namespace tonewright
