// The version of the program, as its windows, its files and the command line tell it.
#pragma once

namespace tonewright {

constexpr const char *ProgramVersion = "17.0a";
constexpr int ProgramRevision = 1;

} // namespace tonewright
