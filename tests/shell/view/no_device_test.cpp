// The commands that talk to an instrument, in the real window, on a machine without any MIDI
// device: what a user without hardware meets.
#include "window_fixture.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/command_queue.h"
#include "support/fake_midi.h"
#include "support/family_names.h"
#include "support/reface_bytes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

const std::string Unrecognized = "Unknown or unrecognized synthesizer";

// The MIDI table of a program that has found no device, and of one that has no MIDI at all.
enum class Machine { WithoutDevices, WithoutMidi };
std::ostream &operator<<(std::ostream &stream, Machine machine) {
    return stream << (machine == Machine::WithoutDevices ? "without devices" : "without MIDI");
}

class NoDevice : public WindowTest, public testing::WithParamInterface<Machine> {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        if (GetParam() == Machine::WithoutDevices) {
            fake.emplace();
        }
        SelectKeyboardName = RefaceName;
        SelectKeyboardMidiIn = SelectKeyboardMidiOut = "Gone away";
        SelectKeyboardAutodetect = 1;
        CurrentMidiChannel = 3;
        DownloadOnOpen = 0;
        MiddleButtonAudition = 1;
    }
    void TearDown() override {
        fake.reset(); // which looks whether all is closed
        EXPECT_TRUE(list->isEnabled());
        EXPECT_EQ(desktop.busyBoxesShown, 0);
        EXPECT_TRUE(desktop.sounds.empty());
    }

    // A bank of either driver in the list, which makes the driver current.
    void OpenBankOf(DriverId driver) {
        PendingOpenPath = driver == Dx7DriverId ? home.Write("bank.syx", TestBank())
                                                : home.Write("bank.srx", TestRefaceBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        ASSERT_EQ(CurrentDriverId, driver);
        desktop.sounds.clear();
        desktop.statusTexts.clear();
        desktop.progress.clear();
        firstName = driver == Dx7DriverId ? "VOICE 01" : "REFACE 01";
    }
    void ExpectNoInstrument() const {
        EXPECT_EQ(CurrentDriverId, NoDriverId);
        EXPECT_EQ(MidiInPort, -1);
        EXPECT_EQ(MidiOutPort, -1);
        ASSERT_FALSE(desktop.statusTexts.empty());
        EXPECT_EQ(desktop.statusTexts.back(), Unrecognized);
        for (const int id : {CommandDownload, CommandUpload, CommandFind, CommandConfigure}) {
            EXPECT_FALSE(CommandAllowed(id)) << id;
            EXPECT_FALSE(window->MenuAction(id)->isEnabled()) << id;
        }
    }

    std::optional<FakeMidi> fake;
    std::string firstName;
};

TEST_P(NoDevice, TheStartEndsWithoutADriverAndWithoutAMessage) {
    for (const std::string &name : Strings{Dx7Name, RefaceName, "Unknown", ""}) {
        for (const std::uint32_t download : {0u, 1u}) {
            SelectKeyboardName = name;
            DownloadOnOpen = download;
            PostFirstCommands();
            RunPosted();
            ExpectNoInstrument();
            EXPECT_EQ(SelectKeyboardName, name); // found again when the instrument is back
        }
    }
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_P(NoDevice, FindEndsWithoutADriverAndKeepsTheList) {
    for (const DriverId driver : {Dx7DriverId, RefaceDriverId}) {
        OpenBankOf(driver);
        RunCommand(CommandFind);
        ExpectNoInstrument();
        EXPECT_EQ(NameAt(0), firstName);
        EXPECT_TRUE(window->MenuAction(CommandSave)->isEnabled());
    }
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_P(NoDevice, ABankCanBeOpenedAndWhatIsSentFails) {
    OpenBankOf(Dx7DriverId);
    ASSERT_TRUE(window->MenuAction(CommandUpload)->isEnabled());
    Trigger(CommandUpload); // in silence
    EXPECT_EQ(NameAt(0), "VOICE 01");
    desktop.ExpectMessage("There has been an error uploading VOICE 01");
    RunUserCommand(CommandUploadVoice);
    OpenBankOf(RefaceDriverId);
    ASSERT_TRUE(window->MenuAction(CommandDownload)->isEnabled());
    Trigger(CommandDownload); // in silence, too
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(0), "REFACE 01");
    desktop.ExpectMessage("There has been an error uploading REFACE 01");
    RunUserCommand(CommandUploadVoice);
    desktop.ExpectNothingLeft();
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.statusTexts.empty());
    EXPECT_TRUE(desktop.progress.empty());
}

TEST_P(NoDevice, WithoutADriverNothingIsSent) {
    OpenBankOf(Dx7DriverId);
    CurrentDriverId = NoDriverId;
    EXPECT_EQ(RunCommand(CommandUpload), 0);
    desktop.ExpectMessage("There has been an error building this undo level.");
    EXPECT_EQ(RunCommand(CommandDownload), 0);
    EXPECT_EQ(RunCommand(CommandFind), 0);
    desktop.ExpectMessage("There has been an error uploading VOICE 01");
    EXPECT_EQ(RunCommand(CommandUploadVoice), 0);
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    desktop.ExpectMessage("The MIDI output could not be opened.");
    RunCommand(CommandAudition);
    desktop.ExpectNothingLeft();
    EXPECT_EQ(NameAt(0), "VOICE 01");
    ExpectNoInstrument();
}

TEST_P(NoDevice, TheAuditionTellsBothFailuresAndCloses) {
    for (const DriverId driver : {Dx7DriverId, RefaceDriverId}) {
        OpenBankOf(driver);
        desktop.ExpectMessage("The selected voice could not be uploaded.");
        desktop.ExpectMessage("The MIDI output could not be opened.");
        EXPECT_FALSE(WithBox([&] { ClickRow(4, Qt::MiddleButton); }, [](QDialog &) {}));
        desktop.ExpectNothingLeft();
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST_P(NoDevice, TheListOfDevicesIsEmptyAndItsBoxWorks) {
    EXPECT_TRUE(WithBox(
        [&] { Trigger(CommandMidiDevices); },
        [](QDialog &box) { EXPECT_EQ(box.findChild<QListWidget *>("control_101")->count(), 0); }));
}

TEST_P(NoDevice, SelectSynthesizerHasEmptyListsOfPortsAndStoresEmptyNames) {
    OpenBankOf(Dx7DriverId);
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); },
                        [](QDialog &box) {
                            auto *synth = box.findChild<QComboBox *>("control_101");
                            EXPECT_EQ(synth->count(), 3);
                            EXPECT_EQ(synth->currentText().toStdString(), RefaceName);
                            EXPECT_TRUE(box.findChild<QCheckBox *>("control_102")->isEnabled());
                            EXPECT_EQ(box.findChild<QComboBox *>("control_104")->count(), 0);
                            EXPECT_EQ(box.findChild<QComboBox *>("control_103")->count(), 0);
                        }));
    ExpectNoInstrument();
    EXPECT_EQ(SelectKeyboardName, RefaceName);
    EXPECT_EQ(SelectKeyboardMidiIn, "");
    EXPECT_EQ(SelectKeyboardMidiOut, "");
    EXPECT_EQ(CurrentMidiChannel, 3u);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_TRUE(desktop.messages.empty());
}

INSTANTIATE_TEST_SUITE_P(Machines, NoDevice,
                         testing::Values(Machine::WithoutDevices, Machine::WithoutMidi));

} // namespace
} // namespace tonewright
