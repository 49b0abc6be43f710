// Months, their cells, and local times.
#include "database/calendar.h"

#include "support/time_zone.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

constexpr int January = 0, February = 1, March = 2, April = 3, October = 9, November = 10,
              December = 11;

TEST(Calendar, MonthsHaveTheirDays) {
    const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 0; month < 12; ++month) {
        EXPECT_EQ(DaysOfMonth(2026, month), days[month]) << month;
    }
    EXPECT_EQ(DaysOfMonth(2024, February), 29);
    EXPECT_EQ(DaysOfMonth(2000, February), 29);
    EXPECT_EQ(DaysOfMonth(1900, February), 28);
    EXPECT_EQ(DaysOfMonth(2100, February), 28);
    EXPECT_EQ(DaysOfMonth(2036, February), 29);
    EXPECT_EQ(DaysOfMonth(2024, January), 31);
}

// Days since 1 January 1970 modulo 7, and the column one before: by hand.
TEST(Calendar, TheFirstDayStandsTwoColumnsRightOfItsLetter) {
    struct Row {
        int year, month, column, mondayColumn;
    };
    const Row rows[] = {
        {1970, January, 6, 5},  // 0 days
        {1970, February, 2, 1}, // 31: 3
        {1970, December, 4, 3}, // 334: 5
        {1971, January, 0, 6},  // 365: 1
        {1972, March, 5, 4},    // 730 + 60: 6
        {1973, January, 3, 2},  // 1096: 4
        {2000, February, 4, 3}, // 10957 + 31: 5
        {2000, March, 5, 4},    // 10957 + 60: 6
        {2024, February, 6, 5}, // 19723 + 31: 0
        {2024, March, 0, 6},    // 19723 + 60: 1
        {2026, November, 2, 1}, // 20454 + 304: 3
        {2037, December, 4, 3}, // 24472 + 334: 5
    };
    for (const Row &row : rows) {
        EXPECT_EQ(CalendarColumn(row.year, row.month, false), row.column) << row.year << row.month;
        EXPECT_EQ(CalendarColumn(row.year, row.month, true), row.mondayColumn)
            << row.year << row.month;
    }
}

TEST(Calendar, AllDaysOfAllMonthsHaveACell) {
    for (int year = FirstCalendarYear; year <= LastCalendarYear; ++year) {
        for (int month = 0; month < 12; ++month) {
            for (const bool startMonday : {false, true}) {
                const int column = CalendarColumn(year, month, startMonday);
                ASSERT_GE(column, 0);
                ASSERT_LT(column, 7);
                ASSERT_LT(CellOfDay(column, DaysOfMonth(year, month)), 42);
            }
        }
    }
}

TEST(Calendar, ACellHasItsDayOrNone) {
    EXPECT_EQ(CellOfDay(2, 1), 2);
    EXPECT_EQ(CellOfDay(2, 30), 31);
    EXPECT_EQ(DayOfCell(2, 30, 0), 0);
    EXPECT_EQ(DayOfCell(2, 30, 1), 0);
    EXPECT_EQ(DayOfCell(2, 30, 2), 1);
    EXPECT_EQ(DayOfCell(2, 30, 31), 30);
    EXPECT_EQ(DayOfCell(2, 30, 32), 0);
    EXPECT_EQ(DayOfCell(2, 30, -1), 0);
    EXPECT_EQ(DayOfCell(6, 31, 36), 31);
}

TEST(Calendar, HasSevenEqualColumnsAndSixEqualRows) {
    const CalendarAreas areas = CalendarAreasOf(216, 160, 16); // six pixels of either are left over
    EXPECT_EQ(areas.header, (Rectangle{0, 0, 216, 16}));
    EXPECT_EQ(areas.letters, (Rectangle{0, 16, 216, 32}));
    EXPECT_EQ(areas.rule, (Rectangle{0, 32, 216, 33}));
    EXPECT_EQ(areas.days, (Rectangle{0, 33, 210, 159}));
    EXPECT_EQ(areas.columnWidth, 30);
    EXPECT_EQ(areas.rowHeight, 21);
    EXPECT_EQ(CalendarCellArea(areas, 0), (Rectangle{0, 33, 30, 54}));
    EXPECT_EQ(CalendarCellArea(areas, 8), (Rectangle{30, 54, 60, 75}));
    EXPECT_EQ(CalendarCellArea(areas, 41), (Rectangle{180, 138, 210, 159}));
}

TEST(Calendar, APointIsInOneCellOrNone) {
    const CalendarAreas areas = CalendarAreasOf(216, 160, 16);
    EXPECT_EQ(CalendarCellAt(areas, {0, 33}), 0);
    EXPECT_EQ(CalendarCellAt(areas, {29, 53}), 0);
    EXPECT_EQ(CalendarCellAt(areas, {30, 53}), 1);
    EXPECT_EQ(CalendarCellAt(areas, {29, 54}), 7);
    EXPECT_EQ(CalendarCellAt(areas, {209, 158}), 41);
    for (const PicturePoint point :
         {PicturePoint{0, 32}, {-1, 40}, {210, 40}, {0, 159}, {215, 159}}) {
        EXPECT_EQ(CalendarCellAt(areas, point), -1) << point.x << "," << point.y;
    }
    EXPECT_EQ(CalendarCellAt(CalendarAreasOf(6, 10, 16), {0, 0}), -1);
    EXPECT_EQ(CalendarCellAt(CalendarAreasOf(6, 10, 16), {0, 33}), -1);
    EXPECT_EQ(CalendarCellAt(CalendarAreasOf(216, 10, 16), {0, 33}), -1);
}

TEST(CalendarHour, IsWrittenFromOneToTwelve) {
    const std::pair<int, ShownHour> rows[] = {{0, {12, false}}, {1, {1, false}}, {11, {11, false}},
                                              {12, {12, true}}, {13, {1, true}}, {23, {11, true}}};
    for (const auto &[hour, shown] : rows) {
        EXPECT_EQ(ShownHourOf(hour), shown) << hour;
        EXPECT_EQ(HourOf(shown), hour);
    }
    for (int hour = 0; hour < 24; ++hour) {
        EXPECT_EQ(HourOf(ShownHourOf(hour)), hour);
    }
}

TEST(CalendarTime, IsLimitedFieldByField) {
    EXPECT_EQ(LimitedCalendarTime({1969, -1, 0, -1, -1, -1}), (CalendarTime{1970, 0, 1, 0, 0, 0}));
    EXPECT_EQ(LimitedCalendarTime({2038, 12, 32, 24, 60, 60}),
              (CalendarTime{2037, December, 31, 23, 59, 59}));
    EXPECT_EQ(LimitedCalendarTime({2026, April, 31, 0, 0, 0}).day, 30);
    EXPECT_EQ(LimitedCalendarTime({2026, February, 29, 0, 0, 0}).day, 28);
    EXPECT_EQ(LimitedCalendarTime({2024, February, 31, 0, 0, 0}).day, 29);
    // 2040 has a 29 February; the nearest year that there is has none.
    EXPECT_EQ(LimitedCalendarTime({2040, February, 29, 0, 0, 0}),
              (CalendarTime{2037, February, 28, 0, 0, 0}));
    const CalendarTime inRange = {1999, October, 31, 23, 59, 59};
    EXPECT_EQ(LimitedCalendarTime(inRange), inRange);
}

TEST(CalendarTime, IsTheLocalOne) {
    const TimeZone zone(ZoneOfBerlin);
    // 14 November 2026, 13:05:09 UTC, and half a year before.
    EXPECT_EQ(CalendarTimeOf(1794661509), (CalendarTime{2026, November, 14, 14, 5, 9}));
    EXPECT_EQ(SecondsOfCalendarTime({2026, November, 14, 14, 5, 9}), 1794661509u);
    EXPECT_EQ(CalendarTimeOf(1778763909), (CalendarTime{2026, 4, 14, 15, 5, 9}));
    EXPECT_EQ(SecondsOfCalendarTime({2026, 4, 14, 15, 5, 9}), 1778763909u);
}

TEST(CalendarTime, ATimeThatTheClocksPassOverIsWhatTheLibraryMakesOfIt) {
    const TimeZone zone(ZoneOfBerlin);
    // 29 March 2026: 2:30 is passed over, between 0:59:59 and 1:00:00 UTC.
    const std::uint32_t seconds = SecondsOfCalendarTime({2026, March, 29, 2, 30, 0});
    EXPECT_TRUE(seconds == 1774744200u || seconds == 1774747800u) << seconds;
}

TEST(CalendarTime, ATimeThatComesTwiceIsOneOfThem) {
    const TimeZone zone(ZoneOfNewYork);
    // 1 November 2026, 1:30: 5:30 and 6:30 UTC.
    EXPECT_EQ(CalendarTimeOf(1793511000), (CalendarTime{2026, November, 1, 1, 30, 0}));
    EXPECT_EQ(CalendarTimeOf(1793514600), (CalendarTime{2026, November, 1, 1, 30, 0}));
    const std::uint32_t seconds = SecondsOfCalendarTime({2026, November, 1, 1, 30, 0});
    EXPECT_TRUE(seconds == 1793511000u || seconds == 1793514600u) << seconds;
}

TEST(CalendarTime, OutsideItsYearsIsThatOfTheNearest) {
    const TimeZone west(ZoneOfNewYork);
    EXPECT_EQ(CalendarTimeOf(0), (CalendarTime{1970, December, 31, 19, 0, 0}));
    // 7 February 2106, 6:28:15 UTC.
    EXPECT_EQ(CalendarTimeOf(0xFFFFFFFF), (CalendarTime{2037, February, 7, 1, 28, 15}));
    EXPECT_EQ(SecondsOfCalendarTime({2037, December, 31, 23, 59, 59}), 2145934799u);
}

TEST(CalendarTime, BeforeTheFirstSecondIsTheFirst) {
    const TimeZone east(ZoneOfBerlin);
    EXPECT_EQ(SecondsOfCalendarTime({1970, January, 1, 0, 30, 0}), 0u);
    EXPECT_EQ(SecondsOfCalendarTime({1970, January, 1, 1, 0, 1}), 1u);
}

} // namespace
} // namespace tonewright
