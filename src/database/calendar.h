// A month as it is laid out, and local times as they are written into fields.
#pragma once

#include "common/geometry.h"

#include <cstdint>

namespace tonewright {

// Months are counted from 0 here, days from 1.

constexpr int FirstCalendarYear = 1970;
constexpr int LastCalendarYear = 2037;

int DaysOfMonth(int year, int month);

// The column, from 0, of the first day of a month, whose weeks begin on Sunday or on Monday. It is
// two to the right of the day's own letter, and is meant to be.
int CalendarColumn(int year, int month, bool startMonday);

// The days stand in seven columns and six rows; their cells are counted row by row from 0.
constexpr int CalendarColumns = 7;
constexpr int CalendarRows = 6;

constexpr int CellOfDay(int column, int day) {
    return column + day - 1;
}
// 0 for a cell without a day of the month.
int DayOfCell(int column, int days, int cell);

// Where the parts of a calendar stand.
struct CalendarAreas {
    Rectangle header;  // month and year
    Rectangle letters; // of the days of the week
    Rectangle rule;    // one pixel high
    Rectangle days;
    int columnWidth = 0, rowHeight = 0; // of a cell
};
// In a calendar of a size in pixels, with lines of text of a height.
CalendarAreas CalendarAreasOf(int width, int height, int lineHeight);
Rectangle CalendarCellArea(const CalendarAreas &areas, int cell);
// -1 beside the cells.
int CalendarCellAt(const CalendarAreas &areas, PicturePoint point);

// An hour of the day, 0 to 23, as it is written. From noon on it is "PM".
struct ShownHour {
    int hour = 12; // 1 to 12
    bool isPm = false;

    bool operator==(const ShownHour &) const = default;
};
ShownHour ShownHourOf(int hour);
int HourOf(ShownHour shown);

// A local time.
struct CalendarTime {
    int year = FirstCalendarYear; // to LastCalendarYear
    int month = 0;
    int day = 1;
    int hour = 0; // to 23
    int minute = 0, second = 0;

    bool operator==(const CalendarTime &) const = default;
};

// Each field outside its range becomes the nearest one in it, the day after year and month.
CalendarTime LimitedCalendarTime(CalendarTime time);
// The local time of seconds since 1970, of the nearest year that there is.
CalendarTime CalendarTimeOf(std::uint32_t seconds);
// Seconds since 1970 of a local time, 0 for one before them. A time that a change of the clocks
// leaves out or brings twice is what the C library makes of it.
std::uint32_t SecondsOfCalendarTime(const CalendarTime &time);

} // namespace tonewright
