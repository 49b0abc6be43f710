// The space bar on a row of the list, with SpaceAuditions.
#include "window_fixture.h"

#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instrument_sound.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/builtin_midi.h"
#include "support/fake_audio.h"
#include "support/reface_bytes.h"

namespace tonewright {
namespace {

using Notes = std::vector<int>;

class SpaceAudition : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        SpaceAuditions = 1;
        OpenBank();
        CurrentDriverId = SynthDrivers[0]->id;
        UsePorts(BuiltinInstrument::Dx7);
        ListSelect(MainList, 3);
        list->setFocus();
        desktop.statusTexts.clear();
    }
    static void UsePorts(BuiltinInstrument instrument) {
        MidiInPort = 2 * static_cast<int>(instrument);
        MidiOutPort = MidiInPort + 1;
    }
    static Notes Sounding() { return SoundingNotesOf(BuiltinInstrument::Dx7); }
    void SendRepeat(QEvent::Type type) {
        QKeyEvent repeat(type, Qt::Key_Space, Qt::NoModifier, " ", true);
        QApplication::sendEvent(list, &repeat);
    }

    BuiltinMidi midi;
};

TEST_F(SpaceAudition, PlaysTheRowForAsLongAsItIsHeldWithoutABox) {
    AuditionCurrentOctave = 4;
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{48});
    EXPECT_EQ(OpenBuiltinStreams(), 1);
    EXPECT_EQ(desktop.busyBoxesShown, 0);
    // The voice that was sent is the one that sounds.
    const auto &heard = EditBufferOf(BuiltinInstrument::Dx7);
    EXPECT_EQ(std::string(heard.begin() + 145, heard.begin() + 155), "VOICE 04  ");
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_EQ(MainList.selection, 3);
    EXPECT_FALSE(MainListState.dirty);
}

// Whose upload takes longer, so that a box tells of it elsewhere, which would take the keys.
TEST_F(SpaceAudition, PlaysAVoiceOfAnotherFamilyWithoutABoxToo) {
    CurrentDriverId = RefaceDriverId;
    UsePorts(BuiltinInstrument::Reface);
    ListSetVoice(MainList, 3, VoiceObject{TestRefaceBlock(3)});
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_EQ(SoundingNotesOf(BuiltinInstrument::Reface), Notes{60});
    EXPECT_EQ(desktop.busyBoxesShown, 0);
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(SoundingNotesOf(BuiltinInstrument::Reface), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    TheDesktop.ShowBusyBox(nullptr, "still there for others");
    TheDesktop.CloseBusyBox();
    EXPECT_EQ(desktop.busyBoxesShown, 1);
}

TEST_F(SpaceAudition, SwitchedOffItLooksForANameAsEver) {
    SpaceAuditions = 0;
    MidiApi calls = TheMidi;
    int opened = 0;
    TheMidi.Pm_OpenOutput = [&](auto... arguments) {
        ++opened;
        return calls.Pm_OpenOutput(arguments...);
    };
    QTest::keyClick(list, Qt::Key_Space);
    EXPECT_EQ(opened, 0);
    SpaceAuditions = 1;
    QTest::keyClick(list, Qt::Key_Space, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_V); // and other keys as ever
    EXPECT_EQ(opened, 0);
    QTest::keyClick(list, Qt::Key_Space);
    EXPECT_EQ(opened, 2); // for the voice, and for the note
}

TEST_F(SpaceAudition, ARepeatedKeyBeginsAndEndsNothing) {
    SendRepeat(QEvent::KeyPress); // of a press that was meant for something else
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    QTest::keyPress(list, Qt::Key_Space);
    SendRepeat(QEvent::KeyRelease);
    SendRepeat(QEvent::KeyPress);
    EXPECT_EQ(Sounding(), Notes{60});
    EXPECT_EQ(OpenBuiltinStreams(), 1);
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{});
}

TEST_F(SpaceAudition, EndsWithTheFocusAndWhereverTheKeyIsLetGo) {
    QTest::keyPress(list, Qt::Key_Space);
    window->setFocusPolicy(Qt::StrongFocus);
    window->setFocus();
    EXPECT_EQ(Sounding(), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    list->setFocus();
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{60});
    QTest::keyRelease(window.get(), Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{});
    QTest::keyPress(list, Qt::Key_Space);
    QEvent deactivated(QEvent::WindowDeactivate);
    QApplication::sendEvent(list, &deactivated);
    EXPECT_EQ(Sounding(), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

TEST_F(SpaceAudition, NoCommandStartsMeanwhile) {
    int looks = 0;
    TheMidi.RescanDevices = [&looks] { ++looks; };
    QTest::keyPress(list, Qt::Key_Space);
    RunUserCommand(CommandFind);
    PostCommand(CommandFind);
    RunPosted();
    EXPECT_EQ(looks, 0);
    EXPECT_EQ(Sounding(), Notes{60});
    QTest::keyRelease(list, Qt::Key_Space);
    {
        const RunningMark running;
        QTest::keyPress(list, Qt::Key_Space);
        EXPECT_EQ(Sounding(), Notes{});
        QTest::keyRelease(list, Qt::Key_Space);
    }
    RunPosted();
    EXPECT_EQ(looks, 1);
}

TEST_F(SpaceAudition, AnUploadThatFailsSaysSoOnceAndNothingSounds) {
    FaultsOf(BuiltinInstrument::Dx7).outputDoesNotOpen = true;
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    desktop.ExpectMessage("The MIDI output could not be opened.");
    QTest::keyPress(list, Qt::Key_Space);
    SendRepeat(QEvent::KeyPress);
    SendRepeat(QEvent::KeyPress);
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_FALSE(SomethingIsRunning());
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

// On a card that refuses at first.
TEST_F(SpaceAudition, WhyThereIsNoSoundGoesAfterAWhileAndWithTheNextRow) {
    FakeAudio audio;
    audio.refuses = "it is busy";
    TheMidi = MakeBuiltinInstruments({.simulatedClock = true, .listener = InstrumentSound()});
    CurrentDriverId = RefaceDriverId;
    UsePorts(BuiltinInstrument::Reface);
    ListSetVoice(MainList, 3, VoiceObject{TestRefaceBlock(3)});
    const std::string name = SynthTitle(CurrentDriverId, SynthFirmware);
    const auto failed = [] {
        std::string why;
        return StateOfInstrumentSound(why) == InstrumentSoundState::Failed;
    };
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor(failed));
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(desktop.statusTexts.back(), "No sound: it is busy.");
    EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.statusTexts.back() == name; }, 8000));
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor(failed));
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(desktop.statusTexts.back(), "No sound: it is busy.");
    audio.Change([&] { audio.refuses.clear(); });
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_TRUE(audio.UntilItRuns());
    EXPECT_EQ(desktop.statusTexts.back(), name);
    QTest::keyRelease(list, Qt::Key_Space);
    EXPECT_EQ(desktop.statusTexts.back(), name);
}

TEST_F(SpaceAudition, AKeyThatIsLetGoDuringTheUploadLeavesNoNote) {
    TheMidi.Pm_WriteSysEx = [this, write = TheMidi.Pm_WriteSysEx](auto... arguments) {
        QTest::keyRelease(list, Qt::Key_Space);
        return write(arguments...);
    };
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

TEST_F(SpaceAudition, WithoutASelectedRowItDoesNothing) {
    ListSelect(MainList, NoRow);
    QTest::keyClick(list, Qt::Key_Space);
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_FALSE(SomethingIsRunning());
}

TEST_F(SpaceAudition, TheEndOfTheWindowEndsTheNote) {
    QTest::keyPress(list, Qt::Key_Space);
    EXPECT_EQ(Sounding(), Notes{60});
    window.reset();
    EXPECT_EQ(Sounding(), Notes{});
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

} // namespace
} // namespace tonewright
