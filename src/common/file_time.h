// Times of files and the text forms in which times are shown.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

constexpr int FormatTimeShort = 1; // leaves the seconds out

// Names in full; the text forms use their first three letters.
extern const char *const MonthNames[12];
extern const char *const DayNames[7];

// The file's creation time (100-nanosecond units since 1601, UTC) into *time. The file is opened
// for writing, so that a read-only or locked one reports no time; it is never altered. False when
// the time could not be read.
bool FileCreationTime(const char *path, std::uint64_t *time);

// Seconds since 1970 for a time as FileCreationTime gives it.
std::int64_t FileTimeToSeconds(std::uint64_t fileTime);

// "Sat Nov 14 2:05:09 PM 2026", or "Sat Nov 14 2:05 PM 2026" in the short form, in local time.
// Noon and the hour after it read "AM".
std::string FormatTime(std::int64_t seconds, int flags);

// The file's modification time in seconds since 1970, or the present time if it cannot be read.
std::int64_t ModificationTimeOrNow(const char *path);

} // namespace tonewright
