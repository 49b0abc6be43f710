// The box in which a time and date is set.
#pragma once

#include <cstdint>

class QWidget;

namespace tonewright {

enum class FileTimeParts { Time, Date, Both }; // what its title asks for

// Shows the local time of `seconds` since 1970, in the nearest year from 1970 to 2037, and lets the
// user set another. True: accepted, and `seconds` is that of the fields. False: cancelled,
// `seconds` is as it was and so is the setting StartMonday, which the box changes.
bool RunFileTimeBox(QWidget *owner, FileTimeParts parts, std::uint32_t &seconds);

} // namespace tonewright
