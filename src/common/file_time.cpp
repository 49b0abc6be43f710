// Times of files and the text forms in which times are shown.
#include "common/file_time.h"

#include "common/platform.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

constexpr std::int64_t UnitsPerSecond = 10'000'000;
constexpr std::int64_t SecondsFrom1601To1970 = 11'644'473'600;
constexpr int Noon = 12;

// A name of a table; an index outside the table takes its nearest end.
template <std::size_t Size> const char *NameAt(const char *const (&names)[Size], int index) {
    return names[std::clamp<int>(index, 0, Size - 1)];
}

// Local calendar fields, those of 1970 for a time that the calendar cannot hold.
std::tm LocalFields(std::int64_t seconds) {
    std::time_t time = static_cast<std::time_t>(seconds);
    if (const std::tm *fields = std::localtime(&time)) {
        return *fields;
    }
    time = 0;
    const std::tm *fields = std::localtime(&time);
    return fields ? *fields : std::tm{};
}

} // namespace

const char *const MonthNames[12] = {"January",   "February", "March",    "April",
                                    "May",       "June",     "July",     "August",
                                    "September", "October",  "November", "December"};
const char *const DayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                 "Thursday", "Friday", "Saturday"};

bool FileCreationTime(const char *path, std::uint64_t *time) {
    return PlatformFileCreationTime(path, time);
}

std::int64_t FileTimeToSeconds(std::uint64_t fileTime) {
    return static_cast<std::int64_t>(fileTime / UnitsPerSecond) - SecondsFrom1601To1970;
}

std::string FormatTime(std::int64_t seconds, int flags) {
    const std::tm fields = LocalFields(seconds);
    const char *day = NameAt(DayNames, fields.tm_wday);
    const char *month = NameAt(MonthNames, fields.tm_mon);
    const long long year = 1900LL + fields.tm_year;
    // The label looks at the hour of 24: the hour that begins at noon still reads "AM".
    const char *half = fields.tm_hour > Noon ? "PM" : "AM";
    int hour = fields.tm_hour;
    if (hour == 0) {
        hour = Noon;
    } else if (hour > Noon) {
        hour -= Noon;
    }
    if ((flags & FormatTimeShort) != 0) {
        return FormatText("%3.3s %3.3s %d %d:%02d %s %lld", day, month, fields.tm_mday, hour,
                          fields.tm_min, half, year);
    }
    return FormatText("%3.3s %3.3s %d %d:%02d:%02d %s %lld", day, month, fields.tm_mday, hour,
                      fields.tm_min, fields.tm_sec, half, year);
}

std::int64_t ModificationTimeOrNow(const char *path) {
    std::error_code error;
    const auto written = std::filesystem::last_write_time(PathOfUtf8(path), error);
    if (error) {
        return static_cast<std::int64_t>(std::time(nullptr));
    }
    const auto onSystemClock = std::chrono::file_clock::to_sys(written);
    return std::chrono::floor<std::chrono::seconds>(onSystemClock).time_since_epoch().count();
}

} // namespace tonewright
