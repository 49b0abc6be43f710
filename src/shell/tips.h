// The tip of the day: the next line of the file of tips, and whether the day has had its tip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>

namespace tonewright {

// A line of the file, with its line feed, counts up to here; its rest is a line of its own.
constexpr std::size_t TipLimit = 1023; // bytes

// The file of tips, beside the program. A line is a tip, in UTF-8; backslash and "n" in it stand
// for a line break. An empty line counts as the end of the file, a NUL as the end of its line.
std::string TipsFilePath();

constexpr unsigned NoTipString = 141; // what is said when there is no tip

struct Tip {
    std::string text;       // empty: the file cannot be opened or begins with an empty line
    std::uint32_t next = 0; // the number of the line to show after it
};
// The tip of a line, counted from 1; 0 is the first line as well. At and beyond the end it is that
// of the first line, with the second one next. Without a file `next` is the number itself.
Tip TipOfLine(std::uint32_t number);

// The tip that TipOfTheDay names, which goes on to the next; without one the words that say so.
std::string NextTip();

// month, day and year as LastTipDate keeps them: (month * 256 + day) * 65536 + year.
std::uint32_t TipDate(int month, int day, int year);
// True when LastTipDate is another day than that of `now` (local date), which it is from then on.
// False, and nothing changes, for a time that has no date.
bool TipDateChanged(std::time_t now = std::time(nullptr));

// Shows the box with the next tip. 1.
int RunTip();

} // namespace tonewright
