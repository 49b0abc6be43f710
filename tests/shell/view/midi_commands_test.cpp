// The commands that talk to an instrument, from the main window's menus and mouse, over a scripted
// MIDI table.
#include "window_fixture.h"

#include "common/view/status_bar.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/command_queue.h"
#include "support/fake_midi.h"
#include "support/family_names.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

const std::string SaveQuestion =
    "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save it, "
    "or click on No to abandon it.\n\nClick on Cancel to return to the main window of Tonewright.";
const std::string Unrecognized = "Unknown or unrecognized synthesizer";

class MidiCommands : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        in = midi.AddInput("Yamaha DX7");
        out = midi.AddOutput("Yamaha DX7");
        SelectKeyboardName = Dx7Name;
        SelectKeyboardMidiIn = SelectKeyboardMidiOut = "Yamaha DX7";
        CurrentMidiChannel = 1;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
        MiddleButtonAudition = 1;
    }
    // Opens the bank with the instrument found.
    void OpenBankOfInstrument() {
        OpenBank();
        MidiInPort = in;
        MidiOutPort = out;
        desktop.statusTexts.clear();
    }

    // The name in the single-voice dump that was written last.
    std::string UploadedName() const {
        for (auto message = midi.written.rbegin(); message != midi.written.rend(); ++message) {
            if (message->sysex && message->bytes.size() == 163) {
                return {message->bytes.begin() + 6 + 145, message->bytes.begin() + 6 + 155};
            }
        }
        return "";
    }

    FakeMidi midi;
    int in = -1, out = -1;
};

TEST_F(MidiCommands, TheMiddleButtonAuditionsTheVoiceUnderIt) {
    OpenBankOfInstrument();
    ListSelect(MainList, 1);
    EXPECT_TRUE(WithBox([&] { ClickRow(4, Qt::MiddleButton); },
                        [&](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Audition VOICE 05");
                            EXPECT_EQ(UploadedName(), "VOICE 05  ");
                            QTest::mouseClick(box.findChild<QWidget *>("control_500"),
                                              Qt::LeftButton);
                        }));
    EXPECT_EQ(
        midi.calls,
        (Calls{"Pt_Start(1)", "Pm_OpenOutput(1, 0, 0)", "Pm_WriteShort(1, 0, B0 7D 00)",
               "Pm_WriteSysEx(1, 0, 163 bytes)", "Pm_WriteShort(1, 0, B0 7C 00)", "Pt_Stop()",
               "Pm_Close(1)", "Pm_OpenOutput(1, 0, 0)", "Pm_WriteShort(1, 0, C0 1F 00)",
               "Pm_WriteShort(1, 0, C0 00 00)", "Pm_Write(1, 0, 90 3C 64)",
               "Pm_Write(1, 0, 80 3C 64)", "Pm_Write(1, 0, 80 7F 64)", "Pm_Write(1, 0, B0 78 00)",
               "Pm_WriteShort(1, 0, C0 1F 00)", "Pm_WriteShort(1, 0, C0 00 00)", "Pm_Close(1)"}));
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(list->isEnabled());
    EXPECT_EQ(MainList.selection, 1);
}

TEST_F(MidiCommands, TheMiddleButtonSwitchedOffOpensNothingAndKeepsNoRow) {
    OpenBankOfInstrument();
    MiddleButtonAudition = 0;
    EXPECT_FALSE(WithBox([&] { ClickRow(4, Qt::MiddleButton); }, [](QDialog &) {}));
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(MidiCommands, TheMiddleButtonBelowTheLastRowOpensNothing) {
    OpenBankOfInstrument();
    while (ListCount(MainList) > 3) {
        ListDelete(MainList, 3);
    }
    EXPECT_FALSE(WithBox([&] { ClickRow(3, Qt::MiddleButton); }, [](QDialog &) {}));
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_TRUE(WithBox([&] { ClickRow(2, Qt::MiddleButton); },
                        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 03"); }));
    midi.calls.clear();
    ListReset(MainList);
    EXPECT_FALSE(WithBox([&] { ClickRow(0, Qt::MiddleButton); }, [](QDialog &) {}));
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(MidiCommands, TheMiddleButtonOnADisabledListOpensNothing) {
    OpenBankOfInstrument();
    ListEnable(MainList, false);
    EXPECT_FALSE(WithBox([&] { ClickRow(4, Qt::MiddleButton); }, [](QDialog &) {}));
    ListEnable(MainList, true);
    EXPECT_FALSE(WithBox([] {}, [](QDialog &) {}));
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(MidiCommands, TheMiddleButtonTakesTheRowOfAListThatIsScrolled) {
    OpenBankOfInstrument();
    ListSetTopRow(MainList, 9);
    EXPECT_TRUE(WithBox(
        [&] { QTest::mouseClick(Viewport(), Qt::MiddleButton, Qt::NoModifier, RowPoint(11)); },
        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 12"); }));
}

TEST_F(MidiCommands, TheBoxOfTheMiddleButtonIsPostedAndCanBeOpenedAgain) {
    OpenBankOfInstrument();
    QTest::mousePress(Viewport(), Qt::MiddleButton, Qt::NoModifier, RowPoint(4));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(MainListState.clickedIndex, 4);
    QTest::mouseRelease(Viewport(), Qt::MiddleButton, Qt::NoModifier, RowPoint(4));
    EXPECT_TRUE(WithBox([] {},
                        [](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Audition VOICE 05");
                            EXPECT_EQ(MainListState.clickedIndex, -1);
                        }));
    EXPECT_TRUE(WithBox([&] { ClickRow(6, Qt::MiddleButton); },
                        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 07"); }));
}

TEST_F(MidiCommands, ARightClickBesideTheRowsLeavesTheSelectionToTheAudition) {
    OpenBankOfInstrument();
    while (ListCount(MainList) > 3) {
        ListDelete(MainList, 3);
    }
    ListSelect(MainList, 1);
    MainListState.clickedIndex = 2;
    EXPECT_TRUE(WithBox(
        [&] {
            EXPECT_TRUE(WithContextMenu(RowPoint(5), [](QMenu &menu) {
                QAction *audition = ActionOf(menu, CommandAudition);
                EXPECT_EQ(audition->text(), "Audition");
                menu.setActiveAction(audition);
                QTest::keyClick(&menu, Qt::Key_Return);
            }));
        },
        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 02"); }));
}

TEST_F(MidiCommands, TheContextMenuAuditionsTheVoiceUnderIt) {
    OpenBankOfInstrument();
    EXPECT_TRUE(WithBox(
        [&] {
            WithContextMenu(RowPoint(2), [](QMenu &menu) {
                QAction *audition = ActionOf(menu, CommandAudition);
                EXPECT_EQ(audition->text(), "Audition VOICE 03 on synthesizer");
                EXPECT_TRUE(audition->isEnabled());
                menu.setActiveAction(audition);
                QTest::keyClick(&menu, Qt::Key_Return);
            });
        },
        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 03"); }));
}

TEST_F(MidiCommands, WithoutAClickedRowTheSelectionIsAuditioned) {
    OpenBankOfInstrument();
    ListSelect(MainList, 6);
    EXPECT_TRUE(WithBox([] { RunCommand(CommandAudition); },
                        [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition VOICE 07"); }));
}

TEST_F(MidiCommands, WithoutASelectionAuditionDoesNothing) {
    OpenBankOfInstrument();
    ListSelect(MainList, NoRow);
    EXPECT_FALSE(WithBox([] { RunCommand(CommandAudition); }, [](QDialog &) {}));
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(MidiCommands, WithoutAnInstrumentBothMessagesOfTheAuditionFollowEachOther) {
    OpenBank();
    MidiOutPort = -1;
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    desktop.ExpectMessage("The MIDI output could not be opened.");
    EXPECT_FALSE(WithBox([&] { ClickRow(0, Qt::MiddleButton); }, [](QDialog &) {}));
    desktop.ExpectNothingLeft();
}

TEST_F(MidiCommands, UploadOfOneVoiceSendsItWithItsPrompts) {
    OpenBankOfInstrument();
    ListSelect(MainList, 3);
    desktop.ExpectMessage("VOICE 04 is about to be uploaded to your synthesizer.\n\nPlease select "
                          "the voice bank in which you'd like it to be stored. (Turn the black "
                          "Program knob on the Korg Volca FM.)");
    desktop.ExpectMessage("VOICE 04 has been uploaded to your synthesizer.\n\nPress the Save "
                          "button twice to store it.");
    EXPECT_EQ(RunUserCommand(CommandUploadVoice), 1);
    EXPECT_EQ(UploadedName(), "VOICE 04  ");
    EXPECT_EQ(desktop.sounds.size(), 1u);
    desktop.sounds.clear();
    MidiOutPort = -1;
    desktop.ExpectMessage("There has been an error uploading VOICE 04");
    EXPECT_EQ(RunUserCommand(CommandUploadVoice), 0);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(MidiCommands, UploadOfTheListSendsTheBankFromMenuAndToolBar) {
    EXPECT_FALSE(window->MenuAction(CommandUpload)->isEnabled());
    OpenBankOfInstrument();
    EXPECT_TRUE(window->MenuAction(CommandUpload)->isEnabled());
    EXPECT_FALSE(window->MenuAction(CommandDownload)->isEnabled()); // a DX7 cannot be asked
    Trigger(CommandUpload);
    const auto sent = std::ranges::find(midi.written, true, &FakeMidi::Message::sysex);
    ASSERT_NE(sent, midi.written.end());
    EXPECT_EQ(sent->bytes, TestBank());
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(MidiCommands, FindLooksAtThePortsAnewAndShowsTheInstrument) {
    CurrentDriverId = Dx7DriverId;
    desktop.statusTexts.clear();
    RunCommand(CommandFind);
    EXPECT_EQ(midi.calls, (Calls{"RescanDevices()", "Pt_Start(1)", "Pt_Stop()"}));
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, in);
    EXPECT_EQ(MidiOutPort, out);
    EXPECT_EQ(desktop.statusTexts.back(), Dx7Name);
}

TEST_F(MidiCommands, AnInstrumentThatIsPluggedInLaterIsFoundByTheNextFind) {
    midi.devices.clear();
    CurrentDriverId = Dx7DriverId;
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(desktop.statusTexts.back(), Unrecognized);
    // Without a driver the search only confirms that there is none.
    midi.AddInput("Yamaha DX7");
    midi.AddOutput("Yamaha DX7");
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    midi.devices.clear();
    midi.onRescan = [&] {
        midi.AddInput("Yamaha DX7");
        midi.AddOutput("Yamaha DX7");
    };
    CurrentDriverId = Dx7DriverId;
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiOutPort, 1);
}

TEST_F(MidiCommands, StartFindsTheInstrumentOfTheSettings) {
    PostFirstCommands();
    RunPosted();
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, in);
    EXPECT_EQ(MidiOutPort, out);
}

TEST_F(MidiCommands, MidiDevicesLooksAnewAndListsThem) {
    midi.onRescan = [&] { midi.AddInput("Plugged in"); };
    EXPECT_TRUE(WithBox([&] { Trigger(CommandMidiDevices); },
                        [&](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "MIDI Devices");
                            EXPECT_EQ(midi.calls, Calls{"RescanDevices()"});
                            EXPECT_EQ(box.findChild<QListWidget *>("control_101")->count(), 3);
                        }));
}

TEST_F(MidiCommands, SelectSynthesizerEmptiesTheListAndFindsTheInstrument) {
    OpenBankOfInstrument();
    MidiInPort = MidiOutPort = -1;
    ListSelect(MainList, 0);
    RefreshCopy();
    EXPECT_TRUE(CommandAllowed(CommandCopy));
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); },
                        [&](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Select Synthesizer");
                            EXPECT_EQ(midi.calls, Calls{"RescanDevices()"});
                        }));
    EXPECT_EQ(midi.calls, (Calls{"RescanDevices()", "Pt_Start(1)", "Pt_Stop()"}));
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, in);
    EXPECT_EQ(MidiOutPort, out);
    EXPECT_EQ(desktop.statusTexts, std::vector<std::string>{Dx7Name});
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    EXPECT_FALSE(window->MenuAction(CommandUpload)->isEnabled());
}

TEST_F(MidiCommands, SelectSynthesizerWithPortsThatAreGoneEndsWithoutAnInstrument) {
    OpenBankOfInstrument();
    EXPECT_TRUE(
        WithBox([&] { Trigger(CommandSelectSynth); },
                [&](QDialog &) { midi.devices[static_cast<std::size_t>(out)].absent = true; }));
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, in); // the port that was found stays
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(desktop.statusTexts.back(), Unrecognized);
}

TEST_F(MidiCommands, ACancelledSelectSynthesizerChangesNothing) {
    OpenBankOfInstrument();
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); },
                        [](QDialog &box) {
                            QTest::mouseClick(box.findChild<QPushButton *>("control_2"),
                                              Qt::LeftButton);
                        }));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(MidiOutPort, out);
    EXPECT_EQ(midi.calls, Calls{"RescanDevices()"});
    EXPECT_TRUE(desktop.statusTexts.empty());
}

TEST_F(MidiCommands, SelectSynthesizerAsksAboutUnsavedChangesFirstAndCancelStays) {
    OpenBankOfInstrument();
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_FALSE(WithBox([&] { Trigger(CommandSelectSynth); }, [](QDialog &) {}));
    EXPECT_TRUE(midi.calls.empty());
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(MidiCommands, AfterSavingSelectSynthesizerAsksOnce) {
    OpenBankOfInstrument();
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); }, [](QDialog &) {}));
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(MidiCommands, WhoAbandonsTheChangesIsAskedAgainByTheBox) {
    OpenBankOfInstrument();
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); }, [](QDialog &) {}));
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_TRUE(MainListState.dirty); // which the box does not touch
}

TEST_F(MidiCommands, TheRefaceDxOffersItsCommands) {
    CurrentDriverId = RefaceDriverId;
    RefreshCommands();
    EXPECT_TRUE(window->MenuAction(CommandConfigure)->isEnabled());
    EXPECT_TRUE(window->MenuAction(CommandFind)->isEnabled());
    EXPECT_TRUE(window->MenuAction(CommandDownload)->isEnabled());
    EXPECT_FALSE(window->MenuAction(CommandUpload)->isEnabled());
    EXPECT_TRUE(window->MenuAction(CommandMidiDevices)->isEnabled());
    EXPECT_TRUE(window->MenuAction(CommandSelectSynth)->isEnabled());
}

} // namespace
} // namespace tonewright
