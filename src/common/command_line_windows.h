// The command line of a process on Windows: one text, which each program takes apart by itself.
#pragma once

#include <string>
#include <string_view>

namespace tonewright {

// An argument in UTF-8 as one word of a command line: in quotes, with a backslash before each quote
// inside and before each backslash that stands before a quote.
std::wstring QuotedWord(const std::string &argument);

// What stands behind the name of the program and the blanks that follow it.
std::wstring_view BehindProgramName(std::wstring_view commandLine);

} // namespace tonewright
