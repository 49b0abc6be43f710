// The Audition box over the built-in instruments: what they hear while it is open.
#include "midi/view/audition_box.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/bank_bytes.h"
#include "support/builtin_midi.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace tonewright {
namespace {

using Notes = std::vector<int>;

class AuditionOfInstruments : public testing::Test {
protected:
    void SetUp() override {
        CurrentMidiChannel = 1;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
        // What an upload leaves behind, before a program is selected.
        TheMidi.Pm_WriteSysEx = [this, write = TheMidi.Pm_WriteSysEx](auto... arguments) {
            const int result = write(arguments...);
            uploaded = EditBufferOf(BuiltinInstrument::Dx7);
            return result;
        };
    }
    BuiltinMidi midi;

    // The device indices of an instrument.
    static int InputOf(BuiltinInstrument instrument) { return 2 * static_cast<int>(instrument); }
    static int OutputOf(BuiltinInstrument instrument) { return InputOf(instrument) + 1; }

    // Opens the box for a voice, hands it to `use` and closes it by its button.
    bool WithBox(BuiltinInstrument instrument, const std::function<void(QDialog &)> &use) {
        return WithBox(instrument, voice, Dx7DriverId, use);
    }
    bool WithBox(BuiltinInstrument instrument, const VoiceObject &played, DriverId driver,
                 const std::function<void(QDialog &)> &use) {
        bool opened = false;
        QTimer::singleShot(0, [&] {
            auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!box) {
                return;
            }
            opened = true;
            use(*box);
            QTest::mouseClick(box->findChild<QPushButton *>("control_1"), Qt::LeftButton);
            if (box->isVisible()) {
                ADD_FAILURE() << "the box is still open";
                box->done(0);
            }
        });
        AuditionBox(nullptr, nullptr, &played, driver, {InputOf(instrument), OutputOf(instrument)},
                    0);
        return opened;
    }
    static QWidget *Key(QDialog &box, int control) {
        return box.findChild<QWidget *>(QString("control_%1").arg(control));
    }

    ScriptedDesktop desktop;
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    std::vector<std::uint8_t> uploaded;
};

TEST_F(AuditionOfInstruments, AKeySoundsAsLongAsItIsHeld) {
    for (const auto instrument : {BuiltinInstrument::Dx7, BuiltinInstrument::VolcaFm}) {
        EXPECT_TRUE(WithBox(instrument, [&](QDialog &box) {
            EXPECT_EQ(OpenBuiltinStreams(), 1); // the output, for the life of the box
            EXPECT_FALSE(BuiltinClockRuns());
            QTest::mousePress(Key(box, 504), Qt::LeftButton);
            EXPECT_EQ(SoundingNotesOf(instrument), Notes{64});
            QTest::mouseRelease(Key(box, 504), Qt::LeftButton);
            EXPECT_EQ(SoundingNotesOf(instrument), Notes{});
        }));
    }
}

TEST_F(AuditionOfInstruments, TheVoiceReachesTheEditBufferAndTheMemoryStaysAsItIs) {
    const auto memory = MemoryOf(BuiltinInstrument::Dx7);
    EXPECT_TRUE(WithBox(BuiltinInstrument::Dx7, [](QDialog &) {}));
    const auto bytes = TestUnpackedVoice();
    EXPECT_EQ(uploaded, std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 155));
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), memory);
}

TEST_F(AuditionOfInstruments, ANoteThatIsHeldAtTheCloseIsSilencedAndTheFirstProgramSelected) {
    EXPECT_TRUE(WithBox(BuiltinInstrument::Dx7, [](QDialog &box) {
        QTest::mousePress(Key(box, 12511), Qt::LeftButton);
        EXPECT_EQ(SoundingNotesOf(BuiltinInstrument::Dx7), Notes{71});
    }));
    EXPECT_EQ(SoundingNotesOf(BuiltinInstrument::Dx7), Notes{});
    EXPECT_EQ(SelectedProgramOf(BuiltinInstrument::Dx7), 0);
}

// What an instrument of the family sounds while a key of the box is held.
TEST_F(AuditionOfInstruments, TheNoteSoundsTheFirstVoiceOrWithTheSwitchTheOneThatWasSent) {
    const auto bytes = TestUnpackedVoice();
    const std::vector<std::uint8_t> sent(bytes.begin(), bytes.begin() + 155);
    const auto block = TestRefaceBlock(3);
    const std::vector<std::uint8_t> refaceSent(block.begin() + 52, block.end());
    const auto sounding = [&](BuiltinInstrument instrument, std::uint32_t keeps) {
        AuditionKeepsVoice = keeps;
        const bool reface = instrument == BuiltinInstrument::Reface;
        std::vector<std::uint8_t> heard;
        EXPECT_TRUE(WithBox(instrument, reface ? VoiceObject{block} : voice,
                            reface ? RefaceDriverId : Dx7DriverId, [&](QDialog &box) {
                                QTest::mousePress(Key(box, 504), Qt::LeftButton);
                                EXPECT_EQ(SoundingNotesOf(instrument), Notes{64});
                                heard = EditBufferOf(instrument);
                            }));
        EXPECT_EQ(SoundingNotesOf(instrument), Notes{});
        return heard;
    };
    for (const auto instrument : {BuiltinInstrument::Dx7, BuiltinInstrument::VolcaFm}) {
        EXPECT_NE(sounding(instrument, 0), sent);
        EXPECT_EQ(sounding(instrument, 1), sent);
        EXPECT_EQ(EditBufferOf(instrument), sent); // after the box, too
    }
    EXPECT_NE(sounding(BuiltinInstrument::Reface, 0), refaceSent);
    EXPECT_EQ(sounding(BuiltinInstrument::Reface, 1), refaceSent);
    EXPECT_EQ(EditBufferOf(BuiltinInstrument::Reface), refaceSent);
}

TEST_F(AuditionOfInstruments, ARefaceDxIsPlayedAndGetsItsSettingsBack) {
    constexpr auto instrument = BuiltinInstrument::Reface;
    const auto settings = SystemSettingsOf(instrument);
    std::vector<std::uint8_t> received;
    TheMidi.Pm_WriteSysEx = [&, write = TheMidi.Pm_WriteSysEx](auto... arguments) {
        const int result = write(arguments...);
        received = EditBufferOf(instrument);
        return result;
    };
    EXPECT_TRUE(
        WithBox(instrument, VoiceObject{TestRefaceBlock(3)}, RefaceDriverId, [&](QDialog &box) {
            EXPECT_EQ(OpenBuiltinStreams(), 1);
            QTest::mousePress(Key(box, 504), Qt::LeftButton);
            EXPECT_EQ(SoundingNotesOf(instrument), Notes{64});
            QTest::mouseRelease(Key(box, 504), Qt::LeftButton);
            EXPECT_EQ(SoundingNotesOf(instrument), Notes{});
        }));
    const auto block = TestRefaceBlock(3);
    EXPECT_EQ(received, std::vector<std::uint8_t>(block.begin() + 52, block.end()));
    EXPECT_EQ(SystemSettingsOf(instrument), settings);
}

TEST_F(AuditionOfInstruments, ASilentRefaceDxIsToldByItsDriverAndThenByTheBoxWhichCloses) {
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    desktop.ExpectMessage("Invalid system common.");
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    const VoiceObject played = {TestRefaceBlock(3)};
    EXPECT_EQ(AuditionBox(nullptr, nullptr, &played, RefaceDriverId,
                          {InputOf(BuiltinInstrument::Reface), OutputOf(BuiltinInstrument::Reface)},
                          0),
              1);
}

TEST_F(AuditionOfInstruments, AnOutputThatDoesNotOpenIsToldTwiceAndTheBoxCloses) {
    FaultsOf(BuiltinInstrument::Dx7).outputDoesNotOpen = true;
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    desktop.ExpectMessage("The MIDI output could not be opened.");
    EXPECT_EQ(AuditionBox(nullptr, nullptr, &voice, Dx7DriverId,
                          {InputOf(BuiltinInstrument::Dx7), OutputOf(BuiltinInstrument::Dx7)}, 0),
              1);
}

TEST_F(AuditionOfInstruments, AWriteThatFailsIsPassedOver) {
    FaultsOf(BuiltinInstrument::Dx7).failWrite = 1; // of each opening: the voice, then program 0
    EXPECT_TRUE(WithBox(BuiltinInstrument::Dx7,
                        [](QDialog &box) { QTest::mouseClick(Key(box, 500), Qt::LeftButton); }));
    EXPECT_EQ(SoundingNotesOf(BuiltinInstrument::Dx7), Notes{});
}

} // namespace
} // namespace tonewright
