// Paints a month and finds the day under the mouse.
#include "database/view/month_view.h"

#include "common/file_time.h"
#include "common/settings.h"
#include "common/view/system_colours.h"
#include "common/view/text_line.h"

#include <QMouseEvent>
#include <QPainter>

namespace tonewright {
namespace {

constexpr int Frame = 1;
constexpr const char *FromSunday = "SMTWTFS";
constexpr const char *FromMonday = "MTWTFSS";

int LineHeight(const QFont &font) {
    return QFontMetrics(font).height() * 3 / 2;
}

} // namespace

MonthView::MonthView(QWidget *parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MonthView::Show(const CalendarTime &shown) {
    time = shown;
    const QString month = MonthNames[time.month];
    setAccessibleName(QString("%1 %2 %3").arg(time.day).arg(month).arg(time.year));
    update();
}

QSize MonthView::sizeHint() const {
    const int column = 2 * QFontMetrics(font()).horizontalAdvance("00");
    return {CalendarColumns * column + 2 * Frame,
            (CalendarRows + 2) * LineHeight(font()) + 1 + 2 * Frame};
}

// Within the frame.
CalendarAreas MonthView::Areas() const {
    return CalendarAreasOf(width() - 2 * Frame, height() - 2 * Frame, LineHeight(font()));
}

int MonthView::FirstColumn() const {
    return CalendarColumn(time.year, time.month, StartMonday != 0);
}

void MonthView::paintEvent(QPaintEvent *) {
    const QColor dark = SystemColourOf(SystemColour::DarkShadow3D);
    const CalendarAreas areas = Areas();
    QPainter painter(this);
    painter.setFont(font());
    painter.fillRect(rect(), SystemColourOf(SystemColour::ButtonShadow));
    painter.fillRect(rect().adjusted(Frame, Frame, -Frame, -Frame),
                     SystemColourOf(SystemColour::Window));
    painter.translate(Frame, Frame);
    painter.setPen(SystemColourOf(SystemColour::WindowText));
    WriteCentred(painter, areas.header,
                 QString("%1 %2").arg(MonthNames[time.month]).arg(time.year));
    const char *letters = StartMonday != 0 ? FromMonday : FromSunday;
    for (int column = 0; column < CalendarColumns; ++column) {
        Rectangle area = areas.letters;
        area.left = column * areas.columnWidth;
        area.right = area.left + areas.columnWidth;
        WriteCentred(painter, area, QString(QLatin1Char(letters[column])));
    }
    const Rectangle &rule = areas.rule;
    painter.fillRect(rule.left, rule.top, rule.right - rule.left, rule.bottom - rule.top, dark);
    const int first = FirstColumn(), days = DaysOfMonth(time.year, time.month);
    for (int day = 1; day <= days; ++day) {
        const Rectangle area = CalendarCellArea(areas, CellOfDay(first, day));
        const bool isSelected = day == time.day;
        if (isSelected) {
            painter.fillRect(area.left, area.top, areas.columnWidth, areas.rowHeight, dark);
        }
        painter.setPen(isSelected ? SystemColourOf(SystemColour::Highlight3D) : dark);
        WriteCentred(painter, area, QString::number(day));
    }
}

void MonthView::mousePressEvent(QMouseEvent *event) {
    Pick(*event);
}

void MonthView::mouseReleaseEvent(QMouseEvent *event) {
    Pick(*event);
}

void MonthView::Pick(const QMouseEvent &event) {
    if (event.button() != Qt::LeftButton) {
        return;
    }
    const QPoint point = event.position().toPoint() - QPoint(Frame, Frame);
    const int cell = CalendarCellAt(Areas(), {.x = point.x(), .y = point.y()});
    const int day = DayOfCell(FirstColumn(), DaysOfMonth(time.year, time.month), cell);
    if (day != 0 && picked) {
        picked(day);
    }
}

} // namespace tonewright
