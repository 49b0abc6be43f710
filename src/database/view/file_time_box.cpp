// The fields of a time and date, and the calendar that follows them.
#include "database/view/file_time_box.h"

#include "common/file_time.h"
#include "common/settings.h"
#include "common/view/box_controls.h"
#include "common/view/centre_window.h"
#include "common/view/dialog_controls.h"
#include "common/view/fonts.h"
#include "common/view/up_down.h"
#include "database/calendar.h"
#include "ui_FileTimeBox.h"

#include <QDialog>

#include <ctime>
#include <iterator>
#include <optional>

namespace tonewright {
namespace {

constexpr const char *HelpTopic = "EXIFEDIT";
constexpr std::uint32_t HourControl = 101;
constexpr std::uint32_t MinuteControl = 102;
constexpr std::uint32_t SecondControl = 103;
constexpr std::uint32_t DayControl = 106;
constexpr std::uint32_t YearControl = 107;

const char *TitleOf(FileTimeParts parts) {
    switch (parts) {
    case FileTimeParts::Time:
        return "Time";
    case FileTimeParts::Date:
        return "Date";
    case FileTimeParts::Both:
        return "Time and Date";
    }
    return "";
}

class FileTimeDialog : public QDialog {
public:
    FileTimeDialog(QWidget *owner, FileTimeParts parts, std::uint32_t &seconds)
        : QDialog(owner ? owner->window() : nullptr), seconds(seconds),
          formerStartMonday(StartMonday) {
        ui.setupUi(this);
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                       Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
        setWindowTitle(TitleOf(parts));
        setFont(DialogFont());
        for (const char *month : MonthNames) {
            ui.control_105->addItem(month);
        }
        ui.control_105->setMaxVisibleItems(static_cast<int>(std::size(MonthNames)));
        for (const std::uint32_t number :
             {HourControl, MinuteControl, SecondControl, YearControl}) {
            StepIn(number);
        }
        Show(CalendarTimeOf(seconds));
        ui.control_109->setChecked(StartMonday != 0);
        Connect();
        SetUpBoxControls(*this, HelpTopic);
        adjustSize();
        CentreWindow(*this);
    }

    void accept() override {
        seconds = SecondsOfCalendarTime(Fields());
        QDialog::accept();
    }
    void reject() override {
        StartMonday = formerStartMonday;
        QDialog::reject();
    }

private:
    void Connect() {
        connect(ui.control_105, &QComboBox::currentIndexChanged, this,
                [this] { FollowMonth(true); });
        // While a year is being typed it is another one for a moment, which costs no day.
        connect(ui.control_107, &QLineEdit::textChanged, this, [this](const QString &text) {
            FollowMonth(text == QString::number(Fields().year));
        });
        connect(ui.control_106, &QLineEdit::textChanged, this,
                [this] { ui.control_110->Show(Fields()); });
        connect(ui.control_108, &QPushButton::clicked, this,
                [this] { Show(CalendarTimeOf(static_cast<std::uint32_t>(std::time(nullptr)))); });
        connect(ui.control_109, &QCheckBox::toggled, this, [this](bool checked) {
            StartMonday = checked;
            ui.control_110->update();
        });
        ui.control_110->picked = [this](int day) { ui.control_106->setText(QString::number(day)); };
    }

    void StepIn(std::uint32_t number) {
        if (const std::optional<SpinRange> range = SpinRangeOf(this, number)) {
            StepNumberIn(ControlOf<QLineEdit>(this, number),
                         ControlOf<UpDown>(this, number + UpDownOffset), *range);
        }
    }

    CalendarTime Fields() const {
        return LimitedCalendarTime({.year = ClampedDlgInt(this, YearControl),
                                    .month = ui.control_105->currentIndex(),
                                    .day = ClampedDlgInt(this, DayControl),
                                    .hour = HourOf({.hour = ClampedDlgInt(this, HourControl),
                                                    .isPm = ui.control_104->isChecked()}),
                                    .minute = ClampedDlgInt(this, MinuteControl),
                                    .second = ClampedDlgInt(this, SecondControl)});
    }

    void Show(const CalendarTime &time) {
        const ShownHour hour = ShownHourOf(time.hour);
        ui.control_101->setText(QString::number(hour.hour));
        ui.control_102->setText(QString::number(time.minute));
        ui.control_103->setText(QString::number(time.second));
        ui.control_104->setChecked(hour.isPm);
        ui.control_107->setText(QString::number(time.year));
        ui.control_105->setCurrentIndex(time.month);
        ui.control_106->setText(QString::number(time.day));
        FollowMonth(true);
    }

    // The days are those of month and year now.
    void FollowMonth(bool limitDay) {
        const CalendarTime time = Fields();
        ui.control_10106->setProperty("rangeText",
                                      QString("1,%1,1").arg(DaysOfMonth(time.year, time.month)));
        StepIn(DayControl);
        if (limitDay) {
            ui.control_106->setText(QString::number(Fields().day));
        }
        ui.control_110->Show(Fields());
    }

    Ui::FileTimeBox ui;
    std::uint32_t &seconds;
    const std::uint32_t formerStartMonday;
};

} // namespace

bool RunFileTimeBox(QWidget *owner, FileTimeParts parts, std::uint32_t &seconds) {
    FileTimeDialog box(owner, parts, seconds);
    return box.exec() == QDialog::Accepted;
}

} // namespace tonewright
