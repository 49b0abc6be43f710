// The colour box and the two boxes that it opens, used with mouse and keys.
#include "window_fixture.h"

#include "common/colour.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/view/dialog_controls.h"
#include "common/view/list_box_view.h"
#include "common/view/up_down.h"
#include "shell/view/colour_box.h"
#include "shell/view/colour_field.h"
#include "shell/view/colour_table_boxes.h"
#include "support/modal_box.h"
#include "support/pixels.h"

#include <QComboBox>
#include <QCursor>
#include <QFontInfo>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>

#include <array>
#include <optional>

namespace tonewright {
namespace {

constexpr std::uint32_t Navy = 0x00800000;
constexpr QRgb SelectedGround = 0xFFC8C8C8;

class ColourBoxTest : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(Folder());
        PlatformFolders = {
            .applicationData = home.Folder(), .documents = "", .pictures = "", .programs = ""};
        std::string table = "Amber=255,191,0\nBlack=0,0,0\nNavy=0,0,128\n";
        for (char letter = 'a'; letter < 'w'; ++letter) {
            table += std::string("z") + letter + "=9,9," + std::to_string(letter) + "\n";
        }
        WriteTestText(Path(), table);
        QCursor::setPos(790, 790); // beside every box
    }
    std::string Folder() const { return home.File("Quillbrook/Tonewright 17/"); }
    std::string Path(const std::string &name = "TNWRGT.CCL") const { return Folder() + name; }
    std::string Saved(const std::string &name = "TNWRGT.CCL") const {
        return ReadTestText(Path(name));
    }

    // Opens the box of a colour and hands it to `use`, which closes it; what was chosen.
    std::optional<std::uint32_t> Choose(std::uint32_t colour, const std::function<void()> &use) {
        std::optional<std::uint32_t> chosen;
        WithModalBox([&] { chosen = ChooseColour(nullptr, colour); },
                     [&](QDialog &shown) {
                         box = &shown;
                         use();
                     });
        return chosen;
    }
    template <typename Widget = QWidget> Widget *Control(std::uint32_t number) const {
        auto *control = ControlOf<Widget>(box, number);
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    QString Text(std::uint32_t number) const { return Control<QLineEdit>(number)->text(); }
    QString Name() const { return Control<ColourName>(104)->Name(); }
    std::uint32_t Sample() const { return Control<ColourSample>(709)->Colour(); }
    QString Parts() const { return Text(706) + " " + Text(707) + " " + Text(708); }
    QString Place() const { return Text(703) + " " + Text(704) + " " + Text(705); }
    ListBoxView *List() const { return Control<ListBoxView>(108); }
    int Selected() const { return List()->currentIndex().row(); }
    void Type(std::uint32_t number, const QString &text) const {
        auto *edit = Control<QLineEdit>(number);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
    void Click(std::uint32_t number) const { QTest::mouseClick(Control(number), Qt::LeftButton); }
    void ClickRow(int row) const {
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, {},
                          List()->RowRectangle(row).center());
    }
    // Moves the mouse onto a control, and presses and releases it there.
    void ClickAt(std::uint32_t number, QPoint point) const {
        QCursor::setPos(Control(number)->mapToGlobal(point));
        QTest::mouseClick(Control(number), Qt::LeftButton, {}, point);
    }
    void Cancel() const { Click(2); }
    // That the box waits for so many milliseconds after an act of the user. The end of the wait is
    // waited for.
    void ExpectWait(const char *name, int milliseconds) const {
        const auto *timer = box->findChild<QTimer *>(name);
        ASSERT_NE(timer, nullptr) << name;
        EXPECT_EQ(timer->interval(), milliseconds);
        EXPECT_TRUE(timer->isSingleShot());
        EXPECT_TRUE(timer->isActive());
        QTRY_VERIFY_WITH_TIMEOUT(!timer->isActive(), 20'000);
    }
    // The controls that Tab goes to, one after the other, until it comes to one again.
    std::string TabOrder() const {
        std::string order = " ";
        for (;;) {
            const std::string name =
                " " + box->focusWidget()->objectName().section('_', 1).toStdString() + " ";
            if (order.find(name) != order.npos) {
                return order;
            }
            order += name.substr(1);
            QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
        }
    }
    // Gives the colour of the box a name.
    void AddAs(const char *name) {
        QDialog *colours = box;
        WithModalBox([this] { Click(109); },
                     [name](QDialog &add) {
                         QTest::keyClicks(add.focusWidget(), name);
                         QTest::keyClick(add.focusWidget(), Qt::Key_Return);
                     });
        box = colours;
    }

    TempFolder home;
    ScriptedDesktop desktop;
    QDialog *box = nullptr;
};

TEST_F(ColourBoxTest, ShowsTheColourThatItBeginsWithInAllItsControls) {
    EXPECT_EQ(Choose(0xAB800000,
                     [this] {
                         EXPECT_EQ(box->windowTitle(), "Color");
                         EXPECT_EQ(Parts(), "0 0 128");
                         EXPECT_EQ(Place(), "160 240 60");
                         EXPECT_EQ(Text(102), "#000080");
                         EXPECT_EQ(Sample(), Navy);
                         EXPECT_EQ(Selected(), 2);
                         EXPECT_EQ(Name(), "Navy");
                         EXPECT_EQ(Control<QLabel>(15706)->text(), "00H");
                         EXPECT_EQ(Control<QLabel>(15707)->text(), "00H");
                         EXPECT_EQ(Control<QLabel>(15708)->text(), "80H");
                         EXPECT_TRUE(QFontInfo(Control(102)->font()).fixedPitch());
                         Click(1);
                     }),
              Navy);
    EXPECT_EQ(Choose(Navy, [this] { Cancel(); }), std::nullopt);
}

TEST_F(ColourBoxTest, AColourWithoutANameHasNone) {
    Choose(0x00123456, [this] {
        EXPECT_EQ(Name(), "");
        EXPECT_EQ(Selected(), -1);
        EXPECT_EQ(Text(102), "#563412"); // red comes first
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheSelectedRowIsInSightFromTheBeginning) {
    Choose(ColourOf({.red = 9, .green = 9, .blue = 'v'}), [this] {
        EXPECT_EQ(Selected(), 24);
        EXPECT_TRUE(List()->viewport()->rect().contains(List()->RowRectangle(24)));
        Cancel();
    });
}

TEST_F(ColourBoxTest, AWrittenPartIsFollowedAtOnce) {
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         Type(706, "255");
                         EXPECT_EQ(Text(102), "#FF0080");
                         EXPECT_EQ(Sample(), 0x008000FFu);
                         EXPECT_EQ(Control<QLabel>(15706)->text(), "FFH");
                         EXPECT_EQ(Name(), "");
                         EXPECT_EQ(Selected(), 2); // there is no match
                         EXPECT_EQ(Place(), "220 240 120");
                         Type(707, "191");
                         Type(708, "0");
                         EXPECT_EQ(Text(102), "#FFBF00");
                         EXPECT_EQ(Selected(), 0);
                         EXPECT_EQ(Name(), "Amber");
                         Click(1);
                     }),
              0x0000BFFFu);
}

TEST_F(ColourBoxTest, APartIsAtMost255AndAnEmptyOneIs0) {
    Choose(Navy, [this] {
        Type(706, "300");
        EXPECT_EQ(Text(706), "30");
        Type(708, "9999");
        EXPECT_EQ(Text(708), "99");
        Control<QLineEdit>(708)->selectAll();
        QTest::keyClick(Control(708), Qt::Key_Backspace);
        EXPECT_EQ(Text(708), "");
        EXPECT_EQ(Text(102), "#1E0000");
        EXPECT_EQ(Control<QLabel>(15708)->text(), "00H");
        Cancel();
    });
}

TEST_F(ColourBoxTest, AWrittenPlaceIsFollowedAtOnceAndStaysAsItWasWritten) {
    Choose(0, [this] {
        Type(703, "40");
        EXPECT_EQ(Parts(), "0 0 0");
        Type(705, "120");
        Type(704, "240");
        EXPECT_EQ(Place(), "40 240 120");
        EXPECT_EQ(Parts(), "255 255 0");
        EXPECT_EQ(Text(102), "#FFFF00");
        EXPECT_EQ(Sample(), 0x0000FFFFu);
        Type(703, "241");
        EXPECT_EQ(Text(703), "24");
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheArrowsStepToTheEndsOfTheirRanges) {
    Choose(0x00FF0000, [this] {
        const auto step = [this](std::uint32_t arrows, const char *arrow) {
            QTest::mouseClick(Control<UpDown>(arrows)->findChild<QToolButton *>(arrow),
                              Qt::LeftButton);
        };
        step(206, "up");
        EXPECT_EQ(Text(708), "255");
        step(206, "down");
        EXPECT_EQ(Text(708), "254");
        EXPECT_EQ(Text(102), "#0000FE");
        step(204, "up");
        step(205, "up");
        EXPECT_EQ(Parts(), "1 1 254");
        for (const auto &[field, arrows] : {std::pair(703, 201), {704, 202}, {705, 203}}) {
            Type(field, "239");
            step(arrows, "up");
            step(arrows, "up");
            EXPECT_EQ(Text(field), "240") << field;
        }
        Cancel();
    });
}

TEST_F(ColourBoxTest, AWrittenNumberSetsTheFieldsAndAfter100MillisecondsSampleAndName) {
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         Type(102, "#FFBF0");
                         ExpectWait("timer_17", 100);
                         EXPECT_EQ(Parts(), "15 251 240");
                         QTest::keyClicks(Control(102), "0");
                         EXPECT_EQ(Parts(), "255 191 0");
                         EXPECT_EQ(Place(), "30 240 120");
                         EXPECT_EQ(Control<QLabel>(15707)->text(), "BFH");
                         EXPECT_NE(Sample(), 0x0000BFFFu);
                         EXPECT_EQ(Name(), "");
                         ExpectWait("timer_17", 100);
                         EXPECT_EQ(Name(), "Amber");
                         EXPECT_EQ(Sample(), 0x0000BFFFu);
                         EXPECT_EQ(Selected(), 0);
                         EXPECT_EQ(Text(102), "#FFBF00");
                         QTest::keyClicks(Control(102), "7"); // there is room for 7 characters
                         EXPECT_EQ(Text(102), "#FFBF00");
                         QTest::keyClick(Control(102), Qt::Key_Return);
                     }),
              0x0000BFFFu);
}

TEST_F(ColourBoxTest, ANumberWithoutItsSignChangesNothing) {
    Choose(Navy, [this] {
        for (const char *text : {"FFBF00", "x", " #1", ""}) {
            Type(102, text);
            if (!*text) {
                QTest::keyClick(Control(102), Qt::Key_Backspace);
            }
            EXPECT_EQ(Text(102), text);
            EXPECT_EQ(Parts(), "0 0 128") << text;
        }
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheDigitsBehindTheSignAreTheNumberAndWithoutAnyItIs0) {
    Choose(Navy, [this] {
        Type(102, "#");
        EXPECT_EQ(Parts(), "0 0 0");
        Type(102, "#12g");
        EXPECT_EQ(Parts(), "0 0 18");
        EXPECT_EQ(Text(102), "#12g");
        Cancel();
    });
}

TEST_F(ColourBoxTest, AnOddTextGivesWayToTheNumberOfTheColourWhenItsLineIsLeft) {
    Choose(Navy, [this] {
        for (const auto &[text, number] :
             {std::pair("FFBF00", "#000080"), {"#12g", "#000012"}, {"#", "#000000"}}) {
            Type(102, text);
            EXPECT_EQ(Text(102), text);
            Control(706)->setFocus();
            EXPECT_EQ(Text(102), number);
        }
        Cancel();
    });
}

TEST_F(ColourBoxTest, AClickIntoTheFieldOfColoursIsFollowedAfter50Milliseconds) {
    Choose(0x00FFFFFF, [this] {
        Type(705, "120");
        const std::uint32_t former = Sample();
        ClickAt(710, {1, 1});
        EXPECT_EQ(Place(), "0 240 120");
        EXPECT_EQ(Parts(), "255 0 0");
        EXPECT_EQ(Control<QLabel>(15706)->text(), "FFH");
        EXPECT_EQ(Sample(), former);
        EXPECT_NE(Text(102), "#FF0000");
        ExpectWait("timer_18", 50);
        EXPECT_EQ(Text(102), "#FF0000");
        EXPECT_EQ(Sample(), 0x000000FFu);
        ClickAt(710, {Control(710)->width() - 1, Control(710)->height() - 1});
        EXPECT_EQ(Place(), "239 0 120");
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheLuminanceIsChosenInTheBar) {
    Choose(Navy, [this] {
        ClickAt(702, {5, 1});
        EXPECT_EQ(Place(), "160 240 240");
        EXPECT_EQ(Parts(), "255 255 255");
        ClickAt(702, {5, Control(702)->height() - 2});
        EXPECT_EQ(Parts(), "0 0 0");
        ExpectWait("timer_18", 50);
        EXPECT_EQ(Name(), "Black");
        EXPECT_EQ(Selected(), 1);
        EXPECT_EQ(Place(), "160 240 0"); // hue and saturation are not lost
        Cancel();
    });
}

TEST_F(ColourBoxTest, AClickWhoseCursorHasGoneIsNotFollowed) {
    Choose(Navy, [this] {
        ClickAt(702, {5, 1});
        QCursor::setPos(790, 790);
        ExpectWait("timer_18", 50);
        EXPECT_EQ(Text(102), "#000080");
        EXPECT_EQ(Sample(), Navy);
        Cancel();
    });
}

TEST_F(ColourBoxTest, AMouseThatIsHeldChoosesBesideThePictureToo) {
    Choose(Navy, [this] {
        QWidget *bar = Control(702);
        QTest::mousePress(bar, Qt::LeftButton, {}, {5, 9});
        QMouseEvent move(QEvent::MouseMove, QPointF(-50, -40), bar->mapToGlobal(QPointF(-50, -40)),
                         Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(bar, &move);
        EXPECT_EQ(Parts(), "255 255 255");
        ExpectWait("timer_18", 50);
        EXPECT_EQ(Text(102), "#FFFFFF");
        QMouseEvent moveDown(QEvent::MouseMove, QPointF(-50, 999),
                             bar->mapToGlobal(QPointF(-50, 999)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(bar, &moveDown);
        QTest::mouseRelease(bar, Qt::LeftButton, {}, {-50, 999});
        EXPECT_EQ(Text(102), "#000000"); // at once: the cursor is elsewhere
        EXPECT_EQ(Name(), "Black");
        QApplication::sendEvent(bar, &move); // no longer held
        EXPECT_EQ(Parts(), "0 0 0");
        QTest::mouseClick(bar, Qt::RightButton, {}, {5, 9});
        EXPECT_EQ(Parts(), "0 0 0");
        Cancel();
    });
}

TEST_F(ColourBoxTest, AClickOnANameSetsFieldsAndNumberAndAfter100MillisecondsTheRest) {
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         ClickRow(0);
                         EXPECT_EQ(Parts(), "255 191 0");
                         EXPECT_EQ(Text(102), "#FFBF00");
                         EXPECT_EQ(Place(), "30 240 120");
                         EXPECT_EQ(Sample(), Navy);
                         EXPECT_EQ(Name(), "Navy");
                         ExpectWait("timer_17", 100);
                         EXPECT_EQ(Name(), "Amber");
                         EXPECT_EQ(Sample(), 0x0000BFFFu);
                         // The same row again, after another colour was written.
                         Type(706, "7");
                         EXPECT_EQ(Name(), "");
                         ClickRow(0);
                         EXPECT_EQ(Parts(), "255 191 0");
                         Click(1);
                     }),
              0x0000BFFFu);
}

TEST_F(ColourBoxTest, AClickBelowTheNamesChoosesNone) {
    WriteTestText(Path(), "Amber=255,191,0\n");
    Choose(0x0000BFFF, [this] {
        Type(706, "7");
        QTest::mouseClick(List()->viewport(), Qt::LeftButton, {},
                          List()->viewport()->rect().bottomLeft() + QPoint(5, -5));
        EXPECT_EQ(Text(706), "7");
        Cancel();
    });
}

TEST_F(ColourBoxTest, KeysChooseANameAndReturnIsOk) {
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         EXPECT_EQ(box->focusWidget(), List());
                         QTest::keyClick(List(), Qt::Key_Up);
                         EXPECT_EQ(Parts(), "0 0 0");
                         QTest::keyClick(List(), Qt::Key_A);
                         EXPECT_EQ(Parts(), "255 191 0");
                         QTest::keyClick(List(), Qt::Key_Return);
                     }),
              0x0000BFFFu);
    EXPECT_EQ(Choose(Navy, [this] { QTest::keyClick(List(), Qt::Key_Escape); }), std::nullopt);
}

TEST_F(ColourBoxTest, OfTwoNamesOfAColourTheOneThatWasClickedStays) {
    WriteTestText(Path(), "Black=0,0,0\nInk=0,0,0\n");
    Choose(0, [this] {
        EXPECT_EQ(Name(), "Black");
        ClickRow(1);
        ExpectWait("timer_17", 100);
        EXPECT_EQ(Name(), "Ink");
        EXPECT_EQ(Selected(), 1);
        Cancel();
    });
}

TEST_F(ColourBoxTest, ADoubleClickIsOk) {
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         ClickRow(0);
                         QTest::mouseDClick(List()->viewport(), Qt::LeftButton, {},
                                            List()->RowRectangle(0).center());
                     }),
              0x0000BFFFu);
}

TEST_F(ColourBoxTest, TheWheelGoesToTheListWhereverItIsTurned) {
    Choose(Navy, [this] {
        ASSERT_EQ(List()->verticalScrollBar()->value(), 0);
        int rows = 0;
        for (const std::uint32_t number : {706u, 204u, 710u, 102u, 1u}) {
            QWidget *control = Control(number);
            QWheelEvent wheel(QPointF(3, 3), control->mapToGlobal(QPointF(3, 3)), {}, {0, -120},
                              Qt::NoButton, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(control, &wheel);
            EXPECT_EQ(List()->verticalScrollBar()->value(), ++rows) << number;
        }
        EXPECT_EQ(Parts(), "0 0 128");
        Cancel();
    });
}

TEST_F(ColourBoxTest, ARowShowsASwatchAndIsGreyWhenItIsSelected) {
    Choose(Navy, [this] {
        const QImage image = List()->viewport()->grab().toImage();
        const QRect amber = List()->RowRectangle(0), navy = List()->RowRectangle(2);
        EXPECT_EQ(image.pixelColor(20, amber.center().y()), QColor(255, 191, 0));
        EXPECT_EQ(image.pixelColor(20, navy.center().y()), QColor(0, 0, 128));
        EXPECT_EQ(image.pixelColor(amber.right() - 5, amber.center().y()), QColor(Qt::white));
        const QColor grey = image.pixelColor(navy.right() - 5, navy.center().y());
        EXPECT_TRUE(grey.red() == grey.green() && grey.green() == grey.blue());
        EXPECT_TRUE(grey.red() > 150 && grey.red() < 240);
        EXPECT_TRUE(HasPixel(image, amber.adjusted(48, 0, 0, 0), Black)); // its name
        Cancel();
    });
}

TEST_F(ColourBoxTest, AddGivesTheColourANameAndSavesTheTable) {
    Choose(0x00030201, [this] {
        QDialog *colours = box;
        WithModalBox([this] { Click(109); },
                     [this](QDialog &add) {
                         EXPECT_NE(&add, box);
                         auto *ok = add.findChild<QPushButton *>("control_1");
                         auto *name = add.findChild<QLineEdit *>("control_101");
                         EXPECT_EQ(add.focusWidget(), name);
                         EXPECT_EQ(add.findChild<QLineEdit *>("control_706")->text(), "1");
                         EXPECT_EQ(add.findChild<QLineEdit *>("control_707")->text(), "2");
                         EXPECT_EQ(add.findChild<QLineEdit *>("control_708")->text(), "3");
                         EXPECT_FALSE(ok->isEnabled());
                         QTest::keyClicks(name, "Co=al");
                         EXPECT_EQ(name->text(), "Coal");
                         EXPECT_TRUE(ok->isEnabled());
                         auto *blue = add.findChild<QLineEdit *>("control_708");
                         blue->clear();
                         EXPECT_FALSE(ok->isEnabled());
                         QTest::keyClicks(blue, "34x5");
                         EXPECT_EQ(blue->text(), "34");
                         EXPECT_TRUE(ok->isEnabled());
                         QTest::mouseClick(ok, Qt::LeftButton);
                     });
        box = colours;
        EXPECT_EQ(Selected(), 2);
        EXPECT_EQ(Name(), "Coal");
        EXPECT_EQ(Parts(), "1 2 34");
        EXPECT_TRUE(Saved().starts_with("Amber=255,191,0\nBlack=0,0,0\nCoal=1,2,34\nNavy="));
        Cancel(); // the table stays changed
    });
    EXPECT_NE(Saved().find("Coal"), std::string::npos);
    EXPECT_GE(desktop.beeps, 1);
}

TEST_F(ColourBoxTest, AddAsksAboutAColourThatIsThere) {
    const std::string former = Saved();
    const std::string question = "This color already exists in the current color database as "
                                 "Navy. Do you wish to add it anyway?";
    Choose(Navy, [&] {
        desktop.ExpectYesNo(question, ResultNo);
        Click(109);
        desktop.ExpectYesNo(question, ResultYes);
        WithModalBox([this] { Click(109); },
                     [](QDialog &add) { QTest::keyClick(&add, Qt::Key_Escape); });
        Cancel();
    });
    EXPECT_EQ(Saved(), former);
}

TEST_F(ColourBoxTest, AColourThatIsThereGetsASecondNameAfterAYes) {
    Choose(Navy, [this] {
        desktop.ExpectYesNo("This color already exists in the current color database as Navy. Do "
                            "you wish to add it anyway?",
                            ResultYes);
        AddAs("Ocean");
        EXPECT_EQ(List()->model()->rowCount(), 26);
        EXPECT_EQ(Selected(), 3);
        EXPECT_EQ(Name(), "Ocean");
        EXPECT_EQ(Parts(), "0 0 128");
        Cancel();
    });
    EXPECT_TRUE(
        Saved().starts_with("Amber=255,191,0\nBlack=0,0,0\nNavy=0,0,128\nOcean=0,0,128\nza="));
}

TEST_F(ColourBoxTest, ANameOfBlanksAloneIsNone) {
    Choose(0x00030201, [this] {
        WithModalBox([this] { Click(109); },
                     [](QDialog &add) {
                         auto *ok = add.findChild<QPushButton *>("control_1");
                         QTest::keyClicks(add.focusWidget(), "  ");
                         EXPECT_FALSE(ok->isEnabled());
                         QTest::keyClicks(add.focusWidget(), "a ");
                         EXPECT_TRUE(ok->isEnabled());
                         QTest::keyClick(&add, Qt::Key_Escape);
                     });
        Cancel();
    });
}

TEST_F(ColourBoxTest, DeleteTakesTheSelectedNameAway) {
    Choose(Navy, [this] {
        desktop.ExpectYesNo("Do you really want to delete this color from the current color "
                            "database?",
                            ResultYes);
        Click(110);
        EXPECT_EQ(Selected(), 1);
        EXPECT_EQ(Name(), "");         // the colour has none any more
        EXPECT_EQ(Parts(), "0 0 128"); // and stays
        Cancel();
    });
    EXPECT_TRUE(Saved().starts_with("Amber=255,191,0\nBlack=0,0,0\nza="));
}

TEST_F(ColourBoxTest, BehindTheFirstRowTheNewFirstOneIsSelected) {
    Choose(0x0000BFFF, [this] {
        ASSERT_EQ(Selected(), 0);
        desktop.ExpectYesNo("Do you really want to delete this color from the current color "
                            "database?",
                            ResultYes);
        Click(110);
        EXPECT_EQ(Selected(), 0);
        EXPECT_EQ(List()->model()->index(0, 0).data().toString(), "Black");
        const QRect row = List()->RowRectangle(0);
        EXPECT_EQ(List()->viewport()->grab().toImage().pixel(row.right() - 5, row.center().y()),
                  SelectedGround);
        Cancel();
    });
    EXPECT_TRUE(Saved().starts_with("Black=0,0,0\nNavy=0,0,128\n"));
}

TEST_F(ColourBoxTest, OpenBeginsWithTheDefaultTableWhereTheSettingsNameNone) {
    for (const char *file : {"", "../TNWRGT.CCL"}) {
        ColourTableFile = file;
        Choose(Navy, [this] {
            EXPECT_EQ(Name(), "Navy");
            WithModalBox([this] { Click(101); },
                         [](QDialog &open) {
                             EXPECT_EQ(open.findChild<QComboBox *>("control_101")->currentText(),
                                       "TNWRGT.CCL");
                             EXPECT_TRUE(open.findChild<QWidget *>("control_1")->isEnabled());
                             QTest::keyClick(&open, Qt::Key_Escape);
                         });
            Cancel();
        });
    }
}

TEST_F(ColourBoxTest, OpenChangesToAnotherTable) {
    WriteTestText(Path("more.ccl"), "Deep=0,0,128\nx=1,2,3\n");
    Choose(Navy, [this] {
        WithModalBox([this] { Click(101); },
                     [](QDialog &open) {
                         EXPECT_EQ(open.windowTitle(), "Color Table");
                         auto *names = open.findChild<QComboBox *>("control_101");
                         auto *ok = open.findChild<QPushButton *>("control_1");
                         EXPECT_EQ(names->count(), 2);
                         EXPECT_EQ(names->itemText(1), "TNWRGT.CCL");
                         EXPECT_EQ(names->currentText(), "TNWRGT.CCL");
                         names->setEditText("../x");
                         EXPECT_FALSE(ok->isEnabled());
                         names->setCurrentIndex(0);
                         EXPECT_EQ(names->currentText(), "more.ccl");
                         QTest::mouseClick(ok, Qt::LeftButton);
                     });
        EXPECT_EQ(ColourTableFile, "more.ccl");
        EXPECT_EQ(Name(), "Deep");
        EXPECT_EQ(Selected(), 0);
        WithModalBox([this] { Click(101); },
                     [](QDialog &open) { QTest::keyClick(&open, Qt::Key_Escape); });
        EXPECT_EQ(ColourTableFile, "more.ccl");
        Cancel();
    });
}

TEST_F(ColourBoxTest, WithoutATableTheListIsEmptyAndNothingIsSaid) {
    std::filesystem::remove(Path());
    EXPECT_EQ(Choose(Navy,
                     [this] {
                         EXPECT_EQ(List()->model()->rowCount(), 0);
                         EXPECT_EQ(Name(), "");
                         Click(110); // nothing to delete
                         QTest::keyClick(List(), Qt::Key_Down);
                         Click(1);
                     }),
              Navy);
    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(ColourBoxTest, AnEditThatIsPendingIsSavedWhenTheBoxCloses) {
    Choose(0x00030201, [this] {
        std::filesystem::rename(Path(), Path("away"));
        std::filesystem::create_directory(Path());
        desktop.Expect(
            {.text = "The color table could not be saved.\n\n" + Path() +
                     ": Is a directory.\n\nThe change stays in the list. It will be saved "
                     "once more when the list is changed or left.",
             .buttons = {"Dismiss"},
             .during = [this](MessageRequest &request) { EXPECT_EQ(request.owner, box); }});
        AddAs("Coal");
        EXPECT_EQ(Name(), "Coal");
        std::filesystem::remove(Path());
        EXPECT_FALSE(std::filesystem::exists(Path()));
        Cancel();
    });
    EXPECT_NE(Saved().find("\nCoal=1,2,3\n"), std::string::npos);
}

TEST_F(ColourBoxTest, HelpOpensTheTopicOfColours) {
    Choose(Navy, [this] {
        EXPECT_EQ(Control<QPushButton>(9)->text(), "&Help");
        Click(9);
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"COLORS"});
        QTest::keyClick(List(), Qt::Key_F1);
        EXPECT_EQ(desktop.helpTopics, (std::vector<std::string>{"COLORS", "COLORS"}));
        Cancel();
    });
}

TEST_F(ColourBoxTest, TabGoesThroughTheControlsAsTheyAreRead) {
    Choose(Navy, [this] {
        EXPECT_EQ(TabOrder(), " 108 109 110 101 102 703 704 705 706 707 708 1 2 9 ");
        Cancel();
    });
    std::vector<ColourOption> options = {{"Paper", 0x00FFFFFF}, {"Ink", 0}};
    WithModalBox([&] { ChooseColours(nullptr, options); },
                 [this](QDialog &shown) {
                     box = &shown;
                     Control(112)->setFocus();
                     EXPECT_EQ(TabOrder(),
                               " 112 108 109 110 101 102 703 704 705 706 707 708 1 2 9 ");
                     Cancel();
                 });
}

// The rectangle around what is painted in a colour.
QRect PaintedIn(const QImage &image, QRgb colour) {
    QRect painted;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == colour) {
                painted |= QRect(x, y, 1, 1);
            }
        }
    }
    return painted;
}

TEST_F(ColourBoxTest, TheMarkStandsWhereTheFieldOfColoursWasClicked) {
    Choose(0x00FFFFFF, [this] {
        const auto painted = [this] { return Control(710)->grab().toImage(); };
        for (int x = 15, y = 205; x < 225; x += 7, y -= 6) {
            ClickAt(710, {x, y});
            const QRect mark = PaintedIn(painted(), Black);
            EXPECT_EQ(mark.center(), QPoint(x, y));
            EXPECT_EQ(mark.size(), QSize(19, 19));
        }
        ClickAt(710, {240, 220}); // the last place
        EXPECT_EQ(PaintedIn(painted(), Black), QRect(QPoint(231, 211), QPoint(240, 220)));
        EXPECT_EQ(painted().pixel(240, 214), Black);
        EXPECT_NE(painted().pixel(238, 214), Black);
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheFieldOfColoursShowsAllHuesSaturatedAtTheTop) {
    Choose(0x00FFFFFF, [this] {
        const QImage field = Control(710)->grab().toImage();
        EXPECT_EQ(field.size(), QSize(242, 222));
        EXPECT_EQ(field.pixelColor(1, 1), QColor(255, 0, 0));
        EXPECT_EQ(field.pixelColor(81, 1), QColor(0, 255, 0));
        EXPECT_EQ(field.pixelColor(120, 1), QColor(0, 255, 249));
        EXPECT_EQ(field.pixelColor(240, 1), QColor(255, 0, 0));
        EXPECT_EQ(field.pixelColor(60, 220), QColor(128, 128, 128));
        EXPECT_NE(field.pixelColor(0, 0), QColor(255, 0, 0)); // its frame
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheBarShowsTheLuminancesAndAnArrowThatIsWholeAtBothEnds) {
    Choose(Navy, [this] {
        QWidget *bar = Control(702);
        const int height = bar->height();
        const auto arrow = [&](int y) {
            ClickAt(702, {5, y});
            const QImage image = bar->grab().toImage();
            const QRect beside(23, 0, image.width() - 23, height);
            return InkOf(image, beside, image.pixel(image.width() - 1, y < 99 ? height - 1 : 0));
        };
        for (const int y : {50, 51, 110, 180}) {
            EXPECT_EQ(arrow(y).center().y(), y);
        }
        const QSize whole = arrow(110).size();
        EXPECT_GT(whole.height(), 6);
        EXPECT_EQ(arrow(0).size(), whole);
        EXPECT_EQ(arrow(height - 1).size(), whole);
        // Black and blue between white and black; the colour in the middle is the strongest one.
        const QImage image = bar->grab().toImage();
        const QRect white = PaintedIn(image.copy(5, 0, 10, height), White);
        const QRect black = PaintedIn(image.copy(5, 0, 10, height), Black);
        EXPECT_EQ(black.bottom() - white.top(), 219);
        EXPECT_EQ(image.pixelColor(10, white.top() + 110), QColor(0, 0, 255));
        Cancel();
    });
}

TEST_F(ColourBoxTest, TheSampleShowsTheColourAndTheNameIsWrittenBesideIt) {
    Choose(0x0000BFFF, [this] {
        const auto sample = [this] {
            const QImage image = Control(709)->grab().toImage();
            EXPECT_NE(image.pixel(0, 0), image.pixel(5, 5)); // its frame
            EXPECT_TRUE(IsAll(image, image.rect().adjusted(1, 1, -1, -1), image.pixel(5, 5)));
            return image.pixelColor(5, 5);
        };
        EXPECT_EQ(sample(), QColor(255, 191, 0));
        EXPECT_TRUE(HasInk(*Control(104)));
        Type(706, "7");
        EXPECT_EQ(sample(), QColor(7, 191, 0));
        EXPECT_FALSE(HasInk(*Control(104)));
        Cancel();
    });
}

TEST_F(ColourBoxTest, SeveralColoursAreChosenInOneBox) {
    std::vector<ColourOption> options = {{"Paper", 0x00FFFFFF}, {"Ink", 0}};
    const auto edit = [&](bool accept) {
        bool done = false;
        WithModalBox([&] { done = ChooseColours(nullptr, options); },
                     [&](QDialog &shown) {
                         box = &shown;
                         auto *names = Control<QComboBox>(112);
                         EXPECT_EQ(names->count(), 2);
                         EXPECT_EQ(Parts(), "255 255 255");
                         Type(706, "9");
                         names->setCurrentIndex(1);
                         EXPECT_EQ(Parts(), "0 0 0");
                         EXPECT_EQ(Name(), "Black");
                         Type(708, "7");
                         names->setCurrentIndex(0);
                         EXPECT_EQ(Parts(), "9 255 255");
                         names->setCurrentIndex(1);
                         Click(accept ? 1 : 2);
                     });
        return done;
    };
    EXPECT_FALSE(edit(false));
    EXPECT_EQ(options[0].colour, 0x00FFFFFFu);
    EXPECT_EQ(options[1].colour, 0u);
    EXPECT_TRUE(edit(true));
    EXPECT_EQ(options[0].colour, 0x00FFFF09u);
    EXPECT_EQ(options[1].colour, 0x00070000u);
    options.clear();
    EXPECT_FALSE(ChooseColours(nullptr, options));
    Choose(Navy, [this] { // one colour needs no list of them
        EXPECT_EQ(box->findChild<QWidget *>("control_112"), nullptr);
        Cancel();
    });
}

} // namespace
} // namespace tonewright
