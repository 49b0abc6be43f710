// The strip below the Audition box of a built-in instrument, and the keys of the computer there.
#include "midi/view/instrument_strip.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/instrument_sound.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/view/audition_box.h"
#include "support/bank_bytes.h"
#include "support/builtin_midi.h"
#include "support/fake_audio.h"
#include "support/fake_midi.h"
#include "support/modal_box.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QSlider>
#include <QTest>

namespace tonewright {
namespace {

using Notes = std::vector<int>;

struct PutBackPalette {
    QPalette former = QApplication::palette();

    ~PutBackPalette() { QApplication::setPalette(former); }
};

class InstrumentStripTest : public testing::Test {
protected:
    void SetUp() override {
        CurrentMidiChannel = 1;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
        AuditionKeepsVoice = 1;
    }

    // The instruments are heard through the card of `audio`.
    static void Hear() {
        TheMidi = MakeBuiltinInstruments({.simulatedClock = true, .listener = InstrumentSound()});
    }
    void WithBox(const std::function<void(QDialog &)> &use) {
        WithModalBox(
            [this] {
                AuditionBox(nullptr, nullptr, &voice, Dx7DriverId, {0, 1}, 0);
            },
            [&](QDialog &box) {
                use(box);
                Close(box);
            });
    }
    static void Close(QDialog &box) {
        if (box.isVisible()) {
            QTest::mouseClick(box.findChild<QPushButton *>("control_1"), Qt::LeftButton);
        }
    }
    template <typename Widget = QWidget> static Widget &Part(QDialog &box, const char *name) {
        auto *part = dynamic_cast<Widget *>(box.findChild<QWidget *>(name));
        EXPECT_NE(part, nullptr) << name;
        return *part;
    }
    static QWidget &Key(QDialog &box, int control) {
        return Part(box, QString("control_%1").arg(control).toLatin1().constData());
    }
    static bool IsDown(QDialog &box, int key) {
        return QAccessible::queryAccessibleInterface(&Key(box, 500 + key))->state().pressed;
    }
    static std::string LineOf(QDialog &box) {
        return Part<QLabel>(box, "instrument_line").text().toStdString();
    }
    static Notes Sounding() { return SoundingNotesOf(BuiltinInstrument::Dx7); }

    BuiltinMidi midi;
    ScriptedDesktop desktop;
    FakeAudio audio;
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
};

TEST_F(InstrumentStripTest, StandsBelowTheKeysOfABuiltinInstrumentAndNowhereElse) {
    QSize withStrip, strip;
    WithBox([&](QDialog &box) {
        const QWidget &part = Part(box, "instrument_strip");
        EXPECT_TRUE(part.isVisible());
        const QWidget &keyboard = Part(box, "keyboard");
        EXPECT_EQ(part.geometry().top(), keyboard.geometry().bottom() + 1);
        EXPECT_EQ(part.width(), keyboard.width());
        withStrip = box.size();
        strip = part.size();
    });
    FakeMidi other;
    other.AddInput("DX7");
    other.AddOutput("DX7");
    WithBox([&](QDialog &box) {
        EXPECT_EQ(box.findChild<QWidget *>("instrument_strip"), nullptr);
        EXPECT_EQ(box.size() + QSize(0, strip.height()), withStrip);
        other.calls.clear();
        QTest::keyClick(&box, Qt::Key_Z);
        EXPECT_TRUE(other.calls.empty()); // its keys are not those of a piano
    });
}

TEST_F(InstrumentStripTest, ItsControlsHaveNamesAndFollowThoseOfTheBoxInTheOrderOfTab) {
    WithBox([](QDialog &box) {
        EXPECT_EQ(Part(box, "instrument_level").accessibleName(), "Level");
        EXPECT_EQ(Part(box, "instrument_volume").accessibleName(), "Volume");
        EXPECT_EQ(Part<QPushButton>(box, "instrument_panic").text(), "&Panic");
        std::vector<std::string> order;
        for (int i = 0; i < 6; ++i) {
            order.push_back(box.focusWidget()->objectName().toStdString());
            QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order,
                  (std::vector<std::string>{"control_1", "control_9", "control_101", "control_102",
                                            "instrument_volume", "instrument_panic"}));
        EXPECT_EQ(box.focusWidget()->objectName(), "control_1");
        EXPECT_TRUE(Part<QPushButton>(box, "control_1").isDefault());
    });
}

TEST_F(InstrumentStripTest, KeysOfTheComputerPlayChords) {
    WithBox([](QDialog &box) {
        QTest::keyPress(box.focusWidget(), Qt::Key_Z);
        QTest::keyPress(box.focusWidget(), Qt::Key_C);
        QTest::keyPress(box.focusWidget(), Qt::Key_Q);
        EXPECT_EQ(Sounding(), (Notes{60, 64, 72}));
        EXPECT_TRUE(IsDown(box, 4));
        QTest::keyRelease(box.focusWidget(), Qt::Key_C);
        EXPECT_EQ(Sounding(), (Notes{60, 72}));
        EXPECT_FALSE(IsDown(box, 4));
        EXPECT_TRUE(IsDown(box, 12));
        QTest::keyRelease(box.focusWidget(), Qt::Key_Z);
        QTest::keyRelease(box.focusWidget(), Qt::Key_Q);
        EXPECT_EQ(Sounding(), Notes{});
        QTest::keyPress(box.focusWidget(), Qt::Key_P); // beyond the keys that are drawn
        EXPECT_EQ(Sounding(), Notes{88});
        QTest::keyRelease(box.focusWidget(), Qt::Key_P);
        EXPECT_EQ(Sounding(), Notes{});
    });
}

// What is printed on a key depends on the country.
TEST_F(InstrumentStripTest, ItsLineNamesTheRowsOfKeysAndNoLetters) {
    WithBox([](QDialog &box) {
        EXPECT_EQ(LineOf(box), "The computer's keyboard plays as well: the lowest row of letters, "
                               "and an octave higher the highest one.");
        const auto &line = Part<QLabel>(box, "instrument_line");
        EXPECT_LT(line.height(), 2 * line.fontMetrics().height()); // a single line
    });
}

TEST_F(InstrumentStripTest, ARepeatedKeyPlaysOnce) {
    int notes = 0;
    TheMidi.Pm_Write = [&notes, write = TheMidi.Pm_Write](auto... arguments) {
        ++notes;
        return write(arguments...);
    };
    WithBox([&](QDialog &box) {
        notes = 0;
        QTest::keyPress(&box, Qt::Key_Z);
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent repeat(type, Qt::Key_Z, Qt::NoModifier, "z", true);
            QApplication::sendEvent(&box, &repeat);
        }
        EXPECT_EQ(notes, 1);
        EXPECT_EQ(Sounding(), Notes{60});
        QTest::keyRelease(&box, Qt::Key_Z);
        EXPECT_EQ(notes, 2);
    });
}

TEST_F(InstrumentStripTest, AKeyWithControlOrAltPlaysNothingAndOneWithShiftDoes) {
    WithBox([](QDialog &box) {
        QTest::keyPress(&box, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyPress(&box, Qt::Key_X, Qt::AltModifier);
        QTest::keyPress(&box, Qt::Key_2, Qt::KeypadModifier);
        EXPECT_EQ(Sounding(), Notes{});
        QTest::keyPress(&box, Qt::Key_C, Qt::ShiftModifier);
        EXPECT_EQ(Sounding(), Notes{64});
        QTest::keyRelease(&box, Qt::Key_C);
        EXPECT_EQ(Sounding(), Notes{});
    });
}

TEST_F(InstrumentStripTest, NoNoteHangsWhatHappensMeanwhile) {
    WithBox([](QDialog &box) {
        // The octave changes.
        QTest::keyPress(&box, Qt::Key_Z);
        QTest::keyClick(&Part(box, "control_102"), Qt::Key_Right);
        QTest::keyRelease(&box, Qt::Key_Z);
        EXPECT_EQ(Sounding(), Notes{});
        AuditionCurrentOctave = 5;
        // The mouse plays in between.
        QTest::keyPress(&box, Qt::Key_Z);
        QTest::mousePress(&Key(box, 504), Qt::LeftButton);
        EXPECT_EQ(Sounding(), (Notes{60, 64}));
        QTest::mouseRelease(&Key(box, 504), Qt::LeftButton);
        EXPECT_EQ(Sounding(), Notes{60});
        QTest::mousePress(&Key(box, 500), Qt::LeftButton); // the same one
        QTest::keyRelease(&box, Qt::Key_Z);
        EXPECT_TRUE(IsDown(box, 0)); // by the mouse
        QTest::mouseRelease(&Key(box, 500), Qt::LeftButton);
        EXPECT_EQ(Sounding(), Notes{});
        EXPECT_FALSE(IsDown(box, 0));
        // The key is let go in another window.
        QTest::keyPress(&box, Qt::Key_Z);
        QWidget other;
        other.show();
        QTest::keyRelease(&other, Qt::Key_Z);
        EXPECT_EQ(Sounding(), Notes{});
        // Or nobody hears of it.
        QTest::keyPress(&box, Qt::Key_X);
        EXPECT_EQ(Sounding(), Notes{62});
        QEvent deactivated(QEvent::WindowDeactivate);
        QApplication::sendEvent(&box, &deactivated);
        EXPECT_EQ(Sounding(), Notes{});
        EXPECT_FALSE(IsDown(box, 2));
        // The box closes.
        QTest::keyPress(&box, Qt::Key_Z);
        QTest::keyPress(&box, Qt::Key_V);
        EXPECT_EQ(Sounding(), (Notes{60, 65}));
    });
    EXPECT_EQ(Sounding(), Notes{});
}

TEST_F(InstrumentStripTest, PanicIsSilenceWhateverHoldsAKey) {
    Hear();
    WithBox([this](QDialog &box) {
        ASSERT_TRUE(audio.UntilItRuns());
        QTest::keyPress(&box, Qt::Key_Z);
        QTest::mousePress(&Key(box, 507), Qt::LeftButton);
        EXPECT_EQ(Sounding(), (Notes{60, 67}));
        const auto loudest = [](const std::vector<float> &frames) {
            float most = 0.0f;
            for (const float value : frames) {
                most = std::max(most, std::abs(value));
            }
            return most;
        };
        EXPECT_GT(loudest(audio.Play(4096)), 0.001f);
        QTest::mouseClick(&Part(box, "instrument_panic"), Qt::LeftButton);
        EXPECT_EQ(Sounding(), Notes{});
        EXPECT_FALSE(IsDown(box, 0));
        audio.Play(256);
        EXPECT_EQ(loudest(audio.Play(256)), 0.0f);
        QTest::mouseRelease(&Key(box, 507), Qt::LeftButton);
        QTest::keyRelease(&box, Qt::Key_Z);
        EXPECT_EQ(Sounding(), Notes{});
    });
}

TEST_F(InstrumentStripTest, TheVolumeIsHeardAtOnceAndKeptWhenTheBoxHasClosed) {
    Hear();
    InstrumentVolume = 80;
    WithBox([this](QDialog &box) {
        ASSERT_TRUE(audio.UntilItRuns());
        auto &volume = Part<QSlider>(box, "instrument_volume");
        EXPECT_EQ(volume.value(), 80);
        QTest::keyClick(&volume, Qt::Key_Right);
        EXPECT_EQ(InstrumentVolume, 81u);
        QTest::keyClick(&volume, Qt::Key_Home);
        EXPECT_EQ(InstrumentVolume, 0u);
        EXPECT_TRUE(desktop.settingsKept.empty());
        QTest::keyPress(&box, Qt::Key_Z);
        audio.Play(4800);
        for (const float value : audio.Play(4800)) {
            ASSERT_EQ(value, 0.0f);
        }
        QTest::keyRelease(&box, Qt::Key_Z);
    });
    EXPECT_EQ(desktop.settingsKept, std::vector<std::uint32_t *>{&InstrumentVolume});
    WithBox([](QDialog &) {});
    EXPECT_EQ(desktop.settingsKept.size(), 1u); // nothing was chosen
}

TEST_F(InstrumentStripTest, TheMeterFollowsTheSoundWhileItIsSeen) {
    Hear();
    WithBox([this](QDialog &box) {
        ASSERT_TRUE(audio.UntilItRuns());
        const auto &meter = Part<LevelMeter>(box, "instrument_level");
        EXPECT_EQ(meter.Shown(), 0.0);
        QTest::keyPress(&box, Qt::Key_Z);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            audio.Play(1024);
            return meter.Shown() > 0.2;
        }));
        QTest::mouseClick(&Part(box, "instrument_panic"), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            audio.Play(256);
            return meter.Shown() == 0.0;
        }));
    });
}

TEST_F(InstrumentStripTest,
       WithoutASoundCardALineSaysWhyOnceInTheStatusBarAndTheNextBoxTriesAgain) {
    Hear();
    audio.refuses = "it is busy";
    WithBox([this](QDialog &box) {
        const int height = box.height();
        EXPECT_TRUE(QTest::qWaitFor([&] { return LineOf(box) == "No sound: it is busy."; }));
        QTest::qWait(200);
        EXPECT_EQ(std::ranges::count(desktop.statusTexts, "No sound: it is busy."), 1);
        EXPECT_EQ(box.height(), height);  // a line in the place of a line
        QTest::keyPress(&box, Qt::Key_Z); // everything else works
        EXPECT_EQ(Sounding(), Notes{60});
        QTest::keyRelease(&box, Qt::Key_Z);
    });
    int opens = 0;
    audio.Change([&] {
        audio.refuses.clear();
        opens = audio.opens;
    });
    WithBox([this](QDialog &box) {
        EXPECT_TRUE(audio.UntilItRuns());
        EXPECT_TRUE(QTest::qWaitFor([&] { return LineOf(box).starts_with("The computer's"); }));
    });
    EXPECT_GT(audio.opens, opens);
    EXPECT_EQ(std::ranges::count(desktop.statusTexts, "No sound: it is busy."), 1);
}

TEST(LevelMeterTest, RisesAtOnceFallsSlowlyAndLightsItsMark) {
    LevelMeter meter(nullptr);
    meter.Take({.peak = 1.0f, .limited = true}, 40);
    EXPECT_DOUBLE_EQ(meter.Shown(), 1.0);
    EXPECT_TRUE(meter.LimiterIsLit());
    meter.Take({}, 1000); // 24 of 48 dB
    EXPECT_NEAR(meter.Shown(), 0.5, 1e-9);
    EXPECT_FALSE(meter.LimiterIsLit());
    meter.Take({.peak = 0.001f}, 1000); // -60 dB
    EXPECT_NEAR(meter.Shown(), 0.0, 1e-9);
    meter.Take({.peak = 0.0630957f, .limited = false}, 40); // -24 dB
    EXPECT_NEAR(meter.Shown(), 0.5, 1e-4);
    meter.Take({.peak = 8.0f, .limited = true}, 40);
    EXPECT_DOUBLE_EQ(meter.Shown(), 1.0);
    meter.Take({}, 999);
    EXPECT_TRUE(meter.LimiterIsLit());
    meter.Take({}, 1);
    EXPECT_FALSE(meter.LimiterIsLit());
}

TEST(LevelMeterTest, ItsFramesAreSeenOnADarkDesktop) {
    const PutBackPalette former;
    for (const QColor ground : {QColor(40, 40, 40), QColor(240, 240, 240)}) {
        QApplication::setPalette(QPalette(ground));
        LevelMeter meter(nullptr);
        meter.resize(meter.minimumSize());
        const QImage picture = meter.grab().toImage();
        for (const QPoint corner : {QPoint(0, 0), QPoint(picture.width() - 1, 0)}) {
            EXPECT_GE(std::abs(qGray(picture.pixel(corner)) - qGray(ground.rgb())), 64);
        }
    }
}

} // namespace
} // namespace tonewright
