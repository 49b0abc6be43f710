// tonewright-picture, the program that paints for the command line and stands beside it.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

// What RunInPlace gives besides the exit status of a program.
constexpr int NotStarted = -1, EndedByFault = -2;

// Runs `program` (a full path) with these arguments in place of the present process where the
// platform can do that. What it prints is the user's; what the present process has to print has
// been printed. The exit status of the program; NotStarted, with the reason in errno, or
// EndedByFault where it was waited for and has crashed.
int RunInPlace(const std::string &program, const std::vector<std::string> &arguments);

} // namespace tonewright
