// The box "Time and Date", used with mouse and keys.
#include "database/view/file_time_box.h"

#include "common/settings.h"
#include "database/view/month_view.h"
#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"
#include "support/time_zone.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <ctime>
#include <functional>

namespace tonewright {
namespace {

constexpr int Ok = 1, Cancel = 2, Help = 9;
constexpr int Hour = 101, Minutes = 102, Seconds = 103, Pm = 104, Month = 105, Day = 106,
              Year = 107, CurrentTime = 108, Monday = 109, Calendar = 110;
constexpr std::uint32_t Afternoon = 1794661509; // 14 November 2026, 14:05:09 in Berlin

class FileTimeBox : public testing::Test {
protected:
    // Opens the box and hands it to `use`, which closes it. The box's result.
    bool WithBox(const std::function<void(QDialog &)> &use,
                 FileTimeParts parts = FileTimeParts::Both) {
        bool result = false;
        WithModalBox([&] { result = RunFileTimeBox(nullptr, parts, seconds); },
                     [&](QDialog &opened) {
                         box = &opened;
                         use(opened);
                     });
        return result;
    }
    template <typename Widget> Widget *Control(int number) const {
        auto *control =
            dynamic_cast<Widget *>(box->findChild<QWidget *>(QString("control_%1").arg(number)));
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    void Click(int button) const {
        QTest::mouseClick(Control<QAbstractButton>(button), Qt::LeftButton, {}, {8, 8});
    }
    std::string TextOf(int number) const {
        return Control<QLineEdit>(number)->text().toStdString();
    }
    // Hour, minutes, seconds, PM, month, day and year.
    std::string Fields() const {
        return TextOf(Hour) + ":" + TextOf(Minutes) + ":" + TextOf(Seconds) +
               (Control<QCheckBox>(Pm)->isChecked() ? " PM " : " AM ") +
               Control<QComboBox>(Month)->currentText().toStdString() + " " + TextOf(Day) + " " +
               TextOf(Year);
    }
    void Type(int number, const QString &text) const {
        auto *edit = Control<QLineEdit>(number);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }
    void Choose(int month) const {
        auto *combo = Control<QComboBox>(Month);
        combo->showPopup();
        QAbstractItemView *view = combo->view();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(month, 0)).center());
        QTest::qWait(1);
        ASSERT_EQ(combo->currentIndex(), month);
    }
    // Up or down, by the arrow of a field.
    void Step(int number, Qt::ArrowType arrow) const {
        for (QToolButton *button :
             Control<QWidget>(10000 + number)->findChildren<QToolButton *>()) {
            if (button->arrowType() == arrow) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
        }
    }
    // The middle of a cell of the calendar, which has a frame of one pixel and two lines above.
    QPoint CellAt(int row, int column) const {
        const MonthView &view = *Control<MonthView>(Calendar);
        const int top = 1 + 2 * (view.fontMetrics().height() * 3 / 2) + 1;
        const int width = (view.width() - 2) / 7, height = (view.height() - 1 - top) / 6;
        return {1 + column * width + width / 2, top + row * height + height / 2};
    }
    std::string ClickDay(int row, int column) const {
        QTest::mouseClick(Control<MonthView>(Calendar), Qt::LeftButton, {}, CellAt(row, column));
        return TextOf(Day);
    }

    const TimeZone zone = TimeZone(ZoneOfBerlin);
    ScriptedDesktop desktop;
    std::uint32_t seconds = Afternoon;
    QDialog *box = nullptr;
};

TEST_F(FileTimeBox, ShowsTheLocalTimeWithTheFocusOnOk) {
    EXPECT_FALSE(WithBox([&](QDialog &) {
        EXPECT_EQ(Fields(), "2:5:9 PM November 14 2026");
        EXPECT_TRUE(Control<QPushButton>(Ok)->hasFocus());
        EXPECT_TRUE(HasInk(*Control<QLabel>(10)));
        EXPECT_FALSE(Control<QCheckBox>(Monday)->isChecked());
        Click(Cancel);
    }));
    EXPECT_EQ(seconds, Afternoon);
}

TEST_F(FileTimeBox, ItsTitleSaysWhatIsAskedFor) {
    const std::pair<FileTimeParts, const char *> titles[] = {{FileTimeParts::Both, "Time and Date"},
                                                             {FileTimeParts::Time, "Time"},
                                                             {FileTimeParts::Date, "Date"}};
    for (const auto &[parts, title] : titles) {
        WithBox(
            [&, title = title](QDialog &opened) {
                EXPECT_EQ(opened.windowTitle(), title);
                Click(Cancel);
            },
            parts);
    }
}

TEST_F(FileTimeBox, ItsTextsStandInTheBox) {
    WithBox([&](QDialog &opened) {
        QStringList texts;
        for (const QLabel *label : opened.findChildren<QLabel *>()) {
            texts += label->text();
        }
        for (const QAbstractButton *button : opened.findChildren<QAbstractButton *>()) {
            texts += button->text();
            EXPECT_GE(button->width(), button->minimumSizeHint().width());
        }
        for (const char *text : {"Time:", "Date:", "PM", "&Get current time",
                                 "Start calendar on &Monday", "OK", "Cancel", "Help"}) {
            EXPECT_TRUE(texts.contains(text)) << text;
        }
        QStringList months;
        for (int month = 0; month < 12; ++month) {
            months += Control<QComboBox>(Month)->itemText(month);
        }
        EXPECT_EQ(months.join(' '), "January February March April May June July August September "
                                    "October November December");
        EXPECT_EQ(Control<QComboBox>(Month)->count(), 12);
        for (const int number : {Hour, Minutes, Seconds, Day, Year}) {
            EXPECT_FALSE(Control<QLineEdit>(number)->accessibleName().isEmpty());
        }
        Click(Help);
        Click(Cancel);
    });
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"EXIFEDIT"});
}

TEST_F(FileTimeBox, NoonAndMidnightAreTwelve) {
    const std::tuple<std::uint32_t, const char *> times[] = {
        {1794610800, "12:0:0 AM November 14 2026"},   {1794614400, "1:0:0 AM November 14 2026"},
        {1794653999, "11:59:59 AM November 14 2026"}, {1794654000, "12:0:0 PM November 14 2026"},
        {1794656000, "12:33:20 PM November 14 2026"}, {1794657600, "1:0:0 PM November 14 2026"},
        {1794697199, "11:59:59 PM November 14 2026"},
    };
    for (const auto &[time, fields] : times) {
        seconds = time;
        EXPECT_TRUE(WithBox([&, fields = fields](QDialog &) {
            EXPECT_EQ(Fields(), fields);
            Click(Ok);
        }));
        EXPECT_EQ(seconds, time);
    }
}

TEST_F(FileTimeBox, OkTakesTheFields) {
    EXPECT_TRUE(WithBox([&](QDialog &) {
        Type(Hour, "12");
        Type(Minutes, "7");
        Type(Seconds, "8");
        Click(Pm); // off: midnight
        Choose(6);
        Type(Day, "31");
        Type(Year, "1999");
        Click(Ok);
    }));
    EXPECT_EQ(seconds, 933372428u); // 31 July 1999, 0:07:08, two hours ahead of UTC
}

TEST_F(FileTimeBox, EnterInAFieldAccepts) {
    EXPECT_TRUE(WithBox([&](QDialog &) {
        Type(Minutes, "6");
        QTest::keyClick(Control<QLineEdit>(Minutes), Qt::Key_Return);
    }));
    EXPECT_EQ(seconds, Afternoon + 60);
}

TEST_F(FileTimeBox, EnterOnCancelOrHelpPressesThatButton) {
    EXPECT_FALSE(WithBox([&](QDialog &opened) {
        Type(Minutes, "6");
        QTest::keyClick(Control<QPushButton>(Help), Qt::Key_Return);
        EXPECT_TRUE(opened.isVisible());
        EXPECT_EQ(desktop.helpTopics.size(), 1u);
        QTest::keyClick(Control<QPushButton>(Cancel), Qt::Key_Return);
    }));
    EXPECT_EQ(seconds, Afternoon);
}

TEST_F(FileTimeBox, EnterInACheckBoxAcceptsAndLeavesItAsItIs) {
    EXPECT_TRUE(
        WithBox([&](QDialog &) { QTest::keyClick(Control<QCheckBox>(Pm), Qt::Key_Return); }));
    EXPECT_EQ(seconds, Afternoon);
}

TEST_F(FileTimeBox, FieldsOutsideTheirRangeAreLimited) {
    EXPECT_TRUE(WithBox([&](QDialog &) {
        Type(Hour, "13");
        Type(Minutes, "60");
        Type(Seconds, "99");
        Type(Day, "31");
        Click(Ok);
    }));
    EXPECT_EQ(seconds, 1796039999u); // 30 November 2026, 12:59:59
    EXPECT_TRUE(WithBox([&](QDialog &) {
        Type(Hour, "0");
        Type(Minutes, "");
        Type(Seconds, "-1");
        Type(Day, "0");
        Type(Year, "2038");
        Click(Ok);
    }));
    EXPECT_EQ(seconds, 2140689600u); // 1 November 2037, 13:00:00
}

TEST_F(FileTimeBox, TheArrowsStepWithinTheRange) {
    WithBox([&](QDialog &) {
        Type(Hour, "12");
        Step(Hour, Qt::UpArrow);
        EXPECT_EQ(TextOf(Hour), "12");
        Type(Hour, "1");
        Step(Hour, Qt::DownArrow);
        EXPECT_EQ(TextOf(Hour), "1");
        for (const int number : {Minutes, Seconds}) {
            Type(number, "58");
            Step(number, Qt::UpArrow);
            Step(number, Qt::UpArrow);
            EXPECT_EQ(TextOf(number), "59");
            Type(number, "0");
            Step(number, Qt::DownArrow);
            EXPECT_EQ(TextOf(number), "0");
        }
        Type(Day, "29");
        Step(Day, Qt::UpArrow);
        Step(Day, Qt::UpArrow);
        EXPECT_EQ(TextOf(Day), "30");
        Choose(11);
        Step(Day, Qt::UpArrow);
        EXPECT_EQ(TextOf(Day), "31");
        Step(Day, Qt::UpArrow);
        EXPECT_EQ(TextOf(Day), "31");
        for (int step = 0; step < 12; ++step) {
            Step(Year, Qt::UpArrow);
        }
        EXPECT_EQ(TextOf(Year), "2037");
        Type(Year, "1971");
        Step(Year, Qt::DownArrow);
        Step(Year, Qt::DownArrow);
        EXPECT_EQ(TextOf(Year), "1970");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, AShorterMonthLimitsTheDay) {
    WithBox([&](QDialog &) {
        Choose(9);
        Type(Day, "31");
        Choose(10);
        EXPECT_EQ(TextOf(Day), "30");
        Choose(1);
        EXPECT_EQ(TextOf(Day), "28");
        Choose(0);
        EXPECT_EQ(TextOf(Day), "28");
        Step(Day, Qt::UpArrow);
        EXPECT_EQ(TextOf(Day), "29");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, AYearThatIsNoLeapYearLimitsTheDay) {
    WithBox([&](QDialog &) {
        Type(Year, "2024");
        Choose(1);
        Type(Day, "29");
        Type(Year, "2028"); // not by the years that it is meanwhile
        EXPECT_EQ(TextOf(Day), "29");
        Step(Year, Qt::UpArrow);
        EXPECT_EQ(Fields(), "2:5:9 PM February 28 2029");
        Step(Year, Qt::DownArrow);
        Step(Day, Qt::UpArrow);
        Step(Day, Qt::UpArrow);
        EXPECT_EQ(Fields(), "2:5:9 PM February 29 2028");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, AYearOutsideTheRangeOpensAtTheNearest) {
    seconds = 4102444800; // 1 January 2100, 0:00 UTC
    EXPECT_FALSE(WithBox([&](QDialog &) {
        EXPECT_EQ(Fields(), "1:0:0 AM January 1 2037");
        Click(Cancel);
    }));
    EXPECT_EQ(seconds, 4102444800u);
    EXPECT_TRUE(WithBox([&](QDialog &) { Click(Ok); }));
    EXPECT_EQ(seconds, 2114380800u);
}

TEST_F(FileTimeBox, GetsTheCurrentTime) {
    seconds = 946681200; // 1 January 2000, 0:00
    const auto before = static_cast<std::uint32_t>(std::time(nullptr));
    EXPECT_TRUE(WithBox([&](QDialog &) {
        Click(CurrentTime);
        Click(Ok);
    }));
    const auto after = static_cast<std::uint32_t>(std::time(nullptr));
    EXPECT_GE(seconds, before);
    EXPECT_LE(seconds, after);
}

// November 2026 begins in column 2, and in column 1 when the weeks begin on Monday.
TEST_F(FileTimeBox, AClickOnADayOfTheCalendarSetsTheDay) {
    WithBox([&](QDialog &) {
        EXPECT_EQ(ClickDay(0, 2), "1");
        EXPECT_EQ(ClickDay(0, 6), "5");
        EXPECT_EQ(ClickDay(1, 0), "6");
        EXPECT_EQ(ClickDay(4, 3), "30");
        EXPECT_EQ(Fields(), "2:5:9 PM November 30 2026");
        Click(Monday);
        EXPECT_EQ(ClickDay(0, 1), "1");
        EXPECT_EQ(ClickDay(4, 2), "30");
        Choose(1);
        Type(Year, "2024"); // 6, and 5 by weeks from Monday
        EXPECT_EQ(ClickDay(0, 5), "1");
        EXPECT_EQ(ClickDay(4, 5), "29");
        Click(Monday);
        EXPECT_EQ(ClickDay(0, 6), "1");
        EXPECT_EQ(ClickDay(4, 6), "29");
        Type(Year, "1970");
        Choose(0);
        EXPECT_EQ(ClickDay(0, 6), "1");
        EXPECT_EQ(ClickDay(5, 1), "31");
        Click(Ok);
    });
    EXPECT_EQ(seconds, 31 * 86400u - 86400u + 13 * 3600 + 5 * 60 + 9);
}

TEST_F(FileTimeBox, AClickBesideTheDaysDoesNothing) {
    WithBox([&](QDialog &) {
        EXPECT_EQ(ClickDay(0, 1), "14");
        EXPECT_EQ(ClickDay(4, 4), "14");
        EXPECT_EQ(ClickDay(5, 6), "14");
        EXPECT_EQ(ClickDay(-1, 3), "14");
        EXPECT_EQ(ClickDay(-2, 3), "14");
        auto *view = Control<MonthView>(Calendar);
        QTest::mouseClick(view, Qt::RightButton, {}, CellAt(0, 3));
        EXPECT_EQ(TextOf(Day), "14");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, PressAndReleaseSetADayEach) {
    WithBox([&](QDialog &) {
        auto *view = Control<MonthView>(Calendar);
        QTest::mousePress(view, Qt::LeftButton, {}, CellAt(0, 2));
        EXPECT_EQ(TextOf(Day), "1");
        QTest::mouseMove(view, CellAt(0, 3));
        EXPECT_EQ(TextOf(Day), "1");
        QTest::mouseRelease(view, Qt::LeftButton, {}, CellAt(0, 4));
        EXPECT_EQ(TextOf(Day), "3");
        QTest::mousePress(view, Qt::LeftButton, {}, CellAt(0, 5));
        QTest::mouseRelease(view, Qt::LeftButton, {}, CellAt(0, 0));
        EXPECT_EQ(TextOf(Day), "4");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, TheCalendarMarksTheDay) {
    const QPalette colours = QApplication::palette();
    const QRgb dark = colours.color(QPalette::Active, QPalette::Shadow).rgb();
    WithBox([&](QDialog &) {
        const auto isMarked = [&](int row, int column) {
            const QImage image = Control<MonthView>(Calendar)->grab().toImage();
            const QPoint corner = CellAt(row, column) - QPoint(12, 8);
            return image.pixel(corner) == dark;
        };
        EXPECT_TRUE(isMarked(2, 1)); // 14
        EXPECT_FALSE(isMarked(2, 2));
        Type(Day, "15");
        EXPECT_FALSE(isMarked(2, 1));
        EXPECT_TRUE(isMarked(2, 2));
        Click(Monday);
        EXPECT_TRUE(isMarked(2, 1));
        ClickDay(0, 1);
        EXPECT_TRUE(isMarked(0, 1));
        Step(Day, Qt::UpArrow);
        EXPECT_TRUE(isMarked(0, 2));
        Type(Day, "99"); // the last one
        EXPECT_TRUE(isMarked(4, 2));
        EXPECT_EQ(Control<MonthView>(Calendar)->accessibleName(), "30 November 2026");
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, TheCalendarHasTheLettersOfTheDaysAboveARule) {
    const QRgb dark = QApplication::palette().color(QPalette::Active, QPalette::Shadow).rgb();
    WithBox([&](QDialog &) {
        QWidget &view = *Control<MonthView>(Calendar);
        const int line = view.fontMetrics().height() * 3 / 2, width = (view.width() - 2) / 7;
        const auto letters = [&] {
            const QImage image = view.grab().toImage();
            EXPECT_TRUE(IsAll(image, QRect(1, 1 + 2 * line, view.width() - 2, 1), dark));
            EXPECT_FALSE(InkOf(image, QRect(1, 1, view.width() - 2, line)).isEmpty());
            std::vector<QImage> columns;
            for (int column = 0; column < 7; ++column) {
                columns.push_back(image.copy(1 + column * width, 1 + line, width, line));
                EXPECT_FALSE(InkOf(columns.back(), columns.back().rect()).isEmpty());
            }
            return columns;
        };
        const std::vector<QImage> fromSunday = letters();
        EXPECT_EQ(fromSunday[0], fromSunday[6]); // S
        EXPECT_EQ(fromSunday[2], fromSunday[4]); // T
        EXPECT_NE(fromSunday[0], fromSunday[1]);
        Click(Monday);
        const std::vector<QImage> fromMonday = letters();
        for (std::size_t column = 0; column < 7; ++column) {
            EXPECT_EQ(fromMonday[column], fromSunday[(column + 1) % 7]) << column;
        }
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, TabGoesThroughTheFieldsInTheirOrder) {
    WithBox([&](QDialog &opened) {
        Control<QWidget>(Hour)->setFocus();
        QStringList order;
        for (int stop = 0; stop < 12; ++stop) {
            order += opened.focusWidget()->objectName().mid(8);
            QTest::keyClick(opened.focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order.join(' '), "101 102 103 104 105 106 107 108 109 1 2 9");
        EXPECT_EQ(opened.focusWidget(), Control<QWidget>(Hour));
        Click(Cancel);
    });
}

TEST_F(FileTimeBox, OkKeepsWhereTheWeeksBegin) {
    for (const std::uint32_t begin : {1, 0}) {
        EXPECT_TRUE(WithBox([&](QDialog &) {
            EXPECT_EQ(Control<QCheckBox>(Monday)->isChecked(), begin == 0);
            Click(Monday);
            EXPECT_EQ(StartMonday, begin);
            Click(Ok);
        }));
        EXPECT_EQ(StartMonday, begin);
    }
}

TEST_F(FileTimeBox, CancelPutsBackWhereTheWeeksBegin) {
    const std::function<void(QDialog &)> ways[] = {
        [&](QDialog &) { Click(Cancel); },
        [&](QDialog &opened) { QTest::keyClick(&opened, Qt::Key_Escape); },
        [&](QDialog &opened) { opened.close(); }};
    for (const auto &cancel : ways) {
        for (const std::uint32_t begin : {0, 1}) {
            StartMonday = begin;
            EXPECT_FALSE(WithBox([&](QDialog &opened) {
                Click(Monday);
                EXPECT_EQ(StartMonday, 1 - begin);
                Type(Minutes, "6");
                cancel(opened);
            }));
            EXPECT_EQ(StartMonday, begin);
            EXPECT_EQ(seconds, Afternoon);
        }
    }
}

} // namespace
} // namespace tonewright
