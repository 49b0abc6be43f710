// The windows of the welcome wizard, over pages that only the tests have: 9101 with every kind of
// control that is bound, 9102, 9103, which breaks off, 9104, which is larger than any screen, and
// 9105 with controls that are bound to nothing; and over the program's own.
#include "shell/view/wizard_box.h"

#include "common/view/fonts.h"
#include "common/view/pictures.h"
#include "shell/command_queue.h"
#include "shell/view/wizard_page.h"
#include "shell/wizard.h"
#include "support/modal_box.h"
#include "window_fixture.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

// The control of a number on the page that is shown.
template <typename Widget> Widget *Shown(const QDialog &box, int number) {
    const auto name = QString("control_%1").arg(number);
    for (QWidget *widget : box.findChildren<QWidget *>(name)) {
        if (widget->isVisibleTo(&box)) {
            return dynamic_cast<Widget *>(widget);
        }
    }
    return nullptr;
}
QPushButton &DismissOf(const QDialog &box) {
    return *box.findChild<QPushButton *>("control_10");
}
QPushButton &NextOf(const QDialog &box) {
    return *box.findChild<QPushButton *>("control_11");
}
QPushButton &PreviousOf(const QDialog &box) {
    return *box.findChild<QPushButton *>("control_12");
}
std::string LabelOf(const QDialog &box) {
    return box.findChild<QLabel *>("control_13")->text().toStdString();
}
void Click(QAbstractButton &button) {
    QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, {8, button.height() / 2});
}
std::string FocusOf(const QDialog &box) {
    return box.focusWidget() ? box.focusWidget()->objectName().toStdString() : "(none)";
}

class WizardBox : public testing::Test {
protected:
    int result = -1;
    void WithPages(std::uint32_t first, int count, const std::function<void(QDialog &)> &use,
                   int start = 0) {
        WithModalBox(
            [&] {
                result = ShowWizardBox({.firstPage = first,
                                        .pageCount = count,
                                        .rows = ProgramSettings.rows,
                                        .startPage = start});
            },
            use);
    }
};

// ---- pages and buttons

TEST_F(WizardBox, OnATwoPageRunDismissReadsFinishAfterNext) {
    WithPages(9101, 2, [](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Welcome");
        EXPECT_EQ(NextOf(box).text(), "Next");
        EXPECT_EQ(PreviousOf(box).text(), "Previous");
        EXPECT_EQ(LabelOf(box), "Page 1 / 2");
        EXPECT_EQ(DismissOf(box).text(), "Close");
        EXPECT_FALSE(PreviousOf(box).isEnabled());
        EXPECT_TRUE(NextOf(box).isEnabled());
        Click(NextOf(box));
        EXPECT_EQ(LabelOf(box), "Page 2 / 2");
        EXPECT_EQ(DismissOf(box).text(), "Finish");
        EXPECT_TRUE(PreviousOf(box).isEnabled());
        EXPECT_FALSE(NextOf(box).isEnabled());
        Click(PreviousOf(box));
        EXPECT_EQ(LabelOf(box), "Page 1 / 2");
        EXPECT_EQ(DismissOf(box).text(), "Close");
        Click(DismissOf(box));
    });
    EXPECT_EQ(result, WizardDismissed);
}

TEST_F(WizardBox, BeginsAtItsStartPage) {
    WithPages(
        9101, 2,
        [](QDialog &box) {
            EXPECT_EQ(LabelOf(box), "Page 2 / 2");
            EXPECT_EQ(FocusOf(box), "control_10");
            EXPECT_NE(Shown<QLabel>(box, 101), nullptr);
            EXPECT_EQ(Shown<QLabel>(box, 101)->text(), "Second page");
            Click(DismissOf(box));
        },
        1);
}

TEST_F(WizardBox, ARunMayHaveOnePageOrThree) {
    for (const int start : {-1, 0, 1, 7}) {
        WithPages(
            9101, 1,
            [](QDialog &box) {
                EXPECT_EQ(LabelOf(box), "Page 1 / 1");
                EXPECT_EQ(DismissOf(box).text(), "Finish");
                EXPECT_FALSE(PreviousOf(box).isEnabled());
                EXPECT_FALSE(NextOf(box).isEnabled());
                EXPECT_NE(Shown<QLabel>(box, 101), nullptr);
                Click(DismissOf(box));
            },
            start);
        EXPECT_EQ(result, WizardDismissed) << start;
    }
    WithPages(
        9101, 3,
        [](QDialog &box) {
            EXPECT_EQ(LabelOf(box), "Page 3 / 3");
            EXPECT_EQ(DismissOf(box).text(), "Finish");
            Click(PreviousOf(box));
            EXPECT_EQ(LabelOf(box), "Page 2 / 3");
            EXPECT_EQ(DismissOf(box).text(), "Close");
            EXPECT_TRUE(PreviousOf(box).isEnabled());
            EXPECT_TRUE(NextOf(box).isEnabled());
            Click(PreviousOf(box));
            EXPECT_EQ(LabelOf(box), "Page 1 / 3");
            EXPECT_FALSE(PreviousOf(box).isEnabled());
            Click(DismissOf(box));
        },
        3);
    EXPECT_EQ(result, WizardDismissed);
}

TEST_F(WizardBox, ShowsTheControlsOfOnePageAndThoseBelow100Always) {
    WithPages(9101, 2, [](QDialog &box) {
        EXPECT_EQ(Shown<QLabel>(box, 101)->text(), "A test page");
        EXPECT_NE(Shown<QComboBox>(box, 131), nullptr);
        EXPECT_NE(Shown<QLabel>(box, 50), nullptr);
        EXPECT_NE(Shown<QLabel>(box, 65535), nullptr);
        Click(NextOf(box));
        EXPECT_EQ(Shown<QLabel>(box, 101)->text(), "Second page");
        EXPECT_EQ(Shown<QComboBox>(box, 131), nullptr);
        EXPECT_NE(Shown<QLabel>(box, 50), nullptr);
        EXPECT_EQ(Shown<QLabel>(box, 65535), nullptr);
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, TheFrameHoldsTheFirstPageWithItsButtonsAtTheLowerRight) {
    WithPages(9101, 2, [](QDialog &box) {
        const QSize page(400 * 7 / 4, 240 * 16 / 8); // of dialog units
        EXPECT_EQ(box.findChild<QWidget *>("page")->size(), page);
        EXPECT_EQ(box.width(), page.width());
        const QRect dismiss = DismissOf(box).geometry();
        const QRect next = NextOf(box).geometry(), previous = PreviousOf(box).geometry();
        EXPECT_EQ(dismiss.right() + 1 + 8, box.width());
        EXPECT_EQ(dismiss.bottom() + 1 + 8, box.height());
        EXPECT_EQ(next.right() + 1 + 8, dismiss.left());
        EXPECT_EQ(previous.right() + 1 + 8, next.left());
        const QRect rule = box.findChild<QFrame *>("control_14")->geometry();
        EXPECT_EQ(rule.bottom() + 1 + 8, dismiss.top());
        EXPECT_EQ(rule.left(), 8);
        EXPECT_EQ(rule.right() + 1 + 8, box.width());
        EXPECT_EQ(box.findChild<QLabel *>("control_13")->x(), 8);
        EXPECT_GE(rule.top(), page.height());
        // A control stands where its page has it.
        EXPECT_EQ(Shown<QCheckBox>(box, 111)->pos(), QPoint(10 * 7 / 4, 120 * 16 / 8));
        EXPECT_EQ(Shown<QListWidget>(box, 134)->size(), QSize(70 * 7 / 4, 30 * 16 / 8));
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, PagesThatCannotBeReadYieldNothing) {
    EXPECT_TRUE(ReadWizardPage(9102));
    EXPECT_FALSE(ReadWizardPage(9103)) << "it breaks off";
    EXPECT_FALSE(ReadWizardPage(9100)) << "there is none";
    WithPages(9102, 2, [](QDialog &box) {
        EXPECT_NE(Shown<QCheckBox>(box, 111), nullptr);
        Click(NextOf(box));
        EXPECT_EQ(Shown<QCheckBox>(box, 111), nullptr);
        EXPECT_EQ(Shown<QLabel>(box, 101), nullptr);
        EXPECT_EQ(LabelOf(box), "Page 2 / 2");
        Click(DismissOf(box));
    });
    EXPECT_EQ(result, WizardDismissed);
    WithPages(9099, 2, [](QDialog &box) {
        EXPECT_EQ(LabelOf(box), "Page 1 / 2");
        Click(DismissOf(box));
    });
    EXPECT_EQ(result, WizardDismissed);
}

TEST_F(WizardBox, ALaterPageThatIsLargerThanTheFirstIsNotCutOff) {
    WithPages(9103, 2, [](QDialog &box) {
        Click(NextOf(box));
        auto &check = *Shown<QCheckBox>(box, 111);
        EXPECT_TRUE(box.findChild<QWidget *>("page")->rect().contains(check.geometry()));
        box.reject();
    });
}

TEST_F(WizardBox, APageThatIsLargerThanTheScreenIsScrolled) {
    WithPages(9104, 1, [](QDialog &box) {
        const QSize screen = box.screen()->availableSize();
        EXPECT_LE(box.width(), screen.width());
        EXPECT_LE(box.height(), screen.height());
        auto &check = *Shown<QCheckBox>(box, 111);
        EXPECT_TRUE(check.visibleRegion().isEmpty());
        QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(box.focusWidget(), box.findChild<QScrollArea *>("pages")) << "its keys scroll";
        QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(box.focusWidget(), &check);
        EXPECT_FALSE(check.visibleRegion().isEmpty());
        QTest::keyClick(&check, Qt::Key_Tab);
        box.findChild<QScrollArea *>("pages")->verticalScrollBar()->setValue(0);
        EXPECT_TRUE(check.visibleRegion().isEmpty());
        QTest::keyClick(box.focusWidget(), Qt::Key_Backtab);
        EXPECT_FALSE(check.visibleRegion().isEmpty()) << "from outside of the page";
        box.reject();
    });
}

// ---- looks

TEST_F(WizardBox, ATitleWithoutATypeStaysPlainTextUnlessItHasATextItem) {
    WithPages(9101, 1, [](QDialog &box) {
        EXPECT_EQ(Shown<QLabel>(box, 102)->text(), "no type; res=3");
        EXPECT_EQ(Shown<QLabel>(box, 103)->text(), "only the text");
        EXPECT_EQ(Shown<QPushButton>(box, 141)->text(), "Push me");
        ASSERT_NE(Shown<QLabel>(box, 142), nullptr) << "of a class that is no other";
        EXPECT_EQ(Shown<QLabel>(box, 142)->text(), "what is this?");
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, FramesAndPlainControlsOfAPageAreShownToo) {
    WithPages(9105, 1, [](QDialog &box) {
        ASSERT_NE(Shown<QGroupBox>(box, 151), nullptr);
        EXPECT_EQ(Shown<QGroupBox>(box, 151)->title(), "A group");
        EXPECT_EQ(Shown<QFrame>(box, 152)->frameShape(), QFrame::Panel);
        EXPECT_EQ(Shown<QFrame>(box, 153)->frameShape(), QFrame::HLine);
        EXPECT_EQ(Shown<QFrame>(box, 154)->frameShape(), QFrame::VLine);
        EXPECT_EQ(Shown<QLineEdit>(box, 155)->text(), "a line");
        EXPECT_EQ(Shown<QListWidget>(box, 156)->count(), 2);
        // What stands in a frame is not covered by it.
        for (const int number : {111, 113, 155}) {
            const QWidget &control = *Shown<QWidget>(box, number);
            EXPECT_EQ(box.findChild<QWidget *>("page")->childAt(control.geometry().center()),
                      &control)
                << number;
        }
        box.reject();
    });
}

TEST_F(WizardBox, AControlThatIsBoundToNothingComesUpAsItsTemplateSays) {
    ASSERT_EQ(DownloadOnOpen, 0u);
    ASSERT_EQ(CreateBackups, 1u);
    MaxUndoLevel = 1;
    WithPages(9105, 1, [](QDialog &box) {
        EXPECT_FALSE(Shown<QCheckBox>(box, 111)->isChecked()) << "its setting counts";
        EXPECT_FALSE(Shown<QCheckBox>(box, 112)->isChecked()) << "of no kind";
        EXPECT_TRUE(Shown<QCheckBox>(box, 113)->isChecked()) << "of another kind";
        EXPECT_EQ(Shown<QListWidget>(box, 156)->currentRow(), -1);
        Click(*Shown<QCheckBox>(box, 112));
        Shown<QListWidget>(box, 156)->setCurrentRow(0);
        Shown<QLineEdit>(box, 155)->setText("x");
        Click(DismissOf(box));
    });
    EXPECT_EQ(DownloadOnOpen, 0u);
    EXPECT_EQ(CreateBackups, 1u);
    EXPECT_EQ(MaxUndoLevel, 1u);
    EXPECT_EQ(DatabaseCurrentName, "Voices");
}

TEST_F(WizardBox, AFontOf200IsUsedAs128AndOneOf1As4) {
    WithPages(9101, 1, [](QDialog &box) {
        EXPECT_EQ(Shown<QLabel>(box, 105)->font(), FontOfHeight("arial", 128));
        EXPECT_EQ(Shown<QLabel>(box, 106)->font(), FontOfHeight("arial", 4));
        EXPECT_EQ(Shown<QLabel>(box, 107)->font(), DialogFont());
        const QFont heading = Shown<QLabel>(box, 101)->font();
        EXPECT_EQ(heading.pixelSize(), FontOfHeight("arial", 20, 700).pixelSize());
        EXPECT_EQ(heading.weight(), 700);
        EXPECT_EQ(Shown<QLabel>(box, 106)->font().weight(), 400) << "of fontweight=0";
        EXPECT_TRUE(heading.italic());
        const QLabel &big = *Shown<QLabel>(box, 105);
        EXPECT_GE(big.height(), 128) << "nothing of it is cut off";
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, APictureIsBlendedOverTheFaceInItsOwnSize) {
    WithPages(9101, 1, [](QDialog &box) {
        const QLabel &picture = *Shown<QLabel>(box, 104);
        EXPECT_EQ(picture.size(), PictureSize(7403));
        const QColor face = box.palette().color(QPalette::Window);
        EXPECT_EQ(box.grab().toImage().pixelColor(picture.mapTo(&box, QPoint(0, 0))), face)
            << "its corner is transparent";
        EXPECT_TRUE(Shown<QLabel>(box, 108)->pixmap().isNull()) << "there is no such picture";
        EXPECT_EQ(Shown<QLabel>(box, 108)->text(), "");
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, ThePicturesOfTheWelcomePagesAreTransparentAroundWhatTheyShow) {
    for (const std::uint32_t number : {7400u, 7402u, 7403u, 7404u}) {
        ASSERT_FALSE(PictureSize(number).isEmpty()) << number;
        const QImage picture = PictureOf(number, PictureSize(number)).toImage();
        std::array<int, 3> pixels{}; // transparent, partly transparent, opaque
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int alpha = picture.pixelColor(x, y).alpha();
                ++pixels[alpha == 0 ? 0 : alpha < 255 ? 1 : 2];
            }
        }
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << number;
        for (const int count : pixels) {
            EXPECT_GT(count, 100) << number;
        }
    }
}

// ---- values

TEST_F(WizardBox, ValuesComeInAtTheStart) {
    SysexWait = 7;
    MaxUndoLevel = 5;
    DatabaseCurrentName = "vOICES";
    VoiceEditPage = 2;
    DefaultPrinterName = "laser";
    SetupPageIndex = 1;
    DatabaseItemFontName = "Times New Roman";
    WithPages(9101, 1, [](QDialog &box) {
        EXPECT_TRUE(Shown<QCheckBox>(box, 111)->isChecked());
        EXPECT_FALSE(Shown<QCheckBox>(box, 112)->isChecked());
        EXPECT_FALSE(Shown<QRadioButton>(box, 121)->isChecked());
        EXPECT_TRUE(Shown<QRadioButton>(box, 122)->isChecked());
        EXPECT_TRUE(Shown<QRadioButton>(box, 123)->isChecked());
        EXPECT_EQ(Shown<QComboBox>(box, 131)->currentText(), "two");
        EXPECT_EQ(Shown<QComboBox>(box, 132)->currentText(), "Laser");
        EXPECT_EQ(Shown<QComboBox>(box, 133)->currentIndex(), -1);
        EXPECT_EQ(Shown<QListWidget>(box, 134)->currentRow(), 1);
        EXPECT_EQ(Shown<QListWidget>(box, 135)->currentRow(), 1);
        box.reject();
    });
    EXPECT_EQ(result, 0);
}

TEST_F(WizardBox, WhatNoItemStandsForSelectsNone) {
    VoiceEditPage = 3;
    DefaultPrinterName = "Las";
    SetupPageIndex = 0xFFFFFFFF;
    DatabaseItemFontName = "";
    WithPages(9101, 1, [](QDialog &box) {
        EXPECT_EQ(Shown<QComboBox>(box, 131)->currentIndex(), -1);
        EXPECT_EQ(Shown<QComboBox>(box, 132)->currentIndex(), -1);
        EXPECT_EQ(Shown<QListWidget>(box, 134)->currentRow(), -1);
        EXPECT_EQ(Shown<QListWidget>(box, 135)->currentRow(), -1);
        Click(DismissOf(box));
    });
    EXPECT_EQ(VoiceEditPage, 3u);
    EXPECT_EQ(DefaultPrinterName, "Las");
    EXPECT_EQ(SetupPageIndex, 0xFFFFFFFF);
    EXPECT_EQ(DatabaseItemFontName, "");
}

// Gives every control of both test pages another value.
void ChangeAll(QDialog &box) {
    Click(*Shown<QCheckBox>(box, 111));
    Click(*Shown<QCheckBox>(box, 112));
    Click(*Shown<QCheckBox>(box, 113));
    Click(*Shown<QRadioButton>(box, 121));
    Click(*Shown<QRadioButton>(box, 124));
    Shown<QComboBox>(box, 131)->setCurrentIndex(1);
    Shown<QComboBox>(box, 132)->setCurrentIndex(1);
    Shown<QComboBox>(box, 133)->setCurrentIndex(0);
    Shown<QListWidget>(box, 134)->setCurrentRow(2);
    Shown<QListWidget>(box, 135)->setCurrentRow(1);
    Click(NextOf(box));
    Click(*Shown<QCheckBox>(box, 111));
}

TEST_F(WizardBox, DismissStoresTheValuesOfAllPages) {
    WithPages(9101, 2, [](QDialog &box) {
        ChangeAll(box);
        EXPECT_EQ(DownloadOnOpen, 0u) << "nothing is stored before the end";
        EXPECT_EQ(SysexWait, 1500u);
        Click(DismissOf(box));
    });
    EXPECT_EQ(result, WizardDismissed);
    EXPECT_EQ(SysexWait, 7u);
    EXPECT_EQ(StartMonday, 0u) << "the screen saver's box";
    EXPECT_EQ(MaxUndoLevel, 4u);
    EXPECT_EQ(DatabaseCurrentName, "Other");
    EXPECT_EQ(VoiceEditPage, 1u);
    EXPECT_EQ(DefaultPrinterName, "Laser");
    EXPECT_EQ(SetupPageIndex, 2u);
    EXPECT_EQ(DatabaseItemFontName, "Times New Roman");
    EXPECT_EQ(DownloadOnOpen, 1u);
}

TEST_F(WizardBox, WhateverElseClosesItStoresNothing) {
    for (const bool byKey : {true, false}) {
        WithPages(9101, 2, [&](QDialog &box) {
            ChangeAll(box);
            if (byKey) {
                QTest::keyClick(&box, Qt::Key_Escape);
            } else {
                box.close(); // as the frame's button does
            }
        });
        EXPECT_EQ(result, 0);
        EXPECT_EQ(SysexWait, 1500u);
        EXPECT_EQ(MaxUndoLevel, 3u);
        EXPECT_EQ(DatabaseCurrentName, "Voices");
        EXPECT_EQ(VoiceEditPage, 0u);
        EXPECT_EQ(DefaultPrinterName, "");
        EXPECT_EQ(DownloadOnOpen, 0u);
    }
}

TEST_F(WizardBox, RadioButtonsOfOneVariableOfAPageExcludeEachOther) {
    MaxUndoLevel = 4;
    WithPages(9101, 2, [](QDialog &box) {
        EXPECT_TRUE(Shown<QRadioButton>(box, 121)->isChecked());
        Click(*Shown<QRadioButton>(box, 124));
        EXPECT_FALSE(Shown<QRadioButton>(box, 123)->isChecked());
        EXPECT_TRUE(Shown<QRadioButton>(box, 121)->isChecked()) << "another variable";
        Click(*Shown<QRadioButton>(box, 122));
        EXPECT_FALSE(Shown<QRadioButton>(box, 121)->isChecked());
        box.reject();
    });
}

// Only one value of a setting can be kept, whatever page it is chosen on.
TEST_F(WizardBox, ARadioButtonTakesTheChoiceFromThoseOfItsVariableOnOtherPages) {
    MaxUndoLevel = 4;
    const auto isChecked = [](QDialog &box, int number) {
        return Shown<QRadioButton>(box, number)->isChecked();
    };
    WithPages(9101, 2, [&](QDialog &box) {
        Click(NextOf(box));
        EXPECT_FALSE(isChecked(box, 121));
        Click(*Shown<QRadioButton>(box, 121)); // six
        Click(PreviousOf(box));
        EXPECT_FALSE(isChecked(box, 121));
        EXPECT_FALSE(isChecked(box, 122));
        EXPECT_TRUE(isChecked(box, 123)) << "another variable";
        // A page without a choice can still be chosen on by the keyboard.
        EXPECT_TRUE(Shown<QRadioButton>(box, 121)->focusPolicy() & Qt::TabFocus);
        Click(*Shown<QRadioButton>(box, 122)); // five
        Click(NextOf(box));
        EXPECT_FALSE(isChecked(box, 121));
        Click(PreviousOf(box));
        EXPECT_TRUE(isChecked(box, 122));
        Click(DismissOf(box));
    });
    EXPECT_EQ(MaxUndoLevel, 5u);
    WithPages(9101, 2, [&](QDialog &box) {
        Click(NextOf(box));
        Click(*Shown<QRadioButton>(box, 121));
        Click(DismissOf(box));
    });
    EXPECT_EQ(MaxUndoLevel, 6u);
}

// ---- the keyboard, and those who do not see

TEST_F(WizardBox, ReturnGoesOnAndEndsItOnTheLastPage) {
    WithPages(9101, 2, [](QDialog &box) {
        EXPECT_EQ(FocusOf(box), "control_11");
        Shown<QCheckBox>(box, 111)->setFocus();
        QTest::keyClick(Shown<QCheckBox>(box, 111), Qt::Key_Return);
        EXPECT_FALSE(Shown<QCheckBox>(box, 111)->isChecked());
        EXPECT_EQ(LabelOf(box), "Page 2 / 2");
        EXPECT_EQ(FocusOf(box), "control_10") << "what had the focus is hidden";
        QTest::keyClick(&box, Qt::Key_Return);
    });
    EXPECT_EQ(result, WizardDismissed);
    WithPages(9101, 3, [](QDialog &box) {
        QTest::keyClick(&box, Qt::Key_Space);
        EXPECT_EQ(FocusOf(box), "control_11");
        PreviousOf(box).setFocus();
        QTest::keyClick(&box, Qt::Key_Space);
        EXPECT_EQ(LabelOf(box), "Page 1 / 3");
        EXPECT_EQ(FocusOf(box), "control_11") << "the button has become grey";
        box.reject();
    });
}

TEST_F(WizardBox, TabGoesThroughThePageThenThroughTheButtons) {
    WithPages(9101, 1, [](QDialog &box) {
        Shown<QCheckBox>(box, 111)->setFocus();
        std::vector<int> order;
        do {
            order.push_back(box.focusWidget()->objectName().mid(8).toInt());
            QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        } while (FocusOf(box) != "control_111" && order.size() < 30);
        // Radio buttons of one variable are one stop.
        std::erase_if(order, [](int number) { return number >= 121 && number <= 124; });
        EXPECT_EQ(order, (std::vector{111, 112, 113, 131, 132, 133, 134, 135, 141, 10}));
        QTest::keyClick(&box, Qt::Key_S, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return Shown<QCheckBox>(box, 111)->isChecked(); }));
        box.reject();
    });
}

TEST_F(WizardBox, ScreenReadersHearThePageItsTextsAndControls) {
    WithPages(9101, 2, [](QDialog &box) {
        const auto nameOf = [](QWidget *widget) {
            return QAccessible::queryAccessibleInterface(widget)
                ->text(QAccessible::Name)
                .toStdString();
        };
        QWidget *page = box.findChild<QWidget *>("page");
        EXPECT_EQ(nameOf(page), "A test page");
        EXPECT_EQ(nameOf(Shown<QLabel>(box, 102)), "no type; res=3");
        EXPECT_EQ(nameOf(Shown<QLabel>(box, 104)), "a picture");
        EXPECT_EQ(nameOf(Shown<QCheckBox>(box, 111)), "Seven");
        EXPECT_EQ(nameOf(Shown<QListWidget>(box, 134)), "A list");
        Click(NextOf(box));
        EXPECT_EQ(nameOf(page), "Second page");
        EXPECT_EQ(nameOf(box.findChild<QLabel *>("control_13")), "Page 2 / 2");
        box.reject();
    });
}

// ---- the program's own pages

TEST_F(WizardBox, TheWelcomePagesHaveAHeadingATextAndAPicture) {
    struct Page {
        const char *heading;
        unsigned text;
        std::uint32_t picture;
    };
    constexpr Page pages[] = {{"Welcome to Tonewright", 12002, 7400},
                              {"Theme", 12003, 7402},
                              {"Additional Options", 12004, 7403},
                              {"All done...", 12005, 7404}};
    WithPages(7400, 4, [&](QDialog &box) {
        EXPECT_EQ(box.findChild<QWidget *>("page")->size(), QSize(770, 560)); // 440 by 280 units
        for (const Page &page : pages) {
            const QLabel &heading = *Shown<QLabel>(box, 101);
            EXPECT_EQ(heading.text(), page.heading);
            EXPECT_EQ(heading.font(), FontOfHeight("arial", 20, 700));
            const QLabel &text = *Shown<QLabel>(box, 102);
            EXPECT_EQ(text.text().toStdString(),
                      ReadControlRecord("~!!~" + std::to_string(page.text)).text);
            EXPECT_EQ(text.font(), FontOfHeight("arial", 16));
            EXPECT_EQ(Shown<QLabel>(box, 103)->size(), PictureSize(page.picture));
            Click(NextOf(box));
        }
        Click(DismissOf(box));
    });
}

TEST_F(WizardBox, TheWelcomePagesSetThemeAndOptions) {
    ThemeCurrent = "THEME_Mine.dll";
    ShowTipOfTheDay = 0;
    WithPages(7400, 4, [](QDialog &box) {
        Click(NextOf(box));
        EXPECT_EQ(Shown<QRadioButton>(box, 111)->text(), "Slate large");
        EXPECT_EQ(Shown<QRadioButton>(box, 112)->text(), "Slate small");
        EXPECT_FALSE(Shown<QRadioButton>(box, 111)->isChecked()) << "a theme of the user's own";
        EXPECT_FALSE(Shown<QRadioButton>(box, 112)->isChecked());
        Click(*Shown<QRadioButton>(box, 112));
        Click(NextOf(box));
        EXPECT_EQ(Shown<QCheckBox>(box, 111)->text(), "Show opening splash screen");
        EXPECT_EQ(Shown<QCheckBox>(box, 112)->text(), "Show tip of the day");
        EXPECT_EQ(Shown<QCheckBox>(box, 113)->text(), "Create backups");
        EXPECT_TRUE(Shown<QCheckBox>(box, 111)->isChecked());
        EXPECT_FALSE(Shown<QCheckBox>(box, 112)->isChecked());
        EXPECT_TRUE(Shown<QCheckBox>(box, 113)->isChecked());
        for (const int number : {111, 112, 113}) {
            Click(*Shown<QCheckBox>(box, number));
        }
        Click(DismissOf(box));
    });
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Compact.dll");
    EXPECT_EQ(ShowStartupWindow, 0u);
    EXPECT_EQ(ShowTipOfTheDay, 1u);
    EXPECT_EQ(CreateBackups, 0u);
    WithPages(
        7400, 4,
        [](QDialog &box) {
            EXPECT_TRUE(Shown<QRadioButton>(box, 112)->isChecked());
            Click(*Shown<QRadioButton>(box, 111));
            Click(DismissOf(box));
        },
        1);
    EXPECT_EQ(ThemeCurrent, "THEME_Slate Medium.dll");
}

TEST_F(WizardBox, OnTheWelcomePagesNothingIsCutOffAndNothingCoversAnother) {
    WithPages(7400, 4, [](QDialog &box) {
        const QWidget &page = *box.findChild<QWidget *>("page");
        EXPECT_EQ(box.findChild<QScrollArea *>("pages")->viewport()->size(), page.size());
        for (int number = 0; number < 4; ++number) {
            std::vector<QRect> places;
            for (const QWidget *control :
                 page.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
                if (!control->isVisible()) {
                    continue;
                }
                const QRect place = control->geometry();
                EXPECT_TRUE(page.rect().contains(place)) << control->objectName().toStdString();
                if (control->hasHeightForWidth()) {
                    EXPECT_LE(control->heightForWidth(place.width()), place.height());
                }
                for (const QRect &other : places) {
                    EXPECT_FALSE(other.intersects(place)) << control->objectName().toStdString();
                }
                places.push_back(place);
            }
            EXPECT_GE(places.size(), 3u);
            Click(NextOf(box));
        }
        Click(DismissOf(box));
    });
}

// ---- the question, and the wizard in the program

constexpr const char *QuestionText =
    "Tonewright is about to open its welcome wizard, which will guide you through configuring "
    "some of the initial options of this application.\n\n"
    "Click on Proceed to run the welcome wizard.\n\n"
    "Click on Skip if you'd like to bypass the welcome wizard, for example, if you're happy with "
    "the configuration of Tonewright as it is.\n\n"
    "If you skip the welcome wizard, it won't appear again. You can subsequently run it manually "
    "through the Help menu, and all the configurable options for Tonewright can be managed "
    "through its Setup window and user interface.";

class FirstStart : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
        desktop.sounds.clear();
        ApplicationPath = home.Folder();
    }
    std::string Settings() const { return ReadTestText(home.File("Quillbrook/Tonewright 17.ini")); }
};

TEST_F(FirstStart, AsksThenShowsTheWizardOnce) {
    std::vector<std::string> boxes;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!box) {
            return;
        }
        if (auto *proceed = box->findChild<QPushButton *>("control_6")) {
            EXPECT_EQ(proceed->text(), "Proceed");
            EXPECT_EQ(box->findChild<QPushButton *>("control_7")->text(), "Skip");
            EXPECT_EQ(box->findChild<QLabel *>("control_10")->pixmap().deviceIndependentSize(),
                      QSizeF(64, 64));
            const QLabel &text = *box->findChild<QLabel *>("control_65");
            EXPECT_EQ(text.font(), FontOfHeight("Verdana", 15, 500));
            EXPECT_EQ(text.text(), QuestionText);
            EXPECT_EQ(ShowWelcomeWizard, 0u);
            EXPECT_EQ(Settings(), "[Tonewright]\nShowWelcomeWizard = 0\n");
            boxes.emplace_back("question");
            Click(*proceed);
        } else {
            boxes.push_back(box->windowTitle().toStdString());
            Click(DismissOf(*box));
        }
    });
    look.start(5);
    PostMainStartupDone();
    EXPECT_TRUE(QTest::qWaitFor([&] { return boxes.size() == 2; }));
    EXPECT_EQ(desktop.sounds.size(), 1u);
    PostMainStartupDone();
    QTest::qWait(50);
    EXPECT_EQ(boxes, (std::vector<std::string>{"question", "Welcome"}));
    EXPECT_NE(LastTipDate, 0u) << "the tip of the day is used up";
}

TEST_F(FirstStart, SkipAndEscapeShowNoWizard) {
    for (const bool skips : {true, false}) {
        ShowWelcomeWizard = 1;
        desktop.sounds.clear();
        EXPECT_TRUE(WithBox([] { PostMainStartupDone(); },
                            [&](QDialog &box) {
                                if (skips) {
                                    Click(*box.findChild<QPushButton *>("control_7"));
                                } else {
                                    QTest::keyClick(&box, Qt::Key_Escape);
                                }
                            }));
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(desktop.sounds.size(), 1u);
        EXPECT_EQ(ShowWelcomeWizard, 0u);
    }
}

TEST_F(FirstStart, TheMenuShowsTheWizardWithoutTheQuestion) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(WithBox([this] { Trigger(CommandWizard); },
                            [](QDialog &box) {
                                EXPECT_EQ(LabelOf(box), "Page 1 / 4");
                                Click(DismissOf(box));
                            }));
    }
    EXPECT_EQ(ShowWelcomeWizard, 1u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(FirstStart, F1OpensTheHelpOfTheWizard) {
    for (const bool asks : {true, false}) {
        desktop.helpTopics.clear();
        WithModalBox([&] { asks ? AskForWizard(window.get()) : RunWelcomeWizard(); },
                     [](QDialog &box) {
                         // The toolkit looks for a shortcut in what it takes for the active window.
                         EXPECT_TRUE(
                             QTest::qWaitFor([&] { return QApplication::activeWindow() == &box; }));
                         QTest::keyClick(&box, Qt::Key_F1);
                         box.reject();
                     });
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"WELCOME"}) << asks;
    }
}

TEST_F(FirstStart, ARequestToEndTheProgramStoresNothingAndShowsNothingMore) {
    EndInBox([this] { Trigger(CommandWizard); },
             [](QDialog &box) {
                 Click(NextOf(box));
                 Click(*Shown<QRadioButton>(box, 112));
                 Click(NextOf(box));
                 Click(*Shown<QCheckBox>(box, 113));
             });
    EXPECT_EQ(ThemeCurrent, "");
    EXPECT_EQ(CreateBackups, 1u);
    EXPECT_NE(Settings().find("\nCreateBackups = 1\n"), std::string::npos);
}

TEST_F(FirstStart, ARequestToEndTheProgramAtTheQuestionShowsNoWizard) {
    EndInBox([] { PostMainStartupDone(); },
             [](QDialog &box) { EXPECT_NE(box.findChild<QPushButton *>("control_6"), nullptr); });
    EXPECT_NE(Settings().find("\nShowWelcomeWizard = 0\n"), std::string::npos);
}

} // namespace
} // namespace tonewright
