// The decisions of careful mode: each with the mode off, where the plain outcome stays, and with it
// on, where nothing is lost without words.
#include "shell/careful.h"

#include "shell_fixture.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/history.h"
#include "shell/list_origin.h"
#include "shell/voice_commands.h"
#include "support/builtin_midi.h"
#include "support/reface_bytes.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

const std::string Dx7Name = "Yamaha DX7, TX7, Korg Volca FM";
const std::string RefaceName = "Yamaha reface DX";
const std::string SaveAsOrReplace =
    "\n\nClick on Save as to save the voices under another name, or click on Replace to replace "
    "the file.\n\nClick on Cancel to return to the main window of Tonewright.";
const std::string NothingSaved = "\n\nNothing has been saved.";

class Careful : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        formerFolder = fs::current_path();
        fs::current_path(home.path);
        MidiInPort = MidiOutPort = NoMidiDevice;
    }
    void TearDown() override {
        fs::current_path(formerFolder);
        ShellTest::TearDown();
    }
    void SwitchOn() { CarefulMode = 1; }

    void Change() {
        UndoPush(nullptr, MainList);
        SetNameAt(0, "CHANGED   ");
        MainListChanged(0);
        Forget();
    }
    void Open(const std::string &name, const std::vector<std::uint8_t> &bank) {
        PendingOpenPath = home.Write(name, bank);
        ASSERT_EQ(RunCommand(CommandOpen), 1);
    }
    // A file that is no bank, by a name that is one's; the voices of the list stay.
    void FailToOpen(const std::string &name, const std::string &message) {
        PendingOpenPath = home.WriteText(name, "no bank");
        desktop.ExpectMessage(message);
        EXPECT_EQ(RunCommand(CommandOpen), 0);
        Forget();
    }
    void ExpectSaveDialog(std::optional<std::string> answer, const std::string &proposal) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Save,
                                          .answer = std::move(answer),
                                          .start = proposal,
                                          .driverId = CurrentDriverId});
    }
    void ExpectReplaceQuestion(const std::string &text, int answer) {
        desktop.Expect(ExpectedMessage{.text = text + SaveAsOrReplace,
                                       .buttons = {"Save as", "Replace", "Cancel"},
                                       .answer = answer});
    }
    void ExpectExport(const std::string &path) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
    }
    std::string NameIn(const std::string &file, int voice = 0) const {
        return ReadTestText(home.File(file))
            .substr(6 + 128 * static_cast<std::size_t>(voice) + 118, 10);
    }
    // The list of a reface DX comes from its instrument.
    void Download() {
        RunCommand(CommandFind);
        ASSERT_EQ(CurrentDriverId, RefaceDriverId);
        EXPECT_EQ(RunCommand(CommandDownload), 1);
    }

    std::filesystem::path formerFolder;
};

// ---- voices of another family are not saved and not sent

class VoicesOfAnotherFamily : public Careful {
protected:
    // The voices of a DX7 while the reface DX is current.
    void Prepare(const std::string &reason) {
        OpenBank();
        former = home.Write("other.srx", TestRefaceBank());
        WriteTestText(former, "no bank");
        PendingOpenPath = former;
        desktop.ExpectMessage(ReadError + reason);
        EXPECT_EQ(RunCommand(CommandOpen), 0);
        EXPECT_EQ(CurrentDriverId, RefaceDriverId);
        Forget();
    }
    std::string Question() const {
        return "The list holds voices for the " + Dx7Name +
               ", but your current synthesizer is the " + RefaceName + ".\n\nNothing has been " +
               "saved. Do you wish to make the " + Dx7Name +
               " your current synthesizer again, so that the voices can be saved?";
    }
    std::string former;
};

TEST_F(VoicesOfAnotherFamily, AreSavedAsVoicesThatNobodyCanReadWithTheModeOff) {
    Prepare("");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(ReadTestFile(former).size(), 160u + 32 * 202);
}

TEST_F(VoicesOfAnotherFamily, AreRefusedInCarefulMode) {
    SwitchOn();
    Prepare("\n\n" + home.File("other.srx") + ": 7 bytes, and its header alone should have 160.");
    for (const int command : {CommandSave, CommandSaveAs}) {
        desktop.ExpectYesNo(Question(), ResultNo);
        EXPECT_EQ(RunCommand(command), 0);
    }
    EXPECT_EQ(ReadTestText(former), "no bank");
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
}

TEST_F(VoicesOfAnotherFamily, CanBeSavedUnderANameOfTheirOwn) {
    SwitchOn();
    Prepare("\n\n" + home.File("other.srx") + ": 7 bytes, and its header alone should have 160.");
    MidiInPort = MidiOutPort = 5;
    desktop.ExpectYesNo(Question(), ResultYes);
    desktop.Expect(ExpectedMessage{
        .text = "The name other.srx stands for a bank for the " + RefaceName +
                ", but the voices in the list are for the " + Dx7Name +
                ".\n\nClick on Save as to save the voices under another name.\n\nClick on Cancel "
                "to return to the main window of Tonewright.",
        .buttons = {"Save as", "Cancel"},
        .answer = ResultYes});
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Save,
                                      .answer = home.File("mine.syx"),
                                      .start = home.File("other.syx"),
                                      .driverId = Dx7DriverId});
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("mine.syx")), TestBank());
    EXPECT_EQ(ReadTestText(former), "no bank");
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, NoMidiDevice); // those of the other instrument
    EXPECT_EQ(MidiOutPort, NoMidiDevice);
    EXPECT_TRUE(CommandAllowed(CommandUpload));
}

TEST_F(VoicesOfAnotherFamily, OfUndoBecomeEmptyOnesWithTheModeOff) {
    OpenBank();
    ListSetVoice(MainList, 3, RefaceDxVoice(9));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(NameIn("bank.syx", 3), std::string(10, '\0'));
}

TEST_F(VoicesOfAnotherFamily, AmongOthersAreRefusedInCarefulMode) {
    SwitchOn();
    OpenBank();
    ListSetVoice(MainList, 3, RefaceDxVoice(9));
    desktop.ExpectMessage("The list holds voices for the " + RefaceName +
                          ", but your current synthesizer is the " + Dx7Name + "." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    VoiceObject stranger = RefaceDxVoice(9);
    stranger.bytes[16] = 'z';
    ListSetVoice(MainList, 3, stranger);
    desktop.ExpectMessage("Voice 4 of the list is not a voice for the " + Dx7Name +
                          ", which is your current synthesizer." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(VoicesOfAnotherFamily, AFileThatIsNotFullIsRemovedByASaveWithTheModeOff) {
    Open("ten.srx", TestRefaceBank(10));
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_FALSE(home.Holds("ten.srx"));
}

TEST_F(VoicesOfAnotherFamily, AFileThatIsNotFullStaysInCarefulMode) {
    SwitchOn();
    Open("ten.srx", TestRefaceBank(10));
    desktop.ExpectMessage("A bank for the " + RefaceName +
                          " has 32 voices, and voice 11 of the list is missing." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("ten.srx")), TestRefaceBank(10));
}

// Banks of records that a file of ours does not keep: with a short header, and with more at the
// end.
class RecordsOfAnotherForm : public Careful {
protected:
    static std::vector<std::uint8_t> Bank(bool isShort) {
        auto bank = TestRefaceBank(0);
        bank[24] = 32; // voices
        bank[28] = isShort ? 190 : 210;
        for (int number = 0; number < 32; ++number) {
            auto block = TestRefaceBlock(number);
            if (isShort) {
                block[4] = 40; // where the voice begins
                block.erase(block.begin() + 40, block.begin() + 52);
            } else {
                block.resize(210, 7);
            }
            bank.insert(bank.end(), block.begin(), block.end());
        }
        return bank;
    }
    std::string Open(bool isShort) {
        Careful::Open("form.srx", Bank(isShort));
        return home.File("form.srx");
    }
};

TEST_F(RecordsOfAnotherForm, AreLostOrCutWithTheModeOff) {
    std::string path = Open(true);
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_FALSE(home.Holds("form.srx"));
    path = Open(false);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(path).size(), 160u + 32 * 202);
}

TEST_F(RecordsOfAnotherForm, AreRefusedInCarefulMode) {
    SwitchOn();
    const auto voice = home.WriteText("voice.sr1", "former");
    for (const bool isShort : {true, false}) {
        const std::string path = Open(isShort);
        for (const int command : {CommandSave, CommandSaveAs, CommandExport}) {
            MainListState.clickedIndex = 0;
            desktop.ExpectMessage("Voice 1 of the list has another form than the voices in a file "
                                  "for the " +
                                  RefaceName + ", which would not keep all of it." + NothingSaved);
            EXPECT_EQ(RunCommand(command), 0);
        }
        EXPECT_EQ(ReadTestFile(path), Bank(isShort));
    }
    EXPECT_EQ(ReadTestText(voice), "former");
}

TEST_F(VoicesOfAnotherFamily, ACutVoiceIsRefused) {
    SwitchOn();
    OpenBank();
    ListWriteVoice(MainList, 8, [](VoiceObject &voice) { voice.bytes.resize(100); });
    desktop.ExpectMessage("Voice 9 of the list is incomplete." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
}

TEST_F(VoicesOfAnotherFamily, NoInstrumentSavesNothing) {
    OpenBank();
    CurrentDriverId = NoDriverId;
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    SwitchOn();
    ListTakeVoice(MainList, 0);
    desktop.ExpectMessage(
        "There is no current synthesizer. Please choose one with Select "
        "synthesizer in the Edit menu. This empties the list: voices that you want "
        "to keep must be saved before." +
        NothingSaved);
    EXPECT_EQ(RunCommand(CommandSave), 0);
}

TEST_F(VoicesOfAnotherFamily, AreNotUploadedInCarefulMode) {
    BuiltinMidi midi;
    OpenBank();
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "DX7";
    ASSERT_EQ(RunCommand(CommandFind), 1);
    const auto memory = MemoryOf(BuiltinInstrument::Dx7);
    ListSetVoice(MainList, 3, RefaceDxVoice(9));
    Forget();
    SwitchOn();
    const std::string refusal = "The list holds voices for the " + RefaceName +
                                ", but your current synthesizer is the " + Dx7Name +
                                ".\n\nNothing has been sent to your synthesizer.";
    desktop.ExpectMessage(refusal);
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    MainListState.clickedIndex = 3;
    desktop.ExpectMessage(refusal);
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), memory);
    EXPECT_TRUE(desktop.sounds.empty());
    CarefulMode = 0;
    EXPECT_EQ(RunCommand(CommandUpload), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_NE(MemoryOf(BuiltinInstrument::Dx7), memory);
}

TEST_F(VoicesOfAnotherFamily, AreExportedIntoNoFile) {
    OpenBank();
    CurrentDriverId = RefaceDriverId;
    const std::string path = home.WriteText("voice.sr1", "former");
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
    EXPECT_EQ(RunCommand(CommandExport), 1); // bytes that nobody can read
    EXPECT_EQ(ReadTestFile(path).size(), 160u + 202);
    SwitchOn();
    desktop.ExpectMessage("The list holds voices for the " + Dx7Name +
                          ", but your current synthesizer is the " + RefaceName + "." +
                          NothingSaved);
    EXPECT_EQ(RunCommand(CommandExport), 0);
}

// ---- the file that a save would replace

class WhatASaveReplaces : public Careful {};

TEST_F(WhatASaveReplaces, AFileThatCouldNotBeReadGoesWithTheModeOff) {
    OpenBank();
    FailToOpen("broken.syx", ReadError);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("broken.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, AFileThatCouldNotBeReadIsAskedAbout) {
    SwitchOn();
    OpenBank();
    FailToOpen("broken.syx",
               ReadError + "\n\n" + home.File("broken.syx") + ": 7 bytes instead of 4104.");
    const std::string question =
        "The file broken.syx could not be read when you opened it. The voices in the list are "
        "other ones, and they would replace what it holds.";
    ExpectReplaceQuestion(question, ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    ExpectReplaceQuestion(question, ResultYes);
    ExpectSaveDialog(std::nullopt, home.File("broken.syx"));
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestText(home.File("broken.syx")), "no bank");
    ExpectReplaceQuestion(question, ResultYes);
    ExpectSaveDialog(home.File("mine.syx"), home.File("broken.syx"));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestText(home.File("broken.syx")), "no bank");
    EXPECT_EQ(RunCommand(CommandSave), 1); // it has a name now
    EXPECT_EQ(ReadTestFile(home.File("mine.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, TheDocumentItselfIsSuchAFileWhenItCannotBeReadAgain) {
    SwitchOn();
    OpenBank("broken.syx");
    FailToOpen("broken.syx",
               ReadError + "\n\n" + home.File("broken.syx") + ": 7 bytes instead of 4104.");
    ExpectReplaceQuestion("The file broken.syx could not be read when you opened it. The voices in "
                          "the list are other ones, and they would replace what it holds.",
                          ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestText(home.File("broken.syx")), "no bank");
}

TEST_F(WhatASaveReplaces, AnAnswerToReplaceItIsTaken) {
    SwitchOn();
    OpenBank();
    FailToOpen("broken.syx",
               ReadError + "\n\n" + home.File("broken.syx") + ": 7 bytes instead of 4104.");
    ExpectReplaceQuestion("The file broken.syx could not be read when you opened it. The voices in "
                          "the list are other ones, and they would replace what it holds.",
                          ResultNo);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("broken.syx")), TestBank());
    EXPECT_EQ(RunCommand(CommandSave), 1); // and not asked again
}

TEST_F(WhatASaveReplaces, AFileThatIsNotThereAsksForAName) {
    SwitchOn();
    OpenBank();
    PendingOpenPath = home.File("missing.syx");
    desktop.ExpectMessage(ReadError + "\n\n" + home.File("missing.syx") +
                          ": not readable: No such file or directory.");
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    ExpectSaveDialog(std::nullopt, home.File("missing.syx"));
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_FALSE(home.Holds("missing.syx"));
}

TEST_F(WhatASaveReplaces, ADownloadReplacesTheDocumentsFileWithTheModeOff) {
    BuiltinMidi midi;
    Open("mine.srx", TestRefaceBank());
    Download();
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_NE(ReadTestFile(home.File("mine.srx")), TestRefaceBank());
}

TEST_F(WhatASaveReplaces, ADownloadIsAskedAboutAndUndoBringsTheFormerListBack) {
    SwitchOn();
    BuiltinMidi midi;
    Open("mine.srx", TestRefaceBank());
    Download();
    const std::string question = "The voices in the list did not come from the file mine.srx, and "
                                 "they would replace those that it holds.";
    ExpectReplaceQuestion(question, ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("mine.srx")), TestRefaceBank());
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(RunCommand(CommandSave), 1); // these are its own
    EXPECT_EQ(ReadRawText(home.File("mine.srx")).substr(160),
              std::string(reinterpret_cast<const char *>(TestRefaceBank().data()) + 160, 32 * 202));
}

TEST_F(WhatASaveReplaces, TheListBeforeADownloadIsNotThatOfTheFileThatTheDownloadWasSavedIn) {
    SwitchOn();
    BuiltinMidi midi;
    Open("mine.srx", TestRefaceBank());
    Download();
    ExpectSaveDialog(home.File("downloaded.srx"), home.File("mine.srx"));
    ASSERT_EQ(RunCommand(CommandSaveAs), 1);
    const auto downloaded = ReadTestFile(home.File("downloaded.srx"));
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    ExpectReplaceQuestion("The voices in the list did not come from the file downloaded.srx, and "
                          "they would replace those that it holds.",
                          ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("downloaded.srx")), downloaded);
}

TEST_F(WhatASaveReplaces, EditsAndTheirUndoAreSavedWithoutAQuestion) {
    SwitchOn();
    OpenBank();
    Change();
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "VOICE 01  ");
}

TEST_F(WhatASaveReplaces, BytesBehindABankAreCutOffWithTheModeOff) {
    auto two = TestBank();
    two.resize(2 * two.size());
    Open("two.syx", two);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("two.syx")).size(), 4104u);
}

TEST_F(WhatASaveReplaces, BytesBehindABankAreAskedAbout) {
    SwitchOn();
    auto longer = TestBank();
    longer.push_back(0);
    Open("longer.syx", longer);
    ExpectReplaceQuestion("The file longer.syx holds more than the 32 voices of a bank. Only "
                          "these would remain of it.",
                          ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("longer.syx")), longer);

    auto more = TestRefaceBank();
    more.push_back(0);
    Open("more.srx", more);
    ExpectReplaceQuestion("The file more.srx holds more than the 32 voices of a bank. Only "
                          "these would remain of it.",
                          ResultNo);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("more.srx")).size(), 160u + 32 * 202);
    EXPECT_EQ(RunCommand(CommandSave), 1);
}

TEST_F(WhatASaveReplaces, WhatAnotherProgramWroteGoesWithTheModeOff) {
    OpenBank();
    home.WriteText("bank.syx", "the work of another program");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, WhatAnotherProgramWroteIsAskedAbout) {
    SwitchOn();
    OpenBank();
    auto others = TestBank();
    others[124] = 'X';
    const std::string question = "The file bank.syx has been changed by another program since you "
                                 "opened it. What it holds now would be lost.";
    for (const auto &bytes : {others, std::vector<std::uint8_t>()}) {
        home.Write("bank.syx", bytes);
        ExpectReplaceQuestion(question, ResultCancel);
        EXPECT_EQ(RunCommand(CommandSave), 0);
        EXPECT_EQ(ReadTestFile(home.File("bank.syx")), bytes);
    }
    home.Write("bank.syx", TestBank()); // the same again
    EXPECT_EQ(RunCommand(CommandSave), 1);
    fs::remove(home.path / "bank.syx"); // nothing is lost by a save
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, ADocumentThatWasNeverNamedAsksForANameWithTheRightExtension) {
    SwitchOn();
    OpenBank();
    Change();
    for (const char *name : {"Untitled.Twl", "untitled.SRX", "Untitled.syx"}) {
        home.WriteText(name, "former");
        CurrentDocumentPath = name;
        ExpectSaveDialog(std::nullopt, std::string(name).substr(0, 8) + ".syx");
        EXPECT_EQ(RunCommand(CommandSave), 0) << name;
        EXPECT_EQ(ReadTestText(home.File(name)), "former");
        EXPECT_TRUE(MainListState.dirty);
    }
    ExpectSaveDialog(home.File("named.syx"), "Untitled.syx");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("named.syx"), "CHANGED   ");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(WhatASaveReplaces, AnEmptyListOfAnotherInstrumentEmptiesTheBankWithTheModeOff) {
    OpenBank();
    Change();
    BuiltinMidi midi;
    TheShellWindow.ShowSelectSynthBox = [] { return 1; };
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandSelectSynth), 1);
    CurrentDriverId = Dx7DriverId;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_EQ(RunCommand(CommandExit), 1);
    EXPECT_EQ(NameIn("bank.syx"), std::string(10, '\0'));
}

TEST_F(WhatASaveReplaces, AnEmptyListOfAnotherInstrumentIsNotSaved) {
    SwitchOn();
    OpenBank();
    Change();
    BuiltinMidi midi;
    TheShellWindow.ShowSelectSynthBox = [] { return 1; };
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandSelectSynth), 1);
    CurrentDriverId = Dx7DriverId;
    desktop.ExpectMessage("There are no voices in the list." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(RunCommand(CommandExit), 1); // there is nothing that could be saved
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, VoicesThatUndoBringsBackBehindAnotherInstrumentAreTheFilesOwn) {
    SwitchOn();
    OpenBank();
    Change();
    BuiltinMidi midi;
    TheShellWindow.ShowSelectSynthBox = [] { return 1; };
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandSelectSynth), 1);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    CurrentDriverId = Dx7DriverId;
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(WhatASaveReplaces, ANameOfAnotherFamilyIsNotTakenFromTheDialog) {
    OpenBank();
    ExpectSaveDialog(home.File("a.srx"), home.File("bank.syx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1); // a file that can never be opened
    SwitchOn();
    PendingOpenPath = home.File("bank.syx");
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    const std::string question =
        "The name b.srx stands for a bank for the " + RefaceName +
        ", but the voices in the list are for the " + Dx7Name +
        ".\n\nClick on Save as to save the voices under another name.\n\nClick on Cancel to return "
        "to the main window of Tonewright.";
    ExpectSaveDialog(home.File("b.srx"), home.File("bank.syx"));
    desktop.Expect(
        ExpectedMessage{.text = question, .buttons = {"Save as", "Cancel"}, .answer = ResultYes});
    ExpectSaveDialog(home.File("b.srx"), home.File("bank.syx"));
    desktop.Expect(ExpectedMessage{
        .text = question, .buttons = {"Save as", "Cancel"}, .answer = ResultCancel});
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    EXPECT_FALSE(home.Holds("b.srx"));
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
}

TEST_F(WhatASaveReplaces, VoicesBehindABankAreLeftOutWithTheModeOff) {
    Open("many.srx", TestRefaceBank(33));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("many.srx")).size(), 160u + 32 * 202);
}

TEST_F(WhatASaveReplaces, VoicesBehindABankAreToldOfByEachSave) {
    SwitchOn();
    auto more = TestRefaceBank(33);
    for (const bool isLonger : {false, true}) {
        const std::string path = home.Write("many.srx", more);
        PendingOpenPath = path;
        EXPECT_EQ(RunCommand(CommandOpen), 1);
        const auto save = [&](bool isFileAskedAbout, int answer) {
            if (isFileAskedAbout) {
                ExpectReplaceQuestion("The file many.srx holds more than the 32 voices of a bank. "
                                      "Only these would remain of it.",
                                      ResultNo);
            }
            desktop.ExpectYesNo("The list holds 33 voices, and a bank for the " + RefaceName +
                                    " has 32. The voices behind these will not be saved.\n\nDo "
                                    "you wish to save the others?",
                                answer);
            EXPECT_EQ(RunCommand(CommandSave), answer == ResultYes);
        };
        save(isLonger, ResultNo);
        EXPECT_EQ(ReadTestFile(path), more);
        save(isLonger, ResultYes);
        EXPECT_EQ(ReadTestFile(path).size(), 160u + 32 * 202);
        save(false, ResultNo); // they are in the list alone
        more.push_back(0);     // behind the voices that are read
    }
}

TEST_F(WhatASaveReplaces, VoicesBehindABankAreToldOfWhenUndoHasLeftThemOut) {
    SwitchOn();
    Open("many.srx", TestRefaceBank(33));
    UndoPush(nullptr, MainList);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(ListCount(MainList), 32);
    ExpectReplaceQuestion("The file many.srx holds more than the 32 voices of a bank. Only these "
                          "would remain of it.",
                          ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("many.srx")), TestRefaceBank(33));
}

TEST_F(WhatASaveReplaces, WhatAnotherProgramWroteIntoTheLastOfManyVoicesIsAskedAbout) {
    SwitchOn();
    auto many = TestRefaceBank(33);
    Open("many.srx", many);
    many.back() ^= 1;
    home.Write("many.srx", many);
    ExpectReplaceQuestion("The file many.srx has been changed by another program since you opened "
                          "it. What it holds now would be lost.",
                          ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("many.srx")), many);
}

TEST_F(WhatASaveReplaces, VoicesBehindABankAreToldOfBeforeTheyAreLeftOut) {
    Open("many.srx", TestRefaceBank(33));
    ExpectSaveDialog(home.File("plain.srx"), home.File("many.srx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    SwitchOn();
    for (const int answer : {ResultNo, ResultYes}) {
        ExpectSaveDialog(home.File("mine.srx"), home.File("plain.srx"));
        desktop.ExpectYesNo("The list holds 33 voices, and a bank for the " + RefaceName +
                                " has 32. The voices behind these will not be saved.\n\nDo you "
                                "wish to save the others?",
                            answer);
        EXPECT_EQ(RunCommand(CommandSaveAs), answer == ResultYes);
        EXPECT_EQ(home.Holds("mine.srx"), answer == ResultYes);
    }
}

TEST_F(WhatASaveReplaces, ASaveThatFailedUnderANewNameCanBeTriedAgain) {
    SwitchOn();
    OpenBank();
    Change();
    const std::string path = home.File("folder/mine.syx");
    ExpectSaveDialog(path, home.File("bank.syx"));
    desktop.ExpectMessage(WriteError + "\n\n" + path + ": No such file or directory.");
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    fs::create_directory(home.path / "folder");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("folder/mine.syx"), "CHANGED   ");
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

// Save as onto another bank, whose backup cannot be made and is not gone without.
class ASaveThatFailedOverAnotherBank : public Careful {
protected:
    void SetUp() override {
        Careful::SetUp();
        CreateBackups = 1;
        former = TestBank();
        former[124] = 'X';
        FixTestChecksum(former);
        home.Write("other.syx", former);
        fs::create_directory("Backup of other.syx");
        OpenBank();
        Change();
    }
    void FailToSave() {
        ExpectSaveDialog(home.File("other.syx"), home.File("bank.syx"));
        desktop.ExpectYesNo(BackupQuestion, ResultNo);
        desktop.ExpectMessage(CarefulMode != 0
                                  ? WriteError + "\n\n" + home.File("other.syx") +
                                        ": the answer was not to go on without a backup."
                                  : WriteError);
        EXPECT_EQ(RunCommand(CommandSaveAs), 0);
        EXPECT_EQ(ReadTestFile(home.File("other.syx")), former);
        CreateBackups = 0;
    }
    std::vector<std::uint8_t> former;
};

TEST_F(ASaveThatFailedOverAnotherBank, IsTriedAgainWithTheModeOff) {
    FailToSave();
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("other.syx"), "CHANGED   ");
}

TEST_F(ASaveThatFailedOverAnotherBank, DoesNotMakeThatBankTheListsOwn) {
    SwitchOn();
    FailToSave();
    const std::string question = "The voices in the list did not come from the file other.syx, and "
                                 "they would replace those that it holds.";
    ExpectReplaceQuestion(question, ResultCancel);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    ExpectReplaceQuestion(question, ResultCancel);
    EXPECT_EQ(RunCommand(CommandExit), 0);
    EXPECT_EQ(ReadTestFile(home.File("other.syx")), former);
    ExpectReplaceQuestion(question, ResultNo);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("other.syx"), "CHANGED   ");
    EXPECT_EQ(RunCommand(CommandSave), 1); // it is now
}

TEST_F(WhatASaveReplaces, ASaveThatFailedOverTheDocumentItselfIsTriedAgain) {
    SwitchOn();
    OpenBank();
    Change();
    CreateBackups = 1;
    fs::create_directory("Backup of bank.syx");
    ExpectSaveDialog(home.File("bank.syx"), home.File("bank.syx"));
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    desktop.ExpectMessage(WriteError + "\n\n" + home.File("bank.syx") +
                          ": the answer was not to go on without a backup.");
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    CreateBackups = 0;
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
}

// ---- a command that was to follow a save

class BehindAFailedSave : public Careful {
protected:
    void SetUp() override {
        Careful::SetUp();
        OpenBank();
        Change();
        CurrentDocumentPath = home.File("gone/bank.syx");
        TheDocumentFile.path = CurrentDocumentPath;
        TheShellWindow.ShowSelectSynthBox = [this] {
            ++boxes;
            return 0;
        };
    }
    void ExpectFailedSave() {
        desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
        desktop.ExpectMessage(CarefulMode != 0 ? WriteError + "\n\n" + CurrentDocumentPath +
                                                     ": No such file or directory."
                                               : WriteError);
    }
    int boxes = 0;
};

TEST_F(BehindAFailedSave, TheCommandGoesOnWithTheModeOff) {
    ExpectFailedSave();
    EXPECT_EQ(RunCommand(CommandExit), 1);
    EXPECT_EQ(closes, 1);
    ExpectFailedSave();
    RunCommand(CommandSelectSynth);
    EXPECT_EQ(boxes, 1);
    ExpectFailedSave();
    EXPECT_EQ(RunCommand(CommandClear), 1);
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(BehindAFailedSave, EveryCommandThatAsksStaysInCarefulMode) {
    SwitchOn();
    PendingOpenPath = home.Write("other.syx", TestBank());
    for (const int command :
         {CommandExit, CommandOpen, CommandClear, CommandSelectSynth, CommandDownload}) {
        ExpectFailedSave();
        EXPECT_EQ(RunCommand(command), 0) << command;
        EXPECT_EQ(NameAt(0), "CHANGED") << command;
        EXPECT_TRUE(MainListState.dirty);
    }
    EXPECT_EQ(closes, 0);
    EXPECT_EQ(boxes, 0);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandExit), 1);
}

TEST_F(BehindAFailedSave, ACancelledDialogOfTheSaveStaysToo) {
    CurrentDocumentPath = "Untitled.syx";
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    ExpectSaveDialog(std::nullopt, "Untitled.syx");
    EXPECT_EQ(RunCommand(CommandExit), 1);
    SwitchOn();
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    ExpectSaveDialog(std::nullopt, "Untitled.syx");
    EXPECT_EQ(RunCommand(CommandExit), 0);
    EXPECT_EQ(closes, 1);
}

// ---- names that no Open takes

TEST_F(WhatASaveReplaces, ANameThatNoOpenTakesIsWrittenWithTheModeOff) {
    OpenBank();
    ExpectSaveDialog(home.File("x.sy1"), home.File("bank.syx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    EXPECT_EQ(ReadTestFile(home.File("x.sy1")), TestBank());
}

TEST_F(WhatASaveReplaces, ANameThatNoOpenTakesIsToldOf) {
    SwitchOn();
    OpenBank();
    for (const std::string name : {"x.sy1", "x.sr1", "x"}) {
        const std::string question =
            "The name " + name + " does not end as that of a bank for the " + Dx7Name +
            ", and Tonewright could not open it again.\n\nClick on Save as to save the voices "
            "under another name.\n\nClick on Cancel to return to the main window of Tonewright.";
        ExpectSaveDialog(home.File(name), home.File("bank.syx"));
        desktop.Expect(ExpectedMessage{
            .text = question, .buttons = {"Save as", "Cancel"}, .answer = ResultYes});
        ExpectSaveDialog(std::nullopt, home.File("bank.syx"));
        EXPECT_EQ(RunCommand(CommandSaveAs), 0);
        EXPECT_FALSE(home.Holds(name));
    }
}

TEST_F(WhatASaveReplaces, ASingleVoiceThatWasOpenedIsNotOfferedToBeReplaced) {
    SwitchOn();
    OpenBank();
    const std::string path = home.Write("one.sy1", TestVoiceFile());
    PendingOpenPath = path;
    desktop.ExpectMessage(ReadError + "\n\n" + path +
                          ": it holds a single voice, for Import in the menu of a voice, and no "
                          "bank.");
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    desktop.Expect(ExpectedMessage{
        .text = "The name one.sy1 does not end as that of a bank for the " + Dx7Name +
                ", and Tonewright could not open it again.\n\nClick on Save as to save the voices "
                "under another name.\n\nClick on Cancel to return to the main window of "
                "Tonewright.",
        .buttons = {"Save as", "Cancel"},
        .answer = ResultCancel});
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(path), TestVoiceFile());
}

// ---- an Open that stays

TEST_F(BehindAFailedSave, OpenForgetsThePathAndKeepsUndoInCarefulModeAlone) {
    const std::string other = home.Write("other.syx", TestBank());
    SwitchOn();
    PendingOpenPath = other;
    ExpectFailedSave();
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(PendingOpenPath, "");
    EXPECT_EQ(UndoCount(), 1);
    PendingOpenPath = other;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(PendingOpenPath, "");
    EXPECT_EQ(UndoCount(), 1);
    CarefulMode = 0;
    PendingOpenPath = other;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(PendingOpenPath, other);
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(Careful, ADocumentThatWasOpenedHasNoLevelsOfTheFormerOne) {
    SwitchOn();
    OpenBank();
    Change();
    MainListState.dirty = false;
    OpenBank("other.syx");
    EXPECT_EQ(UndoCount(), 0);
}

// ---- ways to a document and away from it

TEST_F(WhatASaveReplaces, AClickOnTheHistoryIsAnOpenLikeAnyOther) {
    RememberFileHistoryCount = 10;
    HistoryInit();
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        OpenBank("first.syx");
        OpenBank("bank.syx");
        const std::string path = home.WriteText("first.syx", "no bank");
        desktop.ExpectMessage(careful ? ReadError + "\n\n" + path + ": 7 bytes instead of 4104."
                                      : ReadError);
        const auto entries = HistoryEntries();
        const auto first = std::ranges::find(entries, path, &HistoryEntry::path);
        ASSERT_NE(first, entries.end());
        EXPECT_EQ(RunHistoryItem(HistoryFirstItem + static_cast<int>(first - entries.begin())), 0);
        EXPECT_EQ(CurrentDocumentPath, path);
        if (careful) {
            ExpectReplaceQuestion("The file first.syx could not be read when you opened it. The "
                                  "voices in the list are other ones, and they would replace what "
                                  "it holds.",
                                  ResultCancel);
        }
        EXPECT_EQ(RunCommand(CommandSave), !careful);
        EXPECT_EQ(ReadTestText(path) == "no bank", careful != 0);
    }
    HistoryEnd();
}

TEST_F(WhatASaveReplaces, VoicesThatWereDroppedAreEditsOfTheDocument) {
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        OpenBank();
        DropFiles({home.Write("piano.sy1", TestVoiceFile())});
        EXPECT_TRUE(MainListState.dirty);
        EXPECT_EQ(RunCommand(CommandSave), 1);
        EXPECT_NE(ReadTestFile(home.File("bank.syx")), TestBank());
    }
}

TEST_F(WhatASaveReplaces, TheEndOfTheSessionWritesNoBank) {
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        MainListState.dirty = false;
        OpenBank();
        Change();
        EXPECT_EQ(RunCloseAtOnce(), 1);
        EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    }
}

TEST_F(WhatASaveReplaces, ALinkStaysALinkToTheDocument) {
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        MainListState.dirty = false;
        home.Write("bank.syx", TestBank());
        fs::remove(home.path / "link.syx");
        fs::create_symlink("bank.syx", home.path / "link.syx");
        PendingOpenPath = home.File("link.syx");
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        Change();
        EXPECT_EQ(RunCommand(CommandSave), 1);
        EXPECT_TRUE(fs::is_symlink(home.path / "link.syx"));
        EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    }
}

TEST_F(WhatASaveReplaces, EditsThatAreUndoneBehindASaveUnderANewNameAreThatFilesOwn) {
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        MainListState.dirty = false;
        OpenBank();
        Change();
        ExpectSaveDialog(home.File("new.syx"), home.File("bank.syx"));
        EXPECT_EQ(RunCommand(CommandSaveAs), 1);
        EXPECT_EQ(RunCommand(CommandUndo), 1);
        EXPECT_EQ(RunCommand(CommandSave), 1);
        EXPECT_EQ(NameIn("new.syx"), "VOICE 01  ");
        EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    }
}

// Undo brings the voices back, and not their instrument.
TEST_F(VoicesOfAnotherFamily, OfUndoBehindADownloadAreRefusedInCarefulModeAlone) {
    BuiltinMidi midi;
    for (const unsigned careful : {1u, 0u}) {
        CarefulMode = careful;
        MainListState.dirty = false;
        SelectKeyboardAutodetect = 1;
        OpenBank();
        CurrentDriverId = RefaceDriverId; // as an Open that failed leaves it
        RunCommand(CommandFind);
        ASSERT_EQ(CurrentDriverId, RefaceDriverId);
        EXPECT_EQ(RunCommand(CommandDownload), 1);
        EXPECT_EQ(RunCommand(CommandUndo), 1);
        EXPECT_EQ(CurrentDriverId, RefaceDriverId);
        Forget();
        if (careful) {
            desktop.ExpectYesNo(Question(), ResultNo);
        }
        EXPECT_EQ(RunCommand(CommandSave), !careful);
        EXPECT_EQ(desktop.sounds, careful ? Strings() : Strings{ConfirmSound});
        EXPECT_EQ(ReadTestFile(home.File("bank.syx")) == TestBank(), careful != 0);
    }
}

// ---- a search that finds nothing

TEST_F(Careful, AFailedFindLeavesNoInstrumentWithTheModeOff) {
    BuiltinMidi midi;
    OpenBank();
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "no such port";
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(desktop.statusTexts, Strings{"Unknown or unrecognized synthesizer"});
}

TEST_F(Careful, AFailedFindKeepsTheInstrumentOfTheVoices) {
    SwitchOn();
    BuiltinMidi midi;
    OpenBank();
    Change();
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "no such port";
    desktop.ExpectMessage("The " + Dx7Name +
                          " has not been found. Please check that it is connected and switched "
                          "on.\n\nIt stays your current synthesizer, and the voices stay in the "
                          "list: you can edit and save them.");
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiOutPort, NoMidiDevice);
    EXPECT_EQ(desktop.statusTexts, Strings{Dx7Name});
    EXPECT_TRUE(CommandAllowed(CommandUpload));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
}

TEST_F(Careful, AFailedFindForAnEmptyListLeavesNoInstrument) {
    SwitchOn();
    BuiltinMidi midi;
    CurrentDriverId = Dx7DriverId;
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "no such port";
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
}

// ---- uploads

class CarefulUpload : public Careful {
protected:
    void SetUp() override {
        Careful::SetUp();
        OpenBank();
        SelectKeyboardMidiIn = SelectKeyboardMidiOut = "DX7";
        ASSERT_EQ(RunCommand(CommandFind), 1);
        memory = MemoryOf(BuiltinInstrument::Dx7);
        Forget();
    }
    void ExpectQuestion(int answer) {
        desktop.ExpectYesNo("The 32 voices in the memory of your synthesizer are about to be "
                            "replaced by those in the list. The present ones "
                            "will be lost, unless you have saved them.\n\nDo you wish to "
                            "replace them?",
                            answer);
    }
    BuiltinMidi midi;
    std::vector<std::uint8_t> memory;
};

TEST_F(CarefulUpload, AsksNothingWithTheModeOff) {
    EXPECT_EQ(RunCommand(CommandUpload), 1);
    EXPECT_NE(MemoryOf(BuiltinInstrument::Dx7), memory);
}

TEST_F(CarefulUpload, IsAskedAboutInCarefulMode) {
    SwitchOn();
    ExpectQuestion(ResultNo);
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), memory);
    EXPECT_TRUE(desktop.sounds.empty());
    ExpectQuestion(ResultYes);
    EXPECT_EQ(RunCommand(CommandUpload), 1);
    EXPECT_NE(MemoryOf(BuiltinInstrument::Dx7), memory);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(CarefulUpload, OfBytesThatNoMessageCarriesIsRefused) {
    SetNameAt(4, "B\x80TTER    ");
    EXPECT_EQ(RunCommand(CommandUpload), 1); // which the instrument does not hear
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), memory);
    SwitchOn();
    const std::string refusal = "Voice 5 of the list has values that MIDI cannot carry, and your "
                                "synthesizer would receive nothing.\n\nNothing has been sent to "
                                "your synthesizer.";
    desktop.ExpectMessage(refusal);
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    MainListState.clickedIndex = 4;
    desktop.ExpectMessage(refusal);
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
}

TEST_F(CarefulUpload, ThatCannotBeginIsSilentWithTheModeOff) {
    FaultsOf(BuiltinInstrument::Dx7).outputDoesNotOpen = true;
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    MainListState.clickedIndex = 4;
    desktop.ExpectMessage("There has been an error uploading VOICE 05");
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
}

TEST_F(CarefulUpload, ThatCannotBeginSaysWhy) {
    SwitchOn();
    FaultsOf(BuiltinInstrument::Dx7).outputDoesNotOpen = true;
    const std::string port = TheMidi.Pm_GetDeviceInfo(MidiOutPort)->name;
    const std::string reason =
        "\n\nThe MIDI port " + port + " could not be opened. Another program may be using it.";
    ExpectQuestion(ResultYes);
    desktop.ExpectMessage("There has been an error uploading the voices." + reason);
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    MainListState.clickedIndex = 4;
    desktop.ExpectMessage("There has been an error uploading VOICE 05" + reason);
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
    MidiOutPort = NoMidiDevice;
    ExpectQuestion(ResultYes);
    desktop.ExpectMessage("There has been an error uploading the voices.\n\nThe MIDI output to "
                          "your synthesizer has not been found. Please check that it is connected "
                          "and switched on, and click on Find synthesizer in the Edit menu.");
    EXPECT_EQ(RunCommand(CommandUpload), 0);
}

TEST_F(CarefulUpload, OfAVoiceThatIsNotAnsweredSaysSo) {
    SwitchOn();
    SelectKeyboardAutodetect = 1;
    CurrentDriverId = RefaceDriverId;
    ListSetVoice(MainList, 0, RefaceDxVoice(9));
    RunCommand(CommandFind);
    ASSERT_NE(MidiOutPort, NoMidiDevice);
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    MainListState.clickedIndex = 0;
    const auto expect = [&](const std::string &reason) {
        desktop.ExpectMessage("There has been an error uploading " +
                              std::string(VoiceObjectName(*ListVoice(MainList, 0))) + "\n\n" +
                              reason);
        EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
    };
    desktop.ExpectMessage("Invalid system common.");
    expect("Your synthesizer did not answer.");
    FaultsOf(BuiltinInstrument::Reface).inputDoesNotOpen = true;
    MainListState.clickedIndex = 0;
    expect("The MIDI port " + std::string(TheMidi.Pm_GetDeviceInfo(MidiInPort)->name) +
           " could not be opened. Another program may be using it.");
    MidiInPort = NoMidiDevice;
    MainListState.clickedIndex = 0;
    expect("The MIDI input from your synthesizer has not been found. Please check that it is "
           "connected and switched on, "
           "and click on Find synthesizer in the Edit menu.");
}

TEST_F(CarefulUpload, ToAnInstrumentThatNeverAnswersIsNotSaidToLackAnAnswer) {
    SwitchOn();
    TheMidi.Pm_OpenOutput = [open = TheMidi.Pm_OpenOutput,
                             isFirst = true](MidiStream *stream, int device, std::int32_t size,
                                             std::int32_t latency) mutable {
        return std::exchange(isFirst, false) ? MidiFailure : open(stream, device, size, latency);
    };
    ExpectQuestion(ResultYes);
    desktop.ExpectMessage("There has been an error uploading the voices.\n\nThe MIDI ports could "
                          "not be opened, but now they can. Please try again.");
    EXPECT_EQ(RunCommand(CommandUpload), 0);
}

// ---- downloads

class CarefulDownload : public Careful {
protected:
    void SetUp() override {
        Careful::SetUp();
        SelectKeyboardAutodetect = 1;
        Open("mine.srx", TestRefaceBank());
        RunCommand(CommandFind);
        ASSERT_NE(MidiOutPort, NoMidiDevice);
        Forget();
    }
    // Three levels, which are all that there is room for; the list keeps the third.
    void FillUndo() {
        for (const char *name : {"ONE       ", "TWO       ", "THREE     "}) {
            ListWriteVoice(MainList, 0, [name](VoiceObject &voice) {
                std::copy_n(name, 10, voice.bytes.begin() + 52);
            });
            UndoPush(nullptr, MainList);
        }
        MainListState.dirty = true;
    }
    Strings NamesOfUndo() {
        Strings names;
        while (UndoAvailable()) {
            UndoPop(nullptr, MainList);
            names.push_back(VoiceObjectName(*ListVoice(MainList, 0)));
        }
        return names;
    }
    void ExpectFailure(const std::string &reason) {
        desktop.ExpectMessage("There has been an error downloading the voices.\n\n" + reason +
                              "\n\nNothing has been changed in the list.");
    }
    // The first two voices arrive; a voice is answered with seven messages, and one comes ahead.
    void BreakOff() { FaultsOf(BuiltinInstrument::Reface).silentAfterMessages = 1 + 2 * 7; }
    static std::string NotAll() {
        std::string text = "Your synthesizer did not send all of its voices. These places of the "
                           "list are incomplete: 3";
        for (int place = 4; place <= 32; ++place) {
            text += ", " + std::to_string(place);
        }
        return text + ".";
    }
    BuiltinMidi midi;
};

TEST_F(CarefulDownload, ThatCannotBeginAsksInSilenceAndCostsALevelWithTheModeOff) {
    FillUndo();
    MidiInPort = MidiOutPort = NoMidiDevice;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandDownload), 0);
    EXPECT_EQ(NamesOfUndo(), (Strings{"THREE", "THREE", "TWO"}));
}

TEST_F(CarefulDownload, OpensThePortsOnceWithTheModeOff) {
    int openings = 0;
    const auto openOutput = TheMidi.Pm_OpenOutput;
    TheMidi.Pm_OpenOutput = [&](auto... arguments) {
        ++openings;
        return openOutput(arguments...);
    };
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    EXPECT_EQ(openings, 1);
    TheMidi.Pm_OpenOutput = openOutput;
}

TEST_F(CarefulDownload, ThatCannotBeginSaysWhyBeforeAnythingIsAskedOrLost) {
    SwitchOn();
    FillUndo();
    FaultsOf(BuiltinInstrument::Reface).outputDoesNotOpen = true;
    ExpectFailure("The MIDI port " + std::string(TheMidi.Pm_GetDeviceInfo(MidiOutPort)->name) +
                  " could not be opened. Another program may be using it.");
    EXPECT_EQ(RunCommand(CommandDownload), 0);
    MidiInPort = MidiOutPort = NoMidiDevice;
    ExpectFailure("The MIDI output to your synthesizer has not been found. Please check that it is "
                  "connected and switched on, and click on Find synthesizer in the Edit menu.");
    EXPECT_EQ(RunCommand(CommandDownload), 0);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NamesOfUndo(), (Strings{"THREE", "TWO", "ONE"}));
}

TEST_F(CarefulDownload, ThatIsNotAnsweredCostsNoLevelOfUndo) {
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    for (const bool on : {false, true}) {
        CarefulMode = on;
        UndoClear();
        FillUndo();
        desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
        desktop.ExpectMessage("Invalid system common.");
        if (on) {
            ExpectFailure("Your synthesizer did not answer.");
        }
        EXPECT_EQ(RunCommand(CommandDownload), 0);
        EXPECT_EQ(NamesOfUndo(),
                  on ? (Strings{"THREE", "TWO", "ONE"}) : (Strings{"THREE", "THREE", "TWO"}));
    }
}

TEST_F(CarefulDownload, SettingsThatCannotBeReadSayWhy) {
    const std::string error = "There has been an error reading the settings of your "
                              "synthesizer.\n\n";
    FaultsOf(BuiltinInstrument::Reface).outputDoesNotOpen = true;
    EXPECT_EQ(RunCommand(CommandConfigure), 0);
    SwitchOn();
    desktop.ExpectMessage(error + "The MIDI port " +
                          std::string(TheMidi.Pm_GetDeviceInfo(MidiOutPort)->name) +
                          " could not be opened. Another program may be using it.");
    EXPECT_EQ(RunCommand(CommandConfigure), 0);
    MidiInPort = MidiOutPort = NoMidiDevice;
    desktop.ExpectMessage(error + "The MIDI output to your synthesizer has not been found. Please "
                                  "check that it is connected and switched on, and click on Find "
                                  "synthesizer in the Edit menu.");
    EXPECT_EQ(RunCommand(CommandConfigure), 0);
    CarefulMode = 0;
    EXPECT_EQ(RunCommand(CommandConfigure), 0);
}

TEST_F(CarefulDownload, WithoutAnInstrumentSaysSo) {
    ListReset(MainList);
    CurrentDriverId = NoDriverId;
    EXPECT_EQ(RunCommand(CommandDownload), 0);
    SwitchOn();
    ExpectFailure("There is no current synthesizer. Please choose one with Select synthesizer in "
                  "the Edit menu.");
    EXPECT_EQ(RunCommand(CommandDownload), 0);
}

TEST_F(CarefulDownload, ThatBreaksOffSoundsLikeOneThatDidNotWithTheModeOff) {
    BreakOff();
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_NE(ReadTestFile(home.File("mine.srx")), TestRefaceBank());
}

TEST_F(CarefulDownload, ThatBreaksOffSaysWhichVoicesDidNotArrive) {
    SwitchOn();
    BreakOff();
    desktop.ExpectMessage(NotAll());
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(MainListState.dirty);
    const std::string question = NotAll() + "\n\nDo you wish to save the others anyway?";
    for (const int command : {CommandSave, CommandSaveAs}) {
        desktop.ExpectYesNo(question, ResultNo);
        EXPECT_EQ(RunCommand(command), 0);
    }
    EXPECT_EQ(ReadTestFile(home.File("mine.srx")), TestRefaceBank());
    desktop.ExpectYesNo(question, ResultYes);
    ExpectSaveDialog(home.File("two.srx"), home.File("mine.srx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    EXPECT_EQ(ReadTestFile(home.File("two.srx")).size(), 160u + 32 * 202);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(VoiceObjectName(*ListVoice(MainList, 2)), TestRefaceName(2));
    MainListState.clickedIndex = 2;
    ExpectExport(home.File("three.sr1"));
    EXPECT_EQ(RunCommand(CommandExport), 1); // it is the former list's, and whole
}

TEST_F(CarefulDownload, AVoiceThatDidNotArriveIsNotExportedOrSent) {
    BreakOff();
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    MainListState.clickedIndex = 2;
    ExpectExport(home.File("plain.sr1"));
    EXPECT_EQ(RunCommand(CommandExport), 1);
    MainListState.dirty = false;
    FaultsOf(BuiltinInstrument::Reface) = {};
    BreakOff();
    SwitchOn();
    desktop.ExpectMessage(NotAll());
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    MainListState.clickedIndex = 2;
    desktop.ExpectMessage("Voice 3 of the list is incomplete." + NothingSaved);
    EXPECT_EQ(RunCommand(CommandExport), 0);
    MainListState.clickedIndex = 2;
    desktop.ExpectMessage("Voice 3 of the list is incomplete.\n\nNothing has been sent to your "
                          "synthesizer.");
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
    MainListState.clickedIndex = 1;
    ExpectExport(home.File("two.sr1"));
    EXPECT_EQ(RunCommand(CommandExport), 1);
}

TEST_F(CarefulDownload, ThatIsWholeSoundsAsEver) {
    SwitchOn();
    EXPECT_EQ(RunCommand(CommandDownload), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

// ---- messages of failure

TEST_F(Careful, AFailedOpenSaysWhy) {
    const auto open = [this](const std::string &name, const std::string &reason) {
        PendingOpenPath = home.File(name);
        desktop.ExpectMessage(ReadError + "\n\n" + home.File(name) + ": " + reason + ".");
        EXPECT_EQ(RunCommand(CommandOpen), 0) << name;
    };
    SwitchOn();
    open("missing.syx", "not readable: No such file or directory");
    home.WriteText("song.mid", "no bank");
    open("song.mid", "its name does not end as that of a bank");
    home.Write("one.sy1", TestVoiceFile());
    open("one.sy1", "it holds a single voice, for Import in the menu of a voice, and no bank");
    auto bank = TestBank();
    bank[4102] ^= 1;
    home.Write("sum.syx", bank);
    desktop.ExpectYesNo(
        "The data in the document sum.syx may be damaged.\n\nDo you wish to open it "
        "anyway?",
        ResultNo);
    open("sum.syx", "wrong checksum, and the answer was not to open it");
}

TEST_F(Careful, AFailedSaveSaysWhy) {
    SwitchOn();
    OpenBank();
    CreateBackups = 1;
    fs::create_directory("Backup of bank.syx");
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    desktop.ExpectMessage(WriteError + "\n\n" + home.File("bank.syx") +
                          ": the answer was not to go on without a backup.");
    EXPECT_EQ(RunCommand(CommandSave), 0);
}

TEST_F(Careful, APathThatIsTooLongIsToldInFull) {
    SwitchOn();
    OpenBank();
    const std::string path = "/" + std::string(300, 'a') + ".syx";
    const std::string reason = "\n\n" + path + ": File name too long.";
    ExpectSaveDialog(path, home.File("bank.syx"));
    desktop.ExpectMessage(WriteError + reason);
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Open, .answer = path});
    desktop.ExpectMessage(ReadError + reason);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = path});
    desktop.ExpectMessage("There has been an error importing VOICE 01" + reason);
    EXPECT_EQ(RunCommand(CommandImport), 0);
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
    desktop.ExpectMessage("There has been an error exporting VOICE 01" + reason);
    EXPECT_EQ(RunCommand(CommandExport), 0);
}

TEST_F(Careful, FailuresOfSingleVoicesSayWhy) {
    SwitchOn();
    OpenBank();
    const std::string path = home.File("none/a.sy1");
    MainListState.clickedIndex = 2;
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
    desktop.ExpectMessage("There has been an error exporting VOICE 03\n\n" + path +
                          ": No such file or directory.");
    EXPECT_EQ(RunCommand(CommandExport), 0);
    MainListState.clickedIndex = 2;
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = path});
    desktop.ExpectMessage("There has been an error importing VOICE 03\n\n" + path +
                          ": not readable: No such file or directory.");
    EXPECT_EQ(RunCommand(CommandImport), 0);
    desktop.ExpectMessage("Import error\n\n" + path + ": not readable: No such file or directory.");
    DropFiles({path});
}

// ---- a cancelled import

TEST_F(Careful, ACancelledImportMarksNothing) {
    SwitchOn();
    OpenBank();
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = std::nullopt});
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import,
                                      .answer = home.Write("piano.sy1", TestVoiceFile())});
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_TRUE(MainListState.dirty);
    CarefulMode = 0;
    MainListState.dirty = false;
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = std::nullopt});
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(Careful, ACancelledImportCostsNoLevelOfUndo) {
    for (const unsigned careful : {1u, 0u}) {
        CarefulMode = careful;
        MainListState.dirty = false;
        OpenBank();
        Change();
        UndoPush(nullptr, MainList);
        UndoPush(nullptr, MainList); // the store is full
        ASSERT_EQ(UndoCount(), 3);
        MainListState.dirty = false;
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import, .answer = std::nullopt});
        EXPECT_EQ(RunCommand(CommandImport), 1);
        EXPECT_EQ(UndoCount(), 3);
        for (int level = 0; level < 3; ++level) {
            EXPECT_EQ(RunCommand(CommandUndo), 1);
        }
        EXPECT_EQ(NameAt(0), careful ? "VOICE 01" : "CHANGED"); // the oldest
    }
}

} // namespace
} // namespace tonewright
