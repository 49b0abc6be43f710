// The box with the tip of the day, and the tip that comes by itself.
#include "shell/view/tip_box.h"

#include "common/view/fonts.h"
#include "shell/command_queue.h"
#include "shell/start_up.h"
#include "support/modal_box.h"
#include "support/paths.h"
#include "support/pixels.h"
#include "window_fixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace tonewright {
namespace {

class TipBox : public testing::Test {
protected:
    void SetUp() override {
        ApplicationPath = folder.Folder();
        WriteTips("one\ntwo\nthree\n");
        TipOfTheDay = 1;
        TheDesktop.ShiftKeyDown = [] {
            return QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
        };
    }

    void WriteTips(const std::string &text) const { folder.WriteText("TNWRGT.TIP", text); }
    static void WithTipBox(const std::function<void(QDialog &)> &use) {
        WithModalBox([] { ShowTipBox(nullptr); }, use);
    }
    static QPushButton &Done(QDialog &box) { return *box.findChild<QPushButton *>("control_1"); }
    static QCheckBox &Check(QDialog &box) { return *box.findChild<QCheckBox *>("control_101"); }
    static QScrollArea &Area(QDialog &box) { return *box.findChild<QScrollArea *>("control_102"); }
    static std::string Shown(QDialog &box) {
        return dynamic_cast<QLabel *>(Area(box).widget())->text().toStdString();
    }
    static void Click(QDialog &box, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QTest::mouseClick(&Done(box), Qt::LeftButton, keys);
    }

    TempFolder folder;
    ScriptedDesktop desktop;
};

TEST_F(TipBox, ShowsTheNextTipWithABeepAndTheFocusOnDone) {
    ShowTipOfTheDay = 1;
    WithTipBox([&](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Tip of the day");
        EXPECT_EQ(Shown(box), "one");
        EXPECT_EQ(desktop.beeps, 1);
        EXPECT_TRUE(Check(box).isChecked());
        EXPECT_EQ(Check(box).text(), "Show me another tip tomorrow");
        EXPECT_EQ(Done(box).text(), "Done");
        EXPECT_TRUE(Done(box).hasFocus());
        EXPECT_TRUE(HasInk(*box.findChild<QLabel *>("control_6101")));
        const QPoint distance = box.frameGeometry().center() -
                                QGuiApplication::primaryScreen()->availableGeometry().center();
        EXPECT_LE(distance.manhattanLength(), 2);
        Click(box);
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(TipOfTheDay, 2u);
    EXPECT_EQ(ShowTipOfTheDay, 1u);
}

TEST_F(TipBox, ShiftAtDoneShowsTheNextTipAndTheBoxStays) {
    WithTipBox([&](QDialog &box) {
        Check(box).setChecked(false);
        Click(box, Qt::ShiftModifier);
        EXPECT_TRUE(box.isVisible());
        EXPECT_EQ(Shown(box), "two");
        EXPECT_EQ(Area(box).accessibleName(), "two");
        QTest::keyClick(&Done(box), Qt::Key_Return, Qt::ShiftModifier);
        EXPECT_EQ(Shown(box), "three");
        QTest::keyClick(&Done(box), Qt::Key_Space, Qt::ShiftModifier);
        EXPECT_EQ(Shown(box), "one");
        EXPECT_EQ(ShowTipOfTheDay, 1u) << "nothing is kept before the box closes";
        EXPECT_EQ(desktop.beeps, 1);
        QTest::keyClick(&Done(box), Qt::Key_Return);
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(TipOfTheDay, 2u);
    EXPECT_EQ(ShowTipOfTheDay, 0u);
}

TEST_F(TipBox, AnEmptyLineInTheMiddleSendsTheNextShowBackToTheFirstTip) {
    WriteTips("one\n\nthree\n");
    WithTipBox([&](QDialog &box) {
        EXPECT_EQ(Shown(box), "one");
        Click(box);
    });
    WithTipBox([&](QDialog &box) {
        EXPECT_EQ(Shown(box), "one");
        Click(box);
    });
    EXPECT_EQ(TipOfTheDay, 2u);
}

TEST_F(TipBox, ReturnWithShiftShowsTheNextTipWhereverTheKeyboardIs) {
    WithTipBox([](QDialog &box) {
        Check(box).setFocus();
        QTest::keyClick(&Check(box), Qt::Key_Return, Qt::ShiftModifier);
        EXPECT_EQ(Shown(box), "two");
        QTest::keyClick(&Check(box), Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier);
        EXPECT_EQ(Shown(box), "three");
        Done(box).setFocus();
        QTest::keyClick(&Done(box), Qt::Key_Enter, Qt::ShiftModifier | Qt::KeypadModifier);
        EXPECT_EQ(Shown(box), "one");
        EXPECT_TRUE(box.isVisible());
        Click(box);
    });
}

TEST_F(TipBox, TabGoesBetweenDoneAndTheCheckBoxOnly) {
    WriteTips(std::string(1022, 'W') + "\n"); // as long as can be: it is scrolled
    WithTipBox([](QDialog &box) {
        QTest::keyClick(&box, Qt::Key_Tab);
        EXPECT_TRUE(Check(box).hasFocus());
        QTest::keyClick(&box, Qt::Key_Tab);
        EXPECT_TRUE(Done(box).hasFocus());
        Click(box);
    });
}

TEST_F(TipBox, TheHeadingStandsAtTheTopLeftOfItsPlace) {
    WithTipBox([](QDialog &box) {
        auto &heading = *box.findChild<QLabel *>("control_6101");
        const auto painted = [&heading] {
            QImage image = EmptyImage(heading.width(), heading.height());
            heading.render(&image, QPoint(), QRegion(), {});
            return image;
        };
        const QImage whole = painted();
        heading.setFixedSize(heading.size() + QSize(40, 30));
        EXPECT_EQ(painted().copy(whole.rect()), whole);
        Click(box);
    });
}

TEST_F(TipBox, TheTextIsInABoldFontOf18Pixels) {
    WithTipBox([](QDialog &box) {
        EXPECT_EQ(Area(box).widget()->font(), FontOfHeight("Arial", 18, 700));
        EXPECT_EQ(Area(box).widget()->font().weight(), 700);
        const QFontMetrics metrics(Area(box).widget()->font());
        EXPECT_NEAR(metrics.ascent() + metrics.descent(), 18, 1);
        Click(box);
    });
}

TEST_F(TipBox, ABumpedEdgeStandsOnAllSidesOfTheText) {
    QPalette colours = QApplication::palette();
    colours.setColor(QPalette::Light, QColor(Qt::yellow));
    colours.setColor(QPalette::Dark, QColor(Qt::blue));
    const QPalette before = QApplication::palette();
    QApplication::setPalette(colours);
    WithTipBox([](QDialog &box) {
        const QImage image = Area(box).grab().toImage();
        const int width = image.width(), height = image.height();
        constexpr QRgb light = 0xFFFFFF00, dark = 0xFF0000FF;
        EXPECT_TRUE(IsAll(image, QRect(2, 0, width - 4, 1), light));
        EXPECT_TRUE(IsAll(image, QRect(0, 2, 1, height - 4), light));
        EXPECT_TRUE(IsAll(image, QRect(2, height - 1, width - 4, 1), dark));
        EXPECT_TRUE(IsAll(image, QRect(width - 1, 2, 1, height - 4), dark));
        // Within the light outer line lies a dark one, and the other way round.
        EXPECT_TRUE(IsAll(image, QRect(4, 1, width - 8, 1), dark));
        EXPECT_TRUE(IsAll(image, QRect(1, 4, 1, height - 8), dark));
        EXPECT_TRUE(IsAll(image, QRect(4, height - 2, width - 8, 1), light));
        EXPECT_TRUE(IsAll(image, QRect(width - 2, 4, 1, height - 8), light));
        Click(box);
    });
    QApplication::setPalette(before);
}

TEST_F(TipBox, TheTextStandsEightPixelsInOnAllSides) {
    WriteTips(std::string(1000, 'W') + "\n");
    WithTipBox([](QDialog &box) {
        QTest::qWait(1);
        QWidget &text = *Area(box).widget();
        ASSERT_GT(text.height(), Area(box).viewport()->height());
        const QImage image = text.grab().toImage();
        const QRect ink = InkOf(image, image.rect(), image.pixel(1, 1));
        EXPECT_NEAR(ink.left(), 8, 1);
        EXPECT_GE(ink.left(), 8);
        EXPECT_LE(ink.right(), image.width() - 1 - 8);
        EXPECT_GT(ink.right(), image.width() - 1 - 8 - 20); // a letter's width
        EXPECT_GE(ink.top(), 8);
        EXPECT_LT(ink.top(), 8 + 6); // what a line has above a capital letter
        EXPECT_LE(ink.bottom(), image.height() - 1 - 8);
        EXPECT_GT(ink.bottom(), image.height() - 1 - 8 - 6);
        Click(box);
    });
}

TEST_F(TipBox, DoneKeepsTheCheckBoxByMouseAndKeys) {
    WithTipBox([](QDialog &box) {
        QTest::mouseClick(&Check(box), Qt::LeftButton, Qt::NoModifier,
                          {10, Check(box).height() / 2});
        Click(box);
    });
    EXPECT_EQ(ShowTipOfTheDay, 0u);
    WithTipBox([](QDialog &box) {
        EXPECT_FALSE(Check(box).isChecked());
        Check(box).setFocus();
        QTest::keyClick(&Check(box), Qt::Key_Space);
        QTest::keyClick(&Check(box), Qt::Key_Return); // the box's own button
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(ShowTipOfTheDay, 1u);
}

TEST_F(TipBox, EscClosesAndKeepsNothing) {
    WithTipBox([](QDialog &box) {
        Check(box).setChecked(false);
        QTest::keyClick(&box, Qt::Key_Escape);
        EXPECT_FALSE(box.isVisible());
    });
    EXPECT_EQ(ShowTipOfTheDay, 1u);
}

TEST_F(TipBox, WithoutTheFileTheErrorTextIsShownAndTheNumberStays) {
    std::filesystem::remove(folder.File("TNWRGT.TIP"));
    WithTipBox([](QDialog &box) {
        EXPECT_EQ(Shown(box), "There has been an error accessing the tip of the day.");
        Click(box);
    });
    EXPECT_EQ(TipOfTheDay, 1u);
}

TEST_F(TipBox, AScreenReaderFindsTheTip) {
    WriteTips("a \\n b\xC3\xA9\ntwo\n");
    WithTipBox([](QDialog &box) {
        auto *seen = QAccessible::queryAccessibleInterface(&Area(box));
        ASSERT_NE(seen, nullptr);
        EXPECT_EQ(seen->text(QAccessible::Name).toStdString(), "a \n b\xC3\xA9");
        EXPECT_EQ(seen->role(), QAccessible::StaticText);
        // It is said with the button that has the keyboard, each time.
        seen = QAccessible::queryAccessibleInterface(&Done(box));
        ASSERT_NE(seen, nullptr);
        EXPECT_EQ(seen->text(QAccessible::Description).toStdString(), "a \n b\xC3\xA9");
        Click(box, Qt::ShiftModifier);
        EXPECT_EQ(seen->text(QAccessible::Description).toStdString(), "two");
        Click(box);
    });
}

TEST_F(TipBox, ALongTipIsScrolledDownwardByKeysAndTheNextOneBeginsAtItsTop) {
    WriteTips(std::string(1022, 'W') + "\n" + std::string(500, 'x') + std::string(500, 'y') + "\n");
    WithTipBox([](QDialog &box) {
        const QScrollBar &bar = *Area(box).verticalScrollBar();
        QTest::qWait(1);
        EXPECT_LE(Area(box).widget()->width(), Area(box).viewport()->width());
        ASSERT_GT(bar.maximum(), 0);
        ASSERT_TRUE(Done(box).hasFocus());
        QTest::keyClick(&Done(box), Qt::Key_PageDown);
        EXPECT_GT(bar.value(), 0);
        QTest::keyClick(&Done(box), Qt::Key_PageUp);
        EXPECT_EQ(bar.value(), 0);
        Check(box).setFocus();
        for (int i = 0; i < 100; ++i) {
            QTest::keyClick(&Check(box), Qt::Key_PageDown);
        }
        EXPECT_EQ(bar.value(), bar.maximum());
        Click(box, Qt::ShiftModifier);
        EXPECT_EQ(bar.value(), 0);
        Click(box);
    });
}

TEST_F(TipBox, EveryTipOfTheProgramFitsWithoutScrolling) {
    const std::string tips = ReadTestText(SourceFile("resources/TNWRGT.TIP"));
    WriteTips(tips);
    WithTipBox([&](QDialog &box) {
        for (auto left = std::ranges::count(tips, '\n'); left > 0; --left) {
            QTest::qWait(1);
            EXPECT_EQ(Area(box).verticalScrollBar()->maximum(), 0) << Shown(box);
            Click(box, Qt::ShiftModifier);
        }
        EXPECT_EQ(TipOfTheDay, 2u);
        Click(box);
    });
}

TEST_F(TipBox, TheTextHasTheColourOfTextsOnInformation) {
    const QPalette before = QApplication::palette();
    QPalette colours = before;
    colours.setColor(QPalette::Light, Qt::white);
    colours.setColor(QPalette::ToolTipText, QColor(0, 0, 170));
    QApplication::setPalette(colours);
    WithTipBox([](QDialog &box) {
        const QImage image = Area(box).viewport()->grab().toImage();
        EXPECT_TRUE(HasPixel(image, QRect(8, 8, 60, 22), 0xFF0000AA));
        EXPECT_FALSE(HasPixel(image, QRect(8, 8, 60, 22), Black));
        Click(box);
    });
    QApplication::setPalette(before);
}

TEST_F(TipBox, TheTextIsReadableOnLightAndDarkPalettes) {
    const QPalette before = QApplication::palette();
    const auto darkOf = [](const QColor &info) {
        QPalette dark(QColor(50, 50, 50), QColor(50, 50, 50));
        dark.setColor(QPalette::Light, QColor(75, 75, 75));
        dark.setColor(QPalette::ToolTipText, info);
        return dark;
    };
    for (const QPalette &palette : {before, darkOf(Qt::black), darkOf(Qt::white)}) {
        QApplication::setPalette(palette);
        WithTipBox([](QDialog &box) {
            const QImage image = Area(box).viewport()->grab().toImage();
            const QColor ground = QApplication::palette().color(QPalette::Active, QPalette::Light);
            EXPECT_EQ(image.pixelColor(2, 2), ground);
            int farthest = 0;
            for (int y = 8; y < 30; ++y) {
                for (int x = 0; x < 60; ++x) {
                    const int difference = std::abs(qGray(image.pixel(x, y)) - qGray(ground.rgb()));
                    farthest = std::max(farthest, difference);
                    EXPECT_TRUE(x >= 8 || difference == 0) << x << ", " << y;
                }
            }
            EXPECT_GE(farthest, 128);
            Click(box);
        });
    }
    QApplication::setPalette(before);
}

// ---- the tip that comes by itself

class FirstTipOfTheDay : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders(); // the wizard writes there
        ApplicationPath = home.Folder();
        home.WriteText("TNWRGT.TIP", "one\ntwo\n");
        ShowWelcomeWizard = 0;
    }
    // Whether a box with a tip comes up after the start.
    bool TipComes() {
        return WithBox([] { PostMainStartupDone(); },
                       [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Tip of the day"); });
    }
};

TEST_F(FirstTipOfTheDay, ATipComesAfterTheStartOnceADay) {
    EXPECT_TRUE(TipComes());
    EXPECT_EQ(TipOfTheDay, 1u); // from 0
    EXPECT_FALSE(TipComes());
    EXPECT_FALSE(SomethingIsRunning());
    LastTipDate -= 0x10000; // as if it had been the day before
    EXPECT_TRUE(TipComes());
    EXPECT_EQ(TipOfTheDay, 2u);
}

TEST_F(FirstTipOfTheDay, NoneComesWhenTipsAreOffAndTheDayIsNotUsedUp) {
    ShowTipOfTheDay = 0;
    EXPECT_FALSE(TipComes());
    EXPECT_EQ(LastTipDate, 0u);
    ShowTipOfTheDay = 1;
    EXPECT_TRUE(TipComes());
}

TEST_F(FirstTipOfTheDay, TheWizardStopsTheTipAndTheDayIsUsedUp) {
    ShowWelcomeWizard = 1;
    const auto skip = [](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Welcome");
        QTest::mouseClick(box.findChild<QPushButton *>("control_7"), Qt::LeftButton);
    };
    EXPECT_TRUE(WithBox([] { PostMainStartupDone(); }, skip));
    EXPECT_NE(LastTipDate, 0u);
    EXPECT_FALSE(TipComes());
}

TEST_F(FirstTipOfTheDay, TheMenuShowsATipAtAnyTime) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(WithBox([this] { Trigger(CommandTip); },
                            [](QDialog &box) { EXPECT_EQ(box.windowTitle(), "Tip of the day"); }));
    }
    EXPECT_EQ(LastTipDate, 0u);
}

} // namespace
} // namespace tonewright
