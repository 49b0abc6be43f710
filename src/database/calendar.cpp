// Months and local times.
#include "database/calendar.h"

#include <algorithm>
#include <ctime>

namespace tonewright {
namespace {

constexpr int DaysOfWeek = 7;
constexpr int DaysOfYear = 365;
constexpr int FirstTmYear = 1900;
constexpr int HalfDay = 12; // hours

constexpr bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

} // namespace

int DaysOfMonth(int year, int month) {
    constexpr int Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    constexpr int February = 1;
    return Days[month] + (month == February && IsLeapYear(year) ? 1 : 0);
}

int CalendarColumn(int year, int month, bool startMonday) {
    int days = 0; // from 1 January 1970
    for (int former = FirstCalendarYear; former < year; ++former) {
        days += DaysOfYear + (IsLeapYear(former) ? 1 : 0);
    }
    for (int former = 0; former < month; ++former) {
        days += DaysOfMonth(year, former);
    }
    int weekday = days % DaysOfWeek;
    if (startMonday) {
        weekday = (weekday + DaysOfWeek - 1) % DaysOfWeek;
    }
    return (weekday + DaysOfWeek - 1) % DaysOfWeek;
}

int DayOfCell(int column, int days, int cell) {
    const int day = cell - column + 1;
    return day >= 1 && day <= days ? day : 0;
}

CalendarAreas CalendarAreasOf(int width, int height, int lineHeight) {
    constexpr int RuleHeight = 1;
    const int letters = lineHeight, rule = 2 * lineHeight, days = rule + RuleHeight;
    CalendarAreas areas;
    areas.columnWidth = width / CalendarColumns;
    areas.rowHeight = std::max(0, (height - days) / CalendarRows);
    areas.header = {.left = 0, .top = 0, .right = width, .bottom = letters};
    areas.letters = {.left = 0, .top = letters, .right = width, .bottom = rule};
    areas.rule = {.left = 0, .top = rule, .right = width, .bottom = days};
    areas.days = {.left = 0,
                  .top = days,
                  .right = CalendarColumns * areas.columnWidth,
                  .bottom = days + CalendarRows * areas.rowHeight};
    return areas;
}

Rectangle CalendarCellArea(const CalendarAreas &areas, int cell) {
    const int left = areas.days.left + cell % CalendarColumns * areas.columnWidth;
    const int top = areas.days.top + cell / CalendarColumns * areas.rowHeight;
    return {.left = left,
            .top = top,
            .right = left + areas.columnWidth,
            .bottom = top + areas.rowHeight};
}

int CalendarCellAt(const CalendarAreas &areas, PicturePoint point) {
    const Rectangle &days = areas.days;
    if (point.x < days.left || point.x >= days.right || point.y < days.top ||
        point.y >= days.bottom) {
        return -1;
    }
    return (point.y - days.top) / areas.rowHeight * CalendarColumns +
           (point.x - days.left) / areas.columnWidth;
}

ShownHour ShownHourOf(int hour) {
    const int shown = hour % HalfDay;
    return {.hour = shown == 0 ? HalfDay : shown, .isPm = hour >= HalfDay};
}

int HourOf(ShownHour shown) {
    return shown.hour % HalfDay + (shown.isPm ? HalfDay : 0);
}

CalendarTime LimitedCalendarTime(CalendarTime time) {
    time.year = std::clamp(time.year, FirstCalendarYear, LastCalendarYear);
    time.month = std::clamp(time.month, 0, 11);
    time.day = std::clamp(time.day, 1, DaysOfMonth(time.year, time.month));
    time.hour = std::clamp(time.hour, 0, 23);
    time.minute = std::clamp(time.minute, 0, 59);
    time.second = std::clamp(time.second, 0, 59);
    return time;
}

CalendarTime CalendarTimeOf(std::uint32_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    const std::tm *fields = std::localtime(&time);
    if (!fields) {
        return {};
    }
    return LimitedCalendarTime({.year = fields->tm_year + FirstTmYear,
                                .month = fields->tm_mon,
                                .day = fields->tm_mday,
                                .hour = fields->tm_hour,
                                .minute = fields->tm_min,
                                .second = fields->tm_sec});
}

std::uint32_t SecondsOfCalendarTime(const CalendarTime &time) {
    std::tm fields = {};
    fields.tm_year = time.year - FirstTmYear;
    fields.tm_mon = time.month;
    fields.tm_mday = time.day;
    fields.tm_hour = time.hour;
    fields.tm_min = time.minute;
    fields.tm_sec = time.second;
    fields.tm_isdst = -1; // as the zone has it
    return static_cast<std::uint32_t>(std::max<std::time_t>(0, std::mktime(&fields)));
}

} // namespace tonewright
