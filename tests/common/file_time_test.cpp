// Times of files and their text forms.
#include "common/file_time.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace tonewright;

namespace {

// Seconds of a time of day on Saturday, November 14, 2026, local time.
std::int64_t OnThatSaturday(int hour, int minute, int second) {
    std::tm fields = {};
    fields.tm_year = 2026 - 1900;
    fields.tm_mon = 10;
    fields.tm_mday = 14;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

} // namespace

TEST(FormatTime, HasALongAndAShortForm) {
    EXPECT_EQ(FormatTime(OnThatSaturday(14, 5, 9), 0), "Sat Nov 14 2:05:09 PM 2026");
    EXPECT_EQ(FormatTime(OnThatSaturday(14, 5, 9), FormatTimeShort), "Sat Nov 14 2:05 PM 2026");
    EXPECT_EQ(FormatTime(OnThatSaturday(14, 5, 9), 2), "Sat Nov 14 2:05:09 PM 2026");
}

TEST(FormatTime, AtHour0Prints12Am) {
    EXPECT_EQ(FormatTime(OnThatSaturday(0, 0, 0), 0), "Sat Nov 14 12:00:00 AM 2026");
}

TEST(FormatTime, AtHour12Prints12Am) {
    EXPECT_EQ(FormatTime(OnThatSaturday(12, 0, 0), 0), "Sat Nov 14 12:00:00 AM 2026");
    EXPECT_EQ(FormatTime(OnThatSaturday(12, 59, 59), 0), "Sat Nov 14 12:59:59 AM 2026");
}

TEST(FormatTime, AtHour13Prints1Pm) {
    EXPECT_EQ(FormatTime(OnThatSaturday(13, 0, 0), 0), "Sat Nov 14 1:00:00 PM 2026");
    EXPECT_EQ(FormatTime(OnThatSaturday(23, 59, 59), FormatTimeShort), "Sat Nov 14 11:59 PM 2026");
}

TEST(FormatTime, AtHour1And11PrintsAm) {
    EXPECT_EQ(FormatTime(OnThatSaturday(1, 2, 3), 0), "Sat Nov 14 1:02:03 AM 2026");
    EXPECT_EQ(FormatTime(OnThatSaturday(11, 0, 0), FormatTimeShort), "Sat Nov 14 11:00 AM 2026");
}

TEST(FormatTime, OfATimeThatNoCalendarHoldsDoesNotCrash) {
    EXPECT_FALSE(FormatTime(INT64_MAX, 0).empty());
    EXPECT_FALSE(FormatTime(INT64_MIN, 0).empty());
    EXPECT_FALSE(FormatTime(-1, 0).empty());
}

TEST(DayAndMonthNames, AreThoseOfTheCalendar) {
    EXPECT_STREQ(MonthNames[0], "January");
    EXPECT_STREQ(MonthNames[4], "May");
    EXPECT_STREQ(MonthNames[11], "December");
    EXPECT_STREQ(DayNames[0], "Sunday");
    EXPECT_STREQ(DayNames[6], "Saturday");
}

TEST(FileTimeToSeconds, CountsFrom1970) {
    EXPECT_EQ(FileTimeToSeconds(116444736000000000), 0);
    // 2026-02-22 14:05:09 UTC, and the last of its ten million parts
    EXPECT_EQ(FileTimeToSeconds(134162427090000000), 1771769109);
    EXPECT_EQ(FileTimeToSeconds(134162427099999999), 1771769109);
    EXPECT_EQ(FileTimeToSeconds(0), -11644473600);
    EXPECT_GT(FileTimeToSeconds(UINT64_MAX), 0);
}

TEST(FileCreationTime, OfAFileJustMadeIsNow) {
    const TempFolder temp;
    const std::int64_t before = std::time(nullptr);
    const std::string path = temp.WriteText("bank.syx", "content");
    std::uint64_t time = 0;
    ASSERT_TRUE(FileCreationTime(path.c_str(), &time));
    EXPECT_GE(FileTimeToSeconds(time), before - 2);
    EXPECT_LE(FileTimeToSeconds(time), std::time(nullptr) + 2);
    EXPECT_EQ(ReadTestText(path), "content");
}

TEST(FileCreationTime, IsNotTheTimeOfTheLastWrite) {
    const TempFolder temp;
    const std::string path = temp.WriteText("bank.syx", "content");
    std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::hours(24 * 365));
    std::uint64_t time = 0;
    ASSERT_TRUE(FileCreationTime(path.c_str(), &time));
    EXPECT_GE(FileTimeToSeconds(time), std::time(nullptr) - 60);
    EXPECT_LT(ModificationTimeOrNow(path.c_str()), std::time(nullptr) - 86400);
}

TEST(FileCreationTime, OfAMissingFileOrAFolderIsNoneAndMakesNoFile) {
    const TempFolder temp;
    std::uint64_t time = 77;
    EXPECT_FALSE(FileCreationTime(temp.File("missing").c_str(), &time));
    EXPECT_FALSE(FileCreationTime(temp.Folder().c_str(), &time));
    EXPECT_FALSE(FileCreationTime("", &time));
    EXPECT_EQ(time, 77u);
    EXPECT_FALSE(temp.Holds("missing"));
}

TEST(ModificationTimeOrNow, IsTheTimeOfTheLastWrite) {
    const TempFolder temp;
    const std::string path = temp.WriteText("bank.syx", "content");
    const auto seconds = std::chrono::sys_seconds(std::chrono::seconds(1771783509));
    std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(seconds));
    EXPECT_EQ(ModificationTimeOrNow(path.c_str()), 1771783509);
}

TEST(ModificationTimeOrNow, OfAMissingFileIsThePresentTime) {
    const TempFolder temp;
    const std::int64_t before = std::time(nullptr);
    const std::int64_t time = ModificationTimeOrNow(temp.File("missing").c_str());
    EXPECT_GE(time, before);
    EXPECT_LE(time, std::time(nullptr));
}
