// The Audition box, played with the mouse over a DX7 that a scripted MIDI table stands for.
#include "midi/view/audition_box.h"

#include "common/settings.h"
#include "common/view/fonts.h"
#include "drivers/dx7/voice_codec.h"
#include "support/bank_bytes.h"
#include "support/fake_midi.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

#include <functional>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

constexpr int WhiteKeys[] = {0, 2, 4, 5, 7, 9, 11, 12, 14, 16, 17, 19, 21, 23};
constexpr int BlackKeys[] = {1, 3, 6, 8, 10, 13, 15, 18, 20, 22};

// What the opening sends behind the upload, and the closing.
const Calls Opening = {"Pm_OpenOutput(1, 0, 0)", "Pm_WriteShort(1, 0, C0 1F 00)",
                       "Pm_WriteShort(1, 0, C0 00 00)"};
const Calls Upload = {"Pt_Start(1)",
                      "Pm_OpenOutput(1, 0, 0)",
                      "Pm_WriteShort(1, 0, B0 7D 00)",
                      "Pm_WriteSysEx(1, 0, 163 bytes)",
                      "Pm_WriteShort(1, 0, B0 7C 00)",
                      "Pt_Stop()",
                      "Pm_Close(1)"};
const Calls Closing = {"Pm_Write(1, 0, 80 7F 64)", "Pm_Write(1, 0, B0 78 00)",
                       "Pm_WriteShort(1, 0, C0 1F 00)", "Pm_WriteShort(1, 0, C0 00 00)",
                       "Pm_Close(1)"};

Calls Joined(std::initializer_list<Calls> parts) {
    Calls all;
    for (const Calls &part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

class AuditionBoxTest : public testing::Test {
protected:
    void SetUp() override {
        CurrentMidiChannel = 1;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
    }

    // Opens the box, hands it to `use`, and closes it by its button unless that has been done.
    int WithBox(const std::function<void(QDialog &)> &use) {
        bool opened = false;
        QTimer::singleShot(0, [&] {
            auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            opened = true;
            ASSERT_TRUE(QTest::qWaitForWindowExposed(box));
            use(*box);
            if (box->isVisible()) {
                QTest::mouseClick(ButtonOf(*box, 1), Qt::LeftButton);
            }
            if (box->isVisible()) {
                ADD_FAILURE() << "the box is still open";
                box->done(0);
            }
        });
        const int result = AuditionBox(nullptr, nullptr, &voice, Dx7DriverId, {in, out}, 0);
        EXPECT_TRUE(opened);
        return result;
    }

    static QPushButton *ButtonOf(QDialog &box, int control) {
        return box.findChild<QPushButton *>(QString("control_%1").arg(control));
    }
    static QWidget &Key(QDialog &box, int control) {
        auto *key = box.findChild<QWidget *>(QString("control_%1").arg(control));
        EXPECT_NE(key, nullptr) << control;
        return *key;
    }
    static QScrollBar &Bar(QDialog &box, int control) {
        return *box.findChild<QScrollBar *>(QString("control_%1").arg(control));
    }
    static std::string TextOf(QDialog &box, int control) {
        return box.findChild<QLabel *>(QString("control_%1").arg(control))->text().toStdString();
    }
    // The middle of a key in the box.
    static QPoint Middle(QDialog &box, int control) {
        QWidget &key = Key(box, control);
        return key.mapTo(&box, key.rect().center());
    }
    // As the window system gives them, so that the button that was pressed gets the release.
    static void Press(QDialog &box, QPoint point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(box.windowHandle(), button, Qt::NoModifier, point);
    }
    static void Release(QDialog &box, QPoint point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(box.windowHandle(), button, Qt::NoModifier, point);
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
    const int in = midi.AddInput("DX7");
    const int out = midi.AddOutput("DX7");
    VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
};

TEST_F(AuditionBoxTest, OpensPlaysANoteAndCloses) {
    EXPECT_EQ(WithBox([&](QDialog &box) {
                  Press(box, Middle(box, 504));
                  EXPECT_EQ(midi.calls.back(), "Pm_Write(1, 0, 90 40 64)"); // at once
                  Release(box, Middle(box, 504));
              }),
              1);
    EXPECT_EQ(
        midi.calls,
        Joined(
            {Upload, Opening, {"Pm_Write(1, 0, 90 40 64)", "Pm_Write(1, 0, 80 40 64)"}, Closing}));
}

TEST_F(AuditionBoxTest, OnClosingWithNoKeyDownTheCloseSequenceGoesOutAllTheSame) {
    EXPECT_EQ(WithBox([](QDialog &) {}), 1);
    EXPECT_EQ(midi.calls, Joined({Upload, Opening, Closing}));
}

TEST_F(AuditionBoxTest, TheTitleShowsAPlaceholderOfTheToolkitInAName) {
    std::ranges::copy(std::string("A[*] B    "), voice.bytes.begin() + VoiceObjectHeaderSize + 145);
    WithBox([](QDialog &box) { EXPECT_EQ(box.windowHandle()->title(), "Audition A[*] B"); });
}

TEST_F(AuditionBoxTest, ANotchOfTheWheelIsOneStepOfABar) {
    WithBox([](QDialog &box) {
        const auto turn = [](QScrollBar &bar, QPoint delta) {
            const QPointF point(bar.rect().center());
            QWheelEvent event(point, bar.mapToGlobal(point), {}, delta, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(&bar, &event);
        };
        QScrollBar &octave = Bar(box, 102);
        QScrollBar &velocity = Bar(box, 101);
        turn(octave, {0, 120});
        EXPECT_EQ(AuditionCurrentOctave, 6);
        turn(octave, {0, -120});
        turn(octave, {0, -120});
        EXPECT_EQ(AuditionCurrentOctave, 4);
        EXPECT_EQ(TextOf(box, 12102), "5");
        turn(velocity, {0, 360});
        EXPECT_EQ(AuditionCurrentVelocity, 103);
        // A wheel may turn in smaller parts, or be another one that turns sideways.
        for (int part = 0; part < 8; ++part) {
            turn(velocity, {0, 15});
            EXPECT_EQ(AuditionCurrentVelocity, part < 7 ? 103 : 104) << part;
        }
        turn(velocity, {0, 60});
        turn(velocity, {0, -60});
        EXPECT_EQ(AuditionCurrentVelocity, 104);
        turn(velocity, {0, -60});
        EXPECT_EQ(AuditionCurrentVelocity, 103);
        turn(velocity, {-120, 0}); // to the right
        EXPECT_EQ(AuditionCurrentVelocity, 104);
        // The end of a turn, which is no turn of its own, forgets nothing.
        for (const int part : {60, 0, 60}) {
            turn(velocity, {0, part});
        }
        EXPECT_EQ(AuditionCurrentVelocity, 105);
        for (const int part : {-60, 0, -60}) {
            turn(velocity, {0, part});
        }
        EXPECT_EQ(AuditionCurrentVelocity, 104);
    });
}

TEST_F(AuditionBoxTest, EveryKeyPlaysItsNoteOnBothOfItsParts) {
    WithBox([&](QDialog &box) {
        for (int key = 0; key < 24; ++key) {
            const bool white = std::ranges::count(WhiteKeys, key) == 1;
            for (const int control : {500 + key, 12500 + key}) {
                if (!white && control >= 12500) {
                    EXPECT_EQ(box.findChild<QWidget *>(QString("control_%1").arg(control)),
                              nullptr);
                    continue;
                }
                EXPECT_EQ(Key(box, control).windowTitle().toInt(), key);
                midi.written.clear();
                Press(box, Middle(box, control));
                Release(box, Middle(box, control));
                const auto note = static_cast<std::uint8_t>(60 + key);
                EXPECT_EQ(midi.WrittenBytes(),
                          (std::vector<FakeMidi::Bytes>{{0x90, note, 100}, {0x80, note, 100}}))
                    << control;
            }
        }
    });
}

TEST_F(AuditionBoxTest, AReleaseWithThePointerMovedOffTheKeyEndsTheNote) {
    WithBox([&](QDialog &box) {
        const QPoint elsewhere[] = {Middle(box, 507), QPoint(20, 20), QPoint(-50, -50)};
        for (const QPoint point : elsewhere) {
            midi.written.clear();
            Press(box, Middle(box, 500));
            QTest::mouseMove(box.windowHandle(), point);
            Release(box, point);
            EXPECT_EQ(midi.WrittenBytes(),
                      (std::vector<FakeMidi::Bytes>{{0x90, 60, 100}, {0x80, 60, 100}}));
        }
    });
}

TEST_F(AuditionBoxTest, AFastSecondPressSoundsToo) {
    WithBox([&](QDialog &box) {
        midi.written.clear();
        QWidget &key = Key(box, 500);
        QTest::mouseClick(&key, Qt::LeftButton);
        QMouseEvent second(QEvent::MouseButtonDblClick, QPoint(5, 5), key.mapToGlobal(QPoint(5, 5)),
                           Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&key, &second);
        QTest::mouseRelease(&key, Qt::LeftButton);
        EXPECT_EQ(midi.WrittenBytes(),
                  (std::vector<FakeMidi::Bytes>{
                      {0x90, 60, 100}, {0x80, 60, 100}, {0x90, 60, 100}, {0x80, 60, 100}}));
    });
}

TEST_F(AuditionBoxTest, OnlyTheLeftButtonPlays) {
    WithBox([&](QDialog &box) {
        midi.written.clear();
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            Press(box, Middle(box, 504), button);
            Release(box, Middle(box, 504), button);
        }
        EXPECT_TRUE(midi.written.empty());
        Press(box, Middle(box, 504));
        Press(box, Middle(box, 504), Qt::RightButton);
        Release(box, Middle(box, 504), Qt::RightButton);
        EXPECT_EQ(midi.written.size(), 1u); // the note goes on
        Release(box, Middle(box, 504));
        EXPECT_EQ(midi.written.size(), 2u);
    });
}

TEST_F(AuditionBoxTest, ANoteThatSoundsAtTheCloseIsEnded) {
    WithBox([&](QDialog &box) {
        midi.calls.clear();
        Press(box, Middle(box, 507));
        QTest::keyClick(ButtonOf(box, 1), Qt::Key_Return);
        Release(box, Middle(box, 507));
    });
    EXPECT_EQ(std::ranges::count(midi.calls, "Pm_Write(1, 0, 90 43 64)"), 1);
    EXPECT_EQ(std::ranges::count(midi.calls, "Pm_Write(1, 0, 80 43 64)"), 1);
    EXPECT_EQ(midi.calls.back(), "Pm_Close(1)");
}

TEST_F(AuditionBoxTest, ItClosesByItsButtonOnly) {
    WithBox([&](QDialog &box) {
        EXPECT_FALSE(box.windowFlags() & Qt::WindowCloseButtonHint);
        EXPECT_FALSE(box.windowFlags() & Qt::WindowSystemMenuHint);
        QTest::keyClick(&box, Qt::Key_Escape);
        EXPECT_TRUE(box.isVisible());
        box.close();
        EXPECT_TRUE(box.isVisible());
        QTest::mouseClick(ButtonOf(box, 1), Qt::LeftButton);
        EXPECT_FALSE(box.isVisible());
    });
}

TEST_F(AuditionBoxTest, TheTitleNamesTheVoice) {
    WithBox([](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Audition E.PIANO 1x"); });
}

TEST_F(AuditionBoxTest, HelpOpensItsTopicAndTheBoxStays) {
    WithBox([&](QDialog &box) {
        QTest::mouseClick(ButtonOf(box, 9), Qt::LeftButton);
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"AUDITION"});
        EXPECT_TRUE(box.isVisible());
    });
}

TEST_F(AuditionBoxTest, TheBarsBeginAtTheSettings) {
    AuditionCurrentOctave = 2;
    AuditionCurrentVelocity = 64;
    WithBox([&](QDialog &box) {
        EXPECT_EQ(Bar(box, 102).value(), 2);
        EXPECT_EQ(TextOf(box, 12102), "3");
        EXPECT_EQ(Bar(box, 101).value(), 64);
        EXPECT_EQ(TextOf(box, 12101), "64");
    });
}

TEST_F(AuditionBoxTest, TheThumbsOfTheBarsAreTwoStepsLong) {
    WithBox([&](QDialog &box) {
        for (const int control : {101, 102}) {
            EXPECT_EQ(Bar(box, control).pageStep(), 2) << control;
            EXPECT_EQ(Bar(box, control).singleStep(), 1) << control;
        }
    });
}

TEST_F(AuditionBoxTest, SettingsOutsideTheirRangesAreLimited) {
    AuditionCurrentOctave = 12;
    AuditionCurrentVelocity = 0;
    WithBox([&](QDialog &box) {
        EXPECT_EQ(TextOf(box, 12102), "8");
        EXPECT_EQ(TextOf(box, 12101), "1");
    });
    EXPECT_EQ(AuditionCurrentOctave, 7u);
    EXPECT_EQ(AuditionCurrentVelocity, 1u);
}

TEST_F(AuditionBoxTest, TheVelocityBarCannotReachZeroAndItsLowestValueIsPlayed) {
    WithBox([&](QDialog &box) {
        QScrollBar &bar = Bar(box, 101);
        QTest::keyClick(&bar, Qt::Key_Home);
        EXPECT_EQ(AuditionCurrentVelocity, 1u);
        EXPECT_EQ(TextOf(box, 12101), "1");
        QTest::keyClick(&bar, Qt::Key_Left);
        EXPECT_EQ(AuditionCurrentVelocity, 1u);
        midi.written.clear();
        QTest::mouseClick(&Key(box, 500), Qt::LeftButton);
        EXPECT_EQ(midi.WrittenBytes(),
                  (std::vector<FakeMidi::Bytes>{{0x90, 60, 1}, {0x80, 60, 1}}));
        QTest::keyClick(&bar, Qt::Key_End);
        EXPECT_EQ(AuditionCurrentVelocity, 127u);
        EXPECT_EQ(TextOf(box, 12101), "127");
    });
}

TEST_F(AuditionBoxTest, AVelocityLineIsOneAndAPageFifteen) {
    WithBox([&](QDialog &box) {
        QScrollBar &bar = Bar(box, 101);
        QTest::keyClick(&bar, Qt::Key_Right);
        EXPECT_EQ(AuditionCurrentVelocity, 101u);
        QTest::keyClick(&bar, Qt::Key_Left);
        QTest::keyClick(&bar, Qt::Key_PageDown);
        EXPECT_EQ(AuditionCurrentVelocity, 85u);
        QTest::keyClick(&bar, Qt::Key_PageUp);
        EXPECT_EQ(AuditionCurrentVelocity, 100u);
        EXPECT_EQ(TextOf(box, 12101), "100");
    });
}

// Where a part of a bar is painted.
QPoint PlaceOn(QScrollBar &bar, QStyle::SubControl part) {
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = bar.orientation();
    option.minimum = bar.minimum();
    option.maximum = bar.maximum();
    option.singleStep = bar.singleStep();
    option.pageStep = bar.pageStep();
    option.sliderPosition = option.sliderValue = bar.value();
    option.state |= QStyle::State_Horizontal;
    return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &bar).center();
}

TEST_F(AuditionBoxTest, TheArrowsOfTheOctaveBarMoveItByOneAndItsPagesDoNot) {
    WithBox([&](QDialog &box) {
        QScrollBar &bar = Bar(box, 102);
        QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier,
                          PlaceOn(bar, QStyle::SC_ScrollBarAddLine));
        EXPECT_EQ(AuditionCurrentOctave, 6u);
        EXPECT_EQ(TextOf(box, 12102), "7");
        QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier,
                          PlaceOn(bar, QStyle::SC_ScrollBarSubLine));
        EXPECT_EQ(AuditionCurrentOctave, 5u);
        QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier,
                          PlaceOn(bar, QStyle::SC_ScrollBarSubPage));
        EXPECT_EQ(AuditionCurrentOctave, 5u);
        QTest::keyClick(&bar, Qt::Key_End);
        EXPECT_EQ(AuditionCurrentOctave, 7u);
        QTest::keyClick(&bar, Qt::Key_Right);
        EXPECT_EQ(AuditionCurrentOctave, 7u);
        QTest::keyClick(&bar, Qt::Key_Home);
        EXPECT_EQ(AuditionCurrentOctave, 0u);
        EXPECT_EQ(TextOf(box, 12102), "1");
    });
    EXPECT_EQ(AuditionCurrentOctave, 0u); // and stays for the next box
}

TEST_F(AuditionBoxTest, TheThumbCanBeDraggedToTheHighestOctaveWhoseLastKeyGivesNote107) {
    WithBox([&](QDialog &box) {
        QScrollBar &bar = Bar(box, 102);
        const QPoint thumb = PlaceOn(bar, QStyle::SC_ScrollBarSlider);
        const QPoint end(bar.width() - 1, thumb.y());
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, thumb);
        QMouseEvent move(QEvent::MouseMove, end, bar.mapToGlobal(end), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&bar, &move);
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, end);
        EXPECT_EQ(AuditionCurrentOctave, 7u);
        midi.written.clear();
        QTest::mouseClick(&Key(box, 523), Qt::LeftButton);
        EXPECT_EQ(midi.WrittenBytes(),
                  (std::vector<FakeMidi::Bytes>{{0x90, 107, 100}, {0x80, 107, 100}}));
    });
}

TEST_F(AuditionBoxTest, AChangeOfTheOctaveWhileAKeyIsDownDoesNotReachTheNoteOff) {
    WithBox([&](QDialog &box) {
        midi.written.clear();
        Press(box, Middle(box, 500));
        QTest::keyClick(&Bar(box, 102), Qt::Key_Home);
        Release(box, Middle(box, 500));
        EXPECT_EQ(midi.WrittenBytes(),
                  (std::vector<FakeMidi::Bytes>{{0x90, 60, 100}, {0x80, 60, 100}}));
    });
}

// Colour of the pixel of a key, counted from its left upper corner; negative from the other side.
QColor PixelOf(QWidget &key, int x, int y) {
    const QImage image = key.grab().toImage();
    return image.pixelColor(x < 0 ? image.width() + x : x, y < 0 ? image.height() + y : y);
}

struct Colours {
    QColor white, black, outline;
};
void ExpectColours(QDialog &box, const Colours &colours) {
    for (const int number : WhiteKeys) {
        auto &lower = *box.findChild<QWidget *>(QString("control_%1").arg(500 + number));
        auto &upper = *box.findChild<QWidget *>(QString("control_%1").arg(12500 + number));
        for (QWidget *part : {&lower, &upper}) {
            EXPECT_EQ(PixelOf(*part, 5, part->height() / 2), colours.white) << number;
            EXPECT_EQ(PixelOf(*part, 0, part->height() / 2), colours.outline) << number;
            EXPECT_EQ(PixelOf(*part, -1, part->height() / 2), colours.outline) << number;
        }
        EXPECT_EQ(PixelOf(lower, 5, 0), colours.white) << number; // open at the top
        EXPECT_EQ(PixelOf(lower, 5, -1), colours.outline) << number;
        EXPECT_EQ(PixelOf(upper, 5, 0), colours.outline) << number;
        EXPECT_EQ(PixelOf(upper, 5, -1), colours.white) << number; // open at the bottom
        EXPECT_EQ(PixelOf(lower, 1, 5), colours.white) << number;  // a pen of width 1
    }
    for (const int number : BlackKeys) {
        auto &key = *box.findChild<QWidget *>(QString("control_%1").arg(500 + number));
        EXPECT_EQ(PixelOf(key, 0, 0), colours.black) << number;
        EXPECT_EQ(PixelOf(key, -1, -1), colours.black) << number;
        EXPECT_EQ(PixelOf(key, 5, 20), colours.black) << number;
    }
}

const Colours UsualColours = {{0xF1, 0xED, 0xE0}, {0x30, 0x29, 0x16}, {0x12, 0x0F, 0x00}};
const Colours SwappedColours = {{0x10, 0x0C, 0x0A}, {0xF1, 0xED, 0xE0}, {0xF1, 0xED, 0xE0}};

int CountPixels(const QImage &image, const QColor &colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == colour;
        }
    }
    return count;
}

TEST_F(AuditionBoxTest, WithoutShiftTheKeysHaveTheirUsualColours) {
    WithBox([&](QDialog &box) { ExpectColours(box, UsualColours); });
}

TEST_F(AuditionBoxTest, HoldingShiftWhileTheBoxOpensSwapsTheColoursForTheLifeOfTheBox) {
    desktop.shiftDown = true;
    WithBox([&](QDialog &box) {
        ExpectColours(box, SwappedColours);
        desktop.shiftDown = false;
        box.repaint();
        ExpectColours(box, SwappedColours);
    });
    WithBox([&](QDialog &box) {
        desktop.shiftDown = true;
        box.repaint();
        ExpectColours(box, UsualColours);
    });
}

TEST_F(AuditionBoxTest, AKeyThatIsDownKeepsItsColoursAndCarriesAMark) {
    WithBox([&](QDialog &box) {
        for (const int control : {504, 506}) {
            const QImage before = Key(box, control).grab().toImage();
            Press(box, Middle(box, control));
            EXPECT_NE(Key(box, control).grab().toImage(), before) << control;
            ExpectColours(box, UsualColours);
            Release(box, Middle(box, control));
            EXPECT_EQ(Key(box, control).grab().toImage(), before) << control;
        }
    });
}

// The keyboard as a screen reader finds it.
QAccessibleInterface &KeyboardOf(QDialog &box) {
    return *QAccessible::queryAccessibleInterface(box.findChild<QWidget *>("keyboard"));
}
void PressAction(QAccessibleInterface *key) {
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

TEST_F(AuditionBoxTest, AScreenReaderFindsTheKeysAsButtonsNamedByTheirNotes) {
    WithBox([](QDialog &box) {
        QAccessibleInterface &keyboard = KeyboardOf(box);
        EXPECT_EQ(keyboard.text(QAccessible::Name), "Keyboard");
        EXPECT_EQ(keyboard.role(), QAccessible::Grouping);
        ASSERT_EQ(keyboard.childCount(), 24);
        for (int number = 0; number < 24; ++number) {
            QAccessibleInterface *key = keyboard.child(number);
            ASSERT_NE(key, nullptr) << number;
            EXPECT_EQ(key->role(), QAccessible::Button) << number;
            EXPECT_EQ(keyboard.indexOfChild(key), number);
            ASSERT_NE(key->parent(), nullptr);
            EXPECT_EQ(key->parent()->object(), keyboard.object());
            EXPECT_FALSE(key->state().pressed) << number;
        }
        EXPECT_EQ(keyboard.child(0)->text(QAccessible::Name), "C3");
        EXPECT_EQ(keyboard.child(6)->text(QAccessible::Name), "F sharp 3");
        Bar(box, 102).setValue(0);
        EXPECT_EQ(keyboard.child(0)->text(QAccessible::Name), "C-2");
    });
}

TEST_F(AuditionBoxTest, AScreenReaderFindsBothPartsOfAWhiteKeyAsOne) {
    WithBox([](QDialog &box) {
        QAccessibleInterface &keyboard = KeyboardOf(box);
        const auto at = [&](int control) {
            const QPoint point = box.mapToGlobal(Middle(box, control));
            return keyboard.childAt(point.x(), point.y());
        };
        EXPECT_EQ(at(504), keyboard.child(4));
        EXPECT_EQ(at(12504), keyboard.child(4));
        EXPECT_EQ(at(503), keyboard.child(3));
        const QRect area = keyboard.child(4)->rect();
        for (const int control : {504, 12504}) {
            EXPECT_TRUE(area.contains(box.mapToGlobal(Middle(box, control)))) << control;
        }
        const QRect both = Key(box, 504).geometry().united(Key(box, 12504).geometry());
        EXPECT_EQ(area.size(), both.size());
        EXPECT_EQ(keyboard.child(3)->rect().size(), Key(box, 503).size());
    });
}

TEST_F(AuditionBoxTest, AKeyThatAScreenReaderPressesSoundsForAWhile) {
    const auto last = [&] { return midi.calls.back(); };
    WithBox([&](QDialog &box) {
        QAccessibleInterface *key = KeyboardOf(box).child(4);
        PressAction(key);
        EXPECT_EQ(last(), "Pm_Write(1, 0, 90 40 64)");
        EXPECT_TRUE(key->state().pressed);
        QTest::qWait(300);
        EXPECT_EQ(last(), "Pm_Write(1, 0, 90 40 64)") << "it can be heard";
        EXPECT_TRUE(QTest::qWaitFor([&] { return last() == "Pm_Write(1, 0, 80 40 64)"; }));
        EXPECT_FALSE(key->state().pressed);
    });
    EXPECT_EQ(
        midi.calls,
        Joined(
            {Upload, Opening, {"Pm_Write(1, 0, 90 40 64)", "Pm_Write(1, 0, 80 40 64)"}, Closing}));
}

TEST_F(AuditionBoxTest, TheNextPressEndsANoteThatAScreenReaderBegan) {
    WithBox([&](QDialog &box) {
        QAccessibleInterface &keyboard = KeyboardOf(box);
        PressAction(keyboard.child(4));
        PressAction(keyboard.child(5));
        EXPECT_FALSE(keyboard.child(4)->state().pressed);
        EXPECT_TRUE(keyboard.child(5)->state().pressed);
        Press(box, Middle(box, 507));
        EXPECT_FALSE(keyboard.child(5)->state().pressed);
        EXPECT_TRUE(keyboard.child(7)->state().pressed);
        PressAction(keyboard.child(9)); // the mouse holds a key down
        EXPECT_FALSE(keyboard.child(9)->state().pressed);
        Release(box, Middle(box, 507));
        EXPECT_FALSE(keyboard.child(7)->state().pressed);
        PressAction(keyboard.child(0));
    });
    EXPECT_EQ(midi.calls, Joined({Upload,
                                  Opening,
                                  {"Pm_Write(1, 0, 90 40 64)", "Pm_Write(1, 0, 80 40 64)",
                                   "Pm_Write(1, 0, 90 41 64)", "Pm_Write(1, 0, 80 41 64)",
                                   "Pm_Write(1, 0, 90 43 64)", "Pm_Write(1, 0, 80 43 64)",
                                   "Pm_Write(1, 0, 90 3C 64)", "Pm_Write(1, 0, 80 3C 64)",
                                   "Pm_Write(1, 0, B0 78 00)", "Pm_WriteShort(1, 0, C0 1F 00)",
                                   "Pm_WriteShort(1, 0, C0 00 00)", "Pm_Close(1)"}}));
}

TEST_F(AuditionBoxTest, AtAnySizeOfFontTheKeysFillTheirPlaceAndNoTextIsCut) {
    WithBox([&](QDialog &box) {
        for (const int height : {8, 11, 16, 21, 30}) {
            box.setFont(FontOfHeight("Arial", height));
            QTest::qWait(1);
            auto &keyboard = *box.findChild<QWidget *>("keyboard");
            EXPECT_EQ(keyboard.mapTo(&box, QPoint(0, 0)).x(), 0) << height;
            EXPECT_EQ(keyboard.width(), box.width()) << height;
            EXPECT_EQ(keyboard.geometry().bottom(), box.rect().bottom()) << height;
            int area = 0;
            for (const QObject *child : keyboard.children()) {
                if (const auto *key = qobject_cast<const QWidget *>(child)) {
                    area += key->width() * key->height();
                }
            }
            EXPECT_EQ(area, keyboard.width() * keyboard.height()) << height;
            for (const QLabel *label : box.findChildren<QLabel *>()) {
                EXPECT_GE(label->width(), label->minimumSizeHint().width()) << height;
                EXPECT_GE(label->height(), label->wordWrap() ? label->heightForWidth(label->width())
                                                             : label->sizeHint().height())
                    << height << " " << label->text().toStdString();
                EXPECT_LE(label->mapTo(&box, label->rect().bottomLeft()).y(), keyboard.y())
                    << height;
            }
        }
    });
}

// The keyboard as a screen of another scale shows it.
QImage KeyboardAt(QDialog &box, double scale) {
    auto &keyboard = *box.findChild<QWidget *>("keyboard");
    QImage image((QSizeF(keyboard.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::red);
    keyboard.render(&image);
    return image;
}

TEST_F(AuditionBoxTest, AtAnyScaleOfTheScreenTheEdgesOfNeighboursJoin) {
    WithBox([&](QDialog &box) {
        for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
            const QImage image = KeyboardAt(box, scale);
            EXPECT_EQ(CountPixels(image, Qt::red), 0) << scale;
            // One line between two white keys, and one at either end.
            int lines = 0;
            bool inLine = false;
            for (int x = 0; x < image.width(); ++x) {
                const bool line =
                    image.pixelColor(x, image.height() * 8 / 10) != UsualColours.white;
                lines += line && !inLine;
                inLine = line;
            }
            EXPECT_EQ(lines, 15) << scale;
            // Between E and F no black key stands, and their line runs from top to bottom.
            const int edge = image.width() * 3 / 14;
            for (int y = 0; y < image.height(); ++y) {
                EXPECT_EQ(image.pixelColor(edge, y), UsualColours.outline) << scale << " " << y;
            }
        }
    });
}

TEST_F(AuditionBoxTest, ItsTextsStandInTheBox) {
    WithBox([](QDialog &box) {
        QStringList texts;
        for (const QLabel *label : box.findChildren<QLabel *>()) {
            texts += label->text();
        }
        for (const char *text : {"Velocity:", "Octave:",
                                 "Click on the piano keys to hear the voice being auditioned."}) {
            EXPECT_TRUE(texts.contains(text)) << text;
        }
        EXPECT_EQ(ButtonOf(box, 1)->text(), "Close");
        EXPECT_EQ(ButtonOf(box, 9)->text(), "Help");
        EXPECT_TRUE(HasInk(*box.findChild<QLabel *>("control_10")));
    });
}

TEST_F(AuditionBoxTest, AfterAFailedUploadTheBoxClosesByItself) {
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    EXPECT_EQ(AuditionBox(nullptr, nullptr, &voice, NoDriverId, {in, out}, 0), 1);
    EXPECT_EQ(midi.calls, Joined({Opening, Closing}));
}

TEST_F(AuditionBoxTest, WithoutAnOutputBothMessagesComeAndTheBoxClosesByItself) {
    desktop.ExpectMessage("The selected voice could not be uploaded.");
    desktop.ExpectMessage("The MIDI output could not be opened.");
    EXPECT_EQ(AuditionBox(nullptr, nullptr, &voice, Dx7DriverId, {}, 0), 1);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(AuditionBoxTest, AnOutputThatIsLostBehindTheUploadIsTold) {
    desktop.ExpectMessage("The MIDI output could not be opened.");
    midi.onWrite = [&](const FakeMidi::Message &message) {
        if (message.sysex) {
            midi.devices[static_cast<std::size_t>(out)].opens = false;
        }
    };
    EXPECT_EQ(AuditionBox(nullptr, nullptr, &voice, Dx7DriverId, {in, out}, 0), 1);
    EXPECT_EQ(midi.calls, Joined({Upload, {"Pm_OpenOutput(1, 0, 0)"}}));
}

TEST_F(AuditionBoxTest, WithoutAVoiceTheBoxDoesNotOpen) {
    VoiceList list;
    ListAdd(list);
    EXPECT_EQ(AuditionBox(nullptr, &list, nullptr, Dx7DriverId, {in, out}, 0), 0);
    EXPECT_EQ(AuditionBox(nullptr, &list, nullptr, Dx7DriverId, {in, out}, 7), 0);
    EXPECT_TRUE(midi.calls.empty());
}

} // namespace
} // namespace tonewright
