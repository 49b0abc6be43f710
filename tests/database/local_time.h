// A moment by the clock on the wall.
#pragma once

#include <cstdint>
#include <ctime>

namespace tonewright {

// Seconds since 1970 of a day and time of the local calendar; months from 1.
inline std::int64_t LocalTime(int year, int month, int day, int hour, int minute, int second) {
    std::tm fields = {};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

} // namespace tonewright
