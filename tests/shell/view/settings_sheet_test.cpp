// The sheet of settings, as a user meets it.
#include "window_fixture.h"

#include "common/view/dialog_controls.h"
#include "common/view/up_down.h"
#include "shell/history.h"
#include "shell/settings_flow.h"
#include "shell/shell_window.h"
#include "shell/single_setting.h"
#include "shell/view/settings_sheet.h"
#include "shell/view/tool_bar.h"

#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/test_themes.h"
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QToolButton>
#include <QWheelEvent>

#include <functional>

namespace tonewright {
namespace {

struct CheckRow {
    std::uint32_t control;
    const char *label;
    std::uint32_t *setting;
    const char *topic;
};
const CheckRow Checks[] = {
    {139, "Create backups", &CreateBackups, "SETUP_CREATEBACKUPS"},
    {112, "Download voice list on startup", &DownloadOnOpen, "SETUP_DOWNLOADONOPEN"},
    {143, "File menu thumbnails*", &RememberFileHistoryEnable, "SETUP_REMEMBERFILEHISTORYENABLE"},
    {114, "Make database names pretty", &DatabaseMakePrettyNames, "SETUP_DATABASEMAKEPRETTYNAMES"},
    {146, "Middle mouse button summons Audition", &MiddleButtonAudition,
     "SETUP_MIDDLEBUTTONAUDITION"},
    {116, "Prevent duplicated voices in database", &DatabaseNoDuplicates,
     "SETUP_DATABASENODUPLICATES"},
    {140, "Re-open most recent document", &OpenRecentDocument, "SETUP_OPENRECENTDOCUMENT"},
    {117, "Show file tips", &FileTipShow, "SETUP_FILETIPSHOW"},
    {105, "Show startup window", &ShowStartupWindow, "SETUP_SHOWSTARTUPWINDOW"},
    {133, "Show Tip of the Day", &ShowTipOfTheDay, "SETUP_SHOWTIPOFTHEDAY"},
    {113, "Verbose right-click menu", &VerboseRightClickMenu, "SETUP_VERBOSERIGHTCLICKMENU"},
    {115, "Warn before abandoning database changes", &WarnDatabaseChanged,
     "SETUP_WARNDATABASECHANGED"},
    {108, "Warn before displaying manual", &WarnShowManual, "SETUP_WARNSHOWMANUAL"},
};

struct SpinRow {
    std::uint32_t control;
    const char *label, *range;
    std::uint32_t *setting;
    const char *topic, *trace;
};
const SpinRow Spins[] = {
    {118, "MIDI channel:", "1,16,10", &CurrentMidiChannel, "SETUP_CURRENTMIDICHANNEL",
     "CurrentMidiChannel 44"},
    {144, "File menu size*", "0,20,10", &RememberFileHistoryCount, "SETUP_REMEMBERFILEHISTORYCOUNT",
     "RememberFileHistoryCount 8044"},
    {141, "Undo levels* :", "1,32,10", &MaxUndoLevel, "SETUP_MAXUNDOLEVEL", "MaxUndoLevel 8044"},
};

class SettingsSheetTest : public WindowTest {
protected:
    // Runs the sheet, `use` being the user. It must close the sheet.
    void WithSheet(const std::function<void()> &use, const std::function<void()> &show) {
        bool used = false;
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, [&] {
            sheet = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!sheet) {
                return;
            }
            user.stop();
            tabs = sheet->findChild<QTabWidget *>();
            EXPECT_TRUE(QTest::qWaitForWindowActive(sheet));
            use();
            used = true;
            if (sheet->isVisible()) {
                ADD_FAILURE() << "the sheet is still open";
                sheet->reject();
            }
        });
        user.start(0);
        show();
        EXPECT_TRUE(used);
        sheet = nullptr;
        tabs = nullptr;
    }
    void WithSheet(const std::function<void()> &use) {
        WithSheet(use, [this] { SetupShow(window.get()); });
    }
    // The same through the command, with all that follows.
    void WithCommand(const std::function<void()> &use) {
        WithSheet(use, [] { RunUserCommand(CommandSettings); });
    }

    template <typename Widget = QWidget> Widget *Control(std::uint32_t number) const {
        Widget *control = ControlOf<Widget>(sheet, number);
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    void Press(std::uint32_t number) { QTest::mouseClick(Control(number), Qt::LeftButton); }
    void PressOk() { Press(1); }
    void PressCancel() { Press(2); }
    void ClickTab(int index) {
        const QTabBar *bar = tabs->tabBar();
        QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier,
                          bar->tabRect(index).center());
        QTest::qWait(1); // a page that has just been made shows its controls from the event loop
    }
    void ClickBox(std::uint32_t number) {
        auto *box = Control<QCheckBox>(number);
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }
    void Type(std::uint32_t number, const QString &text) {
        auto *edit = Control<QLineEdit>(number);
        QTest::mouseDClick(edit, Qt::LeftButton);
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }
    // What a setting becomes when `text` is typed into its edit and OK is pressed.
    std::uint32_t Typed(std::uint32_t number, const QString &text, const std::uint32_t &setting) {
        WithSheet([&] {
            Type(number, text);
            PressOk();
        });
        return setting;
    }
    // The fragment of the help page that the last call opened.
    std::string Topic() const {
        const std::string address = desktop.opened.empty() ? "" : desktop.opened.back().address;
        return address.substr(std::min(address.find('#'), address.size()));
    }

    QDialog *sheet = nullptr; // while it is open
    QTabWidget *tabs = nullptr;
};

TEST_F(SettingsSheetTest, TheSheetHasTwoPagesAndThreeButtons) {
    WithSheet([&] {
        EXPECT_EQ(sheet->windowTitle(), "Settings");
        EXPECT_TRUE(sheet->isModal());
        EXPECT_EQ(sheet->parentWidget(), window.get());
        EXPECT_EQ(tabs->count(), 2);
        EXPECT_EQ(tabs->tabText(0), "Options");
        EXPECT_EQ(tabs->tabText(1), "Application");
        EXPECT_EQ(Control<QPushButton>(1)->text(), "OK");
        EXPECT_EQ(Control<QPushButton>(2)->text(), "Cancel");
        EXPECT_EQ(Control<QPushButton>(9)->text(), "Help");
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, ThePageOptionsHoldsItsControlsFromTopToBottom) {
    WithSheet([&] {
        const auto top = [&](const QWidget *control) {
            return control->mapTo(sheet, QPoint()).y();
        };
        int above = -1;
        for (const CheckRow &row : Checks) {
            const auto *box = Control<QCheckBox>(row.control);
            EXPECT_EQ(box->text(), row.label);
            EXPECT_GT(top(box), above) << row.label;
            EXPECT_GE(box->width(), box->sizeHint().width()) << row.label;
            above = top(box);
        }
        above = -1;
        for (const SpinRow &row : Spins) {
            EXPECT_EQ(Control<QLabel>(row.control + 20000)->text(), row.label);
            EXPECT_EQ(Control<UpDown>(row.control + 10000)->RangeText(), row.range);
            EXPECT_GT(top(Control<QLineEdit>(row.control)), above) << row.label;
            above = top(Control<QLineEdit>(row.control));
        }
        EXPECT_EQ(Control<QPushButton>(2001)->text(), "Select theme...");
        EXPECT_GT(top(Control(2001)), above);
        EXPECT_EQ(sheet->findChild<QLabel *>("foot")->text(),
                  "* Changing items indicated with an asterisk will cause Tonewright to restart "
                  "upon exiting the Setup window.");
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, EveryKeyWithANumberButTheCoverHasItsControl) {
    WithSheet([&] {
        ClickTab(1);
        for (const ConfigKey &key : ProgramSettings.rows) {
            if (key.control != 0) {
                EXPECT_EQ(ControlOf(sheet, key.control) != nullptr, key.control != 145) << key.name;
            }
        }
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, NothingOnAPageIsCutOffOrCoversAnother) {
    WithSheet([&] {
        for (int page : {0, 1}) {
            ClickTab(page);
            QTest::qWait(20);
            std::vector<QRect> places;
            for (const QWidget *control : tabs->widget(page)->findChildren<QWidget *>()) {
                if (!control->objectName().startsWith("control_") || !control->isVisible()) {
                    continue;
                }
                const QRect place(control->mapTo(sheet, QPoint()), control->size());
                EXPECT_TRUE(sheet->rect().contains(place)) << control->objectName().toStdString();
                EXPECT_GE(control->width(), control->minimumSizeHint().width())
                    << control->objectName().toStdString();
                EXPECT_GE(control->height(), control->minimumSizeHint().height())
                    << control->objectName().toStdString();
                for (const QRect &other : places) {
                    EXPECT_FALSE(place.intersects(other)) << control->objectName().toStdString();
                }
                places.push_back(place);
            }
        }
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheSheetStandsInTheMiddleOfTheScreen) {
    WithSheet([&] {
        QTest::qWait(20);
        const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
        const QPoint distance = sheet->frameGeometry().center() - middle;
        EXPECT_LE(std::abs(distance.x()), 1);
        EXPECT_LE(std::abs(distance.y()), 1);
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheDecorationStandsAtTheLowerRightInTheThemesSize) {
    WithSheet([&] {
        QTest::qWait(20);
        auto *decoration = Control<QLabel>(10);
        EXPECT_EQ(decoration->size(), QSize(96, 96));
        EXPECT_TRUE(HasInk(*decoration));
        const QPoint corner = decoration->mapTo(tabs->widget(0), QPoint());
        EXPECT_GT(corner.x(), tabs->widget(0)->width() / 2);
        EXPECT_GT(corner.y(), tabs->widget(0)->height() / 2);
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheControlsShowTheKeys) {
    std::uint32_t value = 0;
    for (const CheckRow &row : Checks) {
        *row.setting = value++ % 2;
    }
    CurrentMidiChannel = 4;
    RememberFileHistoryCount = 0;
    MaxUndoLevel = 32;
    WithSheet([&] {
        for (const CheckRow &row : Checks) {
            EXPECT_EQ(Control<QCheckBox>(row.control)->isChecked(), *row.setting == 1) << row.label;
        }
        EXPECT_EQ(Control<QLineEdit>(118)->text(), "4");
        EXPECT_EQ(Control<QLineEdit>(144)->text(), "0");
        EXPECT_EQ(Control<QLineEdit>(141)->text(), "32");
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, AKeyBeyondItsRangeIsShownUnsigned) {
    MaxUndoLevel = 4294967291u;
    WithSheet([&] {
        EXPECT_EQ(Control<QLineEdit>(141)->text(), "4294967291");
        PressCancel();
    });
    EXPECT_EQ(MaxUndoLevel, 4294967291u);
    WithSheet([&] { PressOk(); });
    EXPECT_EQ(MaxUndoLevel, 32u);
}

TEST_F(SettingsSheetTest, OkStoresEachCheckBoxInItsOwnKey) {
    for (const CheckRow &clicked : Checks) {
        for (const CheckRow &row : Checks) {
            *row.setting = 0;
        }
        WithSheet([&] {
            ClickBox(clicked.control);
            EXPECT_EQ(*clicked.setting, 0u) << clicked.label;
            PressOk();
        });
        for (const CheckRow &row : Checks) {
            EXPECT_EQ(*row.setting, &row == &clicked ? 1u : 0u) << clicked.label << row.label;
        }
    }
    WithSheet([&] {
        ClickBox(108);
        PressOk();
    });
    EXPECT_EQ(WarnShowManual, 0u);
}

TEST_F(SettingsSheetTest, OkStoresEachNumberInItsOwnKey) {
    WithSheet([&] {
        Type(118, "2");
        Type(144, "3");
        Type(141, "4");
        PressOk();
    });
    EXPECT_EQ(CurrentMidiChannel, 2u);
    EXPECT_EQ(RememberFileHistoryCount, 3u);
    EXPECT_EQ(MaxUndoLevel, 4u);
}

TEST_F(SettingsSheetTest, Typing99InUndoLevelsStores32AndTyping0Stores1) {
    EXPECT_EQ(Typed(141, "99", MaxUndoLevel), 32u);
    EXPECT_EQ(Typed(141, "0", MaxUndoLevel), 1u);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(SettingsSheetTest, Typing0InFileMenuSizeStores0WhichHidesTheHistoryAtTheNextStart) {
    EXPECT_EQ(Typed(144, "0", RememberFileHistoryCount), 0u);
    HistoryInit();
    HistoryAdd(window.get(), home.Write("bank.syx", TestBank()), -1);
    EXPECT_TRUE(HistoryEntries().empty());
    HistoryEnd();
}

TEST_F(SettingsSheetTest, NumbersBeyondTheRangeAreClampedInSilence) {
    EXPECT_EQ(Typed(118, "17", CurrentMidiChannel), 16u);
    EXPECT_EQ(Typed(118, "0", CurrentMidiChannel), 1u);
    EXPECT_EQ(Typed(144, "21", RememberFileHistoryCount), 20u);
    EXPECT_EQ(Typed(144, "4294967295", RememberFileHistoryCount), 20u);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(SettingsSheetTest, ATextThatIsNoNumberReadsAs0AndIsClamped) {
    EXPECT_EQ(Typed(118, "", CurrentMidiChannel), 1u);
    EXPECT_EQ(Typed(118, "all", CurrentMidiChannel), 1u);
    EXPECT_EQ(Typed(144, "", RememberFileHistoryCount), 0u);
    EXPECT_EQ(Typed(141, "-3", MaxUndoLevel), 1u);
}

TEST_F(SettingsSheetTest, SteppingStaysInTheRange) {
    MaxUndoLevel = 31;
    WithSheet([&] {
        auto *edit = Control<QLineEdit>(141);
        auto *arrows = Control<UpDown>(10141);
        for (int step = 0; step < 3; ++step) {
            QTest::mouseClick(arrows->findChild<QToolButton *>("up"), Qt::LeftButton);
        }
        EXPECT_EQ(edit->text(), "32");
        Type(141, "2");
        for (int step = 0; step < 3; ++step) {
            QTest::keyClick(edit, Qt::Key_Down);
        }
        EXPECT_EQ(edit->text(), "1");
        QWheelEvent turn(QPointF(5, 5), edit->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120),
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(edit, &turn);
        EXPECT_EQ(edit->text(), "2");
        PressOk();
    });
    EXPECT_EQ(MaxUndoLevel, 2u);
}

TEST_F(SettingsSheetTest, TheCoverSettingHasNoControlAndIsNotTouched) {
    RememberFileHistoryCover = 7;
    WithSheet([&] {
        ClickTab(1);
        EXPECT_EQ(ControlOf(sheet, 145), nullptr);
        PressOk();
    });
    EXPECT_EQ(RememberFileHistoryCover, 7u);
}

TEST_F(SettingsSheetTest, CancelAfterChangesChangesNoKey) {
    for (int way = 0; way < 3; ++way) {
        std::vector<std::uint32_t> before;
        for (const CheckRow &row : Checks) {
            before.push_back(*row.setting);
        }
        WithSheet([&] {
            for (const CheckRow &row : Checks) {
                ClickBox(row.control);
            }
            Type(118, "9");
            Type(141, "12");
            ClickTab(1);
            Control<QComboBox>(134)->setCurrentIndex(3);
            if (way == 0) {
                PressCancel();
            } else if (way == 1) {
                QTest::keyClick(sheet, Qt::Key_Escape);
            } else {
                sheet->close();
            }
        });
        std::vector<std::uint32_t> after;
        for (const CheckRow &row : Checks) {
            after.push_back(*row.setting);
        }
        EXPECT_EQ(after, before);
        EXPECT_EQ(CurrentMidiChannel, 1u);
        EXPECT_EQ(MaxUndoLevel, 3u);
        EXPECT_EQ(SoftButtons, 1u);
        SetupPageIndex = 0;
    }
}

TEST_F(SettingsSheetTest, ReturnIsOk) {
    WithSheet([&] {
        Type(141, "8");
        QTest::keyClick(Control(141), Qt::Key_Return);
    });
    EXPECT_EQ(MaxUndoLevel, 8u);
}

TEST_F(SettingsSheetTest, TheSheetOpensOnThePageLastLeft) {
    WithSheet([&] {
        EXPECT_EQ(tabs->currentIndex(), 0);
        ClickTab(1);
        PressOk();
    });
    WithSheet([&] {
        EXPECT_EQ(tabs->currentIndex(), 1);
        ClickTab(0);
        PressCancel();
    });
    WithSheet([&] {
        EXPECT_EQ(tabs->currentIndex(), 0);
        PressOk();
    });
}

TEST_F(SettingsSheetTest, ThePageIndexFollowsThePageAtOnceAndStaysAfterCancel) {
    WithSheet([&] {
        ClickTab(1);
        EXPECT_EQ(SetupPageIndex, 1u);
        ClickTab(0);
        EXPECT_EQ(SetupPageIndex, 0u);
        ClickTab(1);
        PressCancel();
    });
    EXPECT_EQ(SetupPageIndex, 1u);
}

TEST_F(SettingsSheetTest, APageIndexBeyondThePagesOpensTheFirst) {
    for (const std::uint32_t index : {2u, 3u, 4294967295u}) {
        SetupPageIndex = index;
        WithSheet([&] {
            EXPECT_EQ(tabs->currentIndex(), 0);
            EXPECT_EQ(SetupPageIndex, 0u);
            PressCancel();
        });
    }
}

TEST_F(SettingsSheetTest, APageThatWasNotLookedAtIsNotMadeAndNotStored) {
    SoftButtons = 77;
    WithSheet([&] {
        EXPECT_EQ(ControlOf(sheet, 134), nullptr);
        PressOk();
    });
    EXPECT_EQ(SoftButtons, 77u);
    SetupPageIndex = 1;
    MaxUndoLevel = 99;
    WithSheet([&] {
        EXPECT_EQ(ControlOf(sheet, 141), nullptr);
        EXPECT_EQ(Control<QComboBox>(134)->currentIndex(), -1);
        PressOk();
    });
    EXPECT_EQ(SoftButtons, 0u); // nothing was selected
    EXPECT_EQ(MaxUndoLevel, 99u);
}

TEST_F(SettingsSheetTest, APageKeepsWhatWasPutInWhileAnotherIsShown) {
    WithSheet([&] {
        Type(141, "9");
        ClickBox(139);
        const bool checked = Control<QCheckBox>(139)->isChecked();
        ClickTab(1);
        ClickTab(0);
        EXPECT_EQ(Control<QLineEdit>(141)->text(), "9");
        EXPECT_EQ(Control<QCheckBox>(139)->isChecked(), checked);
        ClickTab(1);
        PressOk();
    });
    EXPECT_EQ(MaxUndoLevel, 9u);
}

TEST_F(SettingsSheetTest, TheListOfSoftButtonsHasFourStylesInOrder) {
    SoftButtons = 2;
    SetupPageIndex = 1;
    WithSheet([&] {
        auto *list = Control<QComboBox>(134);
        EXPECT_EQ(Control<QLabel>(20134)->text(), "Soft buttons:");
        ASSERT_EQ(list->count(), 4);
        const char *const names[] = {"None", "Soft", "Flex", "Wedge"};
        for (int index = 0; index < 4; ++index) {
            EXPECT_EQ(list->itemText(index), names[index]);
        }
        EXPECT_EQ(list->currentText(), "Flex");
        PressOk();
    });
    EXPECT_EQ(SoftButtons, 2u);
}

TEST_F(SettingsSheetTest, AChosenStyleIsStoredAndUsedByTheNextSheet) {
    SetupPageIndex = 1;
    QImage before;
    WithSheet([&] {
        auto *list = Control<QComboBox>(134);
        list->setFocus();
        QTest::keyClick(list, Qt::Key_End);
        EXPECT_EQ(list->currentText(), "Wedge");
        EXPECT_EQ(SoftButtons, 1u);
        before = Control(2)->grab().toImage();
        PressOk();
    });
    EXPECT_EQ(SoftButtons, 3u);
    WithSheet([&] {
        EXPECT_NE(Control(2)->grab().toImage(), before);
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, EachItemOfTheListIs32HighAndPaintsItsStyle) {
    SetupPageIndex = 1;
    WithSheet([&] {
        auto *list = Control<QComboBox>(134);
        std::vector<QImage> fields;
        for (int index = 0; index < 4; ++index) {
            list->setCurrentIndex(index);
            fields.push_back(list->grab().toImage());
        }
        list->setCurrentIndex(-1);
        fields.push_back(list->grab().toImage());
        list->setCurrentIndex(0);
        list->showPopup();
        QAbstractItemView *view = list->view();
        std::vector<QImage> items;
        for (int index = 0; index < 4; ++index) {
            const QRect place = view->visualRect(list->model()->index(index, 0));
            EXPECT_EQ(place.height(), 32);
            items.push_back(view->viewport()->grab(place).toImage());
        }
        list->hidePopup();
        for (const auto &images : {fields, items}) {
            for (std::size_t i = 0; i < images.size(); ++i) {
                for (std::size_t j = 0; j < i; ++j) {
                    EXPECT_NE(images[i], images[j]) << i << " " << j;
                }
            }
        }
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, WithSoftButtonsTheButtonsAreDrawnAndWithNoneTheyAreNot) {
    const auto drawn = [&](std::uint32_t number) {
        return !Control(number)->findChildren<QObject *>("SoftButtonPainter").isEmpty();
    };
    for (const std::uint32_t style : {0u, 1u, 2u, 3u}) {
        SoftButtons = style;
        WithSheet([&] {
            for (const std::uint32_t number : {1u, 2u, 2001u}) {
                EXPECT_EQ(drawn(number), style != 0) << style << " " << number;
            }
            PressCancel();
        });
    }
}

TEST_F(SettingsSheetTest, AThemeIsChosenByItsButtonAndToldOf) {
    ThemeHouse house;
    house.Put("whole", "THEME_A.dll");
    house.Put("bits_24", "THEME_B.dll");
    ThemeCurrent = "THEME_A.dll";
    const auto select = [&](const std::function<void(QDialog &)> &use) {
        WithModalBox([this] { Press(2001); }, use);
    };
    WithSheet([&] {
        EXPECT_TRUE(Control(2001)->isEnabled());
        select([](QDialog &box) {
            QTest::keyClick(box.focusWidget(), Qt::Key_Down);
            QTest::keyClick(box.focusWidget(), Qt::Key_Escape);
        });
        EXPECT_EQ(ThemeCurrent, "THEME_A.dll");
        desktop.ExpectMessage(
            "You must restart this application for your new theme to become active.");
        select([](QDialog &box) {
            QTest::keyClick(box.focusWidget(), Qt::Key_Down);
            QTest::keyClick(box.focusWidget(), Qt::Key_Return);
        });
        desktop.ExpectNothingLeft();
        EXPECT_EQ(ThemeCurrent, "THEME_B.dll");
        PressCancel();
    });
    EXPECT_EQ(ThemeCurrent, "THEME_B.dll"); // also when the sheet is cancelled
}

TEST_F(SettingsSheetTest, EachCommandOfANumbersEditShowsItsKeyInTheTitle) {
    RefreshTitle();
    WithSheet([&] {
        EXPECT_EQ(window->windowTitle(), "Tonewright [ Untitled.Twl ]");
        for (const SpinRow &row : Spins) {
            Type(row.control, "1");
            EXPECT_EQ(window->windowTitle(), row.trace);
        }
        QTest::mouseClick(Control(10118)->findChild<QToolButton *>("up"), Qt::LeftButton);
        EXPECT_EQ(window->windowTitle(), "CurrentMidiChannel 44");
        // Not while the page is out of sight.
        ClickTab(1);
        RefreshTitle();
        Control<QLineEdit>(141)->setText("5");
        EXPECT_EQ(window->windowTitle(), "Tonewright [ Untitled.Twl ]");
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheTitleIsRebuiltWhenTheSheetCloses) {
    WithCommand([&] {
        Type(141, "5");
        EXPECT_EQ(window->windowTitle(), "MaxUndoLevel 8044");
        PressCancel();
    });
    EXPECT_EQ(window->windowTitle(), "Tonewright [ Untitled.Twl ]");
    WithCommand([&] {
        Type(118, "5");
        EXPECT_EQ(window->windowTitle(), "CurrentMidiChannel 44");
        PressOk();
    });
    EXPECT_EQ(window->windowTitle(), "Tonewright [ Untitled.Twl ]");
}

TEST_F(SettingsSheetTest, F1ShowsTheEntryOfTheFocusedSetting) {
    WithSheet([&] {
        for (const CheckRow &row : Checks) {
            Control(row.control)->setFocus();
            QTest::keyClick(Control(row.control), Qt::Key_F1);
            EXPECT_EQ(Topic(), std::string("#") + row.topic);
        }
        for (const SpinRow &row : Spins) {
            Control(row.control)->setFocus();
            QTest::keyClick(Control(row.control), Qt::Key_F1);
            EXPECT_EQ(Topic(), std::string("#") + row.topic);
        }
        ClickTab(1);
        Control(134)->setFocus();
        QTest::keyClick(Control(134), Qt::Key_F1);
        EXPECT_EQ(Topic(), "#SETUP_SOFTBUTTONS");
        EXPECT_TRUE(sheet->isVisible());
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, F1ElsewhereAndTheHelpButtonShowTheSettings) {
    WithSheet([&] {
        for (QWidget *other : {Control(2), static_cast<QWidget *>(tabs->tabBar())}) {
            other->setFocus();
            QTest::keyClick(other, Qt::Key_F1);
            EXPECT_EQ(Topic(), "#SETUP");
        }
        desktop.opened.clear();
        Press(9);
        ASSERT_EQ(desktop.opened.size(), 1u);
        EXPECT_EQ(Topic(), "#SETUP");
        EXPECT_EQ(desktop.opened[0].address.find("file:///"), 0u);
        EXPECT_NE(desktop.opened[0].address.find("html/referenc.html#"), std::string::npos);
        EXPECT_TRUE(sheet->isVisible());
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheFirstSettingHasTheFocusAtTheStart) {
    const auto focusComesTo = [&](std::uint32_t number) {
        return QTest::qWaitFor([&] { return Control(number)->hasFocus(); }, 5000);
    };
    WithSheet([&] {
        EXPECT_TRUE(focusComesTo(139));
        PressCancel();
    });
    SetupPageIndex = 1;
    WithSheet([&] {
        EXPECT_TRUE(focusComesTo(134));
        PressCancel();
    });
}

TEST_F(SettingsSheetTest, TheSettingsAreNotWrittenToTheFile) {
    WithCommand([&] {
        Type(141, "5");
        PressOk();
    });
    EXPECT_EQ(MaxUndoLevel, 5u);
    EXPECT_EQ(ReadSingleText(ProgramSettings, "MaxUndoLevel", "none"), "none");
}

TEST_F(SettingsSheetTest, TheMenuAndTheToolBarOpenTheSheet) {
    EXPECT_TRUE(window->MenuAction(CommandSettings)->isEnabled());
    WithSheet([&] { PressCancel(); }, [&] { window->MenuAction(CommandSettings)->trigger(); });
    WithSheet([&] { PressCancel(); },
              [&] {
                  QTest::mouseClick(ControlOf(window->Tools(), CommandSettings), Qt::LeftButton);
                  RunPosted();
              });
}

TEST_F(SettingsSheetTest, BehindTheSheetTheBackgroundIsLoadedAnew) {
    const auto corner = [&] {
        return window->grab().toImage().pixelColor(window->width() - 2, window->height() / 2);
    };
    QImage picture(4, window->height(), QImage::Format_RGB32);
    picture.fill(Qt::red);
    const std::string path = home.File("background.png");
    ASSERT_TRUE(picture.save(QString::fromStdString(path)));
    window->backgroundPath = path;
    window->DropBackground();
    EXPECT_EQ(corner(), QColor(Qt::red));
    picture.fill(Qt::blue);
    ASSERT_TRUE(picture.save(QString::fromStdString(path)));
    EXPECT_EQ(corner(), QColor(Qt::red));
    WithCommand([&] { PressCancel(); });
    EXPECT_EQ(corner(), QColor(Qt::blue));
}

// Counts the paintings of a widget.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int paintings = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        paintings += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST_F(SettingsSheetTest, BehindTheSheetWindowAndToolButtonsRepaint) {
    QTest::qWait(50);
    PaintCounter ofWindow(window.get());
    PaintCounter ofButton(ControlOf(window->Tools(), CommandOpen));
    WithCommand([&] {
        QTest::qWait(50);
        ofWindow.paintings = ofButton.paintings = 0;
        PressCancel();
    });
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return ofWindow.paintings > 0 && ofButton.paintings > 0; }, 5000));
}

} // namespace
} // namespace tonewright
