// How the settings of a reface DX are read, shown, sent and kept, and sent again after a search.
#include "core/dispatch.h"
#include "drivers/reface_dx/configure.h"
#include "support/builtin_midi.h"
#include "support/program_texts.h"
#include "support/temp_folder.h"
#include "transfer_fixture.h"

#include "common/folders.h"

namespace tonewright {
namespace {

const Calls Opened = {"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)"};
const Calls Closed = {"Pt_Stop()", "Pm_Close(1)", "Pm_Close(0)"};
const Calls Asked = {"Pm_WriteSysEx(1, 0, F0 43 20 7F 1C 05 00 00 00 F7)"};
const Calls Sent = {
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 00 03 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 01 10 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 02 07 04 0E 08 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 06 01 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 07 43 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 08 00 5A F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0A 21 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0B 02 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0C 05 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0D 06 F7)",
    "Pm_WriteSysEx(1, 0, F0 43 10 7F 1C 05 00 00 0E 09 F7)",
};

// ---- with the box

struct ConfiguredReface : RefaceTransferTest {
    int boxes = 0;
    bool accepts = true;
    SynthConfigBlock shown;
    Calls callsInBox;
    std::function<void(SynthConfigBlock &)> change;

    int Configure(MidiPorts ports) {
        return ConfigureReface(nullptr, ports, [this](QWidget *, SynthConfigBlock &block) {
            ++boxes;
            shown = block;
            midi.calls.push_back("box");
            midi.recordEverything = true;
            if (change) {
                change(block);
            }
            midi.recordEverything = false;
            return accepts;
        });
    }
    int Configure() { return Configure({in, out}); }
};

TEST_F(ConfiguredReface, IsReadShownAndWrittenOverOneLink) {
    EXPECT_EQ(Configure(), 1);
    EXPECT_EQ(midi.calls, Opened + Asked + Calls{"box"} + Sent + Closed);
    EXPECT_EQ(shown.driverId, RefaceDriverId);
    EXPECT_EQ(shown.midiIn, in);
    EXPECT_EQ(shown.midiOut, out);
    EXPECT_EQ(Bytes(shown.system.begin(), shown.system.end()), Hex(Settings));
}

TEST_F(ConfiguredReface, GetsNothingAfterCancel) {
    accepts = false;
    change = [](SynthConfigBlock &block) { block.system.fill(1); };
    EXPECT_EQ(Configure(), 1);
    EXPECT_EQ(midi.calls, Opened + Asked + Calls{"box"} + Closed);
}

TEST_F(ConfiguredReface, GetsWhatTheUserChangedAndNothingBehindIndex14) {
    change = [](SynthConfigBlock &block) { block.system.fill(1); };
    EXPECT_EQ(Configure(), 1);
    EXPECT_EQ(traffic.back(), "> F0 43 10 7F 1C 05 00 00 0E 01 F7");
    EXPECT_EQ(traffic[4], "> F0 43 10 7F 1C 05 00 00 02 01 01 01 01 F7");
    EXPECT_EQ(traffic.size(), 2u + 11u);
}

TEST_F(ConfiguredReface, ThatIsSilentGetsNoBoxButAMessage) {
    answersSettings = false;
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(Configure(), 0);
    EXPECT_EQ(boxes, 0);
    EXPECT_EQ(midi.calls, Opened + Asked + Calls{"message"} + Closed);
    EXPECT_EQ(midi.now, 1500);
}

TEST_F(ConfiguredReface, ThatAnswersSomethingElseFirstGetsNoBoxButAMessage) {
    midi.Send(in, {0x90, 0x3C, 0x40, 0xF7});
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(Configure(), 0);
    EXPECT_EQ(boxes, 0);
}

TEST_F(ConfiguredReface, WithAPortThatDoesNotOpenIsLeftAloneWithoutAMessage) {
    for (const int port : {in, out}) {
        midi.devices[static_cast<std::size_t>(port)].opens = false;
        EXPECT_EQ(Configure(), 0);
        midi.devices[static_cast<std::size_t>(port)].opens = true;
    }
    EXPECT_EQ(Configure({NoMidiDevice, NoMidiDevice}), 0);
    EXPECT_EQ(boxes, 0);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(ConfiguredReface, WhoseWritesFailGetsTheOthersAndNothingIsSaid) {
    midi.failingWrites = {1, 3, 11};
    EXPECT_EQ(Configure(), 1);
    EXPECT_EQ(midi.writes, 12);
    EXPECT_EQ(midi.WrittenBytes().size(), 9u);
}

TEST_F(ConfiguredReface, UnpluggedWhileTheBoxStandsClosesTheLinkAndNothingIsSaid) {
    change = [this](SynthConfigBlock &) { midi.allWritesFail = true; };
    EXPECT_EQ(Configure(), 1);
    EXPECT_EQ(midi.calls, Opened + Asked + Calls{"box"} + Sent + Closed);
}

TEST_F(ConfiguredReface, GetsAByteAbove127AsItStandsInWholeMessages) {
    change = [](SynthConfigBlock &block) {
        block.system[0] = 0xF7;
        block.system[1] = 0xFF;
        block.system[3] = 0xF7;
        block.system[8] = 0x80;
    };
    EXPECT_EQ(Configure(), 1);
    const std::vector<Bytes> sent = midi.WrittenBytes();
    ASSERT_EQ(sent.size(), 12u);
    EXPECT_EQ(HexText(sent[1]), "F0 43 10 7F 1C 05 00 00 00 F7") << "cut behind the first end";
    EXPECT_EQ(HexText(sent[2]), "F0 43 10 7F 1C 05 00 00 01 FF F7");
    EXPECT_EQ(HexText(sent[3]), "F0 43 10 7F 1C 05 00 00 02 07 F7");
    EXPECT_EQ(HexText(sent[6]), "F0 43 10 7F 1C 05 00 00 08 80 5A F7");
}

// ---- "Save As..." and "Open..."

struct KeptSettings : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    SynthConfigBlock block{.driverId = RefaceDriverId, .midiIn = 0, .midiOut = 1};
    int collections = 0;

    void ExpectDialog(FileDialogKind kind, const std::string &start,
                      std::optional<std::string> answer, std::uint32_t driver = RefaceDriverId) {
        desktop.Expect(ExpectedFileDialog{
            .kind = kind, .answer = std::move(answer), .start = start, .driverId = driver});
    }
    void Save() {
        SaveRefaceSettings(nullptr, block, [this] {
            ++collections;
            block.system[0] = 7;
        });
    }
    bool Open() { return OpenRefaceSettings(nullptr, block); }
};

TEST_F(KeptSettings, AreSavedUnderTheChosenNameAndSoIsTheConfiguration) {
    OpenExportPath = "";
    ExpectDialog(FileDialogKind::SaveExtra, "Untitled.crg", folder.File("mine.crg"));
    Save();
    EXPECT_EQ(collections, 1);
    EXPECT_NE(ReadTestText(folder.File("mine.crg")).find("\nTransCh:7\n"), std::string::npos);
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_EQ(desktop.configurationsSaved, 1);
}

TEST_F(KeptSettings, StartInTheFolderOfTheLastOneWithASeparatorBehindIt) {
    OpenExportPath = folder.path.string();
    ExpectDialog(FileDialogKind::SaveExtra, folder.File("Untitled.crg"), std::nullopt);
    Save();
    ExpectDialog(FileDialogKind::Extra, folder.Folder(), std::nullopt);
    EXPECT_FALSE(Open());
    OpenExportPath = folder.Folder();
    ExpectDialog(FileDialogKind::SaveExtra, folder.File("Untitled.crg"), std::nullopt);
    Save();
}

TEST_F(KeptSettings, ChangeNothingWhenTheUserCancels) {
    OpenExportPath = "kept/";
    block.system.fill(9);
    const auto former = block.system;
    ExpectDialog(FileDialogKind::SaveExtra, "kept/Untitled.crg", std::nullopt);
    Save();
    ExpectDialog(FileDialogKind::Extra, "kept/", std::nullopt);
    EXPECT_FALSE(Open());
    EXPECT_EQ(collections, 0);
    EXPECT_EQ(block.system, former);
    EXPECT_EQ(OpenExportPath, "kept/");
    EXPECT_EQ(desktop.configurationsSaved, 0);
}

TEST_F(KeptSettings, AreBackedUpBeforeTheControlsAreCollected) {
    CreateBackups = 1;
    folder.WriteText("mine.crg", "former");
    std::filesystem::create_directory(folder.path / "Backup of mine.crg");
    ExpectDialog(FileDialogKind::SaveExtra, OpenExportPath + "Untitled.crg",
                 folder.File("mine.crg"));
    desktop.Expect(ExpectedMessage{.text = BackupQuestion,
                                   .buttons = {"Yes", "No"},
                                   .answer = ResultYes,
                                   .during = [this](MessageRequest &) {
                                       EXPECT_EQ(collections, 0);
                                       EXPECT_EQ(OpenExportPath, folder.Folder());
                                   }});
    Save();
    EXPECT_EQ(collections, 1);
    EXPECT_EQ(ReadTestText(folder.File("mine.crg")).substr(0, CrgFirstLine.size()), CrgFirstLine);
}

TEST_F(KeptSettings, StayAsTheyAreWhenTheUserWantsNoSaveWithoutBackup) {
    CreateBackups = 1;
    folder.WriteText("mine.crg", "former");
    std::filesystem::create_directory(folder.path / "Backup of mine.crg");
    for (const int answer : {ResultNo, ResultCancel}) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = folder.File("mine.crg")});
        desktop.ExpectYesNo(BackupQuestion, answer);
        Save();
    }
    EXPECT_EQ(collections, 0);
    EXPECT_EQ(ReadTestText(folder.File("mine.crg")), "former");
    EXPECT_EQ(desktop.configurationsSaved, 0);
}

TEST_F(KeptSettings, HaveABackupOfTheFormerFile) {
    CreateBackups = 1;
    folder.WriteText("mine.crg", "former");
    desktop.Expect(
        ExpectedFileDialog{.kind = FileDialogKind::SaveExtra, .answer = folder.File("mine.crg")});
    Save();
    EXPECT_EQ(ReadTestText(folder.File("Backup of mine.crg")), "former");
}

TEST_F(KeptSettings, ThatCannotBeWrittenAreCollectedAllTheSame) {
    ExpectDialog(FileDialogKind::SaveExtra, OpenExportPath + "Untitled.crg",
                 folder.File("none/mine.crg"));
    desktop.ExpectMessage(NoSuchText);
    Save();
    EXPECT_EQ(block.system[0], 7);
    EXPECT_EQ(desktop.configurationsSaved, 0);
}

TEST_F(KeptSettings, OfAPathThatIsTooLongAreNeitherSavedNorOpened) {
    OpenExportPath = "kept/";
    const std::string path = folder.FileOfSize(261, "mine.crg");
    ExpectDialog(FileDialogKind::SaveExtra, "kept/Untitled.crg", path);
    desktop.ExpectMessage(NoSuchText);
    Save();
    EXPECT_FALSE(std::filesystem::exists(path));
    WriteTestText(path, CrgFirstLine + "RcvCh:5\n");
    ExpectDialog(FileDialogKind::Extra, "kept/", path);
    desktop.ExpectMessage(NoSuchText);
    EXPECT_TRUE(Open());
    EXPECT_EQ(block.system[1], 0);
    EXPECT_EQ(OpenExportPath, "kept/");
}

TEST_F(KeptSettings, AreOpenedAndTheConfigurationIsSaved) {
    OpenExportPath = "";
    ExpectDialog(FileDialogKind::Extra, "",
                 folder.WriteText("mine.crg", CrgFirstLine + "RcvCh:5\n"));
    EXPECT_TRUE(Open());
    EXPECT_EQ(block.system[1], 5);
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_EQ(desktop.configurationsSaved, 1);
}

TEST_F(KeptSettings, OfABadFileAreZerosAfterTheMessage) {
    block.system.fill(9);
    ExpectDialog(FileDialogKind::Extra, OpenExportPath, folder.WriteText("bad.crg", "no settings"));
    desktop.ExpectMessage(NoSuchText);
    EXPECT_TRUE(Open());
    EXPECT_EQ(block.system, (std::array<std::uint8_t, RefaceSystemSize>{}));
    EXPECT_EQ(OpenExportPath, folder.Folder());
    EXPECT_EQ(desktop.configurationsSaved, 0);
}

TEST_F(KeptSettings, BelongToNoDriverAfterAnyOpen) {
    OpenExportPath = folder.Folder();
    const std::string path = folder.WriteText("mine.crg", CrgFirstLine);
    ExpectDialog(FileDialogKind::Extra, folder.Folder(), path);
    EXPECT_TRUE(Open());
    ExpectDialog(FileDialogKind::SaveExtra, folder.File("Untitled.Twl"), std::nullopt, 0);
    Save();
    ExpectDialog(FileDialogKind::Extra, folder.Folder(), std::nullopt, 0);
    EXPECT_FALSE(Open());
}

// ---- AutoConfig.crg

struct AutoConfiguredReface : RefaceTransferTest {
    TempFolder home;
    const std::string documents = home.Folder();

    AutoConfiguredReface() {
        PlatformFolders.documents = documents;
        std::filesystem::create_directory(home.path / "My Tonewright 17 Documents");
    }
    void Write(const std::string &text) {
        WriteTestText(home.File("My Tonewright 17 Documents/AutoConfig.crg"), text);
    }
    int AutoConfigure() { return RefaceAutoConfigure(nullptr, out); }
};

TEST_F(AutoConfiguredReface, GetsTheSettingsOfTheFileOverAnOutputAlone) {
    Write(CrgFirstLine + "TransCh:3\nRcvCh:16\nMasterTune0:7\nMasterTune1:4\nMasterTune2:14\n"
                         "MasterTune3:8\nLocalCtrl:1\nTranspose:67\nTempo0:0\nTempo1:90\n"
                         "LCDConstrast:33\nSustain:2\nAutoPower:5\nSpeaker:6\nMIDICtrl:9\n");
    EXPECT_EQ(AutoConfigure(), 1);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(1, 0, 0)"} + Sent +
                           Calls{"Pt_Stop()", "Pm_Close(1)"}));
}

TEST_F(AutoConfiguredReface, GetsZerosForWhatTheFileLacks) {
    for (const std::string &text : {std::string(), CrgFirstLine}) {
        Write(text);
        traffic.clear();
        EXPECT_EQ(AutoConfigure(), 1);
        ASSERT_EQ(traffic.size(), 11u);
        EXPECT_EQ(traffic[3], "> F0 43 10 7F 1C 05 00 00 06 00 F7");
        EXPECT_EQ(traffic[9], "> F0 43 10 7F 1C 05 00 00 0D 00 F7");
    }
}

TEST_F(AutoConfiguredReface, GetsValuesAbove127AsTheyStandInWholeMessages) {
    Write(CrgFirstLine + "TransCh:200\nRcvCh:-1\nMasterTune1:503\nMasterTune2:9\nTempo0:0\nTempo1:"
                         "300\nSpeaker:255\n");
    EXPECT_EQ(AutoConfigure(), 1);
    EXPECT_EQ(traffic, (Traffic{
                           "> F0 43 10 7F 1C 05 00 00 00 C8 F7",
                           "> F0 43 10 7F 1C 05 00 00 01 FF F7",
                           "> F0 43 10 7F 1C 05 00 00 02 00 F7", // 503 is F7, the end of a message
                           "> F0 43 10 7F 1C 05 00 00 06 00 F7",
                           "> F0 43 10 7F 1C 05 00 00 07 00 F7",
                           "> F0 43 10 7F 1C 05 00 00 08 00 2C F7",
                           "> F0 43 10 7F 1C 05 00 00 0A 00 F7",
                           "> F0 43 10 7F 1C 05 00 00 0B 00 F7",
                           "> F0 43 10 7F 1C 05 00 00 0C 00 F7",
                           "> F0 43 10 7F 1C 05 00 00 0D FF F7",
                           "> F0 43 10 7F 1C 05 00 00 0E 00 F7",
                       }));
}

TEST_F(AutoConfiguredReface, GetsWhatStandsInLinesOfOtherPlatformsAndAheadOfZeroBytes) {
    using namespace std::string_literals;
    Write(CrgFirstLine.substr(0, CrgFirstLine.size() - 1) +
          "\r\nTransCh:5\r\n\r\nRcvCh:7\0Sustain:1\r\nTempo1:99\r\nSpea\0ker:1\r\nMIDICtrl:1"s);
    EXPECT_EQ(AutoConfigure(), 1);
    ASSERT_EQ(traffic.size(), 11u);
    EXPECT_EQ(traffic[0], "> F0 43 10 7F 1C 05 00 00 00 05 F7");
    EXPECT_EQ(traffic[1], "> F0 43 10 7F 1C 05 00 00 01 07 F7");
    EXPECT_EQ(traffic[5], "> F0 43 10 7F 1C 05 00 00 08 00 63 F7");
    EXPECT_EQ(traffic[7], "> F0 43 10 7F 1C 05 00 00 0B 00 F7");
    EXPECT_EQ(traffic[9], "> F0 43 10 7F 1C 05 00 00 0D 00 F7");
    EXPECT_EQ(traffic[10], "> F0 43 10 7F 1C 05 00 00 0E 01 F7");
}

TEST_F(AutoConfiguredReface, GetsNothingWithoutAFileOrFromAWrongOne) {
    EXPECT_EQ(AutoConfigure(), 0);
    Write("TransCh:3\n");
    EXPECT_EQ(AutoConfigure(), 0);
    std::filesystem::remove(home.File("My Tonewright 17 Documents/AutoConfig.crg"));
    std::filesystem::create_directory(home.File("My Tonewright 17 Documents/AutoConfig.crg"));
    EXPECT_EQ(AutoConfigure(), 0);
    PlatformFolders.documents = "";
    EXPECT_EQ(AutoConfigure(), 0);
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(AutoConfiguredReface, WithAPortThatDoesNotOpenGetsNothing) {
    Write(CrgFirstLine);
    midi.devices[static_cast<std::size_t>(out)].opens = false;
    EXPECT_EQ(AutoConfigure(), 0);
    EXPECT_EQ(RefaceAutoConfigure(nullptr, NoMidiDevice), 0);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(AutoConfiguredReface, WhoseWritesFailCountsAsConfigured) {
    Write(CrgFirstLine);
    midi.allWritesFail = true;
    EXPECT_EQ(AutoConfigure(), 1);
}

// ---- by name, for the command line

TEST(RefaceSettingsByName, AreReadAndWrittenOverTheInstrument) {
    BuiltinMidi midi;
    const int reface = static_cast<int>(BuiltinInstrument::Reface);
    const MidiPorts ports{.in = 2 * reface, .out = 2 * reface + 1};
    const SynthSettings &settings = RefaceSettings;
    ASSERT_EQ(settings.names.size(), 11u);
    ASSERT_EQ(settings.size, 32u);
    ASSERT_EQ(settings.writtenSize, 15u);
    std::vector<std::uint8_t> bytes(settings.size);
    ASSERT_EQ(settings.Read(ports, bytes), 1);
    EXPECT_EQ(bytes, SystemSettingsOf(BuiltinInstrument::Reface));
    const std::size_t tempo = 5;
    ASSERT_STREQ(settings.names[tempo], "tempo");
    EXPECT_EQ(settings.Store(tempo, "133", bytes), "");
    EXPECT_EQ(settings.Write(ports, bytes), 1);
    std::vector<std::uint8_t> again(settings.size);
    ASSERT_EQ(settings.Read(ports, again), 1);
    EXPECT_EQ(again, bytes);
    EXPECT_EQ(settings.Text(tempo, again), "133");
    EXPECT_EQ(settings.Read({}, again), 0);
    EXPECT_EQ(settings.Write({}, again), 0);
}

TEST(RefaceSettingsByName, AreKeptInFiles) {
    TempFolder folder;
    const std::string path = folder.File("mine.crg");
    std::vector<std::uint8_t> bytes(RefaceSystemSize, 3), read(RefaceSystemSize, 9);
    std::vector<std::string> missing;
    ASSERT_EQ(RefaceSettings.WriteFile(path.c_str(), bytes), 1);
    ASSERT_EQ(RefaceSettings.ReadFile(path.c_str(), read, missing), 1);
    EXPECT_EQ(Bytes(read.begin(), read.begin() + 15), Bytes(15, 3));
    EXPECT_EQ(Bytes(read.begin() + 15, read.end()), Bytes(17, 0));
    EXPECT_TRUE(missing.empty());
    EXPECT_EQ(RefaceSettings.ReadFile(folder.File("none").c_str(), read, missing), 0);
    EXPECT_EQ(read[0], 3);
}

} // namespace
} // namespace tonewright
